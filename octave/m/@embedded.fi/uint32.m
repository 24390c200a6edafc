## -*- texinfo -*-
## @deftypefn {} {@var{y} =} uint32 (@var{a})
## The real-world values of the fi @var{a} as uint32, rounded to nearest (halves away from zero)
## and saturated, exactly at every word length.
## @end deftypefn

function y = uint32 (a)
  y = __corbel_to_integer__ (a, "uint32");
endfunction
