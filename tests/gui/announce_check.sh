#!/usr/bin/env bash
# What arrives is heard: two copies in a session on a virtual screen, the
# caller's text arrives in the listener's remote pane and a ring comes; a
# screen reader's listener on the accessibility bus must get the text and
# the ring as events while the focus stays in the listener's own pane.
# Exits 77 (skipped) where Xvfb, at-spi2-core or python3-pyatspi is missing.
# usage: announce_check.sh VONNEL PRESET
set -u
here=$(cd "$(dirname "$0")" && pwd)
python=/usr/bin/python3
launcher=$(ls /usr/libexec/at-spi-bus-launcher /usr/lib/at-spi2-core/at-spi-bus-launcher 2>/dev/null | head -1)
if ! command -v Xvfb >/dev/null || ! command -v dbus-run-session >/dev/null || [ -z "$launcher" ] ||
   ! "$python" -c 'import pyatspi' 2>/dev/null; then
  echo "skipped: needs Xvfb, dbus-run-session, at-spi2-core and python3-pyatspi"
  exit 77
fi
. "$here/xvfb.sh"
work=$(mktemp -d)
trap 'stop_xvfb; rm -rf "$work"' EXIT
start_xvfb "$work" || { echo "FAILED: Xvfb did not start"; cat "$work/xvfb.log"; exit 1; }
timeout 100 dbus-run-session -- "$python" "$here/announce_check.py" "$1" "$2" "$work"
