## A 24-bit numerically controlled oscillator: a phase accumulator that wraps once per turn,
## and a CORDIC rotation that turns each phase into its cosine and sine with shifts and adds
## only. Every register is 24 bits; the outputs are checked against cos and sin in doubles.
##   octave-cli -H -q --eval "addpath (make_absolute_filename ('build/release/octave'));
##                           run ('examples/nco_24bit.m')"

warning ("off", "backtrace");
W = 24;                                       % every register's word length
n = 4096;                                     % output samples
iterations = 22;

## Registers add in W bits, keep the least significant bits of each sum (so they wrap, as
## hardware adders do), and round toward minus infinity: a right shift then drops bits.
F = fimath ("SumMode", "KeepLSB", "SumWordLength", W, "OverflowMode", "wrap",
            "RoundMode", "floor");

## The phase is in turns, s24,24: [-1/2, 1/2) in steps of 2^-24 of a turn. The accumulator
## adds the same increment every sample and wraps past half a turn, so its value at sample
## k is k * increment modulo one turn.
increment = 1234567;                          % in steps: 0.0736 of a turn, 0.462 rad
steps = fi (repmat (increment / 2 ^ W, 1, n), 1, W, W, F);
phase = cumsum (steps);
expected = mod ((1:n) * increment + 2 ^ (W - 1), 2 ^ W) - 2 ^ (W - 1);
verdicts = {"DIFFERENT", "yes"};
printf ("phase accumulator s%d,%d wraps modulo one turn: %s\n", phase.WordLength,
        phase.FractionLength, verdicts{isequal (double (storedInteger (phase)), expected) + 1});

## CORDIC rotates (x, y) = (1/G, 0) by the phase in steps of +-atan(2^-k), each step a shift
## and an add; G is the growth of the vector's length over the iterations. Rotation by
## +-atan(2^-k) only reaches angles within +-99.9 degrees, so phases beyond a quarter turn
## first turn by half a turn (with wrap, adding -1/2 turn does that either way) and start
## from (-1/G, 0).
angles = fi (atan (2 .^ -(0:iterations - 1)) / (2 * pi), 1, W, W);   % rounded to nearest
angles.fimath = F;
G = prod (sqrt (1 + 2 .^ (-2 * (0:iterations - 1))));
z = phase;
far = z > 0.25 | z < -0.25;
z(far) = z(far) + fi (-0.5, 1, W, W, F);
x = fi (repmat (1 / G, 1, n), 1, W, W - 2, F);   % s24,22: cos 0 = 1 needs an integer bit
x(far) = -x(far);
y = fi (zeros (1, n), 1, W, W - 2, F);

## bitshift by -k under RoundMode floor is the arithmetic right shift bitsra (a, k), and it
## works on the whole array at once (bitsra goes element by element).
same = isequal (bitsra (x(1:16), 5), bitshift (x(1:16), -5));
printf ("bitshift (x, -5) under floor equals bitsra (x, 5): %s\n", verdicts{same + 1});
tic;
for k = 0:iterations - 1
  d = fi (2 * (z >= 0) - 1, 1, 2, 0, F);    % +1 turns left, -1 turns right
  [x, y, z] = deal (x - d .* bitshift (y, -k), y + d .* bitshift (x, -k), z - d .* angles(k + 1));
endfor
printf ("%d CORDIC iterations over %d phases in %.2f s; outputs s%d,%d\n", iterations, n, toc,
        x.WordLength, x.FractionLength);

## Against cos and sin of the phase the accumulator holds. One step of the output grid is
## 2^-22. Each iteration truncates the two shifted values, each by less than one step: the
## usual budget is one step per iteration, 22 steps or log2(22) = 4.5 of the 24 bits. The
## residual angle after the last iteration (about atan(2^-21), plus the table's roundings)
## is within that; a worst case, with the growth of the later iterations, is a few times more.
theta = 2 * pi * double (phase);
err = max ([abs(double (x) - cos (theta)), abs(double (y) - sin (theta))]);
lsb = 2 ^ -(W - 2);
printf ("largest error: %.3g = %.1f steps of 2^-%d (%.1f correct bits)\n", err, err / lsb,
        W - 2, -log2 (err));
printf ("within %d steps: %s\n", iterations, verdicts{(err <= iterations * lsb) + 1});
printf ("residual angle after the last iteration: at most %d steps of 2^-24 turn\n",
        max (abs (double (storedInteger (z)))));
