## -*- texinfo -*-
## @deftypefn {} {@var{tf} =} isequal (@var{a}, @var{b}, @dots{})
## True when every argument has the size and the exact values of the first, where fixed-point
## arrays and built-in numeric or logical arrays compare by value, real or complex.
##
## @example
## isequal (fi ([1 2] + 1i, 1, 8, 4), [1 2] + 1i)   % true
## @end example
## @end deftypefn

function tf = isequal (a, varargin)
  if (nargin < 2)
    print_usage ();
  endif
  tf = true;
  for k = 1:numel (varargin)
    b = varargin{k};
    if (isfi (a))
      tf = __corbel_call__ ("binaryop_isequal", a, b);
    elseif (isfi (b))
      tf = __corbel_call__ ("binaryop_isequal", b, a);
    else
      tf = isequal (a, b);
    endif
    if (! tf)
      return;
    endif
  endfor
endfunction
