## -*- texinfo -*-
## @deftypefn  {} {@var{y} =} conv (@var{x}, @var{b})
## The full convolution of two vectors with fi values, numel (x) + numel (b) - 1 outputs,
## each formed as in @code{filter}: products in the ProductMode type and sums in the SumMode
## type of the fimath of @var{x} (of @var{b} when @var{x} is built-in).  The result is a row
## unless both inputs are columns.
## @end deftypefn

function y = conv (x, b)
  if (nargin != 2)
    print_usage ();
  endif
  if (! isvector (x) || ! isvector (b))
    error ("velkora:fi:filter:vectorsOnly", "conv with fi values takes vectors.");
  endif
  y = __corbel_fir__ (b, x, numel (x) + numel (b) - 1);
  if (! (iscolumn (x) && iscolumn (b)))
    y = y.';
  endif
endfunction
