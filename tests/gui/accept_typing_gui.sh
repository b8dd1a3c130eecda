#!/usr/bin/env bash
# A call taken three ways (the Return key on the question, a click on its
# Yes button, Auto Accept Connection), then the caller types lines with
# Returns: both panes on both sides must hold what was typed and nothing
# else. Two copies in windows on a virtual screen, keys and clicks from
# xdotool, the panes read as a screen reader reads them (AT-SPI).
# usage: accept_typing_gui.sh VONNEL PRESET
# Exits 77 (skipped) where Xvfb, xdotool, a session bus or AT-SPI is missing.
set -u
skip() { echo "SKIPPED: $*"; exit 77; }

if [ "${1:-}" != --inner ]; then
  for tool in Xvfb xdotool dbus-run-session; do
    command -v "$tool" >/dev/null || skip "no $tool"
  done
  launcher=""
  for f in /usr/libexec/at-spi-bus-launcher /usr/lib/at-spi2-core/at-spi-bus-launcher; do
    [ -x "$f" ] && launcher=$f && break
  done
  [ -n "$launcher" ] || skip "no at-spi-bus-launcher"
  py=""
  for p in /usr/bin/python3 python3; do
    "$p" -c 'import pyatspi' 2>/dev/null && py=$p && break
  done
  [ -n "$py" ] || skip "no python3 with pyatspi"
  # A session bus of its own, for the accessibility bus it carries.
  exec dbus-run-session -- bash "$0" --inner "$launcher" "$py" "$@"
fi
launcher=$2; py=$3; vonnel=$4; preset=$5
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../cli/lib.sh"
panes() { "$py" "$here/panes.py" "$@" 2>/dev/null; }

work=$(mktemp -d)
helpers=()
cleanup() {
  for p in "${helpers[@]}"; do kill "$p" 2>/dev/null; done
  wait 2>/dev/null
  rm -rf "$work"
}
trap cleanup EXIT
fail=0; pass=0
# check_pane NAME FILE EXPECTED: a pane's text as read, to the last line break.
check_pane() {
  local got="(not read)"
  if [ -f "$2" ]; then got=$(cat "$2"; echo .); got=${got%.}; fi
  if [ "$got" == "$3" ]; then pass=$((pass+1)); else
    echo "FAILED: $1"; echo "  expected: $(printf %q "$3")"; echo "  got:      $(printf %q "$got")"
    fail=$((fail+1))
  fi
}

# A screen of its own.
. "$here/xvfb.sh"
start_xvfb "$work" || skip "Xvfb did not start"
helpers+=("$xvfb_pid")
"$launcher" --launch-immediately >/dev/null 2>&1 &
helpers+=($!)
export QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1

# until SECONDS COMMAND...: runs COMMAND every 0.1 s until it succeeds.
until_ok() {
  local tries=$(( $1 * 10 )); shift
  for _ in $(seq "$tries"); do "$@" && return 0; sleep 0.1; done
  return 1
}
# The main window of the copy with this process id, once it has the caption
# of a session.
session_window() { xdotool search --all --pid "$1" --name '^Vonnel - ' 2>/dev/null | head -1; }
in_session() { [ -n "$(session_window "$1")" ]; }
# A copy's folder: the shipped settings, its port, its place on the screen
# (in twips), whether it takes calls without asking.
folder() {
  mkdir -p "$1"
  sed "s/^LocalPort=.*/LocalPort=$2/; s/^Settings-MainLeft=.*/Settings-MainLeft=$3/;
       s/^Settings-MainTop=.*/Settings-MainTop=0/; s/^Settings-MainWidth=.*/Settings-MainWidth=9000/;
       s/^Settings-MainHeight=.*/Settings-MainHeight=9000/;
       s/^Auto Accept Connection=.*/Auto Accept Connection=$4/" "$preset" > "$1/vonnel.ini"
}
stop() {
  kill -TERM "$@" 2>/dev/null
  for _ in $(seq 50); do kill -0 "$@" 2>/dev/null || break; sleep 0.1; done
  kill -KILL "$@" 2>/dev/null
  wait "$@" 2>/dev/null
}
click_pane() {
  local at; at=$(panes centre "$1" "$2") || return 1
  # shellcheck disable=SC2086
  xdotool mousemove $at click 1
}

typed=$'alpha beta gamma\ndelta epsilon\nzeta'
type_lines() {
  xdotool type --delay 30 "alpha beta gamma"; xdotool key Return
  xdotool type --delay 30 "delta epsilon"; xdotool key Return
  xdotool type --delay 30 "zeta"
}

run() {
  local way=$1 auto=0
  [ "$way" == auto ] && auto=1
  local lport cport
  lport=$(free_port 16000)
  cport=$(free_port 16000); while [ "$cport" == "$lport" ]; do cport=$(free_port 16000); done
  folder "$work/$way/listener" "$lport" 0 $auto
  folder "$work/$way/caller" "$cport" 9600 0
  "$vonnel" --app-path "$work/$way/listener" 2>"$work/$way/listener.err" &
  local listener=$!
  wait_listen "$lport" || { echo "FAILED: $way: the listener does not listen"; fail=$((fail+1)); stop $listener; return; }
  "$vonnel" --app-path "$work/$way/caller" "127.0.0.1:$lport" 2>"$work/$way/caller.err" &
  local caller=$!

  case $way in
  key)
    local box
    box_up() { box=$(xdotool search --all --pid "$listener" --name '^Connection Request' | head -1); [ -n "$box" ]; }
    until_ok 10 box_up || { echo "FAILED: $way: no question"; fail=$((fail+1)); stop $listener $caller; return; }
    xdotool windowfocus --sync "$box"
    # The user holds Return a little: the question closes at the press, and
    # the key goes on repeating, past the repeat delay, into the window now
    # in front; then, still held, over to the caller's window on the same
    # desktop.
    xdotool keydown Return
    sleep 1.2
    until_ok 10 in_session "$caller"
    xdotool windowfocus --sync "$(session_window "$caller")"
    click_pane "$caller" lower
    sleep 0.8
    xdotool keyup Return
    ;;
  mouse)
    local yes
    yes_up() { yes=$(panes centre "$listener" button:Yes); }
    until_ok 10 yes_up || { echo "FAILED: $way: no question"; fail=$((fail+1)); stop $listener $caller; return; }
    # shellcheck disable=SC2086
    xdotool mousemove $yes click 1
    ;;
  esac
  if ! until_ok 10 in_session "$caller" || ! until_ok 5 in_session "$listener"; then
    echo "FAILED: $way: no session"; fail=$((fail+1)); stop $listener $caller; return
  fi
  xdotool windowfocus --sync "$(session_window "$caller")"
  click_pane "$caller" lower
  type_lines
  local l=$work/$way/listener.panes c=$work/$way/caller.panes
  mkdir -p "$l" "$c"
  arrived() { panes text "$listener" "$l" && [ "$(cat "$l/upper"; echo .)" == "$typed." ]; }
  until_ok 6 arrived
  panes text "$caller" "$c"
  check_pane "$way: the caller's own pane" "$c/lower" "$typed"
  check_pane "$way: the listener's remote pane" "$l/upper" "$typed"
  check_pane "$way: the listener's own pane" "$l/lower" ""
  check_pane "$way: the caller's remote pane" "$c/upper" ""
  stop $listener $caller
}

for way in key mouse auto; do run $way; done
echo "$pass passed, $fail failed"
[ $fail -eq 0 ]
