#!/bin/sh
# Builds and runs the keystroke latency benchmark.
# Usage: bench/latency.sh [N] [build folder]
set -e
here=$(cd "$(dirname "$0")/.." && pwd)
n=${1:-2000}
build=${2:-$here/build}
if [ ! -f "$build/CMakeCache.txt" ]; then
  cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=Release -DVONNEL_BUILD_TESTS=OFF >/dev/null
fi
cmake --build "$build" --target vonnel_latency -j2 >/dev/null
QT_QPA_PLATFORM=offscreen "$build/bench/vonnel_latency" "$n"
