## -*- texinfo -*-
## @deftypefn {} {@var{words} =} __corbel_bit_words__ (@var{a})
## The two's-complement bit patterns of the fi array @var{a}, one cell row per row of
## @code{bin (a)}, each pattern a char row with its most significant bit first.
## @end deftypefn

function words = __corbel_bit_words__ (a)
  words = regexp (cellstr (bin (a)), '\S+', 'match');
endfunction
