## -*- texinfo -*-
## @deftypefn  {} {@var{y} =} filter (@var{b}, 1, @var{x})
## The FIR filter with coefficients @var{b} over the samples @var{x} (a vector), with fi
## values: y(n) = sum over k of b(k) x(n - k + 1), the samples before the first taken as 0.
## Each output is the inner product of a row of delayed samples with @var{b}, formed as the
## fi matrix product is: products in the ProductMode type of the fimath of the samples (of
## @var{b} when @var{x} is built-in), accumulated in its SumMode type.  At full precision a
## filter of s16,15 samples and 64 s16,15 taps gives s38,30 outputs (32 product bits, 6 more
## for 64 terms); SumMode "SpecifyPrecision" with SumWordLength 40 gives a 40-bit
## accumulator.  Only FIR filters (denominator 1) are defined; the output has the shape of
## @var{x}.
##
## @example
## y = filter (fi ([0.5 0.25], 1, 16, 15), 1, fi ([1 0 0 0] / 2, 1, 16, 15))
## @end example
## @end deftypefn

function y = filter (b, a, x)
  if (nargin != 3)
    print_usage ();
  endif
  if (! (isscalar (a) && double (a) == 1))
    error ("velkora:fi:filter:firOnly",
           "filter with fi values is defined for FIR filters only (a denominator of 1).");
  endif
  if (! isvector (b) || (! isvector (x) && ! isempty (x)))
    error ("velkora:fi:filter:vectorsOnly", "filter with fi values takes vectors b and x.");
  endif
  y = __corbel_fir__ (b, x, numel (x));
  y = reshape (y, size (x));
endfunction
