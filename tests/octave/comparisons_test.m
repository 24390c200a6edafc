## ==, ~=, <, <=, >, >= and isequal on fi values, against the same relations on Octave's own
## numbers: doubles where they hold the values exactly, int64 where they do not.

## Word lengths whose values doubles hold: fi with fi, with doubles on either side and with
## scalars, real and complex (ordered by magnitude, then angle, as Octave orders doubles).
%!test
%! rand ("seed", 31);
%! ops = {@eq, @ne, @lt, @le, @gt, @ge};
%! for w = [8 32 53]
%!   for trial = 1:6
%!     complex = trial > 4;
%!     x = round (8 * (rand (3, 4) - 0.5)) / 4;
%!     y = x(:, randperm (4));
%!     if (complex)
%!       x = x + 1i * x(randperm (3), :);
%!       y = y + 1i * fliplr (y);
%!     endif
%!     a = fi (x, 1, w, w - 6);
%!     b = fi (y, 1, w, w - 6);
%!     for k = 1:numel (ops)
%!       op = ops{k};
%!       assert (op (a, b), op (x, y));
%!       assert (op (a, y(2)), op (x, y(2)));
%!       assert (op (y(1), a), op (y(1), x));
%!       assert (op (a(2), b), op (x(2), y));
%!     endfor
%!   endfor
%! endfor

## Past 53 bits a double would round; the comparisons stay exact.
%!test
%! a = fi ([0 0 0], 1, 64, 0);
%! a.int = intmax ("int64") - [0 1 2];
%! v = intmax ("int64") - 1;
%! assert ({a == v, a > v, a <= v}, {[false true false], [true false false], [false true true]});
%! assert (a < double (v), [true true true]);    % double (v) rounds up to 2^63
%! w = fi (0, 0, 100, 0);
%! w.hex = "8000000000000000000000001";
%! assert ([w > 2^99, w == 2^99, w > 2^99 + 2^47], [true false false]);
%! assert (fi (0.5, 1, 8, 4) < NaN, false);
%! assert (fi (0.5, 1, 8, 4) ~= NaN, true);
%! assert (fi (127, 1, 8, 0) < Inf, true);

## Slope-bias values compare by their real-world values; isequal by size and values.
%!test
%! s = fi (0.25 + 1.5 * [1 2 3], 1, 8, 1.5, 0.25);
%! assert (s == [1.75 3.25 4.75], [true true true]);
%! assert (isequal (s, fi ([1.75 3.25 4.75], 1, 16, 8)), true);
%! assert (isequal (s, [1.75 3.25]), false);
%! assert ([isequal(fi (1 + 2i), 1 + 2i, fi (1 + 2i, 1, 8, 4)), isequal(fi (1 + 2i), 1 - 2i)],
%!         [true false]);

%!error id=velkora:fi:dimagree fi ([1 2 3]) < [1 2]
%!error id=velkora:fi:operand:notNumeric fi (1) == "a"
%!error id=velkora:fi:operatorNotSupported fi (1) == numerictype (1, 8)
%!error id=velkora:fi:operand:notNumeric eq (fi (1), numerictype (1, 8))
