## -*- texinfo -*-
## @deftypefn {} {@var{b} =} bitrol (@var{a}, @var{n})
## Rotates the stored-integer bits of the fi array @var{a} left by @var{n}; type and scaling
## are kept.
## @end deftypefn

function b = bitrol (a, n)
  b = __corbel_map_bits__ (a, @(s) circshift (s, -n, 2));
endfunction
