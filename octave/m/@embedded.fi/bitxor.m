## -*- texinfo -*-
## @deftypefn {} {@var{c} =} bitxor (@var{a}, @var{b})
## Give the bitwise exclusive OR of the stored integers of the fixed-point arrays @var{a} and
## @var{b}, which must have one numerictype (a built-in operand takes the other's numerictype and
## fimath first); the result keeps that numerictype.
## Sizes and errors are those of @code{bitand}.
##
## @example
## double (bitxor (fi ([3 6], 1, 8, 0), fi (5, 1, 8, 0)))   % 6  3
## @end example
## @end deftypefn

function c = bitxor (a, b)
  if (nargin != 2)
    print_usage ();
  endif
  [a, b] = __corbel_same_type__ (a, b);
  c = __corbel_call__ ("bitxor", a, b);
endfunction
