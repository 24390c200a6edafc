## -*- texinfo -*-
## @deftypefn {} {[@var{a}, @var{b}] =} __corbel_same_type__ (@var{a}, @var{b})
## Of two operands at least one of which is a fi, makes the other (when built-in) a fi of
## that one's numerictype and fimath.
## @end deftypefn

function [a, b] = __corbel_same_type__ (a, b)
  if (! isfi (a))
    a = fi (a, numerictype (b), fimath (b));
  elseif (! isfi (b))
    b = fi (b, numerictype (a), fimath (a));
  endif
endfunction
