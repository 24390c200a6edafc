## -*- texinfo -*-
## @deftypefn {} {@var{y} =} convergent (@var{a})
## The values of the fi @var{a} rounded to integers to nearest, halves to even, exactly: a fi of fraction length 0,
## one integer bit wider than @var{a}, with the fimath of @var{a}.
##
## @example
## convergent (fi ([2.5 -2.5 1.25], 1, 8, 4))
## @end example
## @end deftypefn

function y = convergent (a)
  y = __corbel_round_to_integer__ (a, "convergent");
endfunction
