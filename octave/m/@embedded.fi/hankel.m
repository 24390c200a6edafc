## -*- texinfo -*-
## @deftypefn  {} {@var{t} =} hankel (@var{c})
## @deftypefnx {} {@var{t} =} hankel (@var{c}, @var{r})
## With fi values: the Hankel matrix of @var{c} (zeros below the anti-diagonal), or the one with first column @var{c} and last row @var{r} (whose first element the column overrides).  The result takes the numerictype and fimath of the first fi; the
## values of @var{r} are quantized into it.
## @end deftypefn

function t = hankel (c, r)
  if (nargin == 1)
    t = __corbel_call__ ("hankel", c);
    return;
  elseif (nargin != 2)
    print_usage ();
  endif
  t = __corbel_structured__ ("hankel", c, r, true);
endfunction
