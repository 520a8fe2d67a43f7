#!/usr/bin/env bash
# Configures and builds into build/ (build-asan/ with --sanitize, build-tsan/
# with --tsan, build-bench/ with --bench).
# Prints the build folder on the last line.
set -euo pipefail
cd "$(dirname "$0")/.."

dir=build
flags=()
targets=()
for arg in "$@"; do
    case "$arg" in
        --sanitize) dir=build-asan; flags+=(-DLAMINATE_SANITIZE=ON) ;;
        --tsan) dir=build-tsan; flags+=(-DLAMINATE_TSAN=ON); targets=(--target laminate) ;;
        --bench) dir=build-bench; flags+=(-DLAMINATE_BUILD_BENCH=ON -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF) ;;
        *) echo "usage: $0 [--sanitize | --tsan | --bench]" >&2; exit 2 ;;
    esac
done

scripts/deps.sh >&2
cmake -S . -B "$dir" -G Ninja "${flags[@]}" >&2
cmake --build "$dir" -j "$(nproc)" "${targets[@]}" >&2
echo "$dir"
