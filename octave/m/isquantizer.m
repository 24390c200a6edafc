## -*- texinfo -*-
## @deftypefn {} {@var{tf} =} isquantizer (@var{x})
## False for anything but the object it names (whose own method answers true).
## @end deftypefn

function tf = isquantizer (x)
  tf = false;
endfunction
