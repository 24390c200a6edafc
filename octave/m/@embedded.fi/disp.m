## -*- texinfo -*-
## @deftypefn  {} {} disp (@var{a})
## @deftypefnx {} {@var{str} =} disp (@var{a})
## Print the fixed-point array @var{a} without its name: its values, then its numerictype,
## then its fimath, each as @code{fipref} says; with an output, return that text instead.
##
## @example
## disp (fi (0.75, 1, 8, 6))   % 0.7500, then the numerictype and the fimath
## @end example
## @end deftypefn

function str = disp (a)
  if (nargout > 0)
    str = evalc ("__corbel_show__ (a)");
  else
    __corbel_show__ (a);
  endif
endfunction
