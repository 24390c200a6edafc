## -*- texinfo -*-
## @deftypefn {} {@var{y} =} uint64 (@var{a})
## The real-world values of the fi @var{a} as uint64, rounded to nearest (halves away from zero)
## and saturated, exactly at every word length.
## @end deftypefn

function y = uint64 (a)
  y = __corbel_to_integer__ (a, "uint64");
endfunction
