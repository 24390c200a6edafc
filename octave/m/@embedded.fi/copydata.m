## -*- texinfo -*-
## @deftypefn {} {@var{c} =} copydata (@var{a}, @var{b})
## A copy of the fi @var{a} holding the values of the fi @var{b} (as many elements),
## quantized into the numerictype of @var{a} as an assignment; @var{a} itself is unchanged.
## @end deftypefn

function c = copydata (a, b)
  if (nargin != 2)
    print_usage ();
  endif
  c = copy (a);
  __corbel_call__ ("copydata", c, b);
endfunction
