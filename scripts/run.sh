#!/usr/bin/env bash
# Builds Quarrydex and starts it. Installs missing Debian packages first.
# Extra arguments go to the program, e.g. scripts/run.sh --selftest
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build
exec build/bin/quarrydex "$@"
