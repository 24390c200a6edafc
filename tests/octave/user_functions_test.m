## The user functions: fi, numerictype, fimath and quantizer in their everyday forms, the
## methods reached by name, and the errors a user meets, each with its identifier.

## fi(pi, 1, 16, 13) squared: 32 bits, fraction length 26, displayed with its type.
%!test
%! a = fi (pi, 1, 16, 13);
%! b = a * a;
%! assert ([b.WordLength, b.FractionLength], [32 26]);
%! assert (double (b.Signed), 1);
%! text = evalc ("b");
%! assert (strncmp (text, "b =\n\n   9.8697\n", 15));
%! assert (! isempty (strfind (text, "WordLength: 32")));
%! assert (! isempty (strfind (text, "RoundMode: nearest")));
%! c = a;  c.WordLength = 8;
%! assert ([a.WordLength, c.WordLength], [16 8]);

## Best precision where no fraction length is given; given scaling is kept.
%!test
%! assert (fi (pi).FractionLength, 13);
%! assert (fi (-pi, 0).Signed, false);
%! assert (fi ([0.5 -1.75 3.1], 1, 8).FractionLength, 5);
%! assert (fi (1000, 1, 8).FractionLength, -3);
%! assert (fi (pi, 1, 16, 4).FractionLength, 4);
%! x = fi (-1.3, 0, 8, 0.5, 1);
%! assert ({x.DataTypeMode, x.Slope, x.Bias}, {"Fixed-point: slope and bias scaling", 0.5, 1});
%! assert (size (fi (true (2, 3))), [2 3]);
%! z = fi (int8 ([1 -2]));
%! assert ([z.WordLength, z.FractionLength], [8 0]);
%! w = fi (1 + 2i);
%! assert (isreal (w), false);

## A numerictype and a fimath as arguments, and property/value pairs in any order.
%!test
%! T = numerictype (1, 12, 6);
%! F = fimath ("RoundMode", "floor", "OverflowMode", "wrap");
%! a = fi (-0.01, T, F);
%! assert ({a.WordLength, a.FractionLength, a.RoundMode}, {12, 6, "floor"});
%! assert (isequal (fimath (a), F));
%! assert (isequal (numerictype (a), T, numerictype (1, 12, 6)));
%! assert (! isequal (T, numerictype (1, 12, 5)) && ! isequal (T, 1));
%! b = fi (0.3, F);
%! assert ({b.WordLength, b.OverflowMode}, {16, "wrap"});
%! c = fi (pi, 1, 8, "RoundMode", "floor", "OverflowMode", "wrap");
%! d = fi (pi, 1, 8, "OverflowMode", "wrap", "fractionlength", 5, "RoundMode", "floor");
%! assert ({c.FractionLength, c.RoundMode, c.OverflowMode}, {5, "floor", "wrap"});
%! assert ({d.FractionLength, d.RoundMode}, {5, "floor"});
%! e = fi (0.5, "WordLength", 8, "FractionLength", 3, "Logging", false);
%! assert ([e.WordLength, e.FractionLength], [8 3]);
%! assert (numerictype (1, 16, "FractionLength", 12).FractionLength, 12);
%! assert (numerictype (0, 8).DataTypeMode, "Fixed-point: unspecified scaling");
%! assert (numerictype (1, 8, 0.25, -1).Bias, -1);
%! assert (isnumerictype (numerictype (a)) && ! isnumerictype (1) && isfimath (F));
%! assert (isfi (a) && ! isfi (1));

## Arithmetic under the operands' fimath, and fimath's own add, mpy and sub.
%!test
%! F = fimath ("SumMode", "SpecifyPrecision", "SumWordLength", 16, "SumFractionLength", 13, ...
%!             "OverflowMode", "wrap");
%! x = fi (3.5, 1, 16, 13, F);
%! s = x + x;
%! assert (s.WordLength, 16);
%! assert (strncmp (disp (s), "  -1", 4));
%! G = fimath ();
%! t = add (G, x, x);
%! assert ([t.WordLength, t.FractionLength], [17 13]);
%! assert ([mpy(G, x, x).WordLength, sub(G, x, x).WordLength], [32 17]);

## Logging: an overflow warns "fi:overflow", which Octave's warning controls govern.
%!test
%! F = fimath ("SumMode", "SpecifyPrecision", "SumWordLength", 16, "SumFractionLength", 13);
%! x = fi (3.5, 1, 16, 13, F);
%! state = warning ("query", "fi:overflow");
%! unwind_protect
%!   x.Logging = true;
%!   warning ("off", "backtrace");
%!   resetgloballog (x);
%!   lastwarn ("");
%!   s = x + x;
%!   [msg, id] = lastwarn ();
%!   assert ({msg, id}, {"1 overflow occurred in the fi + operation.", "fi:overflow"});
%!   assert ([s.noverflows, noverflows(s)], [1 1]);
%!   assert (! isempty (strfind (evalc ("displaygloballog (s)"), "FI sum overflows        : 1")));
%!   warning ("off", "fi:overflow");
%!   lastwarn ("");
%!   s = x + x;
%!   assert (lastwarn (), "");
%! unwind_protect_cleanup
%!   x.Logging = false;
%!   warning (state.state, "fi:overflow");
%!   warning ("on", "backtrace");
%! end_unwind_protect

