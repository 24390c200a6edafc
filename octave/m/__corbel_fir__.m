## -*- texinfo -*-
## @deftypefn {} {@var{y} =} __corbel_fir__ (@var{b}, @var{x}, @var{n})
## The first @var{n} outputs of the FIR filter @var{b} over @var{x} (zeros before and after
## the samples), as a column: the matrix of delayed samples times the taps, one fi matrix
## product, so that products and sums take the fimath's ProductMode and SumMode types.
## @end deftypefn

function y = __corbel_fir__ (b, x, n)
  if (! isfi (x))
    x = __corbel_operand__ (x, b);
  elseif (! isfi (b))
    b = __corbel_operand__ (b, x);
  endif
  taps = numel (b);
  ## Samples with one zero in front, then the row of delays of output i: x(i - k + 1).
  xz = [fi(0, numerictype (x), fimath (x)); x(:)];
  delays = (1:n).' - (0:taps - 1);
  delays(delays < 1 | delays > numel (x)) = 0;
  y = xz(delays + 1) * b(:);
endfunction
