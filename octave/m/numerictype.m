## -*- texinfo -*-
## @deftypefn  {} {@var{T} =} numerictype ()
## @deftypefnx {} {@var{T} =} numerictype (@var{s}, @var{w})
## @deftypefnx {} {@var{T} =} numerictype (@var{s}, @var{w}, @var{f})
## @deftypefnx {} {@var{T} =} numerictype (@var{s}, @var{w}, @var{slope}, @var{bias})
## A fixed-point data type (or a double, single or boolean one): signedness, word length and
## scaling.
##
## Signed 16 bits with fraction length 15 by default; with a signedness and word length
## alone the scaling is unspecified (a fi made with it takes the best precision for its
## values).  Property/value pairs may follow, for example
## @code{numerictype (1, 16, 'FractionLength', 12)}.
## @end deftypefn

function T = numerictype (varargin)
  npos = 0;
  while (npos < nargin && ! ischar (varargin{npos+1}))
    npos++;
  endwhile
  if (npos == 0)
    T = __corbel_new__ ("embedded.numerictype");
  else
    T = __corbel_numerictype_from__ (varargin{1:npos});
  endif
  F = __corbel_new__ ("embedded.fimath");
  [T, ~, rest] = __corbel_apply_pairs__ (T, F, varargin(npos+1:end));
  for k = 1:2:numel (rest)
    T.(rest{k}) = rest{k+1};  # an unknown name gets the class's own error
  endfor
endfunction
