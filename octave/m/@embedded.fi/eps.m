## -*- texinfo -*-
## @deftypefn {} {@var{e} =} eps (@var{a})
## The value of the least significant bit of the fi array @var{a}'s type, as a fi of that
## type (the same as @code{fieps (a)}).
## @end deftypefn

function e = eps (a)
  e = fieps (a);
endfunction
