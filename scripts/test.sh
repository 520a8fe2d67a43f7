#!/usr/bin/env bash
# Builds the library and runs every test (C++ and Tcl) through ctest.
# With --sanitize the same tests run in an AddressSanitizer + UBSan build;
# with --tsan the thread test runs in a ThreadSanitizer build.
set -euo pipefail
cd "$(dirname "$0")/.."

dir=$(scripts/build.sh "$@" | tail -n 1)
export ASAN_OPTIONS=${ASAN_OPTIONS:-halt_on_error=1:abort_on_error=0}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-halt_on_error=1:print_stacktrace=1}
if [ "${1:-}" = --tsan ]; then
    ctest --test-dir "$dir" --output-on-failure -L threads
else
    ctest --test-dir "$dir" --output-on-failure -j "$(nproc)"
fi
