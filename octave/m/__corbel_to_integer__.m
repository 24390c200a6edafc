## -*- texinfo -*-
## @deftypefn {} {@var{y} =} __corbel_to_integer__ (@var{a}, @var{cls})
## The real-world values of the fi @var{a} in the built-in integer class @var{cls}, rounded
## as Octave's integer conversion rounds (to nearest, halves away from zero) and saturated to
## the class's range, exactly at every word length.
## @end deftypefn

function y = __corbel_to_integer__ (a, cls)
  if (! isreal (a))
    error ("velkora:fi:int:complex", "%s of a complex fi is not defined; convert real (a) and imag (a).", cls);
  endif
  bits = sscanf (cls(find (isdigit (cls), 1):end), "%d");
  t = fi (zeros (size (a)), cls(1) == "i", bits, 0, "RoundMode", "round",
          "OverflowMode", "saturate");
  if (! isempty (a))
    t(:) = a(:);
  endif
  y = storedInteger (t);
endfunction
