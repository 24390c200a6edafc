## The bit functions on stored integers as a user types them, with their errors.

%!test
%! a = fi (5, 1, 8, 0);
%! assert (bitget (a, 1:8), uint8 ([1 0 1 0 0 0 0 0]));
%! assert (double (bitshift (a, 2)), 20);
%! assert (double (bitshift (fi (-3, 1, 8, 0), -1)), -1);     % -1.5 rounds (nearest) to -1
%! assert (double (bitshift (fi (100, 1, 8, 0, "OverflowMode", "wrap"), 1)), -56);
%! assert (double (bitcmp (a)), -6);
%! assert (double (bitcmp (fi (5, 0, 8, 0))), 250);
%! b = fi ([3 6], 1, 8, 0);
%! assert (double (bitand (b, fi (5, 1, 8, 0))), [1 4]);
%! assert ({double(bitor (b, 5)), double(bitxor (int8 (5), b))}, {[7 7], [6 3]});
%! assert (double (bitor (b, fi (5, 1, 8, 0))), [7 7]);
%! assert (double (bitxor (b, fi (5, 1, 8, 0))), [6 3]);
%! assert (double (bitset (a, 2)), 7);
%! assert (double (bitset (a, [1 3], [0 0])), [4 1]);  % scalar fi: one result per position
%! assert (double (bitset (b, 8, 1)), [-125 -122]);
%! assert (double (a), 5);

%!test
%! w = fi (-1, 1, 100, 0);                              % 100-bit words
%! assert (bitget (w, [1 100]), uint8 ([1 1]));
%! assert (double (bitcmp (w)), 0);
%! s = fi (1, 1, 8, 1.5, 0.25);                         % slope-bias scaling stays
%! t = bitshift (s, 1);
%! assert ({t.Slope, t.Bias}, {1.5, 0.25});
%! ## Shifts far past the word: everything wraps out, or saturates, or rounds away.
%! assert (double (bitshift (fi ([1 -1], 1, 8, 0, "OverflowMode", "wrap"), 2000)), [0 0]);
%! assert (double (bitshift (fi ([1 -1], 1, 8, 0), 2^31 - 1)), [127 -128]);
%! assert (double (pow2 (fi ([1 -1], 1, 8, 0, "RoundMode", "ceil"), -5000)), [1 0]);

%!error id=velkora:fi:bitshift:notbuiltinnumeric bitshift (fi (1, 1, 8, 0), "a")
%!error id=velkora:fi:bitshift:notscalar bitshift (fi (1, 1, 8, 0), [1 2])
%!error id=velkora:fi:bitshift:notreal bitshift (fi (1, 1, 8, 0), 1i)
%!error id=velkora:fi:bitshift:inputsMustBeIntegers bitshift (fi (1, 1, 8, 0), 1.5)
%!error id=velkora:fi:bitshift:double:notallowed bitshift (fi (1, "DataType", "double"), 1)
%!error id=velkora:fi:bitget:BITOutOfRange bitget (fi (1, 1, 8, 0), 9)
%!error id=velkora:fi:bitget:BITOutOfRange bitget (fi (1, 1, 8, 0), 0)
%!error id=velkora:fi:bitAndXorOr:mixedNumericTypes bitand (fi (1, 1, 8, 0), fi (1, 1, 9, 0))
%!error id=velkora:fi:bitSet:ArgSizeMismatch bitset (fi (1, 1, 8, 0), [1 2], [1 1 1])
## No positions go with a scalar only.
%!error id=velkora:fi:bitGet:sizeMismatch bitget (fi ([1 2 3], 0, 8, 0), [])
%!error id=velkora:fi:bitSet:sizeMismatch bitset (fi ([1 2 3], 0, 8, 0), [])
%!assert (size (bitget (fi (1, 0, 8, 0), zeros (1, 0))), [1 0])

## Radix text of the stored integers, and setting them from text.
%!test
%! a = fi ([1 5; -1 -8], 1, 4, 0);
%! assert (bin (a), ["0001  0101"; "1111  1000"]);
%! assert (hex (a), ["1  5"; "f  8"]);
%! assert (sdec (a), [" 1   5"; "-1  -8"]);
%! assert (num2base (a, 8), ["01  05"; "17  10"]);
%! a.hex = "7 f 8 0";
%! assert (double (a), [7 -1; -8 0]);
%! a.bin = ["0101  0011"; "0000  1111"];
%! assert (double (a), [5 3; 0 -1]);
%! w = fi (-1, 1, 200, 0);
%! assert (hex (w), repmat ("f", 1, 50));
%! w.hex = ["8" repmat("0", 1, 49)];
%! assert (double (w), -2^199);
%! b = base2num (fi (0, 1, 8, 4), "ff", 16);
%! assert (double (b), -1/16);
%!error id=velkora:fi:base2num:badDigits x = fi (1, 1, 8, 0); x.bin = "012";
%!error id=velkora:fi:num2base:badRadix num2base (fi (1, 1, 8, 0), 3)

