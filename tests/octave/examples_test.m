## The example scripts run and reach their own checks.

%!test
%! here = fileparts (file_in_loadpath ("examples_test.m"));
%! out = evalc ("run (fullfile (here, '..', '..', 'examples', 'fir_filter.m'))");
%! assert (! isempty (strfind (out, "bit-true against the int64 model: identical")));
%! assert (! isempty (strfind (out, "largest difference from the double-precision filter: 0")));
