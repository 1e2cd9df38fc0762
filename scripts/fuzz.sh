#!/usr/bin/env bash
# Fuzzes the decoders that take users' files with libFuzzer, under AddressSanitizer and
# UndefinedBehaviorSanitizer, in build-fuzz/ (Clang; installed when missing).
#
#   scripts/fuzz.sh [--jobs N] [SECONDS] [HARNESS...]
#
# Runs each harness (library_file, data_file, backup, photo; all by default) for SECONDS
# (default 60), N at a time (default 1). Each works on a copy of its seed corpus in
# build-fuzz/corpus/<harness>/; an input that finds a fault is written to
# build-fuzz/findings/<harness>/ and the run of that harness stops. Put such an input
# into fuzz/regressions/<harness>/ with the fix, so CTest replays it from then on.
set -euo pipefail
cd "$(dirname "$0")/.."

jobs=1
if [ "${1:-}" = "--jobs" ]; then
  jobs=$2
  shift 2
fi
seconds=${1:-60}
[ $# -gt 0 ] && shift
harnesses=("$@")
if [ ${#harnesses[@]} -eq 0 ]; then
  harnesses=(library_file data_file backup photo)
fi

scripts/setup.sh clang libclang-rt-14-dev
build=build-fuzz
CC=clang CXX=clang++ cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DQUARRYDEX_SANITIZE=ON -DQUARRYDEX_BENCHMARKS=OFF >/dev/null
targets=()
for h in "${harnesses[@]}"; do
  targets+=("fuzz_$h")
done
cmake --build "$build" --target "${targets[@]}"

export ASAN_OPTIONS=abort_on_error=1:detect_leaks=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

run() {
  local h=$1
  local corpus="$build/corpus/$h" findings="$build/findings/$h"
  mkdir -p "$corpus" "$findings"
  cp -n fuzz/corpus/"$h"/* "$corpus"/ 2>/dev/null || true
  local dict=()
  if [ -f "fuzz/$h.dict" ]; then
    dict=(-dict="fuzz/$h.dict")
  fi
  local status=0
  "$build/bin/fuzz_$h" "$corpus" fuzz/corpus/"$h" "${dict[@]}" -max_total_time="$seconds" \
    -timeout=20 -rss_limit_mb=4096 -print_final_stats=1 -artifact_prefix="$findings/" \
    >"$build/fuzz-$h.log" 2>&1 || status=$?
  local execs cov
  execs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$build/fuzz-$h.log" | grep -o '[0-9]*$' || true)
  cov=$(grep -o 'cov: [0-9]* ft: [0-9]*' "$build/fuzz-$h.log" | tail -1 || true)
  if [ "$status" -eq 0 ]; then
    echo "$h: ${execs:-?} inputs run, ${cov:-no coverage line}, no finding (log: $build/fuzz-$h.log)"
  else
    echo "$h: FINDING after ${execs:-?} inputs; see $build/fuzz-$h.log and $findings/"
  fi
  return "$status"
}

failed=0
running=0
for h in "${harnesses[@]}"; do
  run "$h" &
  running=$((running + 1))
  if [ "$running" -ge "$jobs" ]; then
    wait -n || failed=1
    running=$((running - 1))
  fi
done
while [ "$running" -gt 0 ]; do
  wait -n || failed=1
  running=$((running - 1))
done
exit "$failed"
