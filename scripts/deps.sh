#!/usr/bin/env bash
# Installs the Debian packages the build needs, only those that are missing.
set -euo pipefail

packages=(cmake ninja-build g++ tcl tcl8.6 tcl8.6-dev libgtest-dev libgmock-dev libbenchmark-dev libboost-dev)
# Manual pages (dtplite, groff, man), pkg-config and the Debian package tools.
packages+=(tcllib groff-base man-db pkgconf dpkg-dev)
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing missing packages: ${missing[*]}"
if [ "$(id -u)" -eq 0 ]; then
    sudo=()
elif command -v sudo >/dev/null 2>&1; then
    sudo=(sudo)
else
    echo "Missing packages (${missing[*]}) and no root rights to install them." >&2
    exit 1
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -q
"${sudo[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
