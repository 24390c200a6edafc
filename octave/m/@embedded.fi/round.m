## -*- texinfo -*-
## @deftypefn {} {@var{y} =} round (@var{a})
## The values of the fi @var{a} rounded to integers to nearest, halves away from zero, exactly: a fi of fraction length 0,
## one integer bit wider than @var{a}, with the fimath of @var{a}.
##
## @example
## round (fi ([2.5 -2.5 1.25], 1, 8, 4))
## @end example
## @end deftypefn

function y = round (a)
  y = __corbel_round_to_integer__ (a, "round");
endfunction
