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
# The session bus starts the accessibility bus on demand; the program
# speaks on it from its start.
on_virtual_screen "$work" timeout 90 dbus-run-session -- "$python" "$here/atspi_check.py" "$1" "$2"
