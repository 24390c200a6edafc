## -*- texinfo -*-
## @deftypefn {} {@var{tf} =} isfi (@var{x})
## False for anything but the object it names (whose own method answers true).
## @end deftypefn

function tf = isfi (x)
  tf = false;
endfunction
