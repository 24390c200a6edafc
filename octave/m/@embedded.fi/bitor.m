## -*- texinfo -*-
## @deftypefn {} {@var{c} =} bitor (@var{a}, @var{b})
## Give the bitwise OR of the stored integers of the fixed-point arrays @var{a} and @var{b},
## which must have one numerictype (a built-in operand takes the other's numerictype and
## fimath first); the result keeps that numerictype.
## Sizes and errors are those of @code{bitand}.
##
## @example
## double (bitor (fi ([3 6], 1, 8, 0), fi (5, 1, 8, 0)))   % 7  7
## @end example
## @end deftypefn

function c = bitor (a, b)
  if (nargin != 2)
    print_usage ();
  endif
  [a, b] = __corbel_same_type__ (a, b);
  c = __corbel_call__ ("bitor", a, b);
endfunction
