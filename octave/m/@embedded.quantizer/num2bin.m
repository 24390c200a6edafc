## -*- texinfo -*-
## @deftypefn {} {@var{t} =} num2bin (@var{q}, @var{x})
## The values @var{x} quantized by the fixed-point quantizer @var{q} (without logging), as
## the radix-2 text of their stored integers: one row per row of @var{x}, elements two
## spaces apart (@code{num2base (q, x, 2)}).
## @end deftypefn

function t = num2bin (q, x)
  t = num2base (q, x, 2);
endfunction
