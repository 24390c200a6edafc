## -*- texinfo -*-
## @deftypefn  {} {@var{a} =} fi (@var{v})
## @deftypefnx {} {@var{a} =} fi (@var{v}, @var{s}, @var{w}, @var{f})
## A fixed-point array holding the values @var{v}.
##
## @code{fi (v)} is signed with 16 bits and the fraction length that holds the largest
## magnitude of @var{v} best; @code{fi (v, s)}, @code{fi (v, s, w)} do the same for the
## given signedness and word length; @code{fi (v, s, w, f)} sets the fraction length and
## @code{fi (v, s, w, slope, bias)} a slope and bias.  @code{fi (v, T)}, @code{fi (v, T, F)}
## and @code{fi (v, F)} take a numerictype @var{T} and a fimath @var{F}.  Each form may be
## followed by property/value pairs of the numerictype and the fimath, for example
## @code{fi (pi, 1, 8, 'RoundMode', 'floor', 'OverflowMode', 'wrap')}.  @var{v} may be any
## real or complex numeric or logical array, or a fi, whose exact values are carried into the
## new type (its own numerictype and fimath unless others are given).
## @end deftypefn

function a = fi (varargin)
  if (nargin == 0)
    a = __corbel_new__ ("embedded.CoreFi");
    return;
  endif
  v = varargin{1};
  if (islogical (v))
    v = double (v);
  endif
  npos = 1;
  while (npos < nargin && ! ischar (varargin{npos+1}))
    npos++;
  endwhile
  pos = varargin(2:npos);
  pairs = varargin(npos+1:end);

  T = [];
  F = [];
  nums = {};
  for k = 1:numel (pos)
    if (isa (pos{k}, "embedded.numerictype"))
      T = pos{k};
    elseif (isa (pos{k}, "embedded.fimath"))
      F = pos{k};
    else
      nums{end+1} = pos{k};
    endif
  endfor
  ## A fi value keeps its own numerictype and fimath unless others are given.
  if (isempty (T) && isempty (nums) && isfi (v))
    T = numerictype (v);
  elseif (isempty (T))
    T = __corbel_numerictype_from__ (nums{:});
  elseif (! isempty (nums))
    __corbel_error__ ("UserTypeAndScaling");
  endif
  if (isempty (F) && isfi (v))
    F = fimath (v);
  elseif (isempty (F))
    F = __corbel_new__ ("embedded.fimath");
  endif

  [T, F, rest] = __corbel_apply_pairs__ (T, F, pairs);
  ## fipref's DataTypeOverride turns new fixed-point values into scaled or true doubles.
  switch (__corbel_prefs__ ().DataTypeOverride)
    case "ScaledDoubles"
      if (strcmp (T.DataType, "Fixed"))
        T.DataType = "ScaledDouble";
      endif
    case "TrueDoubles"
      if (any (strcmp (T.DataType, {"Fixed", "ScaledDouble"})))
        T.DataType = "double";
      endif
  endswitch
  if (isfi (v))
    ## The type (with the best precision for the values, when it has no scaling yet), then
    ## the exact values carried into it.
    a = __corbel_new__ ("embedded.CoreFi", double (v), T, F);
    if (! isempty (v))
      a(:) = v;
    endif
  else
    a = __corbel_new__ ("embedded.CoreFi", v, T, F);
  endif
  for k = 1:2:numel (rest)
    a.(rest{k}) = rest{k+1};
  endfor
endfunction
