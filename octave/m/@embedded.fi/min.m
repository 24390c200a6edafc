## -*- texinfo -*-
## @deftypefn  {} {@var{m} =} min (@var{a})
## @deftypefnx {} {[@var{m}, @var{i}] =} min (@var{a})
## @deftypefnx {} {[@var{m}, @var{i}] =} min (@var{a}, [], @var{dim})
## @deftypefnx {} {@var{m} =} min (@var{a}, @var{b})
## The smallest elements of the fi array @var{a} along its first dimension longer than one
## (or along @var{dim}) and their positions @var{i} along it; or, of two arrays of one
## numerictype and fimath, the element-wise smaller (a built-in operand takes the other's
## numerictype and fimath first).  Complex elements compare by magnitude; of equal elements
## the first is taken.  The result keeps the numerictype of @var{a}.
##
## @example
## [m, i] = min (fi ([0.25 -0.5 0.75 0.75], 1, 8, 6))   % m = -0.5, i = 2
## @end example
## @end deftypefn

function varargout = min (varargin)
  [varargout{1:max (nargout, 1)}] = __corbel_extremum__ ("min", nargout, varargin{:});
endfunction
