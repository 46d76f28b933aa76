#!/usr/bin/env bash
# Installs the build into a folder of its own, makes it read-only, and runs the installed program there
# as an unprivileged user under Xvfb: it must show the map, write the user's files into the desktop's
# per-user data folder (settings on closing), show traffic when that folder belongs to another user, and
# the Debian package must carry the program, its data and their licences, the menu entry, the icon, the
# AppStream file and the manual page. Needs root (to act as another user): skipped without.
set -euo pipefail
build="$1"
[ "$(id -u)" -eq 0 ] && command -v runuser >/dev/null && command -v xdotool >/dev/null || exit 77
work="$(mktemp -d)"
cleanup() { chmod -R u+w "$work" 2>/dev/null; rm -rf "$work"; }
trap cleanup EXIT
DESTDIR="$work/root" cmake --install "$build" --prefix /usr >/dev/null
chmod -R a-w "$work/root"
home="$work/user"
mkdir -p "$home"
chown nobody:nogroup "$home"
chmod 755 "$work"
as_user() { runuser -u nobody -- env HOME="$home" XDG_RUNTIME_DIR="$home/run" "$@"; }
as_user mkdir -m 700 "$home/run"

# A snapshot: the map shows with the shipped data, the download lands in the user's folder.
as_user xvfb-run -a "$work/root/usr/bin/skylantra" --demo --download ivao --snapshot "$home/shot.png"
[ -s "$home/shot.png" ] || { echo "no snapshot"; exit 1; }
data="$home/.local/share/Skylantra"
[ -f "$data/data/whazzup.txt.gz" ] || { echo "the download is not in $data"; exit 1; }

# A run closed with its own close button writes the settings there too.
as_user xvfb-run -a -s "-screen 0 1280x1024x24" bash -c '
    "$0" --demo & program=$!
    window=$(xdotool search --sync --onlyvisible --name "^Skylantra$" | head -n 1)
    sleep 2
    xdotool mousemove --window "$window" 795 8 click 1
    wait $program' "$work/root/usr/bin/skylantra"
grep -q "^\[Map\]" "$data/skln.ini" || { echo "no settings written to $data"; exit 1; }

# A home folder whose data/ belongs to another user: the downloads go to the user's cache folder, the
# status line and standard error say so, and the map shows the traffic (the list has its rows).
locked="$work/locked"
mkdir -p "$locked/.local/share/Skylantra/data" # root's, so not the user's to write
chown nobody:nogroup "$locked"
runuser -u nobody -- mkdir -m 700 "$locked/run"
runuser -u nobody -- env HOME="$locked" XDG_RUNTIME_DIR="$locked/run" xvfb-run -a \
    "$work/root/usr/bin/skylantra" --demo --download ivao --keys L --print-panel --snapshot "$locked/shot.png" \
    >"$work/panel.txt" 2>"$work/errors.txt"
grep -q "data cannot be written: downloads go to $locked/.cache/Skylantra" "$work/errors.txt" \
    || { echo "the moved downloads were not said:"; cat "$work/errors.txt"; exit 1; }
[ -f "$locked/.cache/Skylantra/whazzup.txt.gz" ] || { echo "the download is not in the cache folder"; exit 1; }
rows=$(($(wc -l <"$work/panel.txt") - 2))
[ "$rows" -ge 10 ] || { echo "no traffic in the list ($rows rows):"; cat "$work/panel.txt"; exit 1; }

# The package holds what the install does.
(cd "$build" && cpack -G DEB -B "$work/package" >/dev/null)
contents="$(dpkg-deb -c "$work"/package/skylantra_*.deb)"
for file in ./usr/bin/skylantra ./usr/share/skylantra/data/airports.dat ./usr/share/skylantra/colours/default.dc \
    ./usr/share/applications/skylantra.desktop ./usr/share/icons/hicolor/scalable/apps/skylantra.svg \
    ./usr/share/metainfo/io.github.skylantra.Skylantra.metainfo.xml ./usr/share/skylantra/companion.txt \
    ./usr/share/doc/skylantra/copyright ./usr/share/man/man1/skylantra.1.gz ./usr/share/skylantra/data/FORMATS.md \
    ./usr/share/skylantra/data/SOURCES.md; do
    grep -q " $file\$" <<<"$contents" || { echo "the package lacks $file"; exit 1; }
done
echo "installed program ran as $(id -un nobody) from a read-only prefix; package complete"
