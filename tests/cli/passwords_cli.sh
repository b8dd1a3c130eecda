#!/usr/bin/env bash
# The start-up lock as a script meets it: a headless copy whose first level
# has no record opens only with the marker word, and ends on anything else.
# usage: passwords_cli.sh VONNEL PRESET
set -u
vonnel=$1; preset=$2
work=$(mktemp -d); pid=; trap '[ -n "$pid" ] && kill $pid 2>/dev/null; rm -rf "$work"' EXIT
fail=0; pass=0
check() { if eval "$2"; then pass=$((pass+1)); else echo "FAILED: $1"; fail=$((fail+1)); fi; }
# A port below the range the system hands out to other sockets (where
# the tests' own copies listen) that nothing answers on now.
. "$(dirname "$0")/lib.sh"
port=$(free_port 17000)

mkdir "$work/app"
sed "s/^LocalPort=.*/LocalPort=$port/; s/^Usage=.*/Usage=10/; s/^Override Password=.*/Override Password=0/" \
  "$preset" > "$work/app/vonnel.ini"

# A wrong answer: the refusal, the box asked again and cancelled, the end.
printf 'text:wrong\nok\n' > "$work/wrong"
timeout 10 "$vonnel" --app-path "$work/app" --headless --answers "$work/wrong" 2>"$work/err1"; rc=$?
check "wrong password ends the copy" "[ $rc -ne 124 ]"
check "asked for the password" "grep -q \$'^input\tVonnel - \\\\[Locked\\\\]\tPlease enter password to unlock it\ttext:wrong\$' '$work/err1'"
check "refused" "grep -q \$'^box\t.*\tNot a valid Password!!!\t' '$work/err1'"
check "not listening after" "! listening $port"

# The marker word of a level without a record opens it.
printf 'text:qzyrtnEdiov\n' > "$work/right"
"$vonnel" --app-path "$work/app" --headless --answers "$work/right" 2>"$work/err2" & pid=$!
wait_listen $port
check "right password: the copy listens" "listening $port"
kill -TERM $pid; wait $pid; pid=

[ $fail -eq 0 ] || sed 's/^/  stderr: /' "$work/err1" "$work/err2"
echo "$pass passed, $fail failed"
[ $fail -eq 0 ]
