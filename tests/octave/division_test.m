## Division as a user types it: a ./ b, a / b, a .\ b and divide(T, a, b), each quotient
## rounded once into its type; a zero divisor saturates with a warning.

%!test
%! a = fi ([0.5 -0.25 0.75], 1, 16, 15);
%! q = a ./ fi (0.5, 1, 16, 15);                 % the dividend's type: s16,15
%! assert ({q.WordLength, q.FractionLength}, {16, 15});
%! assert (double (q), [1 - 2^-15, -0.5, 1 - 2^-15]);
%! assert (double (a / 4), [0.125 -0.0625 0.1875]);
%! assert (double (fi ([3 6], 0, 8, 0) .\ 12), [4 2]);
%! assert (double (1 ./ fi ([3 4], 1, 16, 8)), [85 64] / 256);  % 1/3 rounds to 85/256
%! assert (double (a), [0.5 -0.25 0.75]);        % operands unchanged

%!test
%! T = numerictype (1, 32, 30);
%! d = divide (T, fi ([0.5 -0.25], 1, 16, 15), fi (0.5, 1, 16, 15));
%! assert ({d.WordLength, double(d)}, {32, [1 -0.5]});
%! f = divide (numerictype (1, 16, 8, "RoundMode", "floor"), 1, 3);
%! assert (double (f), 85 / 256);
%! u = fi (5, 0, 8, 0) ./ -2;                    % a negative divisor makes the quotient signed
%! assert ({u.Signed, double(u)}, {true, -2});   % -2.5 rounds (nearest) to -2

%!test
%! warning ("off", "fi:divideByZero", "local");
%! z = fi ([1 -1 0], 1, 8, 4) ./ fi (0, 1, 8, 4);
%! assert (double (z), [127 -128 127] / 16);    % 0/0 gives the largest value
%! c = fi (1+1i, 1, 8, 4) ./ fi (1i, 1, 8, 4);
%! assert (double (c), 1-1i);

%!warning <Division by zero occurred. Quotient was saturated.> fi (1, 1, 8, 4) ./ 0;
%!error id=velkora:fi:divide:nonondouble divide (numerictype (1, 8, 4), int8 (1), 2)
%!error id=velkora:fi:divide:scalarDivisorOnly fi ([1 2], 1, 8, 4) / fi ([1 2], 1, 8, 4)
%!error id=velkora:fi:dimagree fi ([1 2], 1, 8, 4) ./ fi ([1 2 3], 1, 8, 4)
