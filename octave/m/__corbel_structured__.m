## -*- texinfo -*-
## @deftypefn {} {@var{t} =} __corbel_structured__ (@var{name}, @var{c}, @var{r}, @var{last})
## toeplitz (@var{name} "toeplitz") or hankel ("hankel") of a first column @var{c} and a row
## @var{r} with fi values: the elements of [c(:); r(:)] (so r is quantized into the type of
## the first fi) at the positions the same function of doubles gives; @var{last} is true when
## @var{r} is the last row (hankel) rather than the first.
## @end deftypefn

function t = __corbel_structured__ (name, c, r, last)
  x = [c(:); r(:)];
  n = numel (c);
  m = numel (r);
  ## The row's first element is the one it shares with the column, as Octave's functions
  ## take it.
  shared = 1;
  if (last)
    shared = n;
  endif
  t = x(feval (name, 1:n, [shared, n + (2:m)]));
endfunction
