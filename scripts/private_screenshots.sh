#!/usr/bin/env bash
# Takes the pictures of private sessions on a virtual screen: the status of
# an old-wire, a private and a verified session, the Private Session window,
# and the warning when a verified peer shows another key.
#   bash scripts/private_screenshots.sh BUILD_DIR OUT_DIR DISPLAY_NUMBER
# Needs Xvfb, xdotool and ImageMagick (import). Calls only 127.0.0.1.
set -uo pipefail
build=$1 out=$2 disp=$3
src=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
mkdir -p "$out"
pids=()
trap 'kill "${pids[@]}" 2>/dev/null; rm -rf "$work"' EXIT

Xvfb ":$disp" -screen 0 1280x900x24 -nolisten tcp -noreset >"$work/xvfb.log" 2>&1 &
pids+=($!)
export DISPLAY=":$disp"
sleep 1

# A copy in its own folder on its own port, with extra settings.
copy() {
  local name=$1 port=$2; shift 2
  local dir="$work/$name"
  mkdir -p "$dir"
  sed "s/^LocalPort=.*/LocalPort=$port/; s/^Auto Accept Connection=.*/Auto Accept Connection=1/" \
    "$src/dist/vonnel.ini.preset" >"$dir/vonnel.ini"
  grep -q '^Auto Accept Connection=' "$dir/vonnel.ini" || echo 'Auto Accept Connection=1' >>"$dir/vonnel.ini"
  for kv in "$@"; do echo "$kv" >>"$dir/vonnel.ini"; done
}
start() {
  local name=$1; shift
  VONNEL_COLOR_SCHEME=light "$build/vonnel" --app-path "$work/$name" "$@" >"$work/$name.log" 2>&1 &
  pids+=($!)
  sleep 4
}
window_of() { xdotool search --onlyvisible --pid "$1" --name '^Vonnel' 2>/dev/null | head -1; }
shot() { import -window "$1" "$2"; }

copy b 25301
copy a 25302
start b
bpid=${pids[-1]}
start a 127.0.0.1:25301
apid=${pids[-1]}
sleep 3
bwin=$(window_of "$bpid")
awin=$(window_of "$apid")
shot "$bwin" "$out/private-not-verified.png"

# The Private Session window from the status button: Alt+V is Verified.
eval "$(xdotool getwindowgeometry --shell "$bwin")"
before=$(xdotool search --onlyvisible --name '.' | sort)
# The button sits right of the status text, in the status bar.
xdotool windowfocus "$bwin" 2>/dev/null
# Tab to the status button is not in the focus chain of the panes; click it.
xdotool mousemove --window "$bwin" 200 $((HEIGHT - 10)) click 1
sleep 2
dlg=$(comm -13 <(echo "$before") <(xdotool search --onlyvisible --name '.' | sort) | tail -1)
if [ -n "$dlg" ]; then
  shot "$dlg" "$out/private-session-window.png"
  xdotool windowfocus "$dlg" 2>/dev/null; xdotool key alt+v; sleep 1
  shot "$dlg" "$out/private-session-window-verified.png"
  xdotool key Escape; sleep 1
fi
shot "$bwin" "$out/private-verified.png"
# The caller verifies too, by the command word through a second start.
"$build/vonnel" --app-path "$work/a" "Cmd Verify" >/dev/null 2>&1
sleep 3

# Another copy calls b from the same address with a key of its own: b
# verified the key of that address, and warns before anything goes out.
kill "$apid"; sleep 2
copy c 25303
start c 127.0.0.1:25301
sleep 3
warn=$(xdotool search --onlyvisible --name 'key has changed' 2>/dev/null | head -1)
[ -n "$warn" ] && shot "$warn" "$out/private-key-changed-warning.png"
[ -n "$warn" ] && { xdotool windowfocus "$warn"; xdotool key Return; sleep 2; }

# The old wire: a copy that does not go private calls b.
copy d 25304 'Private Sessions=0'
kill "${pids[-1]}" 2>/dev/null; sleep 2
start d 127.0.0.1:25301
sleep 3
warn=$(xdotool search --onlyvisible --name 'not private' 2>/dev/null | head -1)
[ -n "$warn" ] && shot "$warn" "$out/private-downgrade-warning.png"
[ -n "$warn" ] && { xdotool windowfocus "$warn"; xdotool key y; sleep 2; }
shot "$bwin" "$out/old-wire.png"
ls "$out"
