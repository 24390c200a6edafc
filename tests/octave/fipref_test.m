## fipref: each display mode changes what a fi shows; logging and the data-type override
## reach new values; savefipref carries the preferences into a new session. Every test
## restores the defaults.

%!shared a
%! a = fi (pi, 1, 16, 13);              % stored integer 25736, 0x6488

%!function tf = shows (x, text)
%!  tf = ! isempty (strfind (disp (x), text));
%!endfunction

%!function s = short (x)
%!  s = strtrim (disp (x));
%!endfunction

%!test
%! p = fipref ();
%! unwind_protect
%!   assert ([shows(a, "3.1416"), shows(a, "WordLength: 16"), shows(a, "RoundMode: nearest")]);
%!   modes = {"hex", "6488"; "bin", "0110010010001000"; "dec", "25736"; "int", "25736"};
%!   for k = 1:rows (modes)
%!     p.NumberDisplay = modes{k, 1};
%!     assert ([shows(a, modes{k, 2}), ! shows(a, "3.1416"), shows(a, "WordLength: 16")]);
%!   endfor
%!   assert (disp (fi (0.5, "DataType", "double"))(1:10), "   0.5000\n");
%!   fipref ("NumberDisplay", "none", "NumericTypeDisplay", "short", "FimathDisplay", "none");
%!   assert ({short(a), short(fi (1, 0, 8, 2, 3)), short(fi (1, "DataType", "ScaledDouble")), ...
%!            short(fi (1, "DataType", "double"))},
%!           {"s16,13", "u8, slope 2, bias 3", "s16,14 (scaled double)", "double"});
%!   p.NumericTypeDisplay = "none";
%!   assert (disp (a), "");
%!   s.x = a;                                     % inside a struct as well
%!   p.NumberDisplay = "hex";
%!   assert (! isempty (strfind (evalc ("s"), "6488")));
%! unwind_protect_cleanup
%!   reset (fipref ());
%! end_unwind_protect

## LoggingMode is the switch of every fi's Logging property: on, overflows warn.
%!test
%! unwind_protect
%!   fipref ("LoggingMode", "on");
%!   y = fi ([0 0], 1, 8, 4);
%!   lastwarn ("");
%!   y(1) = 100;
%!   assert (lastwarn (), "1 overflow occurred in the fi assignment operation.");
%!   fipref ("LoggingMode", "off");
%!   lastwarn ("");
%!   y(1) = 100;
%!   assert ({lastwarn(), y.Logging}, {"", false});
%!   y.Logging = true;
%!   assert (fipref ().LoggingMode, "on");
%! unwind_protect_cleanup
%!   reset (fipref ());
%! end_unwind_protect

## DataTypeOverride applies to new fixed-point values only.
%!test
%! p = fipref ();
%! unwind_protect
%!   p.DataTypeOverride = "TrueDoubles";
%!   t = fi (pi, 1, 8, 5);
%!   assert ({t.DataType, double(t)}, {"double", pi});
%!   p.DataTypeOverride = "ScaledDoubles";
%!   s = fi (pi, 1, 8, 5);
%!   assert ({s.DataType, s.WordLength, s.FractionLength}, {"ScaledDouble", 8, 5});
%!   assert (fi (1, "DataType", "single").DataType, "single");
%!   p.DataTypeOverride = "ForceOff";
%!   assert (double (fi (pi, 1, 8, 5)), 3.15625);
%! unwind_protect_cleanup
%!   reset (fipref ());
%! end_unwind_protect

## savefipref: a new session starts with the saved preferences.
%!test
%! file = tempname ();
%! setenv ("CORBEL_FIPREF_FILE", file);
%! unwind_protect
%!   fipref ("NumericTypeDisplay", "short", "FimathDisplay", "none");
%!   savefipref ();
%!   reset (fipref ());
%!   ## The M-files and corbel.oct: one folder in a build, two in an installed package.
%!   folders = unique ({fileparts(which ("fi")), fileparts(which ("__corbel_new__"))});
%!   [status, out] = system (sprintf (
%!     "octave-cli -H -q --eval \"addpath ('%s'); disp (fi (pi, 1, 16, 13))\"",
%!     strjoin (folders, "', '")));
%!   assert (status, 0);
%!   assert (strtrim (out), "3.1416\n\n      s16,13");
%! unwind_protect_cleanup
%!   reset (fipref ());
%!   unsetenv ("CORBEL_FIPREF_FILE");
%!   unlink (file);
%! end_unwind_protect

## A bad name or value is refused and changes nothing.
%!test
%! p = fipref ();
%! try
%!   p.NumberDisplay = "octal";
%! catch err
%!   assert (err.identifier, "velkora:fipref:badValue");
%! end_try_catch
%! assert (p.NumberDisplay, "RealWorldValue");
%!error id=velkora:fipref:badValue fipref ("FimathDisplay", 3)
%!error id=velkora:fipref:badName fipref ("Display", "hex")
%!error <The fipref setting NumberDisplay is one of RealWorldValue, bin, dec, hex, int, none.> fipref ("NumberDisplay", "x")
