## Conversions of fi values to built-in classes and the value and word properties.

## Integer classes round as Octave's integer conversion rounds and saturate, against the same
## conversion of the doubles; past 53 bits they stay exact.
%!test
%! d = [2.5 -2.5 1000 -0.4375 0.5 -1000];
%! a = fi (d, 1, 16, 4);
%! for c = {"int8", "uint8", "int16", "uint16", "int32", "uint32", "int64", "uint64"}
%!   f = str2func (c{1});
%!   assert (f (a), f (d));
%! endfor
%! w = fi (0, 1, 64, 0);
%! w.int = intmax ("int64") - 3;
%! assert (int64 (w), intmax ("int64") - 3);
%! assert (logical (fi ([0 0.25 -1])), [false true true]);
%! assert ({class(single (a)), single(a)}, {"single", single(d)});
%!error id=velkora:fi:int:complex int8 (fi (1i))

## double and data set every value through the quantizer; tessaronarray gives words of 32
## bits past 64 bits, least significant first, and takes them back.
%!test
%! a = fi ([0 0 0], 1, 8, 4);
%! a.double = [0.5 100 -0.03];
%! assert (a.data, [0.5 127/16 0]);
%! a.data = [1 2 3];
%! assert (double (a), [1 2 3]);
%! assert (a.intarray, int8 ([16 32 48]));
%! assert (a.tessaronarray, int8 ([16 32 48]));
%! b = fi ([1 -1], 1, 100, 0);
%! assert (b.tessaronarray, uint32 ([1 0 0 0; 2^32-1 2^32-1 2^32-1 15].'));
%! b.tessaronarray = uint32 ([5 0 0 0; 2^32-5 2^32-1 2^32-1 15].');
%! assert (double (b), [5 -5]);
%!error id=velkora:fi:subsasgn:sizeMismatch x = fi ([0 0]); x.double = [1 2 3];
%!error id=velkora:fi:int:outOfRange x = fi (0, 1, 100, 0); x.tessaronarray = uint32 ([0; 0; 0; 16]);

## Sums: at full precision the type grows by ceil(log2 n) bits and nothing rounds; the values
## agree with sums of the doubles along every dimension; other SumModes quantize the running
## sum, here saturating.
%!test
%! s = sum (fi ([0.5 0.75 -0.25 1], 1, 8, 6));
%! assert ({double(s), s.WordLength, s.FractionLength}, {2, 10, 6});
%! d = reshape (-12:11, 2, 3, 4) / 8;
%! a = fi (d, 1, 8, 3);
%! for dim = 1:4
%!   assert (double (sum (a, dim)), sum (d, dim));
%! endfor
%! assert (double (sum (a)), sum (d));
%! k = fi ([7 7 7], 1, 8, 4, "SumMode", "SpecifyPrecision", "SumWordLength", 8,
%!         "SumFractionLength", 4);
%! assert (double (sum (k)), 127/16);
%! assert (double (sum (fi (zeros (0, 3)))), [0 0 0]);
%! assert (double (sum (fi (1 + 2i, 1, 8, 4) * [1 1])), 2 + 4i);
%!error id=velkora:fi:sum:badDimension sum (fi (1), 0)
%!error id=velkora:fi:sum:badDimension cumsum (fi (1), 1.5)

## cumsum, prod and mean along every dimension against the doubles (exact at full
## precision); the last running sum is the sum under every SumMode, in the sum's type; the
## mean rounds into the array's own type.
%!test
%! d = reshape (-12:11, 2, 3, 4) / 8;
%! a = fi (d, 1, 8, 3);
%! for dim = 1:4
%!   assert (double (cumsum (a, dim)), cumsum (d, dim));
%!   assert (double (prod (a, dim)), prod (d, dim));
%! endfor
%! assert ({double(cumsum (a)), double(prod (a))}, {cumsum(d), prod(d)});
%! c = cumsum (fi ([0.5 0.75 -0.25 1], 1, 8, 6));       % a row: the sum's type, s10,6
%! assert ({double(c), c.WordLength}, {[0.5 1.25 1 2], 10});
%! assert (prod (fi ([0.5 0.75 -0.25], 1, 8, 6)).WordLength, 24);
%! assert (double (prod (fi (zeros (0, 3)))), [1 1 1]);
%! for mode = {"FullPrecision", "KeepLSB", "KeepMSB", "SpecifyPrecision"}
%!   b = fi ((-1:0.25:1)' * [1 -1 0.5], 1, 8, 4, "SumMode", mode{1}, "SumWordLength", 7,
%!           "SumFractionLength", 3, "RoundMode", "floor", "OverflowMode", "wrap");
%!   c = cumsum (b);  s = sum (b);
%!   assert ({double(c(end, :)), c.WordLength, c.FractionLength},
%!           {double(s), s.WordLength, s.FractionLength});
%! endfor
%! m = mean (fi ([1 2; 3 4] / 8, 1, 8, 6), 2);
%! assert ({double(m), m.WordLength, m.FractionLength}, {[3; 7] / 16, 8, 6});
%! assert (double (mean (fi ([1 2 2] / 64, 1, 8, 6))), 2 / 64);   % 5/3 steps round to 2
%!error id=velkora:fi:leadingdimension_sum:boolean:notallowed sum (fi (1, "DataType", "boolean"))

## Shape queries, copy and copydata keep value semantics.
%!test
%! a = fi (ones (2, 3) / 4, 1, 16, 8);
%! assert ({length(fi (zeros (0, 3))), size(a), size(a, 2), ndims(a)}, {0, [2 3], 3, 2});
%! [r, c] = size (a);
%! assert ({r, c, size(a, [1 2])}, {2, 3, [2 3]});
%! c = copydata (a, fi (ones (2, 3) / 2, 1, 32, 20));
%! assert ({double(a), double(c), c.WordLength}, {ones(2, 3) / 4, ones(2, 3) / 2, 16});
%!error id=velkora:fi:subsasgn:sizeMismatch copydata (fi ([1 2]), fi (1))

## Rounding to integers, exactly and one bit wider, against Octave's functions of the doubles
## (nearest: floor (x + 1/2); convergent: halves to even).
%!test
%! rand ("seed", 41);
%! d = round (64 * (rand (1, 40) - 0.5)) / 8;
%! a = fi (d, 1, 10, 3);
%! fs = {@floor, @ceil, @fix, @round};
%! for k = 1:numel (fs)
%!   y = fs{k} (a);
%!   assert ({double(y), y.WordLength, y.FractionLength}, {fs{k}(d), 8, 0});
%! endfor
%! assert (double (nearest (a)), floor (d + 0.5));
%! even = round (d);
%! ties = abs (d - fix (d)) == 0.5;
%! even(ties) = 2 * round (d(ties) / 2);
%! assert (double (convergent (a)), even);
%! assert (double (ceil (fi (127/128, 1, 8, 7))), 1);
