#!/bin/sh
# Builds and runs the keystroke latency benchmark.
# Usage: bench/latency.sh [N] [build folder]
set -e
here=$(cd "$(dirname "$0")/.." && pwd)
n=${1:-2000}
build=${2:-$here/build}
. "$here/bench/lib.sh"
build_bench bench_latency "$build"
QT_QPA_PLATFORM=offscreen "$build/bench/bench_latency" "$n"
