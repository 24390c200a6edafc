## -*- texinfo -*-
## @deftypefn  {} {@var{p} =} prod (@var{a})
## @deftypefnx {} {@var{p} =} prod (@var{a}, @var{dim})
## The products of the fi array @var{a} along its first dimension longer than one, or along
## @var{dim}: @code{a(1) .* a(2) .* ...}, each multiplication under the fimath's ProductMode,
## so at full precision n factors of sW,F give s(nW),nF.  A line of no elements gives 1, of
## @var{a}'s signedness and word length at best precision.
##
## @example
## p = prod (fi ([0.5 0.75 -0.25], 1, 8, 6))   % -0.09375, of type s24,18
## @end example
## @end deftypefn

function p = prod (a, dim)
  if (nargin < 1 || nargin > 2)
    print_usage ();
  elseif (nargin == 1)
    dim = [];
  endif
  p = __corbel_running__ ("prod", a, dim);
endfunction
