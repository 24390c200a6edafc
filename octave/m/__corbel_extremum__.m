## -*- texinfo -*-
## @deftypefn {} {[@var{m}, @var{i}] =} __corbel_extremum__ (@var{which}, @var{nout}, @var{a}, ...)
## The forms of max and min (@var{which} "max" or "min") with fi values:
## @code{(a)}, @code{(a, [], dim)} through the class's unary method, and @code{(a, b)}
## through its binary method once a built-in operand has the other's numerictype and fimath.
## @end deftypefn

function [m, i] = __corbel_extremum__ (which, nout, a, b, dim)
  switch (nargin)
    case 3
      [m, i] = __corbel_call__ (["unary_" which], a);
    case 4
      [a, b] = __corbel_same_type__ (a, b);
      if (nout > 1)
        print_usage (which);
      endif
      m = __corbel_call__ (["binary_" which], a, b);
      i = [];
    case 5
      if (! isempty (b))
        print_usage (which);
      endif
      [m, i] = __corbel_call__ (["unary_" which], a, dim);
    otherwise
      print_usage (which);
  endswitch
endfunction
