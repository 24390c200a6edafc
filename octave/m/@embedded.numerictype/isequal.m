## -*- texinfo -*-
## @deftypefn {} {@var{tf} =} isequal (@var{T1}, @var{T2}, @dots{})
## True when every argument is a numerictype with the same property values as @var{T1}.
##
## @example
## isequal (numerictype (1, 16, 15), numerictype (1, 16, 15))   % true
## @end example
## @end deftypefn

function tf = isequal (varargin)
  if (nargin < 2)
    print_usage ();
  endif
  names = __corbel_properties__ ("embedded.numerictype");
  tf = true;
  for k = 2:nargin
    if (! isnumerictype (varargin{k}) || ! isnumerictype (varargin{1}))
      tf = false;
      return;
    endif
    for p = 1:numel (names)
      if (! isequal (varargin{1}.(names{p}), varargin{k}.(names{p})))
        tf = false;
        return;
      endif
    endfor
  endfor
endfunction
