#!/usr/bin/env bash
# Runs the program under a headless Weston (no screen needed) with Qt's
# Wayland platform and takes a screenshot of the desktop after a while.
#   bash scripts/wayland_headless.sh VONNEL PRESET OUT.png [SECONDS]
# Needs weston and qt6-wayland (scripts/deps.sh). The screenshooter
# protocol is only offered with --debug.
set -euo pipefail
vonnel=$1; preset=$2; out=$3; wait_s=${4:-6}
work=$(mktemp -d)
export XDG_RUNTIME_DIR=$work/run
mkdir -m 700 "$XDG_RUNTIME_DIR"
socket=wayland-vonnel-$$
pids=()
cleanup() {
  for p in "${pids[@]}"; do kill "$p" 2>/dev/null || true; done
  wait 2>/dev/null || true
  rm -rf "$work"
}
trap cleanup EXIT
weston --backend=headless-backend.so --use-pixman --width=1280 --height=900 \
  --socket="$socket" --idle-time=0 --debug >"$work/weston.log" 2>&1 &
pids+=($!)
for _ in $(seq 100); do [ -S "$XDG_RUNTIME_DIR/$socket" ] && break; sleep 0.05; done
[ -S "$XDG_RUNTIME_DIR/$socket" ] || { cat "$work/weston.log"; exit 1; }
mkdir "$work/copy"
sed "s/^Show Tips at Startup=.*/Show Tips at Startup=0/; s/^LocalPort=.*/LocalPort=$((20000 + RANDOM % 20000))/" "$preset" >"$work/copy/vonnel.ini"
WAYLAND_DISPLAY=$socket QT_QPA_PLATFORM=wayland dbus-run-session -- \
  "$vonnel" --app-path "$work/copy" >"$work/vonnel.log" 2>&1 &
pids+=($!)
sleep "$wait_s"
kill -0 "${pids[1]}" || { echo "the program ended:"; cat "$work/vonnel.log"; exit 1; }
(cd "$work" && WAYLAND_DISPLAY=$socket timeout 10 weston-screenshooter)
shot=$(ls "$work"/wayland-screenshot-*.png | head -1)
cp "$shot" "$out"
echo "screenshot: $out"
echo "== program's messages"; cat "$work/vonnel.log"
