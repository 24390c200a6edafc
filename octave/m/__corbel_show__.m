## -*- texinfo -*-
## @deftypefn {} {} __corbel_show__ (@var{a})
## Print the fi @var{a} as @code{fipref} says: its values (or, for a fixed-point type, its
## stored integers as text or integers; or nothing), then its numerictype (in full, short as @code{s16,13}, or not),
## then its fimath (in full or not).  With the default preferences this is the class's own
## display.
## @end deftypefn

function __corbel_show__ (a)
  p = __corbel_prefs__ ();
  if (strcmp (p.NumberDisplay, "RealWorldValue") && strcmp (p.NumericTypeDisplay, "full")
      && strcmp (p.FimathDisplay, "full"))
    __corbel_call__ ("disp", a);
    return;
  endif
  T = numerictype (a);
  F = fimath (a);
  type_text = evalc ("disp (T)");
  fimath_text = evalc ("disp (F)");
  numbers = p.NumberDisplay;
  if (! strcmp (numbers, "none") && (! strcmp (T.DataType, "Fixed") || isempty (a)))
    numbers = "RealWorldValue";   % only fixed-point values have stored integers to show
  endif
  switch (numbers)
    case "RealWorldValue"
      ## The class's display is the values, "\n", the numerictype, "\n", the fimath.
      whole = evalc ("__corbel_call__ ('disp', a)");
      printf ("%s", whole(1:end - numel (type_text) - numel (fimath_text) - 2));
    case "int"
      disp (int (a));
    case {"bin", "dec", "hex"}
      text = feval (numbers, a);
      printf ("   %s\n", cellstr (text){:});
  endswitch
  switch (p.NumericTypeDisplay)
    case "full"
      printf ("\n%s", type_text);
    case "short"
      printf ("\n      %s\n", short_type (T));
  endswitch
  if (strcmp (p.FimathDisplay, "full"))
    printf ("\n%s", fimath_text);
  endif
endfunction

## s16,13 for a signed 16-bit type of fraction length 13; the slope and bias when it has
## them; the data type's name for floating and boolean types.
function s = short_type (T)
  if (! any (strcmp (T.DataType, {"Fixed", "ScaledDouble"})))
    s = T.DataType;
    return;
  endif
  s = sprintf ("%s%d", merge (T.Signed, "s", "u"), T.WordLength);
  switch (T.Scaling)
    case "BinaryPoint"
      s = sprintf ("%s,%d", s, T.FractionLength);
    case "SlopeBias"
      s = sprintf ("%s, slope %.17g, bias %.17g", s, T.Slope, T.Bias);
  endswitch
  if (strcmp (T.DataType, "ScaledDouble"))
    s = [s " (scaled double)"];
  endif
endfunction
