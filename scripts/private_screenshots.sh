#!/usr/bin/env bash
# Takes the pictures of private sessions on a virtual screen: the status of
# a private, a verified and an old-wire session, the Private Session
# window, the warning when a verified peer shows another key and the one
# when an address that went private offers only the old wire.
#   bash scripts/private_screenshots.sh BUILD_DIR OUT_DIR DISPLAY_NUMBER
# Needs Xvfb, xdotool and ImageMagick (import). Calls only 127.0.0.1.
set -uo pipefail
build=$1 out=$2 disp=$3
src=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
mkdir -p "$out"
pids=()
trap 'kill -9 "${pids[@]}" 2>/dev/null; rm -rf "$work"' EXIT

Xvfb ":$disp" -screen 0 1280x900x24 -nolisten tcp -noreset >"$work/xvfb.log" 2>&1 &
pids+=($!)
export DISPLAY=":$disp"
sleep 1

# A copy in its own folder on its own port; b takes calls without asking.
copy() {
  local name=$1 port=$2; shift 2
  mkdir -p "$work/$name"
  sed "s/^LocalPort=.*/LocalPort=$port/; s/^Auto Accept Connection=.*/Auto Accept Connection=1/" \
    "$src/dist/vonnel.ini.preset" >"$work/$name/vonnel.ini"
  for kv in "$@"; do sed -i "s/^${kv%%=*}=.*/$kv/" "$work/$name/vonnel.ini"; done
}
start() {
  local name=$1; shift
  VONNEL_COLOR_SCHEME=light "$build/vonnel" --app-path "$work/$name" "$@" >"$work/$name.log" 2>&1 &
  pids+=($!)
  last=$!
  sleep 5
}
window_of() { xdotool search --all --onlyvisible --pid "$1" --name '^Vonnel' 2>/dev/null | head -1; }
titled() { xdotool search --onlyvisible --name "$1" 2>/dev/null | head -1; }
shot() { [ -n "$1" ] && import -window "$1" "$2"; }

copy b 25301
copy a 25302
start b; b=$last
start a 127.0.0.1:25301; a=$last
bwin=$(window_of "$b")
xdotool windowmove "$(window_of "$a")" 480 300
sleep 1
shot "$bwin" "$out/private-not-verified.png"

# The status button, right of the status text, opens the window.
eval "$(xdotool getwindowgeometry --shell "$bwin")"
xdotool mousemove --window "$bwin" 370 $((HEIGHT - 13)) click 1
sleep 2
dlg=$(titled '^Private Session$')
shot "$dlg" "$out/frmPrivate-compare.png"
xdotool windowfocus "$dlg" 2>/dev/null; xdotool key alt+v; sleep 1
shot "$dlg" "$out/frmPrivate-verified.png"
xdotool key Escape; sleep 1
shot "$bwin" "$out/private-verified.png"
# The caller verifies by the command word, through a second start.
"$build/vonnel" --app-path "$work/a" "Cmd Verify" >/dev/null 2>&1
sleep 6

# Another copy with a key of its own calls b from the same address.
kill -9 "$a"; sleep 2
copy c 25303
start c 127.0.0.1:25301; c=$last
sleep 2
w=$(titled "key has changed")
shot "$w" "$out/private-key-changed-warning.png"
[ -n "$w" ] && { xdotool windowfocus "$w"; xdotool key Return; sleep 2; }

# A copy that stays plain calls b: b had private sessions with that address.
kill -9 "$c"; sleep 2
copy d 25304 'Private Sessions=0'
start d 127.0.0.1:25301
sleep 2
w=$(titled "not private")
shot "$w" "$out/private-downgrade-warning.png"
[ -n "$w" ] && { xdotool windowfocus "$w"; xdotool key y; sleep 2; }
shot "$bwin" "$out/private-old-wire.png"
ls "$out"
