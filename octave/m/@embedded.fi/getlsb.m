## -*- texinfo -*-
## @deftypefn {} {@var{b} =} getlsb (@var{a})
## The least significant bit of each stored integer of the fi array @var{a}, as an unsigned
## one-bit fi.
## @end deftypefn

function b = getlsb (a)
  b = bitsliceget (a, 1, 1);
endfunction
