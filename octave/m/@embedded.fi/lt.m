## -*- texinfo -*-
## @deftypefn {} {@var{t} =} lt (@var{a}, @var{b})
## @code{@var{a} < @var{b}} element by element, on exact values, as a logical array.
## Either operand may be a fi or a built-in numeric or logical array; a scalar goes with
## every element of the other.  Complex values order by magnitude, then angle.
##
## @example
## fi ([0.25 -0.5], 1, 8, 4) < 0.25
## @end example
## @end deftypefn

function t = lt (a, b)
  if (nargin != 2)
    print_usage ();
  endif
  t = __corbel_relation__ ("lt", "gt", a, b);
endfunction
