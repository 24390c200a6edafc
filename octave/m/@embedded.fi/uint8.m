## -*- texinfo -*-
## @deftypefn {} {@var{y} =} uint8 (@var{a})
## The real-world values of the fi @var{a} as uint8, rounded to nearest (halves away from zero)
## and saturated, exactly at every word length.
## @end deftypefn

function y = uint8 (a)
  y = __corbel_to_integer__ (a, "uint8");
endfunction
