#!/usr/bin/env bash
# Start-up time: starts the program and a minimal Qt Quick Controls window alternately under
# Xvfb, each time reading the milliseconds from main() to the first drawn frame and, a moment
# later, the idle resident memory. Prints the medians and the program's ratio to the baseline.
# The program's first frame is its bare window; its menus and the Identify screen come with a
# later frame, reported as "ready" and compared with the baseline's first frame too.
#   bench/startup.sh [ROUNDS] [BUILD_DIR]      (defaults: 15 rounds, build/)
set -euo pipefail
cd "$(dirname "$0")/.."
rounds=${1:-15}
build=${2:-build}
program=$build/bin/quarrydex
baseline=$build/bin/startup_baseline
for exe in "$program" "$baseline"; do
  [ -x "$exe" ] || { echo "Build first: $exe is missing (cmake --build $build)" >&2; exit 1; }
done

if ! command -v Xvfb >/dev/null 2>&1; then
  echo "Installing Xvfb for the measurement"
  if [ "$(id -u)" -eq 0 ]; then as_root=(); else as_root=(sudo); fi
  DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -q --no-install-recommends xvfb >/dev/null
fi

display=:97
Xvfb "$display" -screen 0 1920x1200x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
data=$(mktemp -d)
trap 'kill $xvfb 2>/dev/null || true; rm -rf "$data"' EXIT
sleep 1

# One start: prints "<first frame ms> <idle RSS in KiB> <ready ms>" (the baseline has no
# "ready": it is complete with its first frame).
measure() {
  local log
  log=$(mktemp)
  DISPLAY=$display QT_QPA_PLATFORM=xcb QUARRYDEX_STARTUP_REPORT=1 "$@" 2>"$log" &
  local pid=$!
  for _ in $(seq 100); do
    grep -q "first frame after" "$log" && break
    sleep 0.1
  done
  sleep 1.5 # let deferred loading settle before reading the idle memory
  local rss
  rss=$(awk '/^VmRSS:/ {print $2}' "/proc/$pid/status" 2>/dev/null || echo 0)
  kill "$pid" 2>/dev/null || true
  wait "$pid" 2>/dev/null || true
  local ms ready
  ms=$(sed -n 's/^first frame after \([0-9.]*\) ms$/\1/p' "$log" | head -n 1)
  ready=$(sed -n 's/^ready after \([0-9.]*\) ms$/\1/p' "$log" | head -n 1)
  rm -f "$log"
  echo "${ms:-nan} ${rss:-0} ${ready:-${ms:-nan}}"
}

median() { sort -g | awk '{a[NR]=$1} END {if (NR % 2) print a[(NR+1)/2]; else print (a[NR/2]+a[NR/2+1])/2}'; }

: >"$data/program" ; : >"$data/baseline"
measure "$program" --data-root "$data/root" >/dev/null # warm the file cache once
measure "$baseline" >/dev/null
for i in $(seq "$rounds"); do
  measure "$program" --data-root "$data/root" >>"$data/program"
  measure "$baseline" >>"$data/baseline"
done

p_ms=$(cut -d' ' -f1 "$data/program" | median)
b_ms=$(cut -d' ' -f1 "$data/baseline" | median)
p_ready=$(cut -d' ' -f3 "$data/program" | median)
p_kb=$(cut -d' ' -f2 "$data/program" | median)
b_kb=$(cut -d' ' -f2 "$data/baseline" | median)
echo "rounds: $rounds"
echo "program:  first frame median ${p_ms} ms, ready (menus and Identify screen drawn) median ${p_ready} ms, idle memory median $((${p_kb%.*} / 1024)) MiB"
echo "baseline: first frame median ${b_ms} ms, idle memory median $((${b_kb%.*} / 1024)) MiB"
awk -v p="$p_ms" -v b="$b_ms" 'BEGIN {printf "ratio (program / baseline), first frame: %.2f\n", p / b}'
awk -v p="$p_ready" -v b="$b_ms" 'BEGIN {printf "ratio (program ready / baseline first frame): %.2f\n", p / b}'
