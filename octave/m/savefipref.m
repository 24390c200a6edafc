## -*- texinfo -*-
## @deftypefn {} {} savefipref ()
## Keep the current fixed-point display preferences of @code{fipref} for later Octave
## sessions: the first fi display or construction of a session takes them back.  They are
## written to @file{.corbel_fipref} in @code{prefdir}, or to the file the environment
## variable CORBEL_FIPREF_FILE names.  LoggingMode is not kept: each session starts with
## logging off.
##
## @example
## fipref ("NumericTypeDisplay", "short");
## savefipref ();
## @end example
## @end deftypefn

function savefipref ()
  p = __corbel_prefs__ ();
  save ("-text", __corbel_prefs__ ("file"), "-struct", "p");
endfunction
