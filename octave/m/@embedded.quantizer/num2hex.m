## -*- texinfo -*-
## @deftypefn {} {@var{t} =} num2hex (@var{q}, @var{x})
## The values @var{x} quantized by the quantizer @var{q} (without logging), as radix-16
## words (@code{num2base (q, x, 16)}): the stored integers of a fixed or ufixed
## quantizer, the bit patterns (sign, biased exponent, fraction) of a double, single or float
## one.  One row per row of @var{x}, elements two spaces apart.
##
## @example
## num2hex (quantizer ("float", [16 5]), 1)   % 3c00
## @end example
## @end deftypefn

function t = num2hex (q, x)
  t = num2base (q, x, 16);
endfunction
