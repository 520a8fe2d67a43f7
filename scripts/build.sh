#!/usr/bin/env bash
# Configures and builds into build/ (or build-asan/ with --sanitize).
# Prints the build folder on the last line.
set -euo pipefail
cd "$(dirname "$0")/.."

dir=build
flags=()
for arg in "$@"; do
    case "$arg" in
        --sanitize) dir=build-asan; flags+=(-DLAMINATE_SANITIZE=ON) ;;
        --bench) dir=build-bench; flags+=(-DLAMINATE_BUILD_BENCH=ON -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF) ;;
        *) echo "usage: $0 [--sanitize] [--bench]" >&2; exit 2 ;;
    esac
done

scripts/deps.sh >&2
cmake -S . -B "$dir" -G Ninja "${flags[@]}" >&2
cmake --build "$dir" -j "$(nproc)" >&2
echo "$dir"
