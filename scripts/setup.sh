#!/usr/bin/env bash
# Brings a Debian machine to a built Skylantra: installs the packages that are missing, configures the
# build once and builds what changed. Progress goes to standard error, so the program's own output
# stays clean. Called by run.sh and test.sh.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${SKYLANTRA_BUILD_DIR:-$root/build}"

packages=(
    cmake ninja-build g++ pkg-config
    qt6-base-dev libqt6opengl6-dev qt6-charts-dev libqt6sql6-sqlite dbus-daemon libgl-dev libgl1-mesa-dri zlib1g-dev
    libgtest-dev libgmock-dev libbenchmark-dev clang libclang-rt-14-dev openssl
    xvfb xauth xdotool x11-xkb-utils fonts-dejavu-core fonts-liberation2 python3 faketime
    help2man desktop-file-utils appstream python3-debian
)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done

if ((${#missing[@]})); then
    echo "setup: installing ${missing[*]}" >&2
    sudo=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || { echo "setup: need root or sudo to install packages" >&2; exit 1; }
        sudo=(sudo)
    fi
    "${sudo[@]}" apt-get update -qq >&2
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
fi

if [ ! -f "$build/build.ninja" ]; then
    echo "setup: configuring in $build" >&2
    cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release >&2
fi
echo "setup: building" >&2
cmake --build "$build" >&2
