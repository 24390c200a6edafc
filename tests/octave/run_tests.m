## run_tests (folder)
## Runs the test blocks of every *_test.m file in folder, prints each file's counts and a
## final line "N passed, N failed", and exits Octave with status 1 when a test failed.
## Known failures (%!xtest) count as neither; a test file that cannot run counts as failed,
## and so does one after which more Corbel instances are alive than before it.
function run_tests (folder)
  files = dir (fullfile (folder, "*_test.m"));
  passed = 0;
  failed = 0;
  for k = 1:numel (files)
    file = fullfile (folder, files(k).name);
    live = __corbel_live__ ();
    try
      [n, nmax, nxfail] = test (file, "quiet", stdout);
    catch err
      printf ("%s: %s\n", files(k).name, err.message);
      n = 0; nmax = 1; nxfail = 0;
    end_try_catch
    left = __corbel_live__ () - live;
    if (left != 0)
      printf ("%s: %d Corbel instances more alive than before it\n", files(k).name, left);
      nmax += 1;
    endif
    printf ("%-28s %d of %d\n", files(k).name, n, nmax - nxfail);
    passed += n;
    failed += nmax - nxfail - n;
  endfor
  if (isempty (files))
    failed = 1;
    printf ("no *_test.m files in %s\n", folder);
  endif
  printf ("%d passed, %d failed\n", passed, failed);
  exit (failed > 0);
endfunction
