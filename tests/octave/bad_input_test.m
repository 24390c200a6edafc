## Malformed calls, built from templates and bad arguments: each raises an error with an
## identifier (or, for a word length a type refuses, warns with one and keeps its own) and
## leaves every operand as it was.

## The operands every call may use, made afresh for each call.
%!function [a, w, T, F, q] = operands ()
%!  a = fi ([1 -2; 3 0.5], 1, 16, 8);
%!  w = fi ([1 2 3] + 1i, 1, 100, 90);
%!  T = numerictype (1, 16, 8);
%!  F = fimath ("RoundMode", "floor");
%!  q = quantizer ("fixed", "ceil", [8 4]);
%!endfunction

%!function s = state (a, w, T, F, q)
%!  s = {a.hex, numerictype(a), fimath(a), size(a), w.hex, numerictype(w), T, F, ...
%!       {q.mode, q.roundmode, q.overflowmode, q.format}};
%!endfunction

## "" when the call failed (or warned) with an identifier and changed nothing, else why not.
%!function problem = try_call (code)
%!  [a, w, T, F, q] = operands ();
%!  before = state (a, w, T, F, q);
%!  problem = "";
%!  lastwarn ("", "");
%!  try
%!    eval ([code ";"]);
%!    [~, id] = lastwarn ();
%!    if (isempty (id))
%!      problem = "no error";
%!    endif
%!  catch err
%!    if (isempty (err.identifier))
%!      problem = ["no identifier: " err.message];
%!    endif
%!  end_try_catch
%!  after = state (a, w, T, F, q);
%!  if (! isequal (numel (before), numel (after)) || ! all (cellfun (@isequal, before, after)))
%!    problem = [problem " operand changed"];
%!  endif
%!endfunction

%!function calls = expand (templates, values)
%!  calls = {};
%!  for v = values
%!    calls = [calls, strrep(templates, "@", v{1})];
%!  endfor
%!endfunction

%!test
%! sizes = {"0", "-1", "65536", "2^31", "NaN", "Inf", "-Inf", "1i", "[]", "[8 8]", "'16'", ...
%!          "{16}", "struct ('a', 1)", "@sin", "zeros (2, 2, 2)", "int8 (-3)"};
%! lengths = {"NaN", "Inf", "1i", "[8 8]", "'a'", "{1}", "struct ('a', 1)", "@sin", ...
%!            "2^31", "-2^31 - 1", "zeros (2, 2, 2)"};
%! modes = {"'bogus'", "1", "{}", "[]", "NaN", "struct ('a', 1)", "@sin", ...
%!          "['floor'; 'floor']", "1i"};
%! operands = {"'x'", "{1}", "struct ('a', 1)", "@sin", "zeros (3, 3)", "ones (2, 2, 2)", ...
%!             "cell (2, 2)", "'16'", "{}"};
%! objects = {"numerictype (1, 8)", "fimath ()", "quantizer ('fixed', [8 4])"};
%! calls = [expand({"fi (1, 1, @)", "numerictype (1, @)", "a.WordLength = (@)", ...
%!                  "T.WordLength = (@)", "F.SumWordLength = (@)", "F.ProductWordLength = (@)", ...
%!                  "F.MaxProductWordLength = (@)", "fi (1, 'WordLength', @)", ...
%!                  "w.WordLength = (@)", "q.wordlength = (@)"}, sizes), ...
%!          expand({"fi (1, 1, 16, @)", "numerictype (1, 16, @)", "a.FractionLength = (@)", ...
%!                  "T.FractionLength = (@)", "F.SumFractionLength = (@)", ...
%!                  "bitshift (a, @)", "pow2 (a, @)", "bitget (a, @)", "bitset (a, @)", ...
%!                  "diag (a, @)", "tril (a, @)", "sum (a, @)", "cumsum (a, @)", "a(@)", ...
%!                  "w.FractionLength = (@)", "q.fractionlength = (@)"}, lengths), ...
%!          expand({"a.RoundMode = (@)", "a.OverflowMode = (@)", "F.RoundMode = (@)", ...
%!                  "F.ProductMode = (@)", "F.SumMode = (@)", "T.DataType = (@)", ...
%!                  "T.Signedness = (@)", "fimath ('RoundMode', @)", "q.roundmode = (@)", ...
%!                  "a.DataType = (@)", "fipref ('NumberDisplay', @)"}, modes), ...
%!          expand({"quantizer (@)", "quantizer ('fixed', @)"}, ...
%!                 {"'bogus'", "NaN", "{}", "struct ('a', 1)", "@sin", "1i", "[NaN 2]", "[8 Inf]"}), ...
%!          expand({"a + @", "@ - a", "a .* @", "a * @", "a ./ @", "a == @", "@ < a", ...
%!                  "max (a, @)", "min (@, a)", "bitand (a, @)", "bitxor (@, w)", ...
%!                  "divide (T, a, @)", "conv (a(:), @)", "filter (@, 1, a(:))", ...
%!                  "quantize (a, @)", "setfimath (a, @)", "a(1) = @", "w(2) = @", ...
%!                  "a.hex = @", "a.int = @", "reshape (a, @)"}, operands), ...
%!          expand({"a + @", "a .* @", "a * @", "a ./ @", "a == @", "max (a, @)", ...
%!                  "bitand (a, @)", "divide (T, a, @)", "conv (a(:), @)", "a(1) = @", ...
%!                  "a.hex = @", "reshape (a, @)", "fi (@)", "quantize (a, F)", ...
%!                  "a.numerictype = F", "a.fimath = T"}, objects)];
%! problems = {};
%! for k = 1:numel (calls)
%!   p = try_call (calls{k});
%!   if (! isempty (p))
%!     problems{end+1} = sprintf ("%s: %s", calls{k}, p);
%!   endif
%! endfor
%! assert (numel (calls) >= 500);
%! assert (strjoin (problems, "\n"), "");

