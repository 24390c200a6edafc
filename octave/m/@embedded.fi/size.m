## -*- texinfo -*-
## @deftypefn  {} {@var{sz} =} size (@var{a})
## @deftypefnx {} {@var{n} =} size (@var{a}, @var{dim})
## @deftypefnx {} {[@var{rows}, @var{cols}, @dots{}] =} size (@var{a})
## Give the dimensions of the fixed-point array @var{a} as a row of doubles, or its size along
## the dimension @var{dim} (1 for a dimension past the last).
## With several outputs, one dimension each, as @code{size} of any Octave array gives them.
##
## @example
## size (fi (zeros (2, 3)))      % 2  3
## size (fi (zeros (2, 3)), 3)   % 1
## @end example
## @end deftypefn

function varargout = size (a, varargin)
  [varargout{1:max (nargout, 1)}] = builtin ("size", a, varargin{:});
endfunction
