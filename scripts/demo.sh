#!/usr/bin/env bash
# Builds the package and rates every ply of the bundled laminate.  Any
# arguments go to the report script (a record file, load values, -svg DIR,
# -html FILE, -cases FILE.csv -out FILE.csv, ...; -h lists them).
#
# The script never changes folder, so file names are taken from where it
# is called.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

dir=$("$root/scripts/build.sh" | tail -n 1)
export TCLLIBPATH="$root/$dir"
exec tclsh "$root/examples/laminate_report.tcl" "$@"
