## -*- texinfo -*-
## @deftypefn {} {@var{s} =} __corbel_saved__ (@var{x})
## What @code{save} writes for the Corbel value @var{x}: a struct of built-in values from
## which @code{__corbel_restored__} makes an equal value.  A fi keeps its numerictype, its
## fimath, its size and its values exactly: the stored integers as hex text for a
## fixed-point type (every word length), the doubles otherwise.
## @end deftypefn

function s = __corbel_saved__ (x)
  if (ischar (x))
    ## The fields of a numerictype or fimath, in the order they are set back.
    s = merge (strcmp (x, "type fields"), type_order (), fimath_order ());
    return;
  endif
  s.class = class (x);
  switch (s.class)
    case "embedded.numerictype"
      s.type = type_fields (x);
    case "embedded.fimath"
      s.fimath = fimath_fields (x);
    case "embedded.fi"
      T = numerictype (x);
      s.type = type_fields (T);
      s.fimath = fimath_fields (fimath (x));
      s.size = size (x);
      s.complex = ! isreal (x);
      if (strcmp (T.DataType, "Fixed"))
        s.values = x.hex;
      else
        s.values = double (x);
      endif
    case "embedded.quantizer"
      s.quantizer = {x.mode, x.roundmode, x.overflowmode, x.format};
    otherwise
      __corbel_error__ ("OctaveSaveNotSupported", s.class);
  endswitch
endfunction

function names = type_order ()
  names = {"DataTypeMode", "Signed", "WordLength", "FixedExponent", ...
           "SlopeAdjustmentFactor", "Bias"};
endfunction

## Floating and boolean types have only their mode; unspecified scaling has no scaling.
function f = type_fields (T)
  names = type_order ();
  if (! any (strcmp (T.DataType, {"Fixed", "ScaledDouble"})))
    names = names(1);
  elseif (strcmp (T.Scaling, "Unspecified"))
    names = names(1:3);
  endif
  for name = names
    f.(name{1}) = T.(name{1});
  endfor
endfunction

function names = fimath_order ()
  names = {"RoundMode", "OverflowMode", "ProductMode", "ProductWordLength", ...
           "MaxProductWordLength", "ProductFixedExponent", "ProductSlopeAdjustmentFactor", ...
           "ProductBias", "SumMode", "SumWordLength", "MaxSumWordLength", ...
           "SumFixedExponent", "SumSlopeAdjustmentFactor", "SumBias", "CastBeforeSum"};
endfunction

function f = fimath_fields (F)
  for name = fimath_order ()
    f.(name{1}) = F.(name{1});
  endfor
endfunction
