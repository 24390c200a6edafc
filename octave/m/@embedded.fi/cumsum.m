## -*- texinfo -*-
## @deftypefn  {} {@var{y} =} cumsum (@var{a})
## @deftypefnx {} {@var{y} =} cumsum (@var{a}, @var{dim})
## The running sums of the fi array @var{a} along its first dimension longer than one, or
## along @var{dim}.  They take the type of @code{sum (a, dim)}, and each is quantized as that
## sum's running value is, so the last one equals the sum.  Quantizations are reported as
## those of an assignment.
##
## @example
## y = cumsum (fi ([0.5 0.75 -0.25 1], 1, 8, 6))   % 0.5 1.25 1 2, of type s10,6
## @end example
## @end deftypefn

function y = cumsum (a, dim)
  if (nargin < 1 || nargin > 2)
    print_usage ();
  elseif (nargin == 1)
    dim = [];
  endif
  y = __corbel_running__ ("cumsum", a, dim);
endfunction
