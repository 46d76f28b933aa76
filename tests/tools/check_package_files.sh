#!/usr/bin/env bash
# Installs the build into a folder of its own and checks what a desktop and Debian read from it: the
# menu entry (desktop-file-validate), the AppStream file (appstreamcli, offline), the machine-readable
# copyright file (every data file it names exists), the manual page and the documents of the data.
set -euo pipefail
build="$1"
source="$2"
for tool in desktop-file-validate appstreamcli; do
    command -v "$tool" >/dev/null || { echo "$tool is missing: scripts/setup.sh installs it"; exit 1; }
done
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
DESTDIR="$work" cmake --install "$build" --prefix /usr >/dev/null
share="$work/usr/share"

desktop-file-validate "$share/applications/skylantra.desktop"
appstreamcli validate --no-net "$share/metainfo/io.github.skylantra.Skylantra.metainfo.xml"

# Debian's copyright format, read with Debian's own parser; each data pattern must name shipped files.
/usr/bin/python3 - "$share/doc/skylantra/copyright" "$source" <<'PY'
import glob, os, sys
from debian.copyright import Copyright
with open(sys.argv[1]) as f:
    copyright = Copyright(f, strict=True)
licences = {p.license.synopsis for p in copyright.all_license_paragraphs()}
for paragraph in copyright.all_files_paragraphs():
    if not paragraph.license.text and paragraph.license.synopsis not in licences:
        sys.exit(f"no text for the licence {paragraph.license.synopsis}")
    for pattern in paragraph.files:
        if pattern != "*" and not glob.glob(os.path.join(sys.argv[2], pattern)):
            sys.exit(f"the copyright file names {pattern}, which is not shipped")
PY

zcat "$share/man/man1/skylantra.1.gz" | grep -q 'snapshot' || { echo "the manual page lacks the options"; exit 1; }
[ -f "$share/skylantra/data/FORMATS.md" ] || { echo "data/FORMATS.md is not installed"; exit 1; }
count=$(find "$work" -name SOURCES.md | wc -l)
[ "$count" -eq 1 ] || { echo "SOURCES.md is installed $count times"; exit 1; }
echo "menu entry, AppStream file, copyright, manual page and data documents pass"
