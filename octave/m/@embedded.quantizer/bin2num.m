## -*- texinfo -*-
## @deftypefn {} {@var{x} =} bin2num (@var{q}, @var{t})
## The values of the radix-2 words in the text @var{t} for the quantizer @var{q}, as a
## column of doubles in the order of the text (@code{base2num (q, t, 2)}): stored
## integers on the grid of a fixed or ufixed quantizer, bit patterns of a double, single or
## float one.
##
## @example
## bin2num (quantizer ("single"), "00111111110000000000000000000000")   % 1.5
## @end example
## @end deftypefn

function x = bin2num (q, t)
  x = base2num (q, t, 2);
endfunction
