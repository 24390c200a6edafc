## A 24-tap fixed-point FIR low-pass filter fed a loud input, run with overflow logging on.
## Its accumulator is first too narrow for the input: the overflows are warned about
## ("fi:overflow"), counted in the global log, and the logged extremes show the clipping.
## Then the same filter with an accumulator wide enough: no overflow, and every output
## equal to the double-precision filter's.
##   octave-cli -H -q --eval "addpath (make_absolute_filename ('build/release/octave'));
##                           run ('examples/fir_overflow_logging.m')"

warning ("off", "backtrace");
taps = 24;
n = 2000;

## Windowed-sinc low-pass coefficients, normalised to a DC gain of 1, in Q15 (s16,15).
k = (0:taps - 1) - (taps - 1) / 2;
h = sin (0.25 * pi * k) ./ (pi * k);
h = h .* (0.54 - 0.46 * cos (2 * pi * (0:taps - 1) / (taps - 1)));
h /= sum (h);

## A loud input: a tone of amplitude 5 in the pass band, one of 1.5 in the stop band. The
## samples are s16,12 (Q3.12), which holds values in [-8, 8).
t = 0:n - 1;
s = 5 * sin (0.02 * pi * t) + 1.5 * sin (0.6 * pi * t);

## Every product of an s16,15 tap and an s16,12 sample is exact in s32,27. The narrow
## accumulator keeps those 27 fraction bits and two integer bits, [-4, 4): enough for a
## signal of amplitude 2 with some headroom, too little for this one. The wide accumulator
## has 40 bits, [-4096, 4096). Neither ever rounds; they differ only in their range.
accumulators = {"narrow", 30; "wide", 40};
printf ("worst-case output for full-scale samples: sum |h| * 8 = %.2f\n", sum (abs (h)) * 8);

fipref ("LoggingMode", "on");                 % every fi logs, and overflows warn
unwind_protect
  for r = 1:rows (accumulators)
    [name, bits] = accumulators{r, :};
    F = fimath ("ProductMode", "FullPrecision", "SumMode", "SpecifyPrecision",
                "SumWordLength", bits, "SumFractionLength", 27,
                "RoundMode", "nearest", "OverflowMode", "saturate");
    b = fi (h, 1, 16, 15, F);
    x = fi (s, 1, 16, 12, F);
    resetgloballog (x);
    lastwarn ("");
    y = filter (b, 1, x);                     % the outputs are the accumulator's values
    [msg, id] = lastwarn ();

    ## The global log counts the accumulator's overflows as sum overflows.
    globallog = evalc ("displaygloballog (y)");
    overflows = sscanf (globallog(strfind (globallog, "FI sum overflows"):end),
                        "FI sum overflows : %d");

    ## The output register, Q3.12 like the input: an assignment, counted in its own log.
    out = fi (zeros (1, n), 1, 16, 12, F);
    out(:) = y;

    yd = filter (double (b), 1, double (x));
    lo = double (lowerbound (y));
    printf ("\n%s accumulator s%d,%d, range [%g, %g):\n", name, y.WordLength,
            y.FractionLength, lo, -lo);
    if (isempty (msg))
      printf ("  no warning\n");
    else
      printf ("  warning %s: %s\n", id, msg);
    endif
    printf ("%s", globallog);
    printf ("  %s accumulator: %d overflows\n", name, overflows);
    printf ("  accumulator extremes: maxlog %.4f, minlog %.4f\n", maxlog (y), minlog (y));
    printf ("  output register s16,12: noverflows %d, maxlog %.4f, minlog %.4f\n",
            noverflows (out), maxlog (out), minlog (out));
    printf ("  largest difference from the double-precision filter: %g\n",
            max (abs (double (y) - yd)));
    peak = max (abs ([maxlog(y), minlog(y)]));   % read while logging is on
  endfor
unwind_protect_cleanup
  reset (fipref ());
end_unwind_protect

## The wide run's logged extremes give the integer bits the accumulator needs.
ibits = ceil (log2 (peak));
printf ("\nthis input's peak output %.4f needs %d integer bits and a sign bit: %s\n", peak,
        ibits, sprintf ("s%d,27 would do", ibits + 28));
printf ("logging reset: LoggingMode %s\n", fipref ().LoggingMode);
