## -*- texinfo -*-
## @deftypefn {} {@var{x} =} hex2num (@var{q}, @var{t})
## The values of the radix-16 stored integers in the text @var{t} on the grid of the
## fixed-point quantizer @var{q}, as a column of doubles in the order of the text
## (@code{base2num (q, t, 16)}).
## @end deftypefn

function x = hex2num (q, t)
  x = base2num (q, t, 16);
endfunction
