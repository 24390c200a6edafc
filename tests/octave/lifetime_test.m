## Lifetime: every instance is freed with its last Octave value, whatever held it, and values
## outlive 'clear functions'.

%!test
%! base = __corbel_live__ ();
%! a = __corbel_new__ ("fi", 0.5);
%! for k = 1:1e5
%!   b = __corbel_new__ ("fi", 0.25);
%!   c = a + b;
%!   c.WordLength = 8;
%! end
%! assert (__corbel_live__ () - base, 3);
%! clear b c
%! s.f = a;  s.g = {a, a.fimath};
%! t = s;  t.f.WordLength = 4;
%! F = a.fimath;
%! clear a s t F
%! assert (__corbel_live__ (), base);

%!test
%! a = __corbel_new__ ("fi", 0.5);
%! clear functions
%! assert (a.WordLength, 16);
%! b = a + a;
%! assert (b.WordLength, 17);
%! assert (class (b), "embedded.fi");
