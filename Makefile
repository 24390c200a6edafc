# The two everyday commands. Each installs what it needs first.
.PHONY: test demo bench bootstrap format

bootstrap:
	@scripts/bootstrap

# The unit tests, then the same tests built with the address and undefined-behaviour
# sanitizers.
test: bootstrap
	cmake --preset dev
	cmake --build --preset dev
	ctest --preset dev
	cmake --preset asan
	cmake --build --preset asan
	ctest --preset asan

demo: bootstrap
	cmake --preset release
	cmake --build --preset release --target exact_numbers fixed_point_arrays
	./build/release/exact_numbers
	@echo
	./build/release/fixed_point_arrays

bench: bootstrap
	cmake --preset release
	cmake --build --preset release
	for b in build/release/bench_*; do $$b --benchmark_min_time=1; done

format:
	clang-format -i $$(git ls-files '*.cpp' '*.h')
