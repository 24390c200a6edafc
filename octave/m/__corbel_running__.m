## -*- texinfo -*-
## @deftypefn {} {@var{y} =} __corbel_running__ (@var{which}, @var{a}, @var{dim})
## The running sums ("cumsum") or the product ("prod") of the fi array @var{a} along
## @var{dim} ([]: its first dimension longer than one), one slice at a time.
##
## Running sums take the type of @code{sum (a, dim)}: each is the previous one plus the next
## slice, exact, then quantized into that type, so the last equals the sum.  The product is
## the chain @code{a(1) .* a(2) .* ...} under the fimath's ProductMode; an empty line gives 1
## in a's word length and signedness at best precision.
## @end deftypefn

function y = __corbel_running__ (which, a, dim)
  sz = size (a);
  if (! isempty (dim))
    if (! (isnumeric (dim) && isscalar (dim) && isreal (dim) && isfinite (dim)
           && dim == fix (dim) && dim >= 1))
      __corbel_error__ ("FiSumBadDimension");
    endif
  else
    dim = find (sz != 1, 1);
    if (isempty (dim))
      dim = 1;
    endif
  endif
  if (dim > numel (sz) || sz(dim) == 1)
    ## Lines of one element: the product is the element, the running sum its value.
    if (strcmp (which, "prod"))
      y = a;
    else
      y = fi (zeros (sz), numerictype (sum (a, dim)), fimath (a));
      if (! isempty (a))
        y(:) = a;
      endif
    endif
    return;
  endif
  n = sz(dim);
  at = repmat ({":"}, 1, numel (sz));
  if (n == numel (a))
    ## A vector along dim: one linear subscript, which assignment takes in place.
    at = {":"};
    along = 1;
  else
    along = dim;
  endif
  if (strcmp (which, "prod"))
    if (n == 0)
      sz(dim) = 1;
      y = fi (ones (sz), a.Signed, a.WordLength, fimath (a));
      return;
    endif
    at{along} = 1;
    y = a(at{:});
    for k = 2:n
      at{along} = k;
      y = y .* a(at{:});
    endfor
    return;
  endif
  ## The additions are exact; the assignment into y quantizes each running sum.
  exact = fimath (a);
  exact.SumMode = "FullPrecision";
  y = fi (zeros (sz), numerictype (sum (a, dim)), fimath (a));
  for k = 1:n
    at{along} = k;
    term = a(at{:});
    term.fimath = exact;
    if (k == 1)
      y(at{:}) = term;
    else
      at{along} = k - 1;
      previous = y(at{:});
      previous.fimath = exact;
      at{along} = k;
      y(at{:}) = previous + term;
    endif
  endfor
endfunction
