## -*- texinfo -*-
## @deftypefn {} {@var{q} =} __corbel_divide__ (@var{a}, @var{b}, @var{op})
## The divisions @code{a ./ b}, @code{a .\ b}, @code{a / b} and @code{a \ b} with a fi
## operand.  The quotient takes the numerictype of the dividend when it is a fi, else of the
## divisor, made signed when the other operand can be negative; @code{divide (T, a, b)} gives
## any other type.  @code{/} and @code{\} divide element-wise by a scalar only.
## @end deftypefn

function q = __corbel_divide__ (a, b, op)
  switch (op)
    case {"./", "/"}
      num = a;  den = b;
    otherwise
      num = b;  den = a;
  endswitch
  if (any (strcmp (op, {"/", "\\"})) && ! isscalar (den))
    error ("velkora:fi:divide:scalarDivisorOnly",
           "A %s B with a FI operand divides by a scalar only; use %s for element-wise division.",
           op, ["." op]);
  endif
  if (isfi (num))
    T = numerictype (num);  other = den;
  else
    T = numerictype (den);  other = num;
  endif
  if (! T.Signed && __corbel_can_be_negative__ (other))
    T.Signed = true;
  endif
  q = divide (T, num, den);
endfunction

function tf = __corbel_can_be_negative__ (x)
  if (isfi (x))
    tf = x.Signed;
  else
    tf = any (real (x(:)) < 0) || any (imag (x(:)) < 0);
  endif
endfunction
