# The two everyday commands. Each installs what it needs first.
SHELL := /bin/bash
.PHONY: test demo bench package package-check reference fuzz valgrind bootstrap format

bootstrap:
	@scripts/bootstrap

# The unit tests and the Octave tests, then the unit tests again built with the address
# and undefined-behaviour sanitizers.
test: bootstrap
	cmake --preset dev
	cmake --build --preset dev
	ctest --preset dev
	cmake --preset asan
	cmake --build --preset asan
	ctest --preset asan

# Corbel in Octave first: fixed-point values, their arithmetic and the overflow log; a
# bit-true FIR, overflow logging, a word-length sweep of an IIR filter (its SNR plot goes to
# build/release/iir_snr.png) and a 24-bit NCO.
OCTAVE = octave-cli -H -q --no-window-system
demo: bootstrap
	cmake --preset release
	cmake --build --preset release
	$(OCTAVE) --eval "addpath ('$(CURDIR)/build/release/octave'); run ('examples/first_steps.m')"
	$(OCTAVE) --eval "addpath ('$(CURDIR)/build/release/octave'); run ('examples/fir_filter.m')"
	$(OCTAVE) --eval "addpath ('$(CURDIR)/build/release/octave'); run ('examples/fir_overflow_logging.m')"
	$(OCTAVE) --eval "addpath ('$(CURDIR)/build/release/octave'); plot_folder = '$(CURDIR)/build/release'; run ('examples/iir_wordlength_sweep.m')"
	$(OCTAVE) --eval "addpath ('$(CURDIR)/build/release/octave'); run ('examples/nco_24bit.m')"

# corbel-<version>.tar.gz for Octave's pkg install, and its check in a scratch prefix:
# install, load, pkg test, unload, uninstall.
package: bootstrap
	cmake --preset release
	cmake --build --preset release
	scripts/make_package build/release/octave .

package-check: package
	scripts/check_package corbel-$$(cat VERSION).tar.gz

# docs/reference/: a page per class (and one of the functions) from the help texts.
reference: bootstrap
	cmake --preset release
	cmake --build --preset release
	rm -f docs/reference/*.md
	$(OCTAVE) --eval "addpath ('$(CURDIR)/octave/tools'); write_reference ('$(CURDIR)/build/release/octave', '$(CURDIR)/docs/reference')"

# Every fuzzer for FUZZ_SECONDS, starting from its corpus in fuzz/corpus/ (what it finds
# new goes to build/fuzz/corpus/; a crashing input to build/fuzz/ and the run fails).
FUZZ_SECONDS ?= 60
fuzz: bootstrap
	cmake --preset fuzz
	cmake --build --preset fuzz
	for f in fuzz/*_fuzzer.cpp; do \
	  n=$$(basename $$f _fuzzer.cpp); echo "== $$n"; mkdir -p build/fuzz/corpus/$$n fuzz/corpus/$$n; \
	  LSAN_OPTIONS=suppressions=fuzz/lsan.supp build/fuzz/$${n}_fuzzer build/fuzz/corpus/$$n fuzz/corpus/$$n \
	    -max_total_time=$(FUZZ_SECONDS) -print_final_stats=1 -artifact_prefix=build/fuzz/ \
	    2>&1 | grep -E "^(#[0-9]+ +DONE|Done|stat::number_of_executed_units|==[0-9]+==|SUMMARY)"; \
	  test $${PIPESTATUS[0]} -eq 0 || exit 1; \
	done

# The Octave tests under valgrind (about half an hour): fails on any invalid memory access
# and on memory definitely lost, apart from Octave's own (tests/valgrind/octave.supp). The
# full report goes to build/valgrind.log.
valgrind: bootstrap
	cmake --preset dev
	cmake --build --preset dev
	valgrind --leak-check=full --show-leak-kinds=definite --errors-for-leak-kinds=definite \
	  --error-exitcode=1 --suppressions=tests/valgrind/octave.supp --log-file=build/valgrind.log \
	  $(OCTAVE) --eval "addpath ('$(CURDIR)/build/dev/octave'); addpath ('$(CURDIR)/tests/octave'); run_tests ('$(CURDIR)/tests/octave')"; \
	  status=$$?; grep -E "definitely lost|ERROR SUMMARY" build/valgrind.log; exit $$status

bench: bootstrap
	cmake --preset release
	cmake --build --preset release
	for b in build/release/bench_*; do $$b --benchmark_min_time=1; done
	$(OCTAVE) --eval "addpath ('$(CURDIR)/build/release/octave'); run ('bench/octave_arith.m')"

format:
	clang-format -i $$(git ls-files '*.cpp' '*.h')
