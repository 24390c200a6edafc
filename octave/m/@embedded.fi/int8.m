## -*- texinfo -*-
## @deftypefn {} {@var{y} =} int8 (@var{a})
## The real-world values of the fi @var{a} as int8, rounded to nearest (halves away from zero)
## and saturated, exactly at every word length.
## @end deftypefn

function y = int8 (a)
  y = __corbel_to_integer__ (a, "int8");
endfunction
