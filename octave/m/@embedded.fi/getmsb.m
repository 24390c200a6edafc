## -*- texinfo -*-
## @deftypefn {} {@var{b} =} getmsb (@var{a})
## The most significant bit of each stored integer of the fi array @var{a}, as an unsigned
## one-bit fi.
## @end deftypefn

function b = getmsb (a)
  b = bitsliceget (a, a.WordLength, a.WordLength);
endfunction
