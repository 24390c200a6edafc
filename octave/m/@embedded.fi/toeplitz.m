## -*- texinfo -*-
## @deftypefn  {} {@var{t} =} toeplitz (@var{c})
## @deftypefnx {} {@var{t} =} toeplitz (@var{c}, @var{r})
## With fi values: the symmetric Toeplitz matrix of @var{c}, or the one with first column @var{c} and first row @var{r} (whose first element the column overrides).  The result takes the numerictype and fimath of the first fi; the
## values of @var{r} are quantized into it.
## @end deftypefn

function t = toeplitz (c, r)
  if (nargin == 1)
    t = __corbel_call__ ("toeplitz", c);
    return;
  elseif (nargin != 2)
    print_usage ();
  endif
  t = __corbel_structured__ ("toeplitz", c, r, false);
endfunction
