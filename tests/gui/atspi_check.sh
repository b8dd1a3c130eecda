#!/usr/bin/env bash
# The accessibility check: vonnel on a display of its own (Xvfb) in a
# D-Bus session of its own, read over AT-SPI by atspi_check.py. Exits 77
# (skipped) where Xvfb, at-spi2-core or python3-pyatspi is missing.
# usage: atspi_check.sh VONNEL PRESET
set -u
here=$(cd "$(dirname "$0")" && pwd)
. "$here/xvfb.sh"
need_atspi
work=$(mktemp -d)
trap 'stop_xvfb; rm -rf "$work"' EXIT
start_xvfb "$work" || { echo "FAILED: Xvfb did not start"; cat "$work/xvfb.log"; exit 1; }
# The session bus starts the accessibility bus on demand; the program
# speaks on it from its start.
timeout 90 dbus-run-session -- "$python" "$here/atspi_check.py" "$1" "$2"
rc=$?
if [ $rc -ne 0 ]; then
  kill -0 "$xvfb_pid" 2>/dev/null && echo "== the virtual screen $DISPLAY is up" ||
    echo "== the virtual screen $DISPLAY ended during the check"
  cat "$work/xvfb.log"
fi
exit $rc
