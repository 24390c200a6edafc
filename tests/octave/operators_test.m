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
%! operands = {1, [1 2], single(1), int8(1), uint64([1 2]), true, 1+2i, "x", 1:3, []};
%! classes = {"double", "double", "single", "int8", "uint64", "logical", "double", ...
%!            "char", "double", "double"};
%! for k = 1:numel (operands)
%!   refused (@(x, y) x + y, a, operands{k},
%!            ["Operator '+' is not supported for embedded.fi and " classes{k} " operands."]);
%!   refused (@(x, y) x .* y, operands{k}, a,
%!            ["Operator '.*' is not supported for " classes{k} " and embedded.fi operands."]);
%! end
%!error <Operator '\+' is not supported for embedded.fi and embedded.fimath operands>
%! a + __corbel_new__ ("fimath");
%!error <Operator '\+' is not supported for embedded.fimath and embedded.fimath operands>
%! __corbel_new__ ("fimath") + __corbel_new__ ("fimath");
%!error id=velkora:fi:operatorNotSupported plus (a, 2)
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
