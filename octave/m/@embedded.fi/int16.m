## -*- texinfo -*-
## @deftypefn {} {@var{y} =} int16 (@var{a})
## The real-world values of the fi @var{a} as int16, rounded to nearest (halves away from zero)
## and saturated, exactly at every word length.
## @end deftypefn

function y = int16 (a)
  y = __corbel_to_integer__ (a, "int16");
endfunction
