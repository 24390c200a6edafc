## save and load of fi, numerictype, fimath and quantizer values, in every file format, give
## back equal values: the stored integers exactly at every word length, real and complex,
## with their numerictype and fimath; inside structs and cells too.

%!function tf = same (a, b)
%!  tf = strcmp (class (a), class (b));
%!  if (! tf)
%!    return;
%!  elseif (iscell (a))
%!    tf = all (cellfun (@same, a, b));
%!  elseif (isstruct (a))
%!    tf = same (struct2cell (a), struct2cell (b));
%!  elseif (isa (a, "embedded.fi"))
%!    tf = isequal (numerictype (a), numerictype (b)) && isequal (fimath (a), fimath (b)) ...
%!         && isequal (size (a), size (b)) && isreal (a) == isreal (b);
%!    if (strcmp (a.DataType, "Fixed"))
%!      tf = tf && isequal (a.hex, b.hex);
%!    else
%!      tf = tf && isequal (double (a), double (b));
%!    endif
%!  elseif (isa (a, "embedded.quantizer"))
%!    tf = isequal ({a.mode, a.roundmode, a.overflowmode, a.format},
%!                  {b.mode, b.roundmode, b.overflowmode, b.format});
%!  else
%!    tf = isequal (a, b);
%!  endif
%!endfunction

%!test
%! rand ("seed", 11);
%! F = fimath ("RoundMode", "floor", "OverflowMode", "wrap", "SumMode", "KeepMSB");
%! v = struct ();
%! for w = [8 53 100 1000]
%!   x = (rand (2, 3) - 0.5) * 3;
%!   v.(sprintf ("r%d", w)) = fi (x, 1, w, w - 3, F);
%!   v.(sprintf ("c%d", w)) = fi (x + 1i * fliplr (x), 0, w, w - 4);
%! endfor
%! v.empty = fi (zeros (0, 3), 1, 8, 3);
%! v.slope = fi ([1 2 3], 0, 8, 0.25, -1);
%! v.floating = fi ([pi; 1/3], "DataType", "double");
%! v.scaled = fi (pi, 1, 12, 9, "DataType", "ScaledDouble");
%! v.type = numerictype (1, 24, 2^-10, 0.5);
%! v.unspecified = numerictype (0, 8);
%! v.fimath = F;
%! v.quantizer = quantizer ("float", "convergent", [20 6]);
%! v.nested = {fi(0.25, 0, 4, 3), struct("f", fi(-1i, 1, 70, 60))};
%! names = fieldnames (v);
%! for format = {"-text", "-binary", "-hdf5"}
%!   file = tempname ();
%!   unwind_protect
%!     save (format{1}, file, "-struct", "v");
%!     r = load (file);
%!   unwind_protect_cleanup
%!     unlink (file);
%!   end_unwind_protect
%!   for k = 1:numel (names)
%!     assert (same (r.(names{k}), v.(names{k})), true, [format{1} " " names{k}]);
%!   endfor
%! endfor
