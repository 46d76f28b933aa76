#!/usr/bin/env bash
# Builds the fuzz programs with clang (in build-fuzz/) and runs each for a while:
#   scripts/fuzz.sh [SECONDS_EACH] [TARGET...]
# Seeds come from the demo feeds, the test captures, the themes and tests/fuzz/seeds; each target's
# corpus grows in build-fuzz/corpus/. A finding stops the run with its input in build-fuzz/findings/:
# fix the fault, then keep the input in tests/fuzz/reproducers/<target>/, where a unit test replays it.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="$root/build-fuzz"
seconds="${1:-20}"
shift || true
targets=("$@")
((${#targets[@]})) || targets=(whazzup json_feeds status_file gunzip settings companion route search coming weather)

if ! command -v clang++ >/dev/null; then
    echo "fuzz: clang++ is missing (scripts/setup.sh installs it)" >&2
    exit 1
fi
if [ ! -f "$build/build.ninja" ]; then
    CXX=clang++ cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSKYLANTRA_FUZZ=ON \
        -DSKYLANTRA_BENCHMARKS=OFF >&2
fi
cmake --build "$build" >&2

seed() { # target, files...
    local corpus="$build/corpus/$1"
    shift
    mkdir -p "$corpus"
    for file in "$@"; do
        [ -f "$file" ] && cp -n "$file" "$corpus/" 2>/dev/null || true
    done
}
d="$root/data/demo"
seed whazzup "$d/ivao/whazzup.txt" "$d/vatsim/whazzup.txt"
seed json_feeds "$root"/tests/data/*.json
seed status_file "$d/ivao/status.txt" "$d/vatsim/status.txt"
seed gunzip "$d/ivao/whazzup.txt.gz" "$d/vatsim/whazzup.txt.gz"
seed settings "$root"/colours/*.dc
seed coming "$d/vatsim/bookings.json" "$d/vatsim/events.json"
seed weather "$d/weather/metars.txt"
for target in companion route search; do seed "$target" "$root"/tests/fuzz/seeds/"$target"/*; done
for target in "${targets[@]}"; do
    [ -d "$root/tests/fuzz/reproducers/$target" ] && seed "$target" "$root/tests/fuzz/reproducers/$target"/*
done

for target in "${targets[@]}"; do
    findings="$build/findings/$target"
    mkdir -p "$findings"
    echo "fuzz: $target for $seconds s" >&2
    if ! "$build/tests/fuzz/fuzz_$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
        -print_final_stats=0 -artifact_prefix="$findings/" "$build/corpus/$target" >"$findings/log.txt" 2>&1; then
        tail -n 40 "$findings/log.txt" >&2
        echo "fuzz: $target found a fault; its input is in $findings/" >&2
        exit 1
    fi
done
