## The example scripts run and reach their own checks.

%!test
%! here = fileparts (file_in_loadpath ("examples_test.m"));
%! examples = fullfile (here, "..", "examples");          % in the installed package
%! if (! isfolder (examples))
%!   examples = fullfile (here, "..", "..", "examples");  % in the source tree
%! endif
%! out = evalc ("run (fullfile (examples, 'fir_filter.m'))");
%! assert (! isempty (strfind (out, "bit-true against the int64 model: identical")));
%! assert (! isempty (strfind (out, "largest difference from the double-precision filter: 0")));
