## -*- texinfo -*-
## @deftypefn {} {@var{x} =} __corbel_operand__ (@var{v}, @var{f})
## A built-in operand @var{v} of an arithmetic operation with the fi @var{f}, as a fi with
## the fimath of @var{f}:
## @itemize
## @item an integer array keeps its own integer type (int8 as s8,0, uint16 as u16,0, ...,
## int64 as s64,0);
## @item a logical array becomes u1,0;
## @item a double or single array takes the word length of @var{f}, signed when @var{f} is
## or when a value is negative, with the best precision for its values;
## @item with a floating-point or scaled-double @var{f}, the numerictype of @var{f}.
## @end itemize
## @end deftypefn

function x = __corbel_operand__ (v, f)
  if (! (isnumeric (v) || islogical (v)))
    __corbel_error__ ("FiOperandNotNumeric");
  endif
  F = fimath (f);
  if (! isfixed (f) || isscaleddouble (f))
    x = fi (v, numerictype (f), F);
  elseif (isa (v, "int64") || isa (v, "uint64"))
    ## The constructor takes no 64-bit integers; their stored integers are set exactly.
    x = fi (zeros (size (v)), isa (v, "int64"), 64, 0, F);
    x.int = v;
  elseif (isinteger (v))
    x = fi (v, F);
  elseif (islogical (v))
    x = fi (v, 0, 1, 0, F);
  else
    T = numerictype (f);
    negative = any (real (v(:)) < 0) || any (imag (v(:)) < 0);
    x = fi (v, T.Signed || negative, T.WordLength, F);
  endif
endfunction
