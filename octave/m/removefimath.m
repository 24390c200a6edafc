## -*- texinfo -*-
## @deftypefn {} {@var{b} =} removefimath (@var{a})
## A copy of the fixed-point array @var{a} under the default fimath (nearest, saturate, full
## precision); its values and numerictype are unchanged.
##
## @example
## b = removefimath (fi (pi, 1, 16, 13, "OverflowMode", "wrap"));   % b.OverflowMode: saturate
## @end example
## @end deftypefn

function b = removefimath (a)
  if (nargin != 1 || ! isfi (a))
    print_usage ();
  endif
  b = setfimath (a, fimath ());
endfunction
