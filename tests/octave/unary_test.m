## Negation, abs, conj, complex, pow2, max and min as a user types them, with their errors.

%!test
%! a = fi ([-128 127 0], 1, 8, 0);
%! assert (double (-a), [127 -127 0]);
%! w = fi ([-128 5], 1, 8, 0, "OverflowMode", "wrap");
%! assert (double (-w), [-128 -5]);
%! assert (double (uminus (w)), [-128 -5]);
%! assert (double (abs (fi ([-0.5 0.25], 1, 8, 6))), [0.5 0.25]);
%! assert (double (a), [-128 127 0]);  % the operand is unchanged

%!test
%! z = fi ([1+2i, -3-4i], 1, 8, 4);
%! assert (double (conj (z)), [1-2i, -3+4i]);
%! c = complex (fi ([0.5 -0.25], 1, 8, 6), 0.3);
%! assert (double (c), [0.5+0.296875i, -0.25+0.296875i]);
%! assert (isreal (complex (fi (1, 1, 8, 4))), false);

%!test
%! x = fi ([3 -3 5], 1, 8, 0, "RoundMode", "floor");
%! assert (double (pow2 (x, -1)), [1 -2 2]);
%! assert (double (pow2 (x, 2)), [12 -12 20]);
%! assert (double (pow2 (fi (100, 1, 8, 0), 1)), 127);

%!test
%! a = fi ([0.25 -0.5 0.75 0.75], 1, 8, 6);
%! [m, i] = max (a);
%! assert ({double(m), i}, {0.75, 3});
%! [m, i] = min (a);
%! assert ({double(m), i}, {-0.5, 2});
%! b = fi ([1 4; 3 2], 1, 8, 0);
%! [m, i] = max (b);
%! assert ({double(m), i}, {[3 4], [2 1]});
%! [m, i] = min (b, [], 2);
%! assert ({double(m), i}, {[1; 2], [1; 2]});
%! assert (double (max (b, fi (2, 1, 8, 0))), [2 4; 3 2]);
%! assert (double (min (b, 2)), [1 2; 2 2]);
%! assert (double (max (2.5, b)), [3 4; 3 3]);  % 2.5 rounds to 3 in s8,0 first
%! assert (size (max (fi (zeros (0, 3), 1, 8, 0))), [0 3]);

%!error id=velkora:fi:pow2:notsupported pow2 (fi (1, 1, 8, 4))
%!error id=velkora:fi:pow2:kMustBeInteger pow2 (fi (1, 1, 8, 4), 0.5)
%!error id=velkora:fi:pow2:binarypointonly pow2 (fi (1, 1, 8, 0.5, 1), 1)
%!error id=velkora:fi:abs:nocomplex abs (fi (1i, 1, 8, 4))
%!error id=velkora:fi:complex:invalidRealPartInput complex (fi (1i, 1, 8, 4), 1)
%!error id=velkora:fi:max:numerictypemismatch max (fi (1, 1, 8, 4), fi (1, 1, 8, 3))
%!error id=velkora:fi:min:fimathmismatch ...
%! min (fi (1, 1, 8, 4), fi (1, 1, 8, 4, "RoundMode", "floor"))
%!error id=velkora:fi:max:badDimension max (fi (1, 1, 8, 4), [], 0)
%!error id=velkora:fi:uminus:boolean:notallowed -fi (1, "DataType", "boolean")
%!error id=Octave:invalid-fun-call max (fi (1, 1, 8, 4), [1 2], 1)

## The limits of a type, as fi values of that type.
%!test
%! a = fi (0.5, 1, 8, 4);
%! limits = cellfun (@(f) double (f (a)), {@realmax, @realmin, @eps, @lowerbound, @upperbound});
%! assert (limits, [127/16, 1/16, 1/16, -8, 127/16]);
%! assert ({double(intmax (a)), double(intmin (a))}, {127, -128});
%! assert (double (intmax (fi (1, 0, 8, 4))), 255);
%! assert (double (upperbound (fi (1, 1, 8, 1.5, 0.25))), 0.25 + 1.5 * 127);
%! assert (intmax (a).FractionLength, 0);
%! assert (double (range (a)), [-8, 127/16]);
%! [lo, hi] = range (fi (1, 0, 8, 1.5, 0.25));
%! assert ({double(lo), double(hi)}, {0.25, 0.25 + 1.5 * 255});

## stripscaling: the stored integers as an integer fi of the same word.
%!test
%! s = stripscaling (fi ([0.5 -0.25; 1i 0], 1, 8, 4));
%! assert ({double(s), s.WordLength, s.FractionLength}, {[8 -4; 16i 0], 8, 0});
%! assert (double (stripscaling (fi (0.25 + 1.5 * 5, 1, 8, 1.5, 0.25))), 5);
%!error id=velkora:fi:stripscaling:double:notallowed stripscaling (fi (1, "DataType", "double"))

%!test
%! s = sign (fi ([-0.5 0 0.25], 1, 8, 6));
%! assert ({double(s), s.WordLength, s.FractionLength}, {[-1 0 1], 2, 0});
%! assert (double (sign (fi ([1 0 3 -1], 1, 8, 0.5, 1))), [1 0 1 -1]);   % by real-world value
%!error id=velkora:fi:complexnotdefined sign (fi (1i, 1, 8, 4))
