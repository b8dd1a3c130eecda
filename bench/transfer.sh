#!/bin/sh
# Builds and runs the file transfer benchmark: MB/s of two copies at each
# Byte Per Send beside a raw TCP stop-and-wait loop, and their ratio.
# Usage: bench/transfer.sh [megabytes] [build folder] [bytes per send ...]
set -e
here=$(cd "$(dirname "$0")/.." && pwd)
mb=${1:-200}
build=${2:-$here/build}
[ $# -gt 2 ] && shift 2 || set --
. "$here/bench/lib.sh"
build_bench bench_transfer "$build"
QT_QPA_PLATFORM=offscreen "$build/bench/bench_transfer" "$mb" "$@" 2>/dev/null
