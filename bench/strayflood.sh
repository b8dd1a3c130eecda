#!/bin/sh
# Builds and runs the stray-frame flood: time per ten thousand frames at the
# start and at the end, beside a raw append loop, and the size of error.log.
# Usage: bench/strayflood.sh [frames] [build folder]
set -e
here=$(cd "$(dirname "$0")/.." && pwd)
n=${1:-100000}
build=${2:-$here/build}
. "$here/bench/lib.sh"
build_bench bench_strayflood "$build"
QT_QPA_PLATFORM=offscreen "$build/bench/bench_strayflood" "$n" 2>/dev/null
