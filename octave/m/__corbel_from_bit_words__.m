## -*- texinfo -*-
## @deftypefn {} {@var{b} =} __corbel_from_bit_words__ (@var{words}, @var{s}, @var{w})
## The fi array of signedness @var{s}, word length @var{w} and fraction length 0 whose rows
## hold the bit patterns @var{words} (as __corbel_bit_words__ gives them).
## @end deftypefn

function b = __corbel_from_bit_words__ (words, s, w)
  b = fi (zeros (numel (words), numel (words{1})), s, w, 0);
  b.bin = char (cellfun (@(r) strjoin (r, "  "), words, "UniformOutput", false));
endfunction
