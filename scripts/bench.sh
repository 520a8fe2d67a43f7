#!/usr/bin/env bash
# Builds an optimised tree and runs both benchmarks: the C++ one (Google
# Benchmark) and the Tcl timing script, which also reports the targets.
set -euo pipefail
cd "$(dirname "$0")/.."

dir=$(scripts/build.sh --bench | tail -n 1)
"$dir/bench/laminate_bench" --benchmark_out="$dir/bench.csv" --benchmark_out_format=csv \
    --benchmark_min_time=0.2
echo
TCLLIBPATH="$PWD/$dir" tclsh bench/tcl_timing.tcl "$dir/bench.csv"
