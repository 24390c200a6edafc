## -*- texinfo -*-
## @deftypefn {} {@var{b} =} bitsll (@var{a}, @var{n})
## Shifts the stored integers of the fi array @var{a} left by @var{n} bits (0 <= n <= word
## length), dropping the bits shifted out and filling with zeros; type and scaling are kept.
## @end deftypefn

function b = bitsll (a, n)
  b = __corbel_map_bits__ (a, @(s) [s(min (n, end)+1:end), repmat("0", 1, min (n, numel (s)))]);
endfunction
