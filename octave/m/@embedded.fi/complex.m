## -*- texinfo -*-
## @deftypefn  {} {@var{z} =} complex (@var{a})
## @deftypefnx {} {@var{z} =} complex (@var{a}, @var{b})
## The complex fi array with real part @var{a} and imaginary part @var{b} (zero when not
## given), in the numerictype and fimath of the first fi operand: @var{b}'s values are
## quantized into it.  Both parts must be real; a scalar part goes with every element of the
## other.
## @end deftypefn

function z = complex (a, b)
  if (nargin < 1 || nargin > 2)
    print_usage ();
  endif
  if (nargin == 1)
    b = 0;
  endif
  [a, b] = __corbel_same_type__ (a, b);
  z = binaryop_complex (a, b);
endfunction
