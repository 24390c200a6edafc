## The example scripts run and reach their own checks.

## The examples folder: beside tests/ in the installed package, two levels up in the source
## tree.
%!function folder = examples_folder ()
%!  here = fileparts (file_in_loadpath ("examples_test.m"));
%!  folder = fullfile (here, "..", "examples");
%!  if (! isfolder (folder))
%!    folder = fullfile (here, "..", "..", "examples");
%!  endif
%!endfunction

%!test
%! examples = examples_folder ();
%! out = evalc ("run (fullfile (examples, 'fir_filter.m'))");
%! assert (! isempty (strfind (out, "bit-true against the int64 model: identical")));
%! assert (! isempty (strfind (out, "largest difference from the double-precision filter: 0")));

## The narrow accumulator overflows and says so; the wide one neither overflows nor differs
## from the double-precision filter; logging is off again afterwards.
%!test
%! examples = examples_folder ();
%! out = evalc ("run (fullfile (examples, 'fir_overflow_logging.m'))");
%! narrow = regexp (out, "narrow accumulator: (\\d+) overflows", "tokens", "once");
%! assert (str2double (narrow{1}) > 0);
%! assert (! isempty (strfind (out, "warning fi:overflow: ")));
%! wide = out(strfind (out, "wide accumulator s40,27"):end);
%! assert (! isempty (strfind (wide, "wide accumulator: 0 overflows")));
%! assert (! isempty (strfind (wide, "largest difference from the double-precision filter: 0")));
%! assert ({fipref().LoggingMode, fi(1).Logging}, {"off", false});

## The sweep finds about 6 dB per bit, and writes its plot where it is told when gnuplot
## can print.
%!test
%! examples = examples_folder ();
%! plot_folder = tempname ();
%! mkdir (plot_folder);
%! unwind_protect
%!   out = evalc ("run (fullfile (examples, 'iir_wordlength_sweep.m'))");
%!   assert (! isempty (strfind (out, "SNR grows by about 6 dB per bit: yes")));
%!   file = fullfile (plot_folder, "iir_snr.png");
%!   if (system ("gnuplot --version > /dev/null 2>&1") == 0)
%!     assert (! isempty (strfind (out, ["plot written: " file])));
%!     assert (isfile (file));
%!   endif
%! unwind_protect_cleanup
%!   confirm_recursive_rmdir (false, "local");
%!   rmdir (plot_folder, "s");
%! end_unwind_protect

## The NCO's phase accumulator wraps, and its CORDIC outputs stay within 22 steps of 2^-22.
%!test
%! examples = examples_folder ();
%! out = evalc ("run (fullfile (examples, 'nco_24bit.m'))");
%! assert (! isempty (strfind (out, "phase accumulator s24,24 wraps modulo one turn: yes")));
%! assert (! isempty (strfind (out, "under floor equals bitsra (x, 5): yes")));
%! assert (! isempty (strfind (out, "within 22 steps: yes")));
