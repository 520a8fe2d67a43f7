#!/usr/bin/env bash
# Builds the libFuzzer targets (build-fuzz/, clang, ASan + UBSan) and runs
# them one after the other.
#
#   scripts/fuzz.sh --smoke          30 s per target from the committed corpus
#                                     (what CI runs); nothing is kept
#   scripts/fuzz.sh --time 1200      a campaign: 20 min per target, growing the
#                                     working corpus build-fuzz/corpus/<target>
#   scripts/fuzz.sh --coverage       line coverage of the library by the
#                                     committed and working corpora (llvm-cov)
#   ... [TARGET ...]                 only these of: record commands define
#
# A finding is written to build-fuzz/findings/<target>-crash-... (or leak-,
# timeout-, oom-) and makes the script exit 1.  See tests/fuzz/README.md.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=30
smoke=0
coverage=0
targets=()
while [ $# -gt 0 ]; do
    case "$1" in
        --smoke) smoke=1; seconds=30 ;;
        --time) seconds="$2"; shift ;;
        --coverage) coverage=1 ;;
        record|commands|define) targets+=("$1") ;;
        *) echo "usage: $0 [--smoke | --time SECONDS | --coverage] [record|commands|define ...]" >&2; exit 2 ;;
    esac
    shift
done
[ ${#targets[@]} -eq 0 ] && targets=(record commands define)

scripts/deps.sh --fuzz >&2
dir=build-fuzz
flags=(-DLAMINATE_FUZZ=ON -DCMAKE_CXX_COMPILER=clang++ -DBUILD_TESTING=OFF)
if [ $coverage -eq 1 ]; then
    dir=build-fuzz-cov
    flags+=(-DLAMINATE_FUZZ_COVERAGE=ON)
fi
cmake -S . -B "$dir" -G Ninja "${flags[@]}" >/dev/null
cmake --build "$dir" -j "$(nproc)" --target fuzz_targets >&2
bin="$dir/tests/fuzz"

if [ $coverage -eq 1 ]; then
    profiles=()
    for t in "${targets[@]}"; do
        corpora=(tests/fuzz/corpus/"$t")
        [ -d build-fuzz/corpus/"$t" ] && corpora+=(build-fuzz/corpus/"$t")
        LLVM_PROFILE_FILE="$dir/$t.profraw" "$bin/fuzz_$t" -runs=0 "${corpora[@]}" >/dev/null 2>&1
        profiles+=("$dir/$t.profraw")
    done
    llvm-profdata merge -sparse "${profiles[@]}" -o "$dir/all.profdata"
    objects=()
    for t in "${targets[@]}"; do objects+=(-object "$bin/fuzz_$t"); done
    llvm-cov report "${objects[@]:1}" -instr-profile="$dir/all.profdata" \
        util linalg intvec laminate analysis tcl
    exit 0
fi

mkdir -p build-fuzz/findings
status=0
for t in "${targets[@]}"; do
    if [ $smoke -eq 1 ]; then
        work=$(mktemp -d)
    else
        work=build-fuzz/corpus/$t
        mkdir -p "$work"
    fi
    log=build-fuzz/findings/$t.log
    # Each input must finish in 10 s and the process stay under 2 GB.  The
    # CPU time is kept too: on a shared machine the wall-clock rate says
    # more about the other jobs than about the target.
    TIMEFORMAT='%U %S'
    if { time "$bin/fuzz_$t" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
           -dict="tests/fuzz/$t.dict" -artifact_prefix="build-fuzz/findings/$t-" \
           -print_final_stats=1 "$work" "tests/fuzz/corpus/$t" >"$log" 2>&1; } 2>"$log.cpu"; then
        verdict=clean
    else
        verdict="FINDING (see $log)"
        status=1
    fi
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
    rate=$(sed -n 's/.*exec\/s: \([0-9]*\).*/\1/p' "$log" | tail -n 1)
    cov=$(sed -n 's/.* cov: \([0-9]*\) ft: \([0-9]*\).*/\1 edges, \2 features/p' "$log" | tail -n 1)
    cpu=$(awk '{ printf "%.0f", $1 + $2 }' "$log.cpu")
    per_cpu=$(( ${runs:-0} / (cpu > 0 ? cpu : 1) ))
    echo "fuzz $t: ${runs:-0} runs in ${seconds} s (${rate:-0} exec/s; ${per_cpu} per CPU second)," \
         "coverage ${cov:-?}: $verdict"
    [ $smoke -eq 1 ] && rm -rf "$work"
done
exit $status
