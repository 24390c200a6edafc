## Operators of Corbel values: sums, differences and products of two fi values reach the
## class's methods; everything else is refused with an identifier and a text naming the
## operator and the operand classes.

%!shared a, b
%! a = __corbel_new__ ("fi", 0.25);
%! b = __corbel_new__ ("fi", 0.5);

%!test
%! c = a + b;
%! assert (class (c), "embedded.fi");
%! assert ([c.WordLength, c.FractionLength], [17 15]);
%! assert (isempty (strfind (disp (a - b), "-0.2500")), false);
%! assert ((a .* b).WordLength, 32);
%! assert ((a * b).FractionLength, 30);
%! assert (plus (a, b).WordLength, 17);
%! d = a;  d += b;
%! assert (d.WordLength, 17);
%! assert (a.WordLength, 16);

## Every other operator between two fi values, and each operator with a built-in operand
## of every kind, on either side.
%!function refused (f, x, y, text)
%! try
%!   f (x, y);
%! catch err
%!   assert ({err.identifier, err.message}, {"velkora:fi:operatorNotSupported", text});
%!   return;
%! end_try_catch
%! error ("'%s' was not refused", func2str (f));
%!endfunction
%!test
%! others = {@(x, y) x ^ y, "^"; @(x, y) x .^ y, ".^"; @(x, y) x & y, "&";
%!           @(x, y) x | y, "|"};
%! for k = 1:rows (others)
%!   refused (others{k, 1}, a, b, sprintf (
%!     "Operator '%s' is not supported for embedded.fi and embedded.fi operands.",
%!     others{k, 2}));
%! end
%! refused (@(x, y) x + y, a, "x", "Operator '+' is not supported for embedded.fi and char operands.");
%! refused (@(x, y) x .* y, "x", a, "Operator '.*' is not supported for char and embedded.fi operands.");

## Built-in operands become fi values with the other operand's fimath: integers in their own
## type, logicals as u1,0, doubles at the fi's word length with the best precision for their
## values (signed when the fi is, or when a value is negative).
%!test
%! x = fi ([0.25 -0.5], 1, 16, 12);
%! y = x + 0.5;
%! assert ({double(y), y.WordLength, y.FractionLength}, {[0.75 0], 20, 15});
%! assert (double (2 * x), [0.5 -1]);
%! z = x .* int8 ([3 -3]);
%! assert ({double(z), z.WordLength, z.FractionLength}, {[0.75 1.5], 24, 12});
%! assert (double (x - true), [-0.75 -1.5]);
%! assert (double ([1 2] - x), [0.75 2.5]);
%! u = fi (0.5, 0, 8, 7);
%! assert ((u + (-0.25)).Signed, true);
## Built-in operands of every class on either side, at 8 to 100 bits, against the same
## operation on doubles: the values have at most 18 significant bits on grids at most 2^8
## apart, so every model sum and product is exact, and the results are compared exactly.
%!test
%! rand ("seed", 5);
%! F = fimath ("MaxSumWordLength", 1024, "MaxProductWordLength", 1024);
%! ops = {@plus, @minus, @times, @mtimes};
%! for w = [8 32 53 64 100]
%!   bits = min (w - 2, 18);
%!   for trial = 1:3
%!     g = -floor (rand * 25);                      % the grid of q is 2^g
%!     f = -g + floor (rand * (w - bits));          % so q's type holds its values
%!     x = round ((2 * rand (2, 3) - 1) * 2 ^ (bits - 1)) * 2 ^ g;
%!     if (trial == 3)
%!       x = abs (x);
%!     endif
%!     q = fi (x, trial != 3, w, f, F);   % not the shared a
%!     d = round ((2 * rand (2, 3) - 1) * 2 ^ (bits - 1)) * 2 ^ (g + floor (rand * 17) - 8);
%!     small = int8 (round (200 * rand - 100));
%!     operands = {d, d(1), small, int64(-3), d(1) > 0, single(d(1))};
%!     for k = 1 + (0:3)(q.Signed | [1 0 1 1])     % unsigned differences saturate at 0
%!       for v = operands
%!         y = double (v{1});
%!         if (k == 4 && ! isscalar (y))
%!           y = y.';  v{1} = v{1}.';
%!         endif
%!         r = ops{k} (q, v{1});
%!         assert (all (r(:) == ops{k} (x, y)(:)));
%!         r = ops{k} (v{1}.', q.');
%!         assert (all (r(:) == ops{k} (y.', x.')(:)));
%!       endfor
%!     endfor
%!   endfor
%! endfor
%!error <Operator '\+' is not supported for embedded.fi and embedded.fimath operands>
%! a + __corbel_new__ ("fimath");
%!error <Operator '\+' is not supported for embedded.fimath and embedded.fimath operands>
%! __corbel_new__ ("fimath") + __corbel_new__ ("fimath");
%!error id=velkora:fi:operatorNotSupported plus (a, "x")
%!error id=velkora:fi:operatorNotSupported a ^ 2
%!error id=velkora:fi:operatorNotSupported -__corbel_new__ ("fimath")
%!error id=velkora:fi:operatorNotSupported !a
%!error id=velkora:fi:operatorNotSupported __corbel_new__ ("fimath")'

## Concatenation of objects without elements, and assignment into built-in arrays.
%!error id=velkora:fi:concatenationNotSupported [__corbel_new__("fimath"), a]
%!error id=velkora:fi:concatenationNotSupported [a; __corbel_new__("fimath")]
%!error <An embedded.fi value cannot be assigned into elements of a double array>
%! x = zeros (2);  x(2) = a;
%!error id=velkora:fi:assignmentNotSupported x = int8 ([1 2]);  x(1) = a;