## Quantizers: mode, round and overflow strings in any order, a format, pairs.
%!test
%! q = quantizer ("ufixed", "floor", [8 4], "overflowmode", "wrap");
%! assert ({q.mode, q.roundmode, q.overflowmode, q.format}, {"ufixed", "floor", "wrap", [8 4]});
%! assert (quantize (q, [0.03 17 -1]), [0 1 15]);
%! assert (q.noverflows, 2);
%! resetlog (q);
%! assert (q.noverflows, 0);
%! assert (quantizer ("double").realmax, realmax);
%! r = quantizer ("float", [16 5], "nearest");
%! assert ([r.exponentbias, r.realmax], [15 65504]);
%! assert (isquantizer (r) && ! isquantizer (1));
%! p = quantizer ();
%! assert ({p.mode, p.roundmode, p.format}, {"fixed", "floor", [16 15]});

## Errors a user meets, each with its identifier.
%!error id=velkora:xo:wrongPropertyValue x = fi (1); x.RoundMode = "sideways";
%!error id=velkora:xo:wrongPropertyValue fi (1, 1, 16, "RoundMode", "sideways")
%!error id=velkora:xo:unknownProperty fi (1, 1, 16, "NoSuch", 3)
%!error id=velkora:fi:nargchk:tooManyInputs fi (1, 1, 16, 2, 1, 0)
%!error id=velkora:fi:constructor:arguments fi (1, numerictype (), 1)
%!error id=velkora:xo:setNeedsPairs fi (1, 1, 16, "RoundMode")
%!error id=velkora:xo:setNeedsPairs fimath ("RoundMode")
%!error id=velkora:fi:setBestPrecision:mustbenumeric fi ({1})
%!error id=velkora:fi:constructor:numeric fi ({1}, 1, 16, 4)
%!error id=velkora:fi:nonan fi (NaN)
%!error id=velkora:fi:constructor:int64 fi (int64 (1), 1, 16, 0)
%!error id=velkora:fi:fimathmismatch fi (1) + fi (1, 1, 16, 14, fimath ("RoundMode", "floor"))
%!error id=velkora:fi:dimagree fi ([1 2]) + fi ([1 2 3])
%!error id=velkora:fimath:NonPositiveProductWordLength fimath ("ProductWordLength", 0)
%!error id=velkora:quantizer:constructor:pairs quantizer ("fixed", "wordlength")
%!error id=velkora:quantizer:constructor:arguments quantizer ({1})
%!error id=velkora:quantizer:quantize:notnumeric quantize (quantizer (), "abc")
%!error id=velkora:xo:wrongArgumentType isequal (fimath (), 1)
## A word length the type refuses warns and keeps the type's word length.
%!warning id=Velkora:numerictype:InvalidSetting fi (pi, 1, 0);

## quantize (x, T, ...) carries values into a numerictype with the given modes; setfimath and
## removefimath change only the fimath; fi takes the scaling properties as pairs.
%!test
%! T = numerictype (1, 8, 4);
%! assert (double (quantize (fi (pi, 1, 16, 13), T, "floor")), 3.125);
%! y = quantize ([100 -0.03 pi], T, "nearest", "wrap");
%! assert ({double(y), y.WordLength, y.OverflowMode}, {[4 0 3.125], 8, "wrap"});
%! assert (double (quantize (fi ([1+2i 3], 1, 100, 90), T, "ceil")), [1+2i 3]);
%! a = fi (pi, 1, 16, 13, "OverflowMode", "wrap");
%! b = setfimath (a, fimath ("ProductMode", "KeepMSB"));
%! assert ({b.ProductMode, b.OverflowMode, double(b), a.ProductMode},
%!         {"KeepMSB", "saturate", double(a), "FullPrecision"});
%! assert (removefimath (a).OverflowMode, "saturate");
%! c = fi (a, 1, 8, 5);                                  % a fi's values into another type
%! assert ({double(c), c.OverflowMode, fi(a).WordLength}, {3.15625, "wrap", 16});
%! s = fi (pi, "WordLength", 12, "SlopeAdjustmentFactor", 1.5, "FixedExponent", -4, "Bias", 0.5);
%! assert ([s.Slope, s.Bias, s.WordLength], [0.09375, 0.5, 12]);
%!error id=velkora:xo:wrongPropertyValue quantize (1, numerictype (1, 8, 4), "bogus")
