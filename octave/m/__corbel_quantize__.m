## -*- texinfo -*-
## @deftypefn {} {@var{y} =} __corbel_quantize__ (@var{x}, @var{T}, @var{round}, @var{overflow})
## The values of @var{x} (a fi or a built-in numeric or logical array) quantized to the
## numerictype @var{T}, rounding and overflowing as given (by default "nearest" and
## "saturate"); the result keeps the fimath of a fi @var{x} with those two modes.
## @end deftypefn

function y = __corbel_quantize__ (x, T, round_mode = "nearest", overflow_mode = "saturate")
  if (nargin < 2 || nargin > 4 || ! isnumerictype (T))
    __corbel_error__ ("UserQuantizeNeedsType");
  endif
  if (isfi (x))
    F = fimath (x);
  else
    F = fimath ();
  endif
  F.RoundMode = round_mode;
  F.OverflowMode = overflow_mode;
  if (isfi (x))
    ## Assignment carries the exact values of one type into another.
    y = fi (zeros (size (x)), T, F);
    if (! isempty (x))
      y(:) = x;
    endif
  else
    y = fi (x, T, F);
  endif
endfunction
