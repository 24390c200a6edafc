## Indexing and assignment of fi arrays, against the same expressions on Octave doubles.

## Reading: over shapes from empty to 3-d and every index form, a(idx) holds exactly the
## elements d(idx) of the doubles d = double (a), in d(idx)'s shape, with a's type.
%!test
%! rand ("seed", 21);
%! shapes = {[0 0], [1 1], [1 5], [4 1], [3 4], [2 3 2]};
%! for s = 1:numel (shapes)
%!   d = round (16 * (rand (shapes{s}) - 0.5)) / 8;
%!   a = fi (d, 1, 8, 3);
%!   n = numel (d);
%!   forms = {{":"}, {logical(rand (size (d)) > 0.5)}};
%!   if (n > 0)
%!     forms = [forms, {{n}, {[1 n 1]}, {n:-1:1}, {1, ":"}, {":", size(d, 2)}, {(d > 0)(:).'}}];
%!   endif
%!   for f = 1:numel (forms)
%!     idx = forms{f};
%!     r = a(idx{:});
%!     assert (double (r), d(idx{:}));
%!     assert ({r.WordLength, r.FractionLength}, {8, 3});
%!   endfor
%!   if (n > 0)
%!     assert (double (a(end)), d(end));
%!   endif
%! endfor

## Writing: scalars in place, ranges, masks, growth with zeros and deletion, each against the
## same assignment on the doubles; values of other types are quantized into a's type.
%!test
%! rand ("seed", 22);
%! for trial = 1:30
%!   sz = [1 + floor(3 * rand), 1 + floor(4 * rand)];
%!   d = round (16 * (rand (sz) - 0.5)) / 16;
%!   a = fi (d, 1, 10, 4);
%!   v = round (16 * (rand - 0.5)) / 16;
%!   switch (mod (trial, 6))
%!     case 0
%!       k = 1 + floor (numel (d) * rand);  a(k) = v;  d(k) = v;
%!     case 1
%!       a(:, 1) = v;  d(:, 1) = v;
%!     case 2
%!       m = d > 0;  a(m) = fi (v, 1, 6, 2);  d(m) = double (fi (v, 1, 6, 2));
%!     case 3
%!       a(sz(1) + 1, sz(2) + 2) = v;  d(sz(1) + 1, sz(2) + 2) = v;
%!     case 4
%!       a(:, 1) = [];  d(:, 1) = [];
%!     case 5
%!       a(1, end + 1) = int8 (1);  d(1, end + 1) = 1;
%!   endswitch
%!   assert (double (a), d);
%!   assert (a.WordLength, 10);
%! endfor

## A value is rounded and overflowed by a's fimath; a complex value makes a complex, and an
## all-zero imaginary part is dropped again.
%!test
%! a = fi ([0 0 0], 1, 8, 4, "RoundMode", "floor");
%! a(1) = 0.09;   a(2) = 100;   a(3) = fi (-1.5, 1, 16, 12);
%! assert (double (a), [0.0625, 127/16, -1.5]);
%! a(2) = 1 + 0.5i;
%! assert ({isreal(a), double(a(2))}, {false, 1 + 0.5i});
%! a(2) = 0;
%! assert (isreal (a), true);
%! b = a;  b(1) = 1;
%! assert (double (a(1)), 0.0625);   % value semantics
%! assert (a(3).WordLength, 8);

## Overflows in an assignment warn under logging, named "assignment"; those of a
## concatenation are named "concatenation".
%!test
%! fipref_logging = fi (0);
%! fipref_logging.Logging = true;
%! unwind_protect
%!   a = fi ([0 0], 1, 8, 4);
%!   lastwarn ("");
%!   a(1) = 100;
%!   [msg, id] = lastwarn ();
%!   assert ({id, msg}, {"fi:overflow", "1 overflow occurred in the fi assignment operation."});
%!   lastwarn ("");
%!   b = [a, 100, -100];
%!   [msg, id] = lastwarn ();
%!   assert ({id, msg}, {"fi:overflow", "1 overflow occurred in the fi concatenation operation."});
%!   assert (double (b), [7.9375 0 7.9375 -8]);
%! unwind_protect_cleanup
%!   fipref_logging.Logging = false;
%! end_unwind_protect

## Shape changes, against the same ones on the doubles: transposes (the conjugate one
## negating through the quantizer), reshape, squeeze, permute, and the Octave functions built
## on indexing.
%!test
%! d = [1 2 3; 4 5 6] / 8 + 1i * [0 1 0; 0 0 -1] / 8;
%! a = fi (d, 1, 8, 4);
%! shapes = {@(x) x.', @(x) x', @(x) reshape (x, 3, 2), @(x) reshape (x, [], 1), ...
%!           @fliplr, @flipud, @(x) circshift (x, 1, 2), @(x) repmat (x, 2, 3), ...
%!           @(x) permute (reshape (x, 1, 3, 2), [3 1 2]), @(x) squeeze (reshape (x, 1, 1, 6))};
%! for k = 1:numel (shapes)
%!   assert (double (shapes{k} (a)), shapes{k} (d));
%! endfor
%! assert (double (fi (-128i, 1, 8, 0)'), 127i);
%!error id=velkora:fi:transpose:notDefinedForND x = fi (ones (2, 2, 2)).';
%!error id=velkora:fi:reshape:badSize reshape (fi ([1 2 3]), 2, 2)

## Concatenation takes the first fi's type and fimath; every other value is quantized into
## it, built-in ones included, in either place.
%!test
%! a = fi ([1 2; 3 4] / 8, 1, 8, 4);
%! b = fi ([5; 6] / 8, 1, 16, 12);
%! c = [a b];
%! assert ({double(c), c.WordLength, c.FractionLength}, {[1 2 5; 3 4 6] / 8, 8, 4});
%! assert (double ([a; a]), [1 2; 3 4; 1 2; 3 4] / 8);
%! assert (double ([a, [0.5; 100]]), [1/8 2/8 0.5; 3/8 4/8 127/16]);   % 100 saturates
%! f = [[0.5, 0.75]; a];
%! assert ({class(f), f.WordLength, double(f)}, {"embedded.fi", 8, [0.5 0.75; [1 2; 3 4] / 8]});
%! assert (size (cat (3, a, a, a)), [2 2 3]);
%! assert (double (horzcat (a, int8 ([1; -1]))), [[1 2; 3 4] / 8, [1; -1]]);
%!error id=velkora:fi:concatenationNotSupported x = [fi(1), numerictype(1, 8)];

%!error id=Octave:index-out-of-bounds a = fi ([1 2 3]); a(4)
%!error id=Octave:nonconformant-args a = fi ([1 2 3]); a(1:2) = [1 2 3];
%!error id=velkora:fi:subsasgn:notNumeric a = fi ([1 2 3]); a(1) = "x";
%!error id=velkora:fi:subsasgn:notNumeric a = fi ([1 2 3]); a(1) = numerictype (1, 8);

## diag, tril, triu, toeplitz and hankel, against the same functions of the doubles.
%!test
%! d = [1 2 3; 4 5 6; 7 8 9] / 16;
%! a = fi (d, 1, 8, 4);
%! v = fi ([1 2 3] / 8, 1, 8, 4);
%! r = fi ([1 5 6 7] / 8, 1, 8, 4);
%! fs = {@(x) diag (x), @(x) diag (x, 1), @(x) diag (x, -2), @(x) tril (x), @(x) tril (x, 1), ...
%!       @(x) triu (x, -1)};
%! for k = 1:numel (fs)
%!   assert (double (fs{k} (a)), fs{k} (d));
%!   assert (double (fs{k} (v)), fs{k} (double (v)));
%! endfor
%! assert (double (toeplitz (v)), toeplitz (double (v)));
%! assert (double (hankel (v)), hankel (double (v)));
%! assert (double (toeplitz (v, r)), toeplitz (double (v), double (r)));
%! assert (double (hankel (v, [3 4 5] / 8)), hankel (double (v), [3 4 5] / 8));
%!error id=velkora:fi:diag:notDefinedForND diag (fi (ones (2, 2, 2)))
%!error id=velkora:fi:diag:badK diag (fi ([1 2]), 1.5)

## filter and conv agree with the doubles where every product and sum is exact, take their
## types from the fimath, and refuse what they do not define.
%!test
%! rand ("seed", 43);
%! b = fi (round (256 * (rand (1, 7) - 0.5)) / 256, 1, 16, 15);
%! x = fi (round (256 * (rand (1, 50) - 0.5)) / 256, 1, 16, 15);
%! y = filter (b, 1, x);
%! assert ({double(y), y.WordLength, y.FractionLength},
%!         {filter(double (b), 1, double (x)), 35, 30});
%! assert (double (conv (x, b)), conv (double (x), double (b)));
%! assert (double (filter (b, 1, double (x(:)))), filter (double (b), 1, double (x(:))));
%!error id=velkora:fi:filter:leadingCoefficient filter (fi (1), [2 0.5], fi ([1 2]))

## An IIR filter against a model of its output register (s16,15, nearest, saturating) in
## doubles, where every sum before the last rounding is exact: once ringing inside the range
## and once driven into saturation, with a built-in denominator.
%!test
%! rand ("seed", 7);
%! b = fi ([0.25 -0.125 0.0625], 1, 16, 15);
%! a = fi ([1 -1.6 0.81], 1, 16, 14);
%! for gain = [1/8, 4]
%!   x = fi (gain * (rand (60, 1) - 0.5), 1, 16, 15);
%!   bd = double (b);  ad = double (a);  xd = double (x);  yd = zeros (size (xd));
%!   for n = 1:numel (xd)
%!     k = 1:min (n, 3);
%!     acc = bd(k) * xd(n - k + 1) - ad(k(2:end)) * yd(n - k(2:end) + 1);
%!     yd(n) = min (max (floor (acc * 2^15 + 0.5), -2^15), 2^15 - 1) / 2^15;
%!   endfor
%!   y = filter (b, double (a), x);
%!   assert ({double(y), y.WordLength, y.FractionLength}, {yd, 16, 15});
%! endfor
%!error id=velkora:fi:filter:vectorsOnly filter (fi (ones (2)), 1, fi ([1 2]))
