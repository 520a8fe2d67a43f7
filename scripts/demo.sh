#!/usr/bin/env bash
# Builds the package and rates every ply of the bundled laminate.  Any
# arguments go to the report script (a record file and load values).
set -euo pipefail
cd "$(dirname "$0")/.."

dir=$(scripts/build.sh | tail -n 1)
export TCLLIBPATH="$PWD/$dir"
exec tclsh examples/laminate_report.tcl "$@"
