## write_reference (folder, out)
## Writes the reference pages of the Octave functions in the built folder: out/functions.md
## for the user functions and out/<class>.md for each class, each entry the help text of
## one function or method as help prints it.
function write_reference (folder, out)
  addpath (folder);
  files = {dir(fullfile (folder, "*.m")).name};
  names = regexprep (files(! strncmp (files, "__", 2)), '\.m$', '');
  page (fullfile (out, "functions.md"), "Corbel functions", names);
  for c = {dir(fullfile (folder, "@embedded.*")).name}
    files = {dir(fullfile (folder, c{1}, "*.m")).name};
    if (isempty (files))
      continue;
    endif
    methods = strcat (c{1}, "/", regexprep (sort (files), '\.m$', ''));
    page (fullfile (out, [c{1}(2:end) ".md"]), ["Methods of " c{1}(2:end)], methods);
  endfor
endfunction

function page (file, title, names)
  fid = fopen (file, "w");
  fprintf (fid, "# %s\n\nWritten by `make reference` from the help texts; `help NAME` in Octave\nprints the same.\n", title);
  for k = 1:numel (names)
    [text, format] = get_help_text (names{k});
    if (strcmp (format, "texinfo"))
      text = __makeinfo__ (text, "plain text");
    endif
    text = regexprep (text, '^\n+|\s+$', '');
    fprintf (fid, "\n## %s\n\n```\n%s\n```\n", names{k}, text);
  endfor
  fclose (fid);
endfunction
