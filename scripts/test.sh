#!/usr/bin/env bash
# Builds everything and runs the whole test suite; then the same suite
# under AddressSanitizer and UndefinedBehaviorSanitizer, and every fuzz
# target for 30 seconds on its corpus (scripts/sanitize.sh, build-asan/).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
(cd build && ctest --output-on-failure -j"$(nproc)" --timeout 300)
bash scripts/sanitize.sh --fuzz 30
