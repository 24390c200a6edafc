## -*- texinfo -*-
## @deftypefn {} {@var{b} =} bitsra (@var{a}, @var{n})
## Shifts the stored integers of the fi array @var{a} right by @var{n} bits, filling with
## copies of the sign bit for a signed type (an arithmetic shift, rounding toward minus
## infinity) and with zeros for an unsigned one; type and scaling are kept.
## @end deftypefn

function b = bitsra (a, n)
  if (a.Signed)
    b = __corbel_map_bits__ (a, @(s) [repmat(s(1), 1, min (n, numel (s))), s(1:end-min (n, end))]);
  else
    b = bitsrl (a, n);
  endif
endfunction
