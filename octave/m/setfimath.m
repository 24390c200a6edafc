## -*- texinfo -*-
## @deftypefn {} {@var{b} =} setfimath (@var{a}, @var{F})
## A copy of the fixed-point array @var{a} that does its arithmetic under the fimath
## @var{F}; its values and numerictype are unchanged.
##
## @example
## b = setfimath (fi (pi, 1, 16, 13), fimath ("ProductMode", "KeepMSB"));
## @end example
## @end deftypefn

function b = setfimath (a, F)
  if (nargin != 2 || ! isfi (a) || ! isfimath (F))
    print_usage ();
  endif
  b = a;
  b.fimath = F;
endfunction
