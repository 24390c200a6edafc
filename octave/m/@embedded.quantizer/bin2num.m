## -*- texinfo -*-
## @deftypefn {} {@var{x} =} bin2num (@var{q}, @var{t})
## The values of the radix-2 stored integers in the text @var{t} on the grid of the
## fixed-point quantizer @var{q}, as a column of doubles in the order of the text
## (@code{base2num (q, t, 2)}).
## @end deftypefn

function x = bin2num (q, t)
  x = base2num (q, t, 2);
endfunction
