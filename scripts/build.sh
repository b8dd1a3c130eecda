#!/usr/bin/env bash
# Configures and builds into build/ (Release with debug information). A
# unity build: the sources of each library are compiled a few at a time as
# one unit, which halves a whole build on two cores (each file still
# compiles on its own in a build configured without it).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_UNITY_BUILD=ON >/dev/null
cmake --build build -j"$(nproc)"
