#!/usr/bin/env bash
# Builds every fuzz target (clang, libFuzzer, ASan, UBSan) into build-fuzz/
# and runs each for the given number of seconds (default 60) on its seed
# corpus; prints executions and findings per target.
#   bash scripts/fuzz.sh [SECONDS] [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-60}"
shift || true
bash scripts/deps.sh
command -v clang++ >/dev/null || {
  sudo=""; [ "$(id -u)" -ne 0 ] && sudo="sudo"
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq clang
}
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
CC=clang CXX=clang++ cmake -S . -B build-fuzz -DVONNEL_BUILD_FUZZ=ON \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" >/dev/null
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  targets=($(sed -n 's/^vonnel_fuzz(\([a-z_]*\) .*/\1/p' fuzz/CMakeLists.txt))
fi
cmake --build build-fuzz -j"$(nproc)" --target "${targets[@]}"

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
export QT_QPA_PLATFORM=offscreen
printf '%-16s %12s %10s %s\n' target executions exec/s findings
status=0
for t in "${targets[@]}"; do
  seeds="fuzz/corpus/${t#fuzz_}"
  mkdir -p "$work/$t" "$work/$t.found"
  args=(-max_total_time="$seconds" -print_final_stats=1 -artifact_prefix="$work/$t.found/"
        -max_len=4096 "$work/$t")
  [ -d "$seeds" ] && args+=("$seeds")
  if ./build-fuzz/fuzz/"$t" "${args[@]}" >"$work/$t.log" 2>&1; then :; else status=1; fi
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$work/$t.log" | tail -1)
  rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$work/$t.log" | tail -1)
  found=$(find "$work/$t.found" -type f | wc -l)
  printf '%-16s %12s %10s %s\n' "$t" "${runs:-?}" "${rate:-?}" "$found"
  if [ "$found" -gt 0 ]; then
    mkdir -p fuzz/findings
    cp "$work/$t.found"/* fuzz/findings/
    tail -40 "$work/$t.log"
  fi
done
exit $status
