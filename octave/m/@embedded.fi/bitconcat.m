## -*- texinfo -*-
## @deftypefn {} {@var{c} =} bitconcat (@var{a}, @var{b}, @dots{})
## The stored-integer bits of the fi arrays @var{a}, @var{b}, @dots{} (of one shape, or
## scalars) joined, @var{a}'s bits most significant, as an unsigned integer fi whose word
## length is the sum of theirs.
## @end deftypefn

function c = bitconcat (varargin)
  words = __corbel_bit_words__ (varargin{1});
  w = varargin{1}.WordLength;
  for k = 2:nargin
    more = __corbel_bit_words__ (varargin{k});
    if (isscalar (varargin{k}))
      more = cellfun (@(r) repmat (more{1}(1), size (r)), words, "UniformOutput", false);
    elseif (numel (words) == 1 && numel (words{1}) == 1)
      words = cellfun (@(r) repmat (words{1}(1), size (r)), more, "UniformOutput", false);
    endif
    if (! isequal (cellfun (@numel, words), cellfun (@numel, more)))
      error ("velkora:fi:bitconcat:sizeMismatch", "Inputs must have the same size.");
    endif
    words = cellfun (@(x, y) strcat (x, y), words, more, "UniformOutput", false);
    w += varargin{k}.WordLength;
  endfor
  c = __corbel_from_bit_words__ (words, false, w);
endfunction
