## -*- texinfo -*-
## @deftypefn  {} {@var{q} =} quantizer ()
## @deftypefnx {} {@var{q} =} quantizer (@var{mode}, @var{roundmode}, @var{overflowmode}, @var{format})
## A quantizer, which rounds and overflows values onto a fixed-point or floating-point grid.
##
## The default is fixed, floor, saturate, [16 15].  Mode strings ('fixed', 'ufixed', 'float',
## 'double', 'single', 'none', ...), round-mode strings ('floor', 'nearest', ...),
## overflow-mode strings ('saturate', 'wrap') and a format vector may come in any order,
## followed by property/value pairs such as @code{'wordlength', 8}.
## @end deftypefn

function q = quantizer (varargin)
  q = __corbel_new__ ("embedded.CoreQuantizer");
  modes = {"none", "double", "float", "fixed", "single", "ufixed", "boolean", ...
           "ScaledDouble", "UnsignedScaledDouble"};
  rounds = {"ceil", "convergent", "fix", "floor", "nearest", "round"};
  overflows = {"saturate", "wrap"};
  k = 1;
  while (k <= nargin)
    x = varargin{k};
    if (isnumeric (x))
      q.format = x;
    elseif (ischar (x) && any (strcmp (x, modes)))
      q.mode = x;
    elseif (ischar (x) && any (strcmp (x, rounds)))
      q.roundmode = x;
    elseif (ischar (x) && any (strcmp (x, overflows)))
      q.overflowmode = x;
    elseif (ischar (x) && k < nargin)
      q.(lower (x)) = varargin{k+1};
      k++;
    elseif (ischar (x))
      __corbel_error__ ("UserQuantizerNeedsValue", x);
    else
      __corbel_error__ ("UserQuantizerArguments");
    endif
    k++;
  endwhile
endfunction
