#!/usr/bin/env bash
# Regenerates the shipped data files from the public sources and fails when any byte differs, so the
# committed files and their converters never drift apart. Skips (exit 77) where the sources are absent.
set -euo pipefail
root="$1"
sources="${SKYLANTRA_DATA_SOURCES:-$root/../shared/data-sources}"
if [ ! -d "$sources/ourairports" ] || [ ! -d "$sources/vatspy" ]; then
    echo "data sources not found at $sources: skipped"
    exit 77
fi
out="$(mktemp -d)"
trap 'rm -rf "$out"' EXIT
python3 "$root/tools/make_refdata.py" "$sources" "$out"
status=0
for file in airports.dat firlist.dat firdisplay.dat firdisplay.sup; do
    if ! cmp -s "$out/$file" "$root/data/$file"; then
        echo "data/$file differs from what tools/make_refdata.py generates"
        status=1
    fi
done
exit $status