## An array that would need more memory than one array may use (made, or grown by an
## assignment) is refused before any is taken, and nothing is left behind; a fi assigned into a new variable makes a fi of its
## type (the way repmat fills a scalar).
%!test
%! live = __corbel_live__ ();
%! x = fi (0.5, 1, 65535, 0);
%! try
%!   y = repmat (x, 4e6, 1);                  % 4e6 elements of 65535 bits: over 30 GB
%!   error ("not refused");
%! catch err
%!   assert (err.identifier, "velkora:fi:tooLarge");
%! end_try_catch
%! assert ({__corbel_live__() - live, double(x)}, {1, 1});
%! a = fi ([1 2 3]);
%! try
%!   a(2, 1e9) = 1;                           % refused before Octave lays out 2e9 positions
%!   error ("not refused");
%! catch err
%!   assert (err.identifier, "velkora:fi:tooLarge");
%! end_try_catch
%! assert (double (a), [1 2 3]);
%! z(3) = fi (0.5, 1, 16, 8);
%! assert ({double(z), z.WordLength, size(repmat (z(3), 2, 3))}, {[0 0 0.5], 16, [2 3]});

## The refusals the sweep found, by their identifiers.
%!error id=velkora:fi:mtimes:notDefinedForND fi (ones (2)) * ones (2, 2, 2)
## Octave's element-wise functions and conversions to double, given a Corbel value without a
## method of that name, refuse it by name.
%!error <sqrt does not apply to embedded.fi values.> sqrt (fi (2))
%!error <abs does not apply to embedded.numerictype values.> abs (numerictype (1, 8))
%!error id=velkora:octave:notNumeric double (fimath ())
%!error id=velkora:octave:notNumeric reshape (quantizer (), 1, 1)
%!error id=velkora:fi:reshape:badSizes reshape (fi (1:4), [2 NaN])
%!error id=velkora:fi:reshape:badSize reshape (fi (1:4), 3, [])
%!error id=velkora:fi:quantize:notNumerictype quantize (fi (1), 1)
%!error id=velkora:fi:operand:notNumeric conv (fi ([1 2]), {1})
%!error id=velkora:quantizer:wordlengthtoosmall quantizer ("fixed", [NaN 2])
%!error <Operator '\+' is not supported for embedded.fi and cell operands.> fi (1) + {1}
%!error id=velkora:octave:saveNotSupported s = __corbel_new__ ("embedded.slopebiasquantizer"); save ("-text", tempname (), "s");
