#!/usr/bin/env bash
# Peak memory and speed of load-case tables through the program: generates
# a table of random load cases (examples/make_cases.tcl), rates it with
# "laminate batch" and prints the rows per second and the peak resident
# set size; then the peak of a table holding one line of LONG_MB megabytes
# (refused by -bad skip, the other rows rated).
#
# usage: bench/cases_rss.sh ?BUILD_DIR? ?ROWS? ?LONG_MB?
#   BUILD_DIR  where liblaminate and its pkgIndex.tcl are (default build)
#   ROWS       rows of the table (default 1000000)
#   LONG_MB    size of the long line, 0 for none (default 200)
# LAMINATE_PROGRAM=path runs another copy of the program (default
# BUILD_DIR/bin/laminate).
# Needs GNU time (/usr/bin/time, Debian package "time").
set -euo pipefail
cd "$(dirname "$0")/.."

build=$(cd "${1:-build}" && pwd)
rows=${2:-1000000}
long_mb=${3:-200}
job=${LAMINATE_PROGRAM:-$build/bin/laminate}
if [ ! -x /usr/bin/time ]; then
    echo "bench/cases_rss.sh: needs GNU time (/usr/bin/time, Debian package time)" >&2
    exit 2
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Runs the job on $1 with -bad $2 under GNU time; prints "seconds
# cpu-seconds kilobytes" (wall clock, user + system, peak RSS).
measure() {
    local status=0
    /usr/bin/time -v -o "$work/time.txt" env TCLLIBPATH="$build" \
        tclsh "$job" batch "$1" -o "$work/results.csv" -bad "$2" \
        >"$work/job.out" 2>"$work/job.err" || status=$?
    if [ $status -ne 0 ]; then
        echo "bench/cases_rss.sh: laminate batch failed with status $status:" >&2
        tail -5 "$work/job.err" >&2
        exit 1
    fi
    awk -F': ' '
        /Elapsed \(wall clock\)/ {
            n = split($2, t, ":"); s = 0
            for (i = 1; i <= n; i++) s = s * 60 + t[i]
        }
        /User time \(seconds\)|System time \(seconds\)/ { cpu += $2 }
        /Maximum resident set size/ { kb = $2 }
        END { print s, cpu, kb }' "$work/time.txt"
}

tclsh examples/make_cases.tcl "$rows" 1 >"$work/cases.csv"
bytes=$(stat -c %s "$work/cases.csv")
read -r seconds cpu kb < <(measure "$work/cases.csv" stop)
written=$(($(wc -l <"$work/results.csv") - 1))
if [ "$written" -ne "$rows" ]; then
    echo "bench/cases_rss.sh: $written result rows for $rows cases" >&2
    exit 1
fi
awk -v r="$rows" -v b="$bytes" -v s="$seconds" -v c="$cpu" -v kb="$kb" 'BEGIN {
    printf "%d rows (%.1f MB): %.1f s, %.0f rows/s (CPU %.1f s, %.0f rows per CPU second), peak RSS %.1f MB\n",
        r, b / 1e6, s, (s > 0 ? r / s : 0), c, (c > 0 ? r / c : 0), kb / 1024 }'

if [ "$long_mb" -gt 0 ]; then
    {
        echo id,N1,N2,N12,M1,M2,M12,Q1,Q2
        echo a,1,0,0,0,0,0,0,0
        head -c $((long_mb * 1000000)) /dev/zero | tr '\0' 7
        echo
        echo b,1,0,0,0,0,0,0,0
    } >"$work/long.csv"
    read -r seconds cpu kb < <(measure "$work/long.csv" skip)
    awk -v m="$long_mb" -v s="$seconds" -v kb="$kb" 'BEGIN {
        printf "one %d MB line: %.1f s, peak RSS %.1f MB\n", m, s, kb / 1024 }'
fi
