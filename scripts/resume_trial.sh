#!/usr/bin/env bash
# A broken transfer gone on with, between two headless copies on loopback:
# A sends a file to B, A is killed (SIGKILL) at a random point, a new A
# calls B again and offers the same file, B's user answers the resume
# question with Yes, and the received file is compared with cmp.
# Prints the part kept, the bytes A's second run put on the wire (from the
# kernel's count of the connection), the times, and the outcome.
#
# usage: scripts/resume_trial.sh [MB] [PORT]   (default 200 MB, port 31400;
#        A listens on PORT+1)   env: VONNEL_BUILD=DIR, RESUME_KEEP=1
set -u
here=$(cd "$(dirname "$0")/.." && pwd)
build=${VONNEL_BUILD:-$here/build}
vonnel=$build/vonnel
preset=$here/dist/vonnel.ini.preset
mb=${1:-200}
port=${2:-31400}
[ -x "$vonnel" ] || { echo "resume_trial.sh: build $vonnel first"; exit 2; }
work=$(mktemp -d /tmp/vonnel-resume.XXXXXX)
pid_a=; pid_b=
cleanup() {
    for p in $pid_a $pid_b; do kill -KILL "$p" 2>/dev/null; wait "$p" 2>/dev/null; done
    [ "${RESUME_KEEP:-0}" = 1 ] && echo "kept $work" || rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

make_folder() { # DIR PORT
    mkdir -p "$1"
    sed -e "s/^LocalPort=.*/LocalPort=$2/" -e "s/^RemotePort=.*/RemotePort=$port/" \
        -e "s/^Connect Port=.*/Connect Port=$port/" \
        -e "s/^Auto Accept Connection=.*/Auto Accept Connection=1/" \
        -e "s/^Command Line Interval=.*/Command Line Interval=500/" "$preset" > "$1/vonnel.ini"
}
size_of() { stat -c %s "$1" 2>/dev/null || echo 0; }
ms() { date +%s%3N; }
# Bytes the kernel has seen acknowledged on A's connection to B.
acked_from_a() {
    ss -tinH state established "( dport = :$port )" 2>/dev/null |
        grep -o 'bytes_acked:[0-9]*' | head -1 | cut -d: -f2
}
start_a() { # LOGNAME
    env QT_QPA_PLATFORM=offscreen "$vonnel" --headless --app-path "$work/a" \
        --answers "$work/a/answers" "127.0.0.1:$port" 2>>"$work/a/$1" &
    pid_a=$!
    local t
    for t in $(seq 150); do
        n=$(grep -c '> Connection with' "$work/a/vonnel.log" 2>/dev/null)
        [ "${n:-0}" -ge "$2" ] && return 0
        sleep 0.1
    done
    echo "no session came up"; return 1
}
send_file() {
    env QT_QPA_PLATFORM=offscreen "$vonnel" --headless --app-path "$work/a" Cmd SendFile 2>/dev/null
}

payload=$work/source.bin
received=$work/received.bin
head -c $(( mb * 1024 * 1024 )) /dev/urandom > "$payload"
size=$(size_of "$payload")
make_folder "$work/a" $(( port + 1 )); make_folder "$work/b" "$port"
printf 'file:%s\n' "$payload" > "$work/a/answers"
printf 'yes\nfile:%s\nyes\nyes\n' "$received" > "$work/b/answers"

env QT_QPA_PLATFORM=offscreen "$vonnel" --headless --app-path "$work/b" \
    --answers "$work/b/answers" 2>"$work/b/stderr" &
pid_b=$!
for t in $(seq 100); do ss -ltnH "( sport = :$port )" | grep -q . && break; sleep 0.1; done

start_a stderr1 1 || exit 1
point=$(( size / 10 + (RANDOM * 32768 + RANDOM) % (size * 8 / 10) ))
t0=$(ms)
send_file
while [ "$(size_of "$received")" -le "$point" ]; do sleep 0.01; done
kill -KILL "$pid_a"; wait "$pid_a" 2>/dev/null; pid_a=
t1=$(ms)
sleep 1
kept=$(size_of "$received")
echo "first run: killed A after $(( t1 - t0 )) ms at $point; B kept $kept of $size bytes"
cmp -s <(head -c "$kept" "$payload") "$received" && echo "  the part is a clean prefix" || echo "  the part is NOT a prefix"

start_a stderr2 2 || exit 1
t2=$(ms)
send_file
for t in $(seq 6000); do [ "$(size_of "$received")" -ge "$size" ] && break; sleep 0.05; done
sleep 1
t3=$(ms)
sent=$(acked_from_a)
echo "second run: $(( t3 - t2 )) ms (with 1 s of settling); A's connection carried ${sent:-?} bytes;" \
     "the rest is $(( size - kept )) bytes, a fresh send would carry $size and more"
grep -a 'Resume' "$work/b/stderr" | cut -f1-4 | sed 's/^/  B asked: /'
grep -a 'not the one' "$work/b/stderr" | sed 's/^/  B said: /'
if cmp "$payload" "$received"; then
    echo "RESULT: received file equals the source ($size bytes, cmp)"
else
    echo "RESULT: files differ"
    exit 1
fi
