#!/usr/bin/env bash
# Builds the program and starts it; arguments go to the program.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
exec ./build/vonnel "$@"
