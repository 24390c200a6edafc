## -*- texinfo -*-
## @deftypefn {} {@var{n} =} storedInteger (@var{a})
## The stored integers of the fi array @var{a} in the smallest built-in integer class that
## holds its word length (int8 ... int64, uint8 ... uint64), shaped like @var{a}; the same as
## @code{a.int}.  Words of more than 64 bits have their stored integers in @code{bin},
## @code{oct}, @code{dec} and @code{hex}.
## @end deftypefn

function n = storedInteger (a)
  n = int (a);
endfunction
