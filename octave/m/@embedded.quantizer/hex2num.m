## -*- texinfo -*-
## @deftypefn {} {@var{x} =} hex2num (@var{q}, @var{t})
## The values of the radix-16 words in the text @var{t} for the quantizer @var{q}, as a
## column of doubles in the order of the text (@code{base2num (q, t, 16)}): stored
## integers on the grid of a fixed or ufixed quantizer, bit patterns of a double, single or
## float one.
##
## @example
## hex2num (quantizer ("single"), "3fc00000")   % 1.5
## @end example
## @end deftypefn

function x = hex2num (q, t)
  x = base2num (q, t, 16);
endfunction
