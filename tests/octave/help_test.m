## The help texts: every user function and every method file prints a usage line, and
## lookfor finds the constructors.

## The names whose help has no usage line, or that have no help at all: as help prints it
## (rendered by makeinfo, about 0.2 s a name), or as its Texinfo source declares it.
%!function bad = without_usage (names, rendered)
%! bad = {};
%! for k = 1:numel (names)
%!   try
%!     if (rendered)
%!       ok = ! isempty (regexp (evalc (sprintf ("help ('%s')", names{k})), '^ -- ',
%!                               'lineanchors', 'once'));
%!     else
%!       [text, format] = get_help_text (names{k});
%!       ok = strcmp (format, "texinfo") && ! isempty (strfind (text, "@deftypefn"));
%!     endif
%!   catch
%!     ok = false;
%!   end_try_catch
%!   if (! ok)
%!     bad{end+1} = names{k};
%!   endif
%! endfor
%!endfunction

%!test
%! folder = fileparts (which ("fi"));
%! files = {dir(fullfile (folder, "*.m")).name};
%! names = regexprep (files(! strncmp (files, "__", 2)), '\.m$', '');
%! assert (numel (names) >= 4);
%! assert (strjoin (without_usage (names, true), " "), "");

## Methods: those the classes offer (but the operators, which have no file) and the
## M-files of the class folders.
%!test
%! folder = fileparts (which ("fi"));
%! operators = {"plus", "minus", "times", "mtimes", "uminus"};
%! names = {};
%! for c = {dir(fullfile (folder, "@embedded.*")).name}
%!   files = regexprep ({dir(fullfile (folder, c{1}, "*.m")).name}, '\.m$', '');
%!   methods = setdiff (__corbel_methods__ (c{1}(2:end))', operators);
%!   paths = strcat (c{1}, "/", union (methods, files));
%!   names = [names, paths];
%! endfor
%! assert (any (strcmp (names, "@embedded.fi/bitshift")));
%! assert (any (strcmp (names, "@embedded.quantizer/quantize")));
%! assert (strjoin (without_usage (names, false), " "), "");
%! assert (without_usage ({"@embedded.fi/bitshift", "@embedded.fimath/add"}, true), {});

%!test
%! text = evalc ("lookfor fixed-point");
%! for name = {"fi", "fimath", "numerictype", "quantizer"}
%!   assert (! isempty (regexp (text, ['^' name{1} '\s'], 'lineanchors', 'once')), name{1});
%! endfor
