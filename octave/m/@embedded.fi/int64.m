## -*- texinfo -*-
## @deftypefn {} {@var{y} =} int64 (@var{a})
## The real-world values of the fi @var{a} as int64, rounded to nearest (halves away from zero)
## and saturated, exactly at every word length.
## @end deftypefn

function y = int64 (a)
  y = __corbel_to_integer__ (a, "int64");
endfunction
