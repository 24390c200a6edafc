## -*- texinfo -*-
## @deftypefn {} {@var{b} =} bitsrl (@var{a}, @var{n})
## Shifts the stored integers of the fi array @var{a} right by @var{n} bits, filling with
## zeros (a logical shift); type and scaling are kept.
## @end deftypefn

function b = bitsrl (a, n)
  b = __corbel_map_bits__ (a, @(s) [repmat("0", 1, min (n, numel (s))), s(1:end-min (n, end))]);
endfunction
