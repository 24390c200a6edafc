## -*- texinfo -*-
## @deftypefn  {} {@var{F} =} fimath ()
## @deftypefnx {} {@var{F} =} fimath (@var{name}, @var{value}, @dots{})
## The arithmetic settings of fixed-point operations: how results round and overflow, and the
## types of products and sums.
##
## Nearest rounding, saturation, full-precision products and sums by default; property/value
## pairs change them, for example
## @code{fimath ('RoundMode', 'floor', 'OverflowMode', 'wrap')}.
## @end deftypefn

function F = fimath (varargin)
  if (mod (nargin, 2) != 0)
    __corbel_error__ ("XoSetNeedsPairs");
  endif
  F = __corbel_new__ ("embedded.fimath");
  for k = 1:2:nargin
    if (! ischar (varargin{k}))
      __corbel_error__ ("XoSetNeedsName");
    endif
    F.(varargin{k}) = varargin{k+1};
  endfor
endfunction
