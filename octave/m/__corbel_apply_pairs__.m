## -*- texinfo -*-
## @deftypefn {} {[@var{T}, @var{F}, @var{rest}] =} __corbel_apply_pairs__ (@var{T}, @var{F}, @var{pairs})
## Internal: applies property/value pairs to a numerictype @var{T} and a fimath @var{F}
## (names matched without regard to case); pairs naming neither are returned in
## @var{rest} for the caller's own object.  A fraction length given to a type whose
## scaling is unspecified makes it binary-point scaled, and a slope or bias makes it
## slope-bias scaled, whatever the order of the pairs.
## @end deftypefn

function [T, F, rest] = __corbel_apply_pairs__ (T, F, pairs)
  if (mod (numel (pairs), 2) != 0)
    __corbel_error__ ("XoSetNeedsPairs");
  endif
  tnames = __corbel_properties__ ("embedded.numerictype");
  fnames = __corbel_properties__ ("embedded.fimath");
  rest = {};
  names = pairs(1:2:end);
  for k = 1:numel (names)
    if (! ischar (names{k}))
      __corbel_error__ ("XoSetNeedsName");
    endif
  endfor
  lowered = lower (names);
  if (strcmp (T.Scaling, "Unspecified"))
    if (any (ismember (lowered, {"slope", "bias", "slopeadjustmentfactor"})))
      T.DataTypeMode = "Fixed-point: slope and bias scaling";
    elseif (any (ismember (lowered, {"fractionlength", "binarypoint", "fixedexponent"})))
      T.DataTypeMode = "Fixed-point: binary point scaling";
    endif
  endif
  for k = 1:numel (names)
    value = pairs{2*k};
    it = find (strcmpi (names{k}, tnames), 1);
    if (! isempty (it))
      T.(tnames{it}) = value;
      continue;
    endif
    it = find (strcmpi (names{k}, fnames), 1);
    if (! isempty (it))
      F.(fnames{it}) = value;
      continue;
    endif
    rest(end+1:end+2) = {names{k}, value};
  endfor
endfunction
