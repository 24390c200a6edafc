## -*- texinfo -*-
## @deftypefn  {} {@var{y} =} quantize (@var{x}, @var{T})
## @deftypefnx {} {@var{y} =} quantize (@var{x}, @var{T}, @var{round}, @var{overflow})
## Quantize the values of the fixed-point array @var{x} to the numerictype @var{T}, as
## @code{help @@embedded.numerictype/quantize} describes.
## @end deftypefn

function y = quantize (x, T, varargin)
  y = __corbel_quantize__ (x, T, varargin{:});
endfunction
