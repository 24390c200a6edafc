## The Corbel value type: class names, dimensions, properties and value semantics.

%!shared a, T
%! a = __corbel_new__ ("fi", [0.25 0.5 -0.75]);
%! T = __corbel_new__ ("embedded.numerictype");

%!test
%! assert (class (a), "embedded.fi");
%! assert (class (T), "embedded.numerictype");
%! assert (class (__corbel_new__ ("fimath")), "embedded.fimath");
%! assert (class (__corbel_new__ ("quantizer")), "embedded.quantizer");
%! assert (class (__corbel_new__ ("embedded.CoreFi", 1)), "embedded.fi");
%! assert (isa (a, "embedded.fi"));
%! assert ([size(a), numel(a)], [1 3 3]);
%! assert (size (__corbel_new__ ("fi", zeros (2, 0))), [2 0]);

## Properties: read, write on a 1x3 value, nested values, the failures' identifiers.
%!test
%! b = a;
%! b.WordLength = 8;
%! assert ([a.WordLength, b.WordLength], [16 8]);
%! b.WordLength += 2;
%! assert (b.WordLength, 10);
%! b.fimath.RoundMode = "floor";
%! assert ({a.RoundMode, b.RoundMode}, {"nearest", "floor"});
%! assert (b.fimath.RoundMode, "floor");
%!error id=velkora:xo:unknownProperty a.NoSuchProperty
%!error id=velkora:xo:wrongPropertyValue a.WordLength = "x";
%!error id=velkora:xo:wrongPropertyValue a.fimath = 3;
%!test
%! q = __corbel_new__ ("numerictype");
%! q.WordLengthString = "2^3";
%! assert (q.WordLength, 8);

## Value semantics: copies in variables, structs, cells and functions are independent,
## also of an object the library keeps inside another one.
%!function r = widen (x)
%! x.WordLength = 32;
%! r = x.WordLength;
%!endfunction
%!test
%! s.f = a;  t = s;  t.f.WordLength = 9;
%! c = {a};  d = c;  d{1}.WordLength = 5;
%! assert ([widen(a), s.f.WordLength, t.f.WordLength, c{1}.WordLength, d{1}.WordLength],
%!         [32 16 9 16 5]);
%! assert (a.WordLength, 16);
%! F = a.fimath;  F.RoundMode = "ceil";
%! assert ({a.RoundMode, F.RoundMode}, {"nearest", "ceil"});
%! b = a;  b.fimath = F;  F.RoundMode = "fix";
%! assert ({b.RoundMode, F.RoundMode}, {"ceil", "fix"});

## Indexing of objects without elements and conditions are refused with identifiers.
%!error id=velkora:fi:indexingNotSupported T(1)
%!error id=velkora:fi:indexingNotSupported T(2) = 1;
%!error id=velkora:fi:badindex a{1}
%!error id=velkora:fi:notACondition if (a) end
%!error id=velkora:fi:indexingNotSupported clear q; q(2) = T;

## Display: through the class's disp, into the current output (evalc, disp's text, nested
## values), with Octave's number format.
%!test
%! v = __corbel_new__ ("fi", 0.5);
%! text = disp (v);
%! assert (strncmp (text, "   0.5000\n", 10));
%! assert (strfind (text, "WordLength: 16"));
%! assert (evalc ("disp (v)"), text);
%! assert (strncmp (evalc ("v"), "v =\n\n   0.5000\n", 15));
%! s.f = v;
%! assert (! isempty (strfind (evalc ("s"), "WordLength: 16")));
%! assert (! isempty (strfind (evalc ("c = {v}"), "FractionLength: 15")));
%! ## A class without a display of its own shows its properties.
%! assert (! isempty (strfind (disp (__corbel_new__ ("qloggerstruct")), "NOverflows = 0")));
%! format long
%! unwind_protect
%!   assert (strncmp (disp (v), "   0.500000000000000\n", 21));
%! unwind_protect_cleanup
%!   format short
%! end_unwind_protect
