## -*- texinfo -*-
## @deftypefn {} {@var{y} =} int32 (@var{a})
## The real-world values of the fi @var{a} as int32, rounded to nearest (halves away from zero)
## and saturated, exactly at every word length.
## @end deftypefn

function y = int32 (a)
  y = __corbel_to_integer__ (a, "int32");
endfunction
