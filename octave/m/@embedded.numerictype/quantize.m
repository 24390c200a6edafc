## -*- texinfo -*-
## @deftypefn  {} {@var{y} =} quantize (@var{x}, @var{T})
## @deftypefnx {} {@var{y} =} quantize (@var{x}, @var{T}, @var{round})
## @deftypefnx {} {@var{y} =} quantize (@var{x}, @var{T}, @var{round}, @var{overflow})
## Quantize the values of @var{x} (a fi or a built-in array) to the fixed-point numerictype
## @var{T}: a fi of type @var{T} whose values are those of @var{x} rounded by @var{round}
## ("nearest" by default; "floor", "ceil", "fix", "round", "convergent") and saturated or
## wrapped by @var{overflow} ("saturate" by default, or "wrap").  The values are carried, not
## the stored integers.  A quantizer @var{q} quantizes with @code{quantize (q, x)}.
##
## @example
## quantize (fi (pi, 1, 16, 13), numerictype (1, 8, 4), "floor")   % 3.125
## @end example
## @end deftypefn

function y = quantize (x, T, varargin)
  y = __corbel_quantize__ (x, T, varargin{:});
endfunction
