#!/usr/bin/env bash
# What arrives is heard: two copies in a session on a virtual screen, the
# caller's text arrives in the listener's remote pane and a ring comes; a
# screen reader's listener on the accessibility bus must get the text and
# the ring as events while the focus stays in the listener's own pane.
# Exits 77 (skipped) where Xvfb, at-spi2-core or python3-pyatspi is missing.
# usage: announce_check.sh VONNEL PRESET
set -u
here=$(cd "$(dirname "$0")" && pwd)
. "$here/xvfb.sh"
need_atspi
work=$(mktemp -d)
trap 'stop_xvfb; rm -rf "$work"' EXIT
on_virtual_screen "$work" timeout 100 dbus-run-session -- "$python" "$here/announce_check.py" "$1" "$2" "$work"
