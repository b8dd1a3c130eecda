#!/bin/sh
# Builds and runs the keystroke latency benchmark: N keys idle, then N keys
# while the other direction carries files of MB megabytes, GAP_US apart.
# Usage: bench/latency.sh [N] [MB] [GAP_US] [build folder]
set -e
here=$(cd "$(dirname "$0")/.." && pwd)
n=${1:-2000}
mb=${2:-200}
gap=${3:-2000}
build=${4:-$here/build}
. "$here/bench/lib.sh"
build_bench bench_latency "$build"
QT_QPA_PLATFORM=offscreen "$build/bench/bench_latency" "$n" "$mb" "$gap"
