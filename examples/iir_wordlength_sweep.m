## A second-order IIR low-pass filter (one biquad) in fixed point, run at every word length
## from 8 to 24 bits. Coefficients, samples and outputs all take the word length; for each
## one the script measures the signal-to-noise ratio against the double-precision filter,
## prints a table, checks the SNR grows by about 6 dB per bit, and plots SNR against word
## length into iir_snr.png.
##   octave-cli -H -q --eval "addpath (make_absolute_filename ('build/release/octave'));
##                           run ('examples/iir_wordlength_sweep.m')"
##
## Set plot_folder before running the script to write the plot elsewhere. The default is the
## current folder, which under run () is the script's own folder. The plot needs a graphics
## toolkit that can print without a display: gnuplot (on Debian the package gnuplot-nox, or
## gnuplot-qt, which the octave package recommends). Without one the table is still printed
## and the plot is skipped.

warning ("off", "backtrace");
if (! exist ("plot_folder", "var"))
  plot_folder = pwd ();
endif
n = 3000;                                     % samples per word length
wordlengths = 8:24;

## A Butterworth low-pass biquad, cut-off at 0.05 of the sampling rate (bilinear transform).
fc = 0.05;
K = tan (pi * fc);
Q = 1 / sqrt (2);
g = 1 / (1 + K / Q + K ^ 2);
bd = K ^ 2 * g * [1 2 1];
ad = [1, 2 * (K ^ 2 - 1) * g, (1 - K / Q + K ^ 2) * g];

## A tone in the pass band, one in the stop band, and a little noise; peak below 0.8.
rand ("seed", 2);
t = 0:n - 1;
s = 0.4 * sin (2 * pi * 0.01 * t) + 0.2 * sin (2 * pi * 0.2 * t) + 0.2 * (rand (1, n) - 0.5);
yd = filter (bd, ad, s);                      % the reference: everything in doubles

## W-bit coefficients at their best precision (sW,W+3 for b, sW,W-2 for a, which holds 1
## and -1.56), W-bit samples sW,W-1. The outputs take the samples' type, sW,W-1: the
## feed-forward and feedback sums are exact and rounded once into it, every sample.
## Two SNRs per word length:
##   SNR            against the double filter above: everything the word length costs;
##   rounding SNR   against the double filter with the same quantized coefficients and
##                  samples: the output rounding alone, fed back through the poles.
snr = zeros (size (wordlengths));
rounding_snr = zeros (size (wordlengths));
typename = @(v) sprintf ("s%d,%d", v.WordLength, v.FractionLength);
printf ("  W   b        a        y        SNR dB   rounding SNR dB\n");
tic;
for k = 1:numel (wordlengths)
  W = wordlengths(k);
  b = fi (bd, 1, W);
  a = fi (ad, 1, W);
  x = fi (s, 1, W, W - 1);
  y = filter (b, a, x);
  yq = filter (double (b), double (a), double (x));
  snr(k) = 10 * log10 (sumsq (yd) / sumsq (double (y) - yd));
  rounding_snr(k) = 10 * log10 (sumsq (yq) / sumsq (double (y) - yq));
  printf (" %2d   %-7s  %-7s  %-7s  %6.1f   %6.1f\n", W, typename (b), typename (a), typename (y),
          snr(k), rounding_snr(k));
endfor
printf ("%d word lengths of %d samples in %.1f s\n", numel (wordlengths), n, toc);

## The rounding noise alone falls by 6 dB for each bit. The coefficients' own quantization
## moves the response by a different amount at each word length, so the full SNR wanders
## around that line (the bumps in the table); its least-squares slope is still near 6 dB.
slope = polyfit (wordlengths, snr, 1)(1);
rounding_slope = polyfit (wordlengths, rounding_snr, 1)(1);
printf ("SNR slope %.2f dB per bit, rounding SNR slope %.2f dB per bit\n", slope,
        rounding_slope);
verdicts = {"NO", "yes"};
grows = (abs (slope - 6.02) < 1 && abs (rounding_slope - 6.02) < 0.5
         && all (diff (rounding_snr) > 0));
printf ("SNR grows by about 6 dB per bit: %s\n", verdicts{grows + 1});

## The plot, with gnuplot when Octave has it; any failure to print skips it.
file = fullfile (plot_folder, "iir_snr.png");
previous = graphics_toolkit ();
discouraged = warning ("off", "Octave:gnuplot-graphics");
try
  if (any (strcmp (available_graphics_toolkits (), "gnuplot")))
    graphics_toolkit ("gnuplot");
  endif
  h = figure ("visible", "off");
  plot (wordlengths, snr, "o-", wordlengths, rounding_snr, "s--");
  grid on;
  xlabel ("word length (bits)");
  ylabel ("SNR (dB)");
  title ("Biquad low-pass: SNR against the double-precision filter");
  legend ("SNR", "rounding SNR", "location", "northwest");
  print (h, "-dpng", file);
  close (h);
  printf ("plot written: %s\n", file);
catch err
  printf ("plot skipped: %s\n", err.message);
end_try_catch
try
  graphics_toolkit (previous);
catch
end_try_catch
warning (discouraged);
