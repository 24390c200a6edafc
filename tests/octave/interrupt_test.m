## Ctrl-C during a long fi operation: a second, interactive Octave session sends itself the
## interrupt a second into a 300-bit matrix product (about 18 s uninterrupted here), by the
## operator and by the method's name. The session must come back to its prompt with no
## result assigned (uninterrupted, the product would have been), the operand as it was, no
## Corbel instance left alive, and the same product still working afterwards.

%!test
%! folders = unique ({fileparts(which ("fi")), fileparts(which ("__corbel_new__"))});
%! session = {
%!   sprintf("addpath ('%s');", strjoin (folders, "', '"))
%!   "F = fimath ('ProductMode', 'SpecifyPrecision', 'ProductWordLength', 300, 'ProductFractionLength', 150, 'SumMode', 'SpecifyPrecision', 'SumWordLength', 300, 'SumFractionLength', 150, 'MaxProductWordLength', 65535, 'MaxSumWordLength', 65535);"
%!   "a = fi (magic (300) / 1e5, 1, 300, 150, F); before = hex (a); live = __corbel_live__ ();"
%!   "interrupt = @() system (sprintf ('sleep 1; kill -INT %d', getpid ()), false, 'async');"
%!   "interrupt (); b = a * a;"
%!   "printf ('operator: %d %d %d\\n', exist ('b'), isequal (hex (a), before), __corbel_live__ () - live);"
%!   "interrupt (); b = mtimes (a, a);"
%!   "printf ('method: %d %d %d\\n', exist ('b'), isequal (hex (a), before), __corbel_live__ () - live);"
%!   "c = a(1:2, 1:2) * a(1:2, 1:2); printf ('after: %s\\n', mat2str (double (c), 6));"
%! };
%! file = [tempname() ".m"];
%! fid = fopen (file, "w");
%! fprintf (fid, "%s\n", session{:});
%! fclose (fid);
%! unwind_protect
%!   [status, out] = system (sprintf (
%!     "octave-cli -H -q --interactive --no-line-editing < '%s' 2>&1", file));
%! unwind_protect_cleanup
%!   unlink (file);
%! end_unwind_protect
%! assert (status, 0);
%! ## Each line: b not assigned, a unchanged, no instance left.
%! assert (! isempty (strfind (out, "operator: 0 1 0")), out);
%! assert (! isempty (strfind (out, "method: 0 1 0")), out);
%! assert (! isempty (strfind (out, "after: [0.81 3.59398e-05;0.00540894 0.804591]")), out);
