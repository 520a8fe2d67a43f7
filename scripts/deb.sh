#!/usr/bin/env bash
# Builds the Debian packages: configures and builds build-deb/ (the library
# and the manual pages, no tests), runs cpack there and, where lintian is
# installed, checks every package with it.  The packages are left in
# build-deb/; their maintainer field is LAMINATE_MAINTAINER (environment) or
# the default of cmake/LaminateDebian.cmake.
# Usage: scripts/deb.sh
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/deps.sh >&2
dir=build-deb
flags=(-DBUILD_TESTING=OFF -DCMAKE_BUILD_TYPE=RelWithDebInfo)
[ -n "${LAMINATE_MAINTAINER:-}" ] && flags+=("-DLAMINATE_MAINTAINER=$LAMINATE_MAINTAINER")
cmake -S . -B "$dir" -G Ninja "${flags[@]}" >&2
cmake --build "$dir" -j "$(nproc)" >&2
rm -f "$dir"/*.deb
(cd "$dir" && cpack -G DEB) >&2
if command -v lintian >/dev/null 2>&1; then
    lintian --no-cfg --fail-on error,warning "$dir"/*.deb
else
    echo "lintian not installed: packages not checked" >&2
fi
ls "$dir"/*.deb
