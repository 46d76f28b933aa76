#!/usr/bin/env bash
# The history across many short runs: RUNS runs (default 200) of the map on one home folder with
# HistoryHours=1, each downloading an IVAO feed in which every pilot is new, each run's clock five minutes
# after the last one's (faketime), each ending at once with a snapshot. Prints, after every run, the
# store's size (file and log) and how many snapshots it keeps: the size must level off after the first
# hour. Not part of the test suite (it takes minutes); run it by hand:
#     scripts/soak_history.sh [PROGRAM] [RUNS]
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
program="${1:-$root/build/skylantra}"
runs="${2:-200}"
command -v faketime >/dev/null || { echo "soak: needs faketime (scripts/setup.sh installs it)" >&2; exit 1; }
command -v Xvfb >/dev/null || { echo "soak: needs Xvfb" >&2; exit 1; }

home="$(mktemp -d)"
display=":$((100 + RANDOM % 800))"
Xvfb "$display" -screen 0 1024x768x24 >/dev/null 2>&1 &
xvfb=$!
trap 'kill "$xvfb"; rm -rf "$home"' EXIT
sleep 1
cp -r "$(dirname "$program")/data" "$(dirname "$program")/colours" "$home/"
printf '[Network]\nHistoryHours=1\n' > "$home/skln.ini"
mkdir -p "$home/feed"
printf 'url0=whazzup.txt\n\n\n\n\n' > "$home/feed/status.txt"

echo "run,minutes,history_kB,log_kB,snapshots"
for ((run = 0; run < runs; run++)); do
    # The demo feed with every pilot renamed for this run: none of them was seen before.
    python3 - "$root/data/demo/ivao/whazzup.txt" "$home/feed/whazzup.txt" "$run" <<'PY'
import sys
source, target, run = sys.argv[1], sys.argv[2], int(sys.argv[3])
out = []
for number, line in enumerate(open(source, 'rb').read().split(b'\n')):
    fields = line.split(b':')
    if len(fields) > 3 and fields[3] == b'PILOT':
        fields[0] = b'R%dP%d' % (run, number)
        fields[1] = b'%d' % (1000000 + run * 10000 + number)
    out.append(b':'.join(fields))
open(target, 'wb').write(b'\n'.join(out))
PY
    DISPLAY="$display" faketime -f "+$((run * 5))m" "$program" --home "$home" \
        --ivao-status "file://$home/feed/status.txt" --download ivao --snapshot "$home/shot.png" \
        >/dev/null 2>>"$home/stderr.txt" || echo "soak: run $run ended with $?" >&2
    size=$(stat -c %s "$home/history.db" 2>/dev/null || echo 0)
    log=$(stat -c %s "$home/history.db-wal" 2>/dev/null || echo 0)
    kept=$(python3 -c "import sqlite3,sys; print(sqlite3.connect(sys.argv[1]).execute('SELECT COUNT(*) FROM snapshots').fetchone()[0])" "$home/history.db" 2>/dev/null || echo "?")
    echo "$run,$((run * 5)),$((size / 1024)),$((log / 1024)),$kept"
done
if [ -s "$home/stderr.txt" ]; then
    echo "soak: the program said:" >&2
    sort "$home/stderr.txt" | uniq -c | head -20 >&2
fi
