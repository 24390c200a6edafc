## -*- texinfo -*-
## @deftypefn  {} {@var{m} =} mean (@var{a})
## @deftypefnx {} {@var{m} =} mean (@var{a}, @var{dim})
## The means of the fi array @var{a} along its first dimension longer than one, or along
## @var{dim}: @code{sum (a, dim)} divided by the number of terms into the numerictype of
## @var{a} (which holds every mean of its values), rounded by its fimath.
##
## @example
## m = mean (fi ([0.5 0.75 -0.25 1], 1, 8, 6))   % 0.5, of type s8,6
## @end example
## @end deftypefn

function m = mean (a, dim)
  if (nargin < 1 || nargin > 2)
    print_usage ();
  endif
  if (nargin == 1)
    s = sum (a);
    n = numel (a) / max (numel (s), 1);
  else
    s = sum (a, dim);
    n = size (a, dim);
  endif
  m = divide (numerictype (a), s, n);
endfunction
