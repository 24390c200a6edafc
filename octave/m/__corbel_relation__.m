## -*- texinfo -*-
## @deftypefn {} {@var{t} =} __corbel_relation__ (@var{name}, @var{turned}, @var{a}, @var{b})
## The relation method @var{name} of @var{a} and @var{b}, at least one of them a fi: called on
## @var{a} when it is a fi, else as the turned relation @var{turned} on @var{b}.
## @end deftypefn

function t = __corbel_relation__ (name, turned, a, b)
  if (isa (a, "embedded.fi"))
    t = __corbel_call__ (name, a, b);
  else
    t = __corbel_call__ (turned, b, a);
  endif
endfunction
