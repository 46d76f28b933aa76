#!/usr/bin/env bash
# The demo download of both networks (gunzip included) within an address space of 300 MB: no buffer may
# be reserved at its size limit. Run with the build folder.
set -euo pipefail
build="$1"
home="$(mktemp -d)"
trap 'rm -rf "$home"' EXIT
cp -r "$build/data" "$build/colours" "$home/"
for network in ivao vatsim; do
    answer="$( (ulimit -v 300000; printf 'stat\n' | "$build/skylantra" --home "$home" --console --demo --download "$network") 2>/dev/null)"
    if ! grep -q "data of 1423Z - " <<<"$answer"; then
        echo "the $network demo download failed within 300 MB of address space:" >&2
        echo "$answer" >&2
        exit 1
    fi
done
