## -*- texinfo -*-
## @deftypefn {} {@var{tf} =} isfimath (@var{x})
## False for anything but the object it names (whose own method answers true).
## @end deftypefn

function tf = isfimath (x)
  tf = false;
endfunction
