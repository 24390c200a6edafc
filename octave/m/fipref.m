classdef fipref < handle
## -*- texinfo -*-
## @deftypefn  {} {@var{p} =} fipref ()
## @deftypefnx {} {@var{p} =} fipref (@var{name}, @var{value}, @dots{})
## The fixed-point display and logging preferences of this Octave session.
##
## @var{p} is a handle: setting a property of it (or calling @code{fipref} with pairs)
## changes the preference for every fi value at once.
## @table @code
## @item NumberDisplay
## "RealWorldValue" (the values), "bin", "dec", "hex", "int" (the stored integers as that
## text or as integers), or "none".
## @item NumericTypeDisplay
## "full" (every numerictype property), "short" (@code{s16,13}: signedness, word length,
## fraction length), or "none".
## @item FimathDisplay
## "full" or "none".
## @item LoggingMode
## "on" or "off": whether fi operations count and report overflows and underflows (the
## switch every fi's Logging property also sets).
## @item DataTypeOverride
## "ForceOff" (fi values are what their type says), "ScaledDoubles" (new fixed-point fi
## values take DataType ScaledDouble: the same scaling, values kept as doubles, neither
## rounded nor overflowed, while logging counts what the fixed-point type would overflow),
## or "TrueDoubles" (new fixed-point fi values take DataType double and hold the doubles
## they are given).
## @end table
## @code{reset (p)} restores the defaults; @code{savefipref} keeps the current preferences
## for later sessions.
##
## @example
## p = fipref ("NumberDisplay", "hex", "NumericTypeDisplay", "short");
## a = fi (pi, 1, 16, 13)   % 6488, then s16,13
## reset (p);
## @end example
## @end deftypefn

  properties (Dependent)
    NumberDisplay
    NumericTypeDisplay
    FimathDisplay
    LoggingMode
    DataTypeOverride
  endproperties

  methods
    function p = fipref (varargin)
      if (mod (nargin, 2) != 0)
        print_usage ();
      endif
      for k = 1:2:nargin
        name = varargin{k};
        names = properties (p);
        match = strcmpi (names, name);
        if (! ischar (name) || ! any (match))
          __corbel_error__ ("UserFiprefName", num2str (name));
        endif
        p.(names{match}) = varargin{k+1};
      endfor
    endfunction

    function reset (p)
      __corbel_prefs__ ("defaults");
      p.LoggingMode = "off";
    endfunction

    function v = get.NumberDisplay (p)
      v = __corbel_prefs__ ().NumberDisplay;
    endfunction
    function set.NumberDisplay (p, v)
      store ("NumberDisplay", v, {"RealWorldValue", "bin", "dec", "hex", "int", "none"});
    endfunction
    function v = get.NumericTypeDisplay (p)
      v = __corbel_prefs__ ().NumericTypeDisplay;
    endfunction
    function set.NumericTypeDisplay (p, v)
      store ("NumericTypeDisplay", v, {"full", "short", "none"});
    endfunction
    function v = get.FimathDisplay (p)
      v = __corbel_prefs__ ().FimathDisplay;
    endfunction
    function set.FimathDisplay (p, v)
      store ("FimathDisplay", v, {"full", "none"});
    endfunction
    function v = get.DataTypeOverride (p)
      v = __corbel_prefs__ ().DataTypeOverride;
    endfunction
    function set.DataTypeOverride (p, v)
      store ("DataTypeOverride", v, {"ForceOff", "ScaledDoubles", "TrueDoubles"});
    endfunction
    function v = get.LoggingMode (p)
      if (__corbel_new__ ("embedded.CoreFi").Logging)
        v = "on";
      else
        v = "off";
      endif
    endfunction
    function set.LoggingMode (p, v)
      v = choose ("LoggingMode", v, {"on", "off"});
      switch_fi = __corbel_new__ ("embedded.CoreFi");
      switch_fi.Logging = strcmp (v, "on");
    endfunction
  endmethods
endclassdef

## The allowed value that v names, whatever its case.
function v = choose (name, v, allowed)
  match = ischar (v) && rows (v) <= 1 && any (strcmpi (allowed, v));
  if (! match)
    __corbel_error__ ("UserFiprefValue",
                      sprintf ("%s is one of %s", name, strjoin (allowed, ", ")));
  endif
  v = allowed{strcmpi (allowed, v)};
endfunction

function store (name, v, allowed)
  p = __corbel_prefs__ ();
  p.(name) = choose (name, v, allowed);
  __corbel_prefs__ (p);
endfunction
