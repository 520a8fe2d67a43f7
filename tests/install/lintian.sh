#!/bin/sh
# lintian.sh DIR: runs lintian on every Debian package in DIR (as built by
# deb_build.cmake) and fails on any error or warning at lintian's default
# level.  The packages carry no overrides.  Exits 77 (skipped) where lintian
# or the packages are missing.
set -u
dir=$1
if ! command -v lintian >/dev/null 2>&1; then
    echo "SKIPPED: lintian not found (Debian package lintian, optional in scripts/deps.sh)"
    exit 77
fi
set -- "$dir"/*.deb
if [ ! -e "$1" ]; then
    echo "SKIPPED: no Debian packages in $dir (deb_build skipped: dpkg-dev missing?)"
    exit 77
fi
# --no-cfg: the default level and profile, whatever a user's lintianrc says.
# lintian's own complaint about running as root goes to stderr and is no tag.
if lintian --no-cfg --fail-on error,warning "$@"; then
    echo "lintian: $# packages, no errors and no warnings:"
    for deb in "$@"; do echo "  $(basename "$deb")"; done
else
    echo "lintian found errors or warnings in $*" >&2
    exit 1
fi
