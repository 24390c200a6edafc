## -*- texinfo -*-
## @deftypefn {} {@var{b} =} __corbel_map_bits__ (@var{a}, @var{f})
## A copy of the fi array @var{a} whose every stored-integer bit pattern (a char row, most
## significant bit first) is replaced by @code{f (pattern)} of the same length.
## @end deftypefn

function b = __corbel_map_bits__ (a, f)
  words = __corbel_bit_words__ (a);
  for r = 1:numel (words)
    words{r} = cellfun (f, words{r}, "UniformOutput", false);
  endfor
  b = a;
  b.bin = char (cellfun (@(r) strjoin (r, "  "), words, "UniformOutput", false));
endfunction
