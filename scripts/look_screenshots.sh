#!/usr/bin/env bash
# Takes the pictures of the program's look on a virtual screen, light and
# dark, at scale 1 and 2: the main window, the toolbar with a tip up, the
# Connect window, the options and the board with a quick stroke.
#   bash scripts/look_screenshots.sh BUILD_DIR OUT_DIR DISPLAY_NUMBER
# Needs Xvfb, xdotool and ImageMagick (import, convert).
set -uo pipefail
build=$1 out=$2 disp=$3
src=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
mkdir -p "$out"
trap 'kill "${app:-}" "${xvfb:-}" 2>/dev/null; rm -rf "$work"' EXIT

windows() { xdotool search --onlyvisible --name '.' 2>/dev/null | sort; }
# The window that came up since the list in $1 was taken.
new_window() {
  local before=$1 i w
  for i in $(seq 40); do
    w=$(comm -13 <(echo "$before") <(windows) | tail -1)
    [ -n "$w" ] && { echo "$w"; return 0; }
    sleep 0.25
  done
  return 1
}
shot() { import -window "$1" "$2"; }
# The part of the screen from the window's corner, w x h pixels.
shot_area() {
  local id=$1 file=$2 w=$3 h=$4 X Y
  eval "$(xdotool getwindowgeometry --shell "$id")"
  import -window root -crop "${w}x${h}+${X}+${Y}" +repage "$file"
}

for scale in 1 2; do
  Xvfb ":$disp" -screen 0 $((1280 * scale))x$((900 * scale))x24 -nolisten tcp -noreset >"$work/xvfb.log" 2>&1 &
  xvfb=$!
  export DISPLAY=":$disp"
  sleep 1
  for scheme in light dark; do
    dir="$work/$scheme$scale"
    mkdir -p "$dir"
    sed "s/^LocalPort=.*/LocalPort=$((25170 + scale))/" "$src/dist/vonnel.ini.preset" >"$dir/vonnel.ini"
    VONNEL_COLOR_SCHEME=$scheme QT_SCALE_FACTOR=$scale "$build/vonnel" --app-path "$dir" >"$dir/log" 2>&1 &
    app=$!
    sleep 5
    main=$(xdotool search --onlyvisible --name '^Vonnel' | head -1)
    s=$scale
    tag="$scheme-${scale}x"
    shot "$main" "$out/main-$tag.png"
    # The tip of Send File, the third button: Qt shows tips in the active
    # window only, and there is no window manager to make it so.
    xdotool windowfocus "$main" 2>/dev/null
    sleep 0.5
    xdotool mousemove --window "$main" $((80 * s)) $((30 * s))
    sleep 0.3
    xdotool mousemove --window "$main" $((92 * s)) $((38 * s))
    sleep 2.5
    shot_area "$main" "$out/toolbar-tip-send-file-$tag.png" $((800 * s)) $((130 * s))
    # Away from the button, and the tip gone, before any window is counted.
    xdotool mousemove --window "$main" $((400 * s)) $((400 * s))
    sleep 1.5
    # Connect.
    before=$(windows)
    xdotool mousemove --window "$main" $((19 * s)) $((38 * s)) click 1
    if w=$(new_window "$before"); then
      sleep 1
      shot "$w" "$out/connect-$tag.png"
      xdotool windowfocus "$w" 2>/dev/null; xdotool key Escape
      sleep 1
    fi
    # The options, from the Tools menu by its keys.
    before=$(windows)
    xdotool windowfocus "$main" 2>/dev/null
    xdotool key --window "$main" alt+t
    sleep 0.7
    xdotool key o
    if w=$(new_window "$before"); then
      sleep 1.5
      shot "$w" "$out/options-$tag.png"
      xdotool windowfocus "$w" 2>/dev/null; xdotool key Escape
      sleep 1
    fi
    # The board, a stroke drawn fast with the pen.
    before=$(windows)
    xdotool mousemove --window "$main" $((125 * s)) $((38 * s)) click 1
    if w=$(new_window "$before"); then
      sleep 1.5
      xdotool mousemove --window "$w" $((25 * s)) $((25 * s)) click 1
      sleep 0.5
      xdotool mousemove --window "$w" $((300 * s)) $((300 * s)) mousedown 1
      for i in $(seq 0 20); do
        xdotool mousemove --window "$w" $(((300 + i * 20) * s)) $(((300 + (i % 4) * 25 + i * 5) * s))
        sleep 0.02
      done
      xdotool mouseup 1
      sleep 1
      shot "$w" "$out/board-stroke-$tag.png"
    fi
    # A box left up would hold a plain end; the pictures are taken.
    kill -9 "$app"; wait "$app" 2>/dev/null; app=
  done
  kill "$xvfb"; wait "$xvfb" 2>/dev/null; xvfb=
done
