# Sourced by the tests on a virtual screen. start_xvfb WORKDIR starts Xvfb
# on a display nobody else answers on, exports DISPLAY and sets xvfb_pid.
#
# Xvfb -displayfd takes the first display whose lock file is free, but the
# X clients try the abstract socket "@/tmp/.X11-unix/X<n>" first, and that
# name is shared by every process in the network namespace: a machine whose
# containers share one namespace had another job's server answer on :0, and
# our copy connected to it and was dropped. So the number is chosen here,
# free both as a lock file and as an abstract name, and the server is asked
# to keep it across its last client leaving (-noreset).
start_xvfb() {
  local work=$1 n tries
  xvfb_pid=
  for tries in $(seq 20); do
    n=$(( 100 + (RANDOM % 800) ))
    [ -e "/tmp/.X$n-lock" ] && continue
    [ -e "/tmp/.X11-unix/X$n" ] && continue
    grep -q "@/tmp/.X11-unix/X$n\$" /proc/net/unix 2>/dev/null && continue
    Xvfb ":$n" -screen 0 1280x900x24 -nolisten tcp -noreset >"$work/xvfb.log" 2>&1 &
    xvfb_pid=$!
    local i
    for i in $(seq 100); do
      kill -0 "$xvfb_pid" 2>/dev/null || break
      [ -S "/tmp/.X11-unix/X$n" ] && { export DISPLAY=":$n"; return 0; }
      sleep 0.05
    done
    kill "$xvfb_pid" 2>/dev/null; wait "$xvfb_pid" 2>/dev/null; xvfb_pid=
  done
  return 1
}

# stop_xvfb: ends the server and waits for it, so its socket is gone before
# the next test looks for a free display.
stop_xvfb() {
  [ -n "${xvfb_pid:-}" ] || return 0
  kill "$xvfb_pid" 2>/dev/null
  wait "$xvfb_pid" 2>/dev/null
  xvfb_pid=
}

# need_atspi: sets python and launcher for the accessibility checks, or
# exits 77 (skipped) where Xvfb, a session bus, at-spi2-core or
# python3-pyatspi is missing.
need_atspi() {
  python=/usr/bin/python3
  launcher=$(ls /usr/libexec/at-spi-bus-launcher /usr/lib/at-spi2-core/at-spi-bus-launcher 2>/dev/null | head -1)
  if ! command -v Xvfb >/dev/null || ! command -v dbus-run-session >/dev/null || [ -z "$launcher" ] ||
     ! "$python" -c 'import pyatspi' 2>/dev/null; then
    echo "skipped: needs Xvfb, dbus-run-session, at-spi2-core and python3-pyatspi"
    exit 77
  fi
}

# on_virtual_screen WORKDIR COMMAND...: runs COMMAND on a screen of its own
# and returns its status. A run that failed because the screen was gone
# (the server ended, or a client could not reach it) is the machine's
# fault, not the program's: it is told and run once more on a new screen.
on_virtual_screen() {
  local work=$1 attempt rc=1; shift
  for attempt in 1 2; do
    start_xvfb "$work" || { echo "FAILED: Xvfb did not start"; cat "$work/xvfb.log"; return 1; }
    "$@" >"$work/run.log" 2>&1
    rc=$?
    cat "$work/run.log"
    local gone=0
    kill -0 "$xvfb_pid" 2>/dev/null || gone=1
    grep -q "could not connect to display" "$work/run.log" && gone=1
    if [ $rc -ne 0 ]; then
      echo "== the virtual screen $DISPLAY ($([ $gone = 1 ] && echo "gone" || echo "up")):"
      cat "$work/xvfb.log"
    fi
    stop_xvfb
    [ $rc -eq 0 ] || [ $gone = 0 ] && return $rc
    [ $attempt = 1 ] && echo "== the screen went away under the check; once more on a new screen"
  done
  return $rc
}
