## -*- texinfo -*-
## @deftypefn {} {@var{tf} =} isnumerictype (@var{x})
## False for anything but the object it names (whose own method answers true).
## @end deftypefn

function tf = isnumerictype (x)
  tf = false;
endfunction
