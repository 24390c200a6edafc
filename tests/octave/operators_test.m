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
