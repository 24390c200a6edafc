## Octave-level benchmark: fi sums beside the same sums of Octave doubles, in one run.
##   octave-cli -H -q --eval "addpath('build/release/octave'); run('bench/octave_arith.m')"
## Prints the time per operation of each and their ratio; best of five repetitions.

1;  # a script, not a function file

function t = best_time (f, reps)
  t = inf;
  for r = 1:reps
    tic; f (); t = min (t, toc);
  endfor
endfunction

function scalar_fi (a, b, n)
  for k = 1:n
    c = a + b;
  endfor
endfunction

function scalar_double (a, b, n)
  for k = 1:n
    c = a + b;
  endfor
endfunction

n = 20000;
a = fi (0.25, 1, 16, 15);  b = fi (0.5, 1, 16, 15);
x = 0.25;  y = 0.5;
tf = best_time (@() scalar_fi (a, b, n), 5) / n;
td = best_time (@() scalar_double (x, y, n), 5) / n;
printf ("scalar c = a + b:   fi %8.3f us   double %8.3f us   ratio %6.2f\n", ...
        1e6 * tf, 1e6 * td, tf / td);

m = 1e6;
rand ("seed", 1);
u = rand (1, m) - 0.5;  v = rand (1, m) - 0.5;
A = fi (u, 1, 16, 15);  B = fi (v, 1, 16, 15);
tf = best_time (@() A + B, 5) / m;
td = best_time (@() u + v, 5) / m;
printf ("1e6-element a + b:  fi %8.3f ns   double %8.3f ns   ratio %6.2f\n", ...
        1e9 * tf, 1e9 * td, tf / td);

## 100-bit words (s100,96) on 10^5 elements: the sum grows to 101 bits, the product to 200.
m = 1e5;
F = fimath ("MaxProductWordLength", 256);
W = fi (u(1:m), 1, 100, 96, F);  V = fi (v(1:m), 1, 100, 96, F);
tf = best_time (@() W + V, 5) / m;
tp = best_time (@() W .* V, 5) / m;
td = best_time (@() u(1:m) + v(1:m), 5) / m;
printf ("1e5-element s100 a + b:  fi %8.3f ns   a .* b:  fi %8.3f ns   double a + b %8.3f ns\n", ...
        1e9 * tf, 1e9 * tp, 1e9 * td);

## Indexing a(k) in an interpreted loop, reading and writing, beside the same on doubles.
function read_loop (a, n)
  for k = 1:n
    c = a(k);
  endfor
endfunction

function a = write_loop (a, n)
  for k = 1:n
    a(k) = 0.25;
  endfor
endfunction

n = 10000;
A = fi (u(1:n), 1, 16, 15);
tf = best_time (@() read_loop (A, n), 3) / n;
td = best_time (@() read_loop (u(1:n), n), 3) / n;
printf ("loop c = a(k):      fi %8.3f us   double %8.3f us   ratio %6.2f\n", ...
        1e6 * tf, 1e6 * td, tf / td);
tf = best_time (@() write_loop (A, n), 3) / n;
td = best_time (@() write_loop (u(1:n), n), 3) / n;
printf ("loop a(k) = v:      fi %8.3f us   double %8.3f us   ratio %6.2f\n", ...
        1e6 * tf, 1e6 * td, tf / td);

## A 64-tap FIR over 10^5 Q15 samples with a 40-bit accumulator, beside filter on doubles.
F = fimath ("SumMode", "SpecifyPrecision", "SumWordLength", 40, "SumFractionLength", 30);
h = fi (rand (1, 64) / 64, 1, 16, 15, F);
X = fi (u(1:1e5), 1, 16, 15, F);
hd = double (h);  xd = double (X);
tf = best_time (@() filter (h, 1, X), 3) / 1e5;
td = best_time (@() filter (hd, 1, xd), 3) / 1e5;
printf ("64-tap FIR, 1e5:    fi %8.3f us   double %8.3f us   ratio %6.2f (per sample)\n", ...
        1e6 * tf, 1e6 * td, tf / td);
