#!/bin/sh
# Builds and runs the board benchmark: a peer's strokes parsed, stored and
# painted, beside raw loops from the same run.
# Usage: bench/board.sh [points] [build folder]
set -e
here=$(cd "$(dirname "$0")/.." && pwd)
n=${1:-100000}
build=${2:-$here/build}
. "$here/bench/lib.sh"
build_bench bench_board "$build"
QT_QPA_PLATFORM=offscreen "$build/bench/bench_board" "$n" 2>/dev/null
