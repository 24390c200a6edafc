## -*- texinfo -*-
## @deftypefn {} {@var{t} =} logical (@var{a})
## True where the fi @var{a} is not zero (compared exactly).
## @end deftypefn

function t = logical (a)
  t = (a != 0);
endfunction
