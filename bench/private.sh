#!/bin/sh
# Builds and runs the private-session benchmark: set-up, keystroke to the
# remote pane and file transfer, private beside plain in the same run.
# Usage: bench/private.sh [N keys] [MB] [calls] [build folder]
set -e
here=$(cd "$(dirname "$0")/.." && pwd)
build=${4:-$here/build}
. "$here/bench/lib.sh"
build_bench bench_private "$build"
QT_QPA_PLATFORM=offscreen "$build/bench/bench_private" "${1:-1000}" "${2:-50}" "${3:-10}"
