#!/usr/bin/env bash
# Sets up like run.sh, then runs every test: the whole suite of the normal build, a short run of the
# benchmarks, each fuzz target for 20 seconds (SKYLANTRA_FUZZ_SECONDS), and the core tests once more
# under AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
cd "$root"
started=$SECONDS

fail() {
    echo >&2
    echo "FAILED: $1" >&2
    exit 1
}

"$root/scripts/setup.sh" || fail "set-up or build of the normal build"

echo "== Tests (normal build)"
ctest --test-dir build --output-on-failure -j2 || fail "tests of the normal build (see the output above)"

echo "== Benchmarks (a short run, to prove they work)"
./build/bench/core_bench --benchmark_min_time=0.01 >/dev/null || fail "the core benchmarks did not run"
xvfb-run -a -s "-screen 0 1280x1024x24" ./build/bench/map_bench --benchmark_min_time=0.01 >/dev/null 2>&1 \
    || fail "the map benchmarks did not run"
./build/bench/store_bench --benchmark_filter='hours:2/|Split' --benchmark_min_time=0.01 >/dev/null \
    || fail "the history benchmarks did not run"
./build/bench/soak_bench --benchmark_filter='downloads:100/' >/dev/null || fail "the soak benchmark did not run"

echo "== Fuzzing (libFuzzer, each target for a short while)"
"$root/scripts/fuzz.sh" "${SKYLANTRA_FUZZ_SECONDS:-20}" || fail "a fuzz target found a fault (see above)"

echo "== Tests (core, AddressSanitizer + UndefinedBehaviorSanitizer)"
if [ ! -f build-sanitize/build.ninja ]; then
    cmake -S . -B build-sanitize -G Ninja -DCMAKE_BUILD_TYPE=Debug -DSKYLANTRA_SANITIZE=ON >/dev/null \
        || fail "configuring the sanitizer build"
fi
cmake --build build-sanitize >/dev/null || fail "the sanitizer build"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    ctest --test-dir build-sanitize --output-on-failure -j2 || fail "core tests under the sanitizers"

echo "== All tests passed in $((SECONDS - started)) s"
