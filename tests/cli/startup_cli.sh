#!/usr/bin/env bash
# The program as a script drives it: headless starts on a scratch folder.
# usage: startup_cli.sh VONNEL PRESET
set -u
vonnel=$1; preset=$2
work=$(mktemp -d); trap 'kill $pid 2>/dev/null; rm -rf "$work"' EXIT
fail=0; pass=0
check() { if eval "$2"; then pass=$((pass+1)); else echo "FAILED: $1"; fail=$((fail+1)); fi; }
# A port below the range the system hands out to other sockets (where
# the tests' own copies listen) that nothing answers on now.
. "$(dirname "$0")/lib.sh"
port=$(free_port 10000)

# No vonnel.ini and nothing to repair it from: the Critical Error box, then the end.
mkdir "$work/empty"
timeout 10 "$vonnel" --app-path "$work/empty" --headless 2>"$work/err1"; rc=$?
check "critical error box" "grep -q \$'^box\tCritical Error\tThis error cannot be fixed. This program will be ended.\tok\$' '$work/err1'"
check "missing-file box first" "grep '^box' '$work/err1' | head -1 | grep -qF 'vonnel.ini is missing.\\r\\n\\r\\nClick OK'"
check "ends with failure" "[ $rc -ne 0 ] && [ $rc -ne 124 ]"

# With vonnel.bak present the file is rebuilt and the copy listens.
mkdir "$work/app"
sed "s/^LocalPort=.*/LocalPort=$port/; s/^Usage=.*/Usage=10/" "$preset" > "$work/app/Vonnel.BAK"
echo "Error 1=stale" > "$work/app/error.log"
"$vonnel" --app-path "$work/app" --headless 2>"$work/err2" & pid=$!
wait_listen $port
check "listens on LocalPort" "listening $port"
check "vonnel.ini rebuilt" "grep -q '^LocalPort=$port' '$work/app/vonnel.ini'"
check "usage counted" "grep -q '^Usage=11' '$work/app/vonnel.ini'"
check "stale error.log gone" "[ ! -e '$work/app/error.log' ]"
check "corrected keys written" "grep -q '^Command Line Interval=5000' '$work/app/vonnel.ini' && grep -q '^Overflow=30' '$work/app/vonnel.ini'"

# A second start on the same folder hands its command over and ends at once.
start=$(date +%s%N)
timeout 5 "$vonnel" --app-path "$work/app" --headless Input hello 2>/dev/null; rc=$?
ms=$(( ($(date +%s%N) - start) / 1000000 ))
check "second start exits 0" "[ $rc -eq 0 ]"
check "second start ends at once, not running on ($ms ms)" "[ $ms -lt 5000 ]"
check "Command.ini written" "grep -q '^Command=Input hello' '$work/app/Command.ini'"

# A polite kill ends the first copy in order.
kill -TERM $pid; wait $pid; rc=$?
check "first copy ends on TERM" "[ $rc -eq 0 ]"
check "placement written at the end" "grep -q '^Settings-MainWidth=' '$work/app/vonnel.ini'"

echo "$pass passed, $fail failed"
[ $fail -eq 0 ]
