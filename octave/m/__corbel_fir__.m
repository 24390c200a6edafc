## -*- texinfo -*-
## @deftypefn {} {@var{y} =} __corbel_fir__ (@var{b}, @var{x}, @var{n})
## The first @var{n} outputs of the FIR filter @var{b} over @var{x} (zeros before and after
## the samples), as a column: the matrix of delayed samples times the taps, one fi matrix
## product, so that products and sums take the fimath's ProductMode and SumMode types.
## The delayed samples are one new array made from a layout of the elements of @var{x}.
## @end deftypefn

function y = __corbel_fir__ (b, x, n)
  if (! isfi (x))
    x = __corbel_operand__ (x, b);
  elseif (! isfi (b))
    b = __corbel_operand__ (b, x);
  endif
  taps = numel (b);
  nx = numel (x);
  ## Row i of the delayed samples is x(i), x(i - 1), ... x(i - taps + 1), with zeros before
  ## the first sample and after the last: a layout that keeps element -L of x, or is 0.
  if (nx == 0 || n == 0 || taps == 0)
    layout = zeros (n, taps);
  else
    layout = toeplitz (-[1:min(nx, n), zeros(1, max (n - nx, 0))], [-1, zeros(1, taps - 1)]);
  endif
  y = subscriptedgrowassignment (x(:), layout) * b(:);
endfunction
