#!/bin/sh
# Builds and runs the stray-frame flood: time per ten thousand frames at the
# start and at the end, beside a raw append loop, and the size of error.log.
# Usage: bench/strayflood.sh [frames] [build folder]
set -e
here=$(cd "$(dirname "$0")/.." && pwd)
n=${1:-100000}
build=${2:-$here/build}
if [ ! -f "$build/CMakeCache.txt" ]; then
  cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=Release -DVONNEL_BUILD_TESTS=OFF >/dev/null
fi
cmake --build "$build" --target vonnel_strayflood -j2 >/dev/null
QT_QPA_PLATFORM=offscreen "$build/bench/vonnel_strayflood" "$n" 2>/dev/null
