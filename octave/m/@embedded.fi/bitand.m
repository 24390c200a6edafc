## -*- texinfo -*-
## @deftypefn {} {@var{c} =} bitand (@var{a}, @var{b})
## Give the bitwise AND of the stored integers of the fixed-point arrays @var{a} and @var{b},
## which must have one numerictype (a built-in operand takes the other's numerictype and
## fimath first); the result keeps that numerictype.
## A scalar operand goes with every element of the other, else the sizes must agree
## ("velkora:fi:dimagree").  Different numerictypes raise
## "velkora:fi:bitAndXorOr:mixedNumericTypes"; types other than fixed-point
## "velkora:fi:bitand:<type>:notallowed".
##
## @example
## double (bitand (fi ([3 6], 1, 8, 0), fi (5, 1, 8, 0)))   % 1  4
## @end example
## @end deftypefn

function c = bitand (a, b)
  if (nargin != 2)
    print_usage ();
  endif
  [a, b] = __corbel_same_type__ (a, b);
  c = __corbel_call__ ("bitand", a, b);
endfunction
