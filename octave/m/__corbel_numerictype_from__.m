## -*- texinfo -*-
## @deftypefn {} {@var{T} =} __corbel_numerictype_from__ (@var{s}, @var{w}, ...)
## Internal: the numerictype of the positional forms of fi and numerictype.  Without a
## fraction length or slope the scaling is left unspecified, so that fi chooses the best
## precision for its values.
## @end deftypefn

function T = __corbel_numerictype_from__ (varargin)
  T = __corbel_new__ ("embedded.numerictype");
  switch (nargin)
    case {0, 1, 2}
      T.DataTypeMode = "Fixed-point: unspecified scaling";
      if (nargin >= 1)
        T.Signed = varargin{1};
      endif
      if (nargin >= 2)
        T.WordLength = varargin{2};
      endif
    case 3
      T.Signed = varargin{1};
      T.WordLength = varargin{2};
      T.FractionLength = varargin{3};
    case 4
      T.DataTypeMode = "Fixed-point: slope and bias scaling";
      T.Signed = varargin{1};
      T.WordLength = varargin{2};
      T.Slope = varargin{3};
      T.Bias = varargin{4};
    otherwise
      __corbel_error__ ("FiTooManyInputs");
  endswitch
endfunction
