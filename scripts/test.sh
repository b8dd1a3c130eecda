#!/usr/bin/env bash
# Builds everything and runs the whole test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
cd build
ctest --output-on-failure -j"$(nproc)" --timeout 300