## The quantizer's text of values on its grid.
%!test
%! q = quantizer ("fixed", "nearest", "saturate", [8 4]);
%! assert (num2bin (q, [0.5 -0.25]), "00001000  11111100");
%! assert (num2hex (q, 100), "7f");                       % saturated
%! assert (bin2num (q, ["00001000"; "11111100"]), [0.5; -0.25]);
%! assert (hex2num (q, "80 7f"), [-8; 127/16]);
%!error id=velkora:quantizer:num2base:notdefined num2bin (quantizer ("none"), 1)
%!error id=velkora:quantizer:base2num:notdefined bin2num (quantizer ("boolean"), "1")

## Floating-point grids write bit patterns: IEEE double and single agree with Octave's own
## num2hex over random values of every size, subnormals, signed zeros, infinities and NaN;
## any float grid reads back the values it quantizes to.
%!test
%! randn ("state", 12);
%! x = [randn(1, 40) .* 2 .^ round(300 * randn (1, 40)), 0, -0, Inf, -Inf, NaN, 1e-310, -5e-324];
%! assert (num2hex (quantizer ("double"), x(:)), num2hex (x(:)));
%! xs = double (single (x(isfinite (single (x)) | ! isfinite (x))));
%! assert (num2hex (quantizer ("single"), xs(:)), num2hex (single (xs(:))));
%! assert (num2bin (quantizer ("float", [16 5]), [65504 70000 2^-24 1]),
%!         "0111101111111111  0111110000000000  0000000000000001  0011110000000000");
%! for format = {[16 5], [12 3], [40 9], [80 15]}
%!   q = quantizer ("float", format{1});
%!   y = quantize (q, randn (6, 1) .* 2 .^ round (4 * randn (6, 1)));
%!   assert (bin2num (q, num2bin (q, y)), y);
%!   assert (hex2num (q, num2hex (q, y)), y);
%! endfor

## Stored integers in the smallest built-in integer class.
%!test
%! a = fi ([0.5 -0.25], 1, 12, 8);
%! assert (storedInteger (a), int16 ([128 -64]));
%! assert (a.int, int16 ([128 -64]));
%! assert (class (storedInteger (fi (1, 0, 8, 0))), "uint8");
%! assert (class (storedInteger (fi (1, 1, 33, 0))), "int64");
%! a.int = [1 -1];
%! assert (double (a), [1 -1] / 256);
%! ## 64-bit words go both ways exactly, past the integers a double holds.
%! w = fi (0, 1, 64, 0);
%! w.int = intmax ("int64") - 2;
%! assert ({storedInteger(w), w.hex}, {intmax("int64") - 2, "7ffffffffffffffd"});
%! u = fi (0, 0, 64, 0);
%! u.int = intmax ("uint64");
%! assert (u.hex, repmat ("f", 1, 16));
%!error id=velkora:fi:int:wordTooLong storedInteger (fi (1, 1, 65, 0))
%!error id=velkora:fi:int:outOfRange x = fi (1, 1, 8, 0); x.int = 128;

## The bit conveniences, through the stored integers' text.
%!test
%! a = fi ([-3 5], 1, 8, 0);                 % 11111101, 00000101
%! assert (double (bitsll (a, 2)), [-12 20]);
%! assert (double (bitsrl (a, 1)), [126 2]);
%! assert (double (bitsra (a, 1)), [-2 2]);
%! assert (double (bitrol (a, 1)), [-5 10]);
%! assert (double (bitror (a, 1)), [-2 -126]);
%! assert (double (bitsliceget (a, 4, 1)), [13 5]);
%! assert (double (getlsb (a)), [1 1]);
%! assert (double (getmsb (a)), [1 0]);
%! c = bitconcat (fi (3, 0, 2, 0), fi (1, 0, 3, 0));
%! assert ({c.WordLength, double(c)}, {5, 25});
%!error id=velkora:fi:bitsliceget:badRange bitsliceget (fi (1, 1, 8, 0), 9, 1)
