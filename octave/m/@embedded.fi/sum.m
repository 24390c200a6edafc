## -*- texinfo -*-
## @deftypefn  {} {@var{s} =} sum (@var{a})
## @deftypefnx {} {@var{s} =} sum (@var{a}, @var{dim})
## The sums of the fi array @var{a} along its first dimension longer than one, or along
## @var{dim}.  Under SumMode FullPrecision the sum of n terms of type sW,F has type
## s(W + ceil(log2 n)),F, so nothing rounds or overflows; under the other SumModes the running
## sum is held in the fimath's sum type and quantized after each addition.
##
## @example
## s = sum (fi ([0.5 0.75 -0.25 1], 1, 8, 6))   % 2, of type s10,6
## @end example
## @end deftypefn

function s = sum (a, dim)
  if (nargin == 1)
    s = leadingdimension_sum (a);
  elseif (nargin == 2)
    s = leadingdimension_sum (a, dim);
  else
    print_usage ();
  endif
endfunction
