## -*- texinfo -*-
## @deftypefn  {} {@var{b} =} reshape (@var{a}, @var{m}, @var{n}, @dots{})
## @deftypefnx {} {@var{b} =} reshape (@var{a}, [@var{m} @var{n} @dots{}])
## The fixed-point array @var{a} with the same elements in column-major order and the given
## dimensions, one of which may be [] (as many as the other dimensions leave).  The sizes
## must be nonnegative integers ("velkora:fi:reshape:badSizes") that keep the number of
## elements ("velkora:fi:reshape:badSize").
##
## @example
## size (reshape (fi (1:6, 1, 8, 0), [], 2))   % 3  2
## @end example
## @end deftypefn

function b = reshape (a, varargin)
  if (nargin < 2)
    print_usage ();
  endif
  sizes = varargin;
  if (nargin == 2 && isnumeric (varargin{1}))
    sizes = num2cell (varargin{1});     % one vector of at least two sizes
  endif
  free = cellfun (@isempty, sizes);
  whole = @(v) isnumeric (v) && isreal (v) && isscalar (v) && v >= 0 && v == fix (v);
  if (numel (sizes) < 2 || sum (free) > 1 || ! all (cellfun (whole, sizes(! free))))
    __corbel_error__ ("FiReshapeBadSizes");
  endif
  dims = zeros (1, numel (sizes));
  dims(! free) = [sizes{! free}];
  if (any (free))
    known = prod (dims(! free));
    dims(free) = numel (a) / known;
    if (known == 0 || dims(free) != fix (dims(free)))
      __corbel_error__ ("FiReshapeCount");
    endif
  endif
  b = builtin ("reshape", a, dims);
endfunction
