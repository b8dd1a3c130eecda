#!/usr/bin/env bash
# The accessibility check: vonnel on a display of its own (Xvfb) in a
# D-Bus session of its own, read over AT-SPI by atspi_check.py. Exits 77
# (skipped) where Xvfb, at-spi2-core or python3-pyatspi is missing.
# usage: atspi_check.sh VONNEL PRESET
set -u
here=$(cd "$(dirname "$0")" && pwd)
python=/usr/bin/python3
launcher=$(ls /usr/libexec/at-spi-bus-launcher /usr/lib/at-spi2-core/at-spi-bus-launcher 2>/dev/null | head -1)
if ! command -v Xvfb >/dev/null || ! command -v dbus-run-session >/dev/null || [ -z "$launcher" ] ||
   ! "$python" -c 'import pyatspi' 2>/dev/null; then
  echo "skipped: needs Xvfb, dbus-run-session, at-spi2-core and python3-pyatspi"
  exit 77
fi
work=$(mktemp -d); xvfb=
trap '[ -n "$xvfb" ] && kill $xvfb 2>/dev/null; rm -rf "$work"' EXIT
# Xvfb picks a free display and tells it on the pipe.
exec 5>"$work/display"
Xvfb -displayfd 5 -screen 0 1280x900x24 -nolisten tcp >"$work/xvfb.log" 2>&1 & xvfb=$!
for _ in $(seq 1 100); do [ -s "$work/display" ] && break; sleep 0.05; done
[ -s "$work/display" ] || { echo "FAILED: Xvfb did not start"; cat "$work/xvfb.log"; exit 1; }
export DISPLAY=:$(head -1 "$work/display")
# The session bus starts the accessibility bus on demand; the program
# speaks on it from its start.
timeout 90 dbus-run-session -- "$python" "$here/atspi_check.py" "$1" "$2"
