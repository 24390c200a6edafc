## -*- texinfo -*-
## @deftypefn {} {@var{y} =} ceil (@var{a})
## The values of the fi @var{a} rounded to integers toward plus infinity, exactly: a fi of fraction length 0,
## one integer bit wider than @var{a}, with the fimath of @var{a}.
##
## @example
## ceil (fi ([2.5 -2.5 1.25], 1, 8, 4))
## @end example
## @end deftypefn

function y = ceil (a)
  y = __corbel_round_to_integer__ (a, "ceil");
endfunction
