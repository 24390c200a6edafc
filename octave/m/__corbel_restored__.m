## -*- texinfo -*-
## @deftypefn {} {@var{x} =} __corbel_restored__ (@var{s})
## The Corbel value that @code{load} reads back: the inverse of @code{__corbel_saved__}.
## @end deftypefn

function x = __corbel_restored__ (s)
  switch (s.class)
    case "embedded.numerictype"
      x = restored_type (s.type);
    case "embedded.fimath"
      x = restored_fimath (s.fimath);
    case "embedded.fi"
      T = restored_type (s.type);
      F = restored_fimath (s.fimath);
      if (! strcmp (T.DataType, "Fixed"))
        x = fi (s.values, T, F);
        return;
      endif
      x = fi (zeros (s.size), T, F);
      if (s.complex)
        ## Nonzero imaginary parts, so that x stays complex until the text replaces them.
        top = upperbound (x);
        x = complex (x, top(ones (s.size)));
      endif
      if (! isempty (x))
        x.hex = s.values;
      endif
    case "embedded.quantizer"
      x = quantizer (s.quantizer{:});
    otherwise
      __corbel_error__ ("OctaveSaveNotSupported", s.class);
  endswitch
endfunction

## The fields are set in the order they were saved in (an HDF5 file may list them in
## another), the data type mode before the scaling it allows.
function T = restored_type (f)
  T = restored (numerictype (), f, __corbel_saved__ ("type fields"));
endfunction

function F = restored_fimath (f)
  F = restored (fimath (), f, __corbel_saved__ ("fimath fields"));
endfunction

function x = restored (x, f, order)
  for name = order
    if (isfield (f, name{1}))
      x.(name{1}) = f.(name{1});
    endif
  endfor
endfunction
