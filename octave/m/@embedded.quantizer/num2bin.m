## -*- texinfo -*-
## @deftypefn {} {@var{t} =} num2bin (@var{q}, @var{x})
## The values @var{x} quantized by the quantizer @var{q} (without logging), as radix-2
## words (@code{num2base (q, x, 2)}): the stored integers of a fixed or ufixed
## quantizer, the bit patterns (sign, biased exponent, fraction) of a double, single or float
## one.  One row per row of @var{x}, elements two spaces apart.
##
## @example
## num2bin (quantizer ("float", [16 5]), 1)   % 0011110000000000
## @end example
## @end deftypefn

function t = num2bin (q, x)
  t = num2base (q, x, 2);
endfunction
