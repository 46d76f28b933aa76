#!/usr/bin/env bash
# Regenerates the shipped data files and fails when any byte differs, so the committed files and their
# generators never drift apart: the demo feeds from the shipped reference data, and the reference data
# from the public sources where those are present (skipped, exit 77, where they are not).
set -euo pipefail
root="$1"
out="$(mktemp -d)"
trap 'rm -rf "$out"' EXIT
status=0
same() {
    if ! cmp -s "$1" "$2"; then
        echo "${2#"$root"/} differs from what its generator makes"
        status=1
    fi
}

mkdir -p "$out/demo-data"
cp "$root/data/airports.dat" "$root/data/firlist.dat" "$out/demo-data/"
python3 "$root/tools/make_demo_feeds.py" "$out/demo-data"
while IFS= read -r file; do
    same "$out/demo-data/${file#"$root"/data/}" "$file"
done < <(find "$root/data/demo" -type f)
if [ "$(find "$out/demo-data/demo" -type f | wc -l)" != "$(find "$root/data/demo" -type f | wc -l)" ]; then
    echo "data/demo holds other files than its generator makes"
    status=1
fi

sources="${SKYLANTRA_DATA_SOURCES:-$root/../shared/data-sources}"
if [ ! -d "$sources/ourairports" ] || [ ! -d "$sources/vatspy" ]; then
    echo "data sources not found at $sources: reference data not checked"
    [ $status -eq 0 ] && exit 77
    exit $status
fi
python3 "$root/tools/make_refdata.py" "$sources" "$out/refdata"
python3 "$root/tools/make_geography.py" "$sources" "$out/refdata"
python3 "$root/tools/make_land.py" "$sources" "$out/refdata"
for file in airports.dat firlist.dat firdisplay.dat firdisplay.sup navaids.dat coastline.dat countries.dat land.dat; do
    same "$out/refdata/$file" "$root/data/$file"
done
exit $status
