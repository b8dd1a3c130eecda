#!/usr/bin/env bash
# Installs clang and its sanitizer and libFuzzer runtimes, when missing:
# the sanitizer build and the fuzz targets are built with them.
set -euo pipefail
missing=()
for p in clang libclang-rt-dev; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=""; [ "$(id -u)" -ne 0 ] && sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}"
fi
