## A 32-tap fixed-point FIR low-pass filter over 10^4 samples, written with filter on fi
## values, checked against two references: the same filter in doubles, and a bit-true model
## of the hardware in Octave int64 arithmetic on the stored integers.
##   octave-cli -H -q --eval "addpath(make_absolute_filename('build/release/octave')); run('examples/fir_filter.m')"

warning ("off", "backtrace");
taps = 32;
n = 1e4;

## Windowed-sinc coefficients and a test signal (two tones and a little noise), in doubles.
k = (0:taps - 1) - (taps - 1) / 2;
h = sin (0.2 * pi * k) ./ (pi * k + (k == 0)) + 0.2 * (k == 0);
h = h .* (0.54 - 0.46 * cos (2 * pi * (0:taps - 1) / (taps - 1)));
rand ("seed", 1);
t = 0:n - 1;
s = 0.45 * sin (0.05 * pi * t) + 0.3 * sin (0.7 * pi * t) + 0.05 * (rand (1, n) - 0.5);

## Q15 coefficients and samples; products s32,30, summed in a 40-bit accumulator s40,30,
## rounded to nearest and saturated.
F = fimath ("SumMode", "SpecifyPrecision", "SumWordLength", 40, "SumFractionLength", 30,
            "ProductMode", "FullPrecision", "RoundMode", "nearest", "OverflowMode", "saturate");
b = fi (h, 1, 16, 15, F);
x = fi (s, 1, 16, 15, F);
tic;
y = filter (b, 1, x);
elapsed = toc;
printf ("fi filter: %d outputs of type s%d,%d in %.3f s\n", numel (y), y.WordLength,
        y.FractionLength, elapsed);

## Reference 1: the same coefficients and samples in doubles.
yd = filter (double (b), 1, double (x));
## Here every product and sum is exact in doubles too, so the two agree to the last bit.
printf ("largest difference from the double-precision filter: %g\n", max (abs (double (y) - yd)));

## Reference 2: the hardware as a bit-true model on stored integers. The products are exact
## 30-fraction-bit integers; the sums of 32 of them stay far inside 40 bits, so the
## accumulator never rounds or saturates, and the result is the exact sum.
bi = int64 (storedInteger (b));
xi = int64 (storedInteger (x));
acc = zeros (1, n, "int64");
for j = 1:taps
  acc(j:n) += bi(j) * xi(1:n - j + 1);
endfor
yi = int64 (storedInteger (y));
verdicts = {"DIFFERENT", "identical"};
printf ("bit-true against the int64 model: %s\n", verdicts{isequal (yi, acc) + 1});

## Rounded to a Q15 output, as the filter's output register would hold it.
out = fi (zeros (1, n), 1, 16, 15, F);
out(:) = y;
printf ("Q15 output: %d samples, largest |y| = %.4f\n", numel (out), max (abs (double (out))));
