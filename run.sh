#!/usr/bin/env bash
# Sets up everything that is missing, builds, and starts Skylantra. Arguments go to the program.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
"$root/scripts/setup.sh"
exec "$root/build/skylantra" "$@"
