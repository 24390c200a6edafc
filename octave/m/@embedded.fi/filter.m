## -*- texinfo -*-
## @deftypefn  {} {@var{y} =} filter (@var{b}, 1, @var{x})
## @deftypefnx {} {@var{y} =} filter (@var{b}, @var{a}, @var{x})
## Filtering of the samples @var{x} (a vector) with fi values, the samples before the first
## taken as 0.
##
## With denominator 1 (FIR): y(n) = sum over k of b(k) x(n - k + 1).  Each output is the
## inner product of a row of delayed samples with @var{b}, formed as the fi matrix product
## is: products in the ProductMode type of the fimath of the samples (of @var{b} when
## @var{x} is built-in), accumulated in its SumMode type.  At full precision a filter of
## s16,15 samples and 64 s16,15 taps gives s38,30 outputs (32 product bits, 6 more for 64
## terms); SumMode "SpecifyPrecision" with SumWordLength 40 gives a 40-bit accumulator.
##
## With a denominator @var{a} whose first coefficient is 1 (IIR, direct form I):
## y(n) = sum over k of b(k) x(n - k + 1) - sum over k > 1 of a(k) y(n - k + 1).  The
## outputs take the numerictype and fimath of the samples, as a filter whose output register
## has the width of its input: the feed-forward sum is the FIR output above, the feedback sum
## the inner product of @code{a(2:end)} with the earlier outputs (formed the same way), and
## their difference, exact, is quantized into the output type.  The output has the shape of
## @var{x}.
##
## @example
## y = filter (fi ([0.5 0.25], 1, 16, 15), 1, fi ([1 0 0 0] / 2, 1, 16, 15))
## y = filter (fi (0.25, 1, 16, 15), fi ([1 -0.5], 1, 16, 14), fi ([1 0 0] / 2, 1, 16, 15))
## @end example
## @end deftypefn

function y = filter (b, a, x)
  if (nargin != 3)
    print_usage ();
  endif
  if (! isvector (b) || ! isvector (a) || (! isvector (x) && ! isempty (x)))
    error ("velkora:fi:filter:vectorsOnly", "filter with fi values takes vectors b, a and x.");
  endif
  if (double (a(1)) != 1)
    error ("velkora:fi:filter:leadingCoefficient",
           "filter with fi values takes a denominator whose first coefficient is 1.");
  endif
  if (isscalar (a))
    y = reshape (__corbel_fir__ (b, x, numel (x)), size (x));
    return;
  endif
  if (! isfi (x))
    x = __corbel_operand__ (x, ifelse_fi (b, a));
  endif
  if (! isfi (a))
    a = __corbel_operand__ (a, x);
  endif
  feedforward = __corbel_fir__ (b, x, numel (x));
  exact = fimath (x);
  exact.SumMode = "FullPrecision";
  feedforward.fimath = exact;
  y = fi (zeros (size (x)), numerictype (x), fimath (x));
  feedback = a(2:end);
  feedback = feedback(:);
  for n = 1:numel (x)
    earlier = n - 1:-1:max (n - numel (feedback), 1);
    if (isempty (earlier))
      y(n) = feedforward(n);
    else
      fb = reshape (y(earlier), 1, []) * feedback(1:numel (earlier));
      fb.fimath = exact;
      y(n) = feedforward(n) - fb;
    endif
  endfor
endfunction

function f = ifelse_fi (b, a)
  if (isfi (b))
    f = b;
  else
    f = a;
  endif
endfunction
