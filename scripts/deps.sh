#!/usr/bin/env bash
# Installs the Debian packages the build needs, only those that are missing.
# The optional ones (a headless browser for the browser test, lintian for the
# Debian packages' check, Dask and pandas for the Python module's Dask example
# and its dataframe form; the tests skip without them) are tried too;
# failing to get them is only a warning.  Set LAMINATE_NO_OPTIONAL=1 not to
# try.
# Usage: scripts/deps.sh [--fuzz]
set -euo pipefail

packages=(cmake ninja-build g++ tcl tcl8.6 tcl8.6-dev libgtest-dev libgmock-dev libbenchmark-dev libboost-dev
          tcllib libxml2-utils tcl-thread time pybind11-dev python3-numpy python3-pytest)
# Manual pages (dtplite, groff, man), pkg-config and the Debian package tools.
packages+=(groff-base man-db pkgconf dpkg-dev)
# With --fuzz (scripts/fuzz.sh), also clang with its libFuzzer runtime and
# the coverage tools; the ordinary build does not need them.
if [ "${1:-}" = "--fuzz" ]; then
    packages+=(clang libclang-rt-14-dev llvm)
fi
optional=(chromium-headless-shell lintian python3-dask python3-distributed python3-pandas)
[ "${LAMINATE_NO_OPTIONAL:-0}" = 1 ] && optional=()

installed() {
    dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q "install ok installed"
}
missing=()
for p in "${packages[@]}"; do
    installed "$p" || missing+=("$p")
done
missing_optional=()
for p in "${optional[@]}"; do
    installed "$p" || missing_optional+=("$p")
done
[ ${#missing[@]} -eq 0 ] && [ ${#missing_optional[@]} -eq 0 ] && exit 0

echo "Installing missing packages: ${missing[*]} ${missing_optional[*]}"
if [ "$(id -u)" -eq 0 ]; then
    sudo=()
elif command -v sudo >/dev/null 2>&1; then
    sudo=(sudo)
else
    if [ ${#missing[@]} -eq 0 ]; then
        echo "Optional packages (${missing_optional[*]}) missing and no root rights: going on without them." >&2
        exit 0
    fi
    echo "Missing packages (${missing[*]}) and no root rights to install them." >&2
    exit 1
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -q || [ ${#missing[@]} -eq 0 ]
if [ ${#missing[@]} -gt 0 ]; then
    "${sudo[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
fi
if [ ${#missing_optional[@]} -gt 0 ]; then
    "${sudo[@]}" apt-get install -y -q --no-install-recommends "${missing_optional[@]}" ||
        echo "Optional packages (${missing_optional[*]}) could not be installed: the tests that need them skip." >&2
fi
