## -*- texinfo -*-
## @deftypefn {} {@var{y} =} __corbel_round_to_integer__ (@var{a}, @var{mode})
## The values of the fi @var{a} rounded to integers by the RoundMode @var{mode}, exactly, as
## a fi of fraction length 0 with the fimath of @var{a} and one integer bit more than
## @var{a} has (so that rounding up never overflows); an integer-valued type stays as it is.
## @end deftypefn

function y = __corbel_round_to_integer__ (a, mode)
  T = numerictype (a);
  if (! isfixed (a) || T.FractionLength <= 0)
    y = a;
    return;
  endif
  wl = max (T.WordLength - T.FractionLength + 1, 1 + T.Signed);
  y = fi (zeros (size (a)), T.Signed, wl, 0, fimath (a), "RoundMode", mode);
  if (! isempty (a))
    y(:) = a(:);
  endif
  y.RoundMode = a.RoundMode;
endfunction
