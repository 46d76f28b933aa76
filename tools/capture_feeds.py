#!/usr/bin/env python3
"""Saves the networks' live feeds to files, to refresh the test captures or check the translation.

    tools/capture_feeds.py DIR

Writes DIR/vatsim-status.txt, DIR/vatsim-v3.json, DIR/vatsim-transceivers.json and DIR/ivao-v2.json,
exactly as the servers sent them. Needs internet; the program itself never runs this.
"""

import os
import sys
import urllib.request

VATSIM_STATUS = "https://status.vatsim.net/status.txt"
IVAO_WHAZZUP = "https://api.ivao.aero/v2/tracker/whazzup"
TRANSCEIVERS = "https://data.vatsim.net/v3/transceivers-data.json"


def fetch(url):
    request = urllib.request.Request(url, headers={"User-Agent": "Skylantra capture tool"})
    with urllib.request.urlopen(request, timeout=30) as reply:
        return reply.read()


def save(folder, name, data):
    with open(os.path.join(folder, name), "wb") as f:
        f.write(data)
    print("%s: %d bytes" % (name, len(data)))


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    folder = sys.argv[1]
    os.makedirs(folder, exist_ok=True)
    status = fetch(VATSIM_STATUS)
    save(folder, "vatsim-status.txt", status)
    json3 = [line.split("=", 1)[1].strip() for line in status.decode("utf-8", "replace").splitlines()
             if line.startswith("json3=")]
    save(folder, "vatsim-v3.json", fetch(json3[0] if json3 else "https://data.vatsim.net/v3/vatsim-data.json"))
    save(folder, "vatsim-transceivers.json", fetch(TRANSCEIVERS))
    save(folder, "ivao-v2.json", fetch(IVAO_WHAZZUP))


if __name__ == "__main__":
    main()
