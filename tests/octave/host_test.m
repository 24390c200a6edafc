## The host services as Octave users meet them: warnings, errors and their identifiers,
## the library's calls back into Octave, the built-in "set", and the gateways' own checks.

%!shared a
%! a = __corbel_new__ ("fi", 0.5);

## A library warning is an Octave warning with its identifier, obeys warning ('off', id)
## and warning ('error', id), and leaves the library in order either way.
%!test
%! id = "velkora:fi:maxlog:loggingoffandreset";
%! state = warning ("query", id);
%! unwind_protect
%!   lastwarn ("");
%!   warning ("off", "backtrace");
%!   evalc ("maxlog (a);");
%!   [msg, wid] = lastwarn ();
%!   assert (wid, id);
%!   assert (strncmp (msg, "Logging is turned off, and no values", 36));
%!   lastwarn ("");
%!   warning ("off", id);
%!   maxlog (a);
%!   assert (lastwarn (), "");
%!   warning ("error", id);
%!   try
%!     maxlog (a);
%!     error ("the warning did not become an error");
%!   catch err
%!     assert (err.identifier, id);
%!   end_try_catch
%!   assert (a.WordLength, 16);
%! unwind_protect_cleanup
%!   warning (state.state, id);
%!   warning ("on", "backtrace");
%! end_unwind_protect

## Text properties are evaluated by Octave: the value, then Octave's own errors with their
## identifiers, or the library's when Octave gives none (a parse error).
%!test
%! T = __corbel_new__ ("numerictype");
%! T.WordLengthString = "2^4 - 4";
%! assert (T.WordLength, 12);
%! try
%!   T.WordLengthString = "no_such_name_xyz";
%! catch err
%!   assert (err.identifier, "Octave:undefined-function");
%!   assert (strfind (err.message, "'no_such_name_xyz' undefined"), 1);
%! end_try_catch
%! try
%!   T.WordLengthString = "2 +";
%! catch err
%!   assert (err.identifier, "velkora:embedded:throw_last_error");
%!   assert (strncmp (err.message, "parse error", 11));
%! end_try_catch
%! [msg, id] = lasterr ();
%! assert (id, "velkora:embedded:throw_last_error");
%! assert (T.WordLength, 12);

## The built-in "set": listings printed or returned, failures with identifiers.
%!test
%! T = __corbel_new__ ("numerictype");
%! listing = set (T, "Scaling");
%! assert (listing, "[ BinaryPoint | SlopeBias | Unspecified | Unused ]");
%! assert (evalc ("set (T, 'Scaling')"), [listing "\n"]);
%! all = evalc ("set (T)");
%! first = "  DataTypeMode: [ boolean | single | double |";
%! assert (strncmp (all, first, numel (first)));
%! assert (! isempty (strfind (all, "\n  Signed\n  WordLength\n")));
%!error id=velkora:set:InvalidUse set (a, "WordLength", 8)
%!error <There is no property 'Nope' in class 'embedded.numerictype'>
%! set (__corbel_new__ ("numerictype"), "Nope");

## The gateways check their own inputs.
%!error id=velkora:xo:unknownClass __corbel_new__ ("nosuchclass")
%!error id=velkora:octave:needsName __corbel_new__ (3)
%!error id=velkora:octave:needsName __corbel_call__ ()
%!error id=velkora:xo:unknownMethod __corbel_call__ ("nosuchmethod", a)
%!error id=velkora:xo:notAnObject __corbel_call__ ("disp", 1)
%!error id=velkora:octave:needsObject __corbel_properties__ (1)
%!test
%! assert (__corbel_properties__ ("fimath")(1:2), {"RoundMode"; "OverflowMode"});
%! assert (__corbel_properties__ (a), __corbel_properties__ ("embedded.fi"));
%! assert (any (strcmp (__corbel_methods__ (a), "disp")));
%! assert (isfi (a));
%! [r] = __corbel_method__ ("isfi", 1, a);
%! assert (r, {true});
