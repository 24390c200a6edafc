## -*- texinfo -*-
## @deftypefn  {} {@var{p} =} __corbel_prefs__ ()
## @deftypefnx {} {@var{p} =} __corbel_prefs__ (@var{p})
## @deftypefnx {} {@var{p} =} __corbel_prefs__ ("defaults")
## The display and override preferences of this session, as a struct with the fields
## NumberDisplay, NumericTypeDisplay, FimathDisplay and DataTypeOverride; with an argument,
## set them first.  The first call of a session takes those saved by @code{savefipref},
## from the file @code{__corbel_prefs__ ("file")} names.
## @end deftypefn

function p = __corbel_prefs__ (set)
  persistent current;
  if (nargin == 1 && ischar (set) && strcmp (set, "file"))
    p = getenv ("CORBEL_FIPREF_FILE");
    if (isempty (p))
      p = fullfile (prefdir (), ".corbel_fipref");
    endif
    return;
  endif
  if (isempty (current))
    current = defaults ();
    file = __corbel_prefs__ ("file");
    if (isfile (file))
      try
        saved = load (file);
        for name = fieldnames (current).'
          if (isfield (saved, name{1}))
            current.(name{1}) = saved.(name{1});
          endif
        endfor
      catch
        ## An unreadable file leaves the defaults.
      end_try_catch
    endif
  endif
  if (nargin == 1)
    if (ischar (set))
      current = defaults ();
    else
      current = set;
    endif
  endif
  p = current;
endfunction

function p = defaults ()
  p = struct ("NumberDisplay", "RealWorldValue", "NumericTypeDisplay", "full",
              "FimathDisplay", "full", "DataTypeOverride", "ForceOff");
endfunction
