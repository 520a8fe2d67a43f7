#!/usr/bin/env bash
# Builds the package and runs the laminate program from the build folder:
# without arguments "laminate rate", the ply-by-ply report of the bundled
# laminate.  Arguments go to the program; when the first is not one of its
# commands (rate, batch, envelope, report, materials, --help), "rate" is put
# before them, so "scripts/demo.sh -svg pictures" rates and draws.
#
# LAMINATE_BUILD=DIR runs the program of that build folder as it is, with
# no configure and no build (the README's test does so with the build
# under test).  The script never changes folder, so file names are taken
# from where it is called.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

if [ -n "${LAMINATE_BUILD:-}" ]; then
    dir=$LAMINATE_BUILD
else
    dir=$root/$("$root/scripts/build.sh" | tail -n 1)
fi
case "${1:-}" in
    rate|batch|envelope|report|materials|lpf|-h|-help|--help) ;;
    *) set -- rate "$@" ;;
esac
exec tclsh "$dir/bin/laminate" "$@"
