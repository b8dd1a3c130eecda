#!/usr/bin/env bash
# Builds every fuzz target (clang, libFuzzer, ASan, UBSan) and runs each for
# the given number of seconds (default 60) on its seed corpus, as many at a
# time as there are cores; prints executions and findings per target. New
# inputs go to a scratch folder: the corpus in fuzz/corpus/ is only read.
#   bash scripts/fuzz.sh [--build DIR] [SECONDS] [TARGET...]
# --build DIR takes the targets from a folder configured with them already
# (scripts/sanitize.sh passes build-asan/); else build-fuzz/ is set up.
set -euo pipefail
cd "$(dirname "$0")/.."
build=""
if [ "${1:-}" = "--build" ]; then build="$2"; shift 2; fi
seconds="${1:-60}"
shift || true
if [ -z "$build" ]; then
  build=build-fuzz
  bash scripts/deps.sh
  # clang with its sanitizer and libFuzzer runtimes
  bash scripts/deps.sh clang libclang-rt-dev
  launcher=()
  command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  CC=clang CXX=clang++ cmake -S . -B "$build" -DVONNEL_BUILD_FUZZ=ON \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" >/dev/null
fi
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  targets=($(sed -n 's/^vonnel_fuzz(\([a-z_]*\) .*/\1/p' fuzz/CMakeLists.txt))
fi
cmake --build "$build" -j"$(nproc)" --target "${targets[@]}"

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
export QT_QPA_PLATFORM=offscreen
# LeakSanitizer's thread tracer can fault on a dynamic TLS block of a
# library loaded later; the block is then scanned without the interceptor.
export ASAN_OPTIONS="${ASAN_OPTIONS:-intercept_tls_get_addr=0}"
run() {
  local t="$1" seeds="fuzz/corpus/${1#fuzz_}"
  mkdir -p "$work/$t" "$work/$t.found"
  local args=(-max_total_time="$seconds" -print_final_stats=1
              -artifact_prefix="$work/$t.found/" -max_len=4096 "$work/$t")
  [ -d "$seeds" ] && args+=("$seeds")
  if "$build/fuzz/$t" "${args[@]}" >"$work/$t.log" 2>&1; then :; else touch "$work/$t.failed"; fi
}
running=0
for t in "${targets[@]}"; do
  run "$t" &
  running=$((running + 1))
  if [ "$running" -ge "$(nproc)" ]; then wait -n; running=$((running - 1)); fi
done
wait

printf '%-16s %12s %10s %s\n' target executions exec/s findings
status=0
for t in "${targets[@]}"; do
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$work/$t.log" | tail -1)
  rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$work/$t.log" | tail -1)
  found=$(find "$work/$t.found" -type f | wc -l)
  printf '%-16s %12s %10s %s\n' "$t" "${runs:-?}" "${rate:-?}" "$found"
  if [ "$found" -gt 0 ] || [ -e "$work/$t.failed" ]; then
    status=1
    mkdir -p fuzz/findings
    find "$work/$t.found" -type f -exec cp {} fuzz/findings/ \;
    tail -40 "$work/$t.log"
  fi
done
exit $status
