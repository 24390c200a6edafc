## -*- texinfo -*-
## @deftypefn  {} {@var{b} =} bitsliceget (@var{a})
## @deftypefnx {} {@var{b} =} bitsliceget (@var{a}, @var{l}, @var{r})
## Bits @var{l} down to @var{r} (counted from 1 at the least significant bit; all of them by
## default) of the stored integers of the fi array @var{a}, as an unsigned integer fi of
## l - r + 1 bits.
## @end deftypefn

function b = bitsliceget (a, l, r)
  w = a.WordLength;
  if (nargin < 2)
    l = w;
  endif
  if (nargin < 3)
    r = 1;
  endif
  if (! (r >= 1 && r <= l && l <= w))
    error ("velkora:fi:bitsliceget:badRange",
           "Bit positions must satisfy 1 <= R <= L <= WordLength in BITSLICEGET(A,L,R).");
  endif
  words = __corbel_bit_words__ (a);
  for k = 1:numel (words)
    words{k} = cellfun (@(s) s(w-l+1:w-r+1), words{k}, "UniformOutput", false);
  endfor
  b = __corbel_from_bit_words__ (words, false, l - r + 1);
endfunction
