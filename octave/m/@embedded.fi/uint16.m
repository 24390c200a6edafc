## -*- texinfo -*-
## @deftypefn {} {@var{y} =} uint16 (@var{a})
## The real-world values of the fi @var{a} as uint16, rounded to nearest (halves away from zero)
## and saturated, exactly at every word length.
## @end deftypefn

function y = uint16 (a)
  y = __corbel_to_integer__ (a, "uint16");
endfunction
