## -*- texinfo -*-
## @deftypefn {} {@var{c} =} __corbel_mixed__ (@var{a}, @var{b}, @var{op})
## @code{a + b}, @code{a - b}, @code{a .* b} or @code{a * b} where one operand is a fi and
## the other a built-in array, which first becomes a fi by the rule of
## @code{__corbel_operand__}.
## @end deftypefn

function c = __corbel_mixed__ (a, b, op)
  if (isfi (a))
    b = __corbel_operand__ (b, a);
  else
    a = __corbel_operand__ (a, b);
  endif
  switch (op)
    case "+"
      c = a + b;
    case "-"
      c = a - b;
    case ".*"
      c = a .* b;
    otherwise
      c = a * b;
  endswitch
endfunction
