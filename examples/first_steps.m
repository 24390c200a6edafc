## First steps with Corbel in GNU Octave: fixed-point values, their arithmetic under two
## sets of arithmetic settings, and the overflow log.
##   octave-cli -H -q --eval "addpath(make_absolute_filename('build/release/octave')); run('examples/first_steps.m')"

warning ("off", "backtrace");

## A fixed-point value: signed, 16 bits, 13 of them after the binary point.
a = fi (pi, 1, 16, 13)

## Full precision by default: the product has 32 bits and fraction length 26.
b = a * a
printf ("b is %s with %d bits, fraction length %d\n", class (b), b.WordLength, b.FractionLength);

## The best fraction length for the values when none is given.
c = fi ([0.5 -1.75 3.1], 1, 8)

## The same sum under other settings: keep 16 bits of every sum, round toward minus
## infinity, wrap on overflow.
F = fimath ("SumMode", "SpecifyPrecision", "SumWordLength", 16, "SumFractionLength", 13, ...
            "RoundMode", "floor", "OverflowMode", "wrap");
x = fi (3.5, 1, 16, 13, F);
y = fi (2.25, 1, 16, 13, F);
full_precision = fi (3.5, 1, 16, 13) + fi (2.25, 1, 16, 13)
wrapped = x + y

## With logging on, an overflow is reported as a warning and counted in the global log.
x.Logging = true;
saturating = fi (3.5, 1, 16, 13, fimath ("SumMode", "SpecifyPrecision", ...
                                          "SumWordLength", 16, "SumFractionLength", 13));
s = saturating + saturating
[msg, id] = lastwarn ();
printf ("last warning: %s (%s)\n", msg, id);
displaygloballog (s);
x.Logging = false;
