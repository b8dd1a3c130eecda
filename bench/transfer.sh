#!/bin/sh
# Builds and runs the file transfer benchmark: MB/s of two copies at each
# Byte Per Send beside three raw TCP stop-and-wait loops of the same run:
# one that reads each payload from the source file and appends it to a
# target file (the file work the program must do; the headline ratio), one
# without files, and one without files that flushes every write.
# Usage: bench/transfer.sh [--profile] [megabytes] [build folder] [bytes per send ...]
# --profile records the program's transfer alone with `perf record -g`
# (linux-perf is installed when missing) and prints the top of the profile.
set -e
here=$(cd "$(dirname "$0")/.." && pwd)
profile=0
[ "${1:-}" = "--profile" ] && { profile=1; shift; }
mb=${1:-200}
build=${2:-$here/build}
[ $# -gt 2 ] && shift 2 || set --
. "$here/bench/lib.sh"
build_bench bench_transfer "$build"
if [ "$profile" = 1 ]; then
    command -v perf >/dev/null 2>&1 || { apt-get update -qq && apt-get install -y -qq linux-perf >/dev/null; }
    data=$(mktemp /tmp/vonnel-transfer-perf.XXXXXX)
    VONNEL_BENCH_PROGRAM_ONLY=1 VONNEL_BENCH_ROUNDS=1 QT_QPA_PLATFORM=offscreen \
        perf record -q --call-graph dwarf,16384 -F 2000 -o "$data" \
        "$build/bench/bench_transfer" "$mb" "$@" 2>/dev/null
    perf report -i "$data" --children --sort symbol --stdio -g none 2>/dev/null |
        grep -E '^ +[0-9]' | head -40
    rm -f "$data"
    exit 0
fi
QT_QPA_PLATFORM=offscreen "$build/bench/bench_transfer" "$mb" "$@" 2>/dev/null
