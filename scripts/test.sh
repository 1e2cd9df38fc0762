#!/usr/bin/env bash
# Builds Quarrydex and runs every test. Installs missing Debian packages first.
#   scripts/test.sh              optimised build with debug info, in build/
#   scripts/test.sh --sanitize   address + undefined-behaviour sanitizers, in build-sanitize/
set -euo pipefail
cd "$(dirname "$0")/.."

build=build
options=(-DCMAKE_BUILD_TYPE=RelWithDebInfo)
if [ "${1:-}" = "--sanitize" ]; then
  build=build-sanitize
  options=(-DCMAKE_BUILD_TYPE=Debug -DQUARRYDEX_SANITIZE=ON -DQUARRYDEX_BENCHMARKS=OFF)
  export ASAN_OPTIONS=detect_leaks=0:abort_on_error=1
  export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
fi

scripts/setup.sh
cmake -S . -B "$build" -G Ninja "${options[@]}"
cmake --build "$build"
ctest --test-dir "$build" --output-on-failure --no-tests=error -j "$(nproc)"
