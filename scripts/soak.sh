#!/usr/bin/env bash
# Soak: two headless copies on loopback for MINUTES (default 30). Copy A
# types a numbered line every two seconds or so while copy B sends A a file
# again and again. Every minute it prints both copies' resident memory; at
# the end it counts the lines that reached B's session record and compares
# every received file with its source.
#
# usage: scripts/soak.sh [MINUTES]
# env:   VONNEL_BUILD=DIR  the build folder (default build/)
#        SOAK_MB=N         size of each file sent (default 20)
#        SOAK_PORT=N       B's port on 127.0.0.1 (default 24311)
set -u
here=$(cd "$(dirname "$0")/.." && pwd)
build=${VONNEL_BUILD:-$here/build}
vonnel=$build/vonnel
preset=$build/vonnel.ini.preset
minutes=${1:-30}
mb=${SOAK_MB:-20}
port_b=${SOAK_PORT:-24311}
port_a=$((port_b + 1))
[ -x "$vonnel" ] && [ -f "$preset" ] || { echo "soak.sh: build $vonnel first"; exit 2; }

work=$(mktemp -d /tmp/vonnel-soak.XXXXXX)
pid_a=; pid_b=
cleanup() {
    for p in $pid_a $pid_b; do kill -KILL "$p" 2>/dev/null; wait "$p" 2>/dev/null; done
    [ "${SOAK_KEEP:-0}" = 1 ] && echo "kept $work" || rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

# A copy's folder: the preset with its own port, calls taken without a
# question, commands polled every second, the session record on.
make_folder() { # DIR LOCALPORT REMOTEPORT
    mkdir -p "$1"
    sed -e "s/^LocalPort=.*/LocalPort=$2/" -e "s/^RemotePort=.*/RemotePort=$3/" \
        -e "s/^Connect Port=.*/Connect Port=$3/" \
        -e "s/^Auto Accept Connection=.*/Auto Accept Connection=1/" \
        -e "s/^No SmartSave=.*/No SmartSave=0/" \
        -e "s/^Command Line Interval=.*/Command Line Interval=1000/" "$preset" > "$1/vonnel.ini"
}

# Hands a command to a running copy the way a second start does, and waits
# until the copy has taken it (it deletes the file), so none is overwritten.
command_to() { # DIR TEXT
    local i
    printf '[Vonnel]\r\nCommand=%s\r\n' "$2" > "$1/Command.ini.tmp"
    mv "$1/Command.ini.tmp" "$1/Command.ini"
    for i in $(seq 100); do [ -e "$1/Command.ini" ] || return 0; sleep 0.05; done
    return 1
}

rss_kb() { awk '/^VmRSS/ {print $2}' "/proc/$1/status" 2>/dev/null || echo 0; }
# The anonymous part of the resident memory: the heap and stacks, without
# the pages of libraries and mapped files.
anon_kb() { awk '/^Anonymous/ {print $2}' "/proc/$1/smaps_rollup" 2>/dev/null || echo 0; }
size_of() { stat -c %s "$1" 2>/dev/null || echo 0; }

a=$work/a; b=$work/b
make_folder "$a" "$port_a" "$port_b"
make_folder "$b" "$port_b" "$port_a"
head -c $((mb * 1024 * 1024)) /dev/urandom > "$work/payload.bin"

# Answers in order: B opens the payload for each send; A accepts each offer
# and saves it under a new name. A transfer starts every 20 s at most.
rounds=$((minutes * 3 + 3))
: > "$b/answers"; : > "$a/answers"
for n in $(seq "$rounds"); do
    echo "file:$work/payload.bin" >> "$b/answers"
    printf 'yes\nfile:%s\n' "$work/received-$n.bin" >> "$a/answers"
done

echo "soak.sh: $(date -u '+%F %T') UTC, $minutes min, $mb MB a file, work $work"
QT_QPA_PLATFORM=offscreen "$vonnel" --headless --app-path "$b" --answers "$b/answers" 2>"$b/stderr" &
pid_b=$!
for i in $(seq 100); do ss -ltn | grep -q ":$port_b " && break; sleep 0.1; done
QT_QPA_PLATFORM=offscreen "$vonnel" --headless --app-path "$a" --answers "$a/answers" \
    "127.0.0.1:$port_b" 2>"$a/stderr" &
pid_a=$!
for i in $(seq 150); do grep -q '> Connection with' "$a/vonnel.log" 2>/dev/null && break; sleep 0.1; done
grep -q '> Connection with' "$a/vonnel.log" 2>/dev/null || { echo "no session came up"; exit 1; }

start=$(date +%s); end=$((start + minutes * 60)); next_report=$start
lines=0; sent=0; intact=0; broken=0; pending=; next_send=$start
printf '%6s %10s %10s %10s %10s %7s %6s\n' minute "A RSS KB" "A anon KB" "B RSS KB" "B anon KB" lines files
while [ "$(date +%s)" -lt "$end" ]; do
    now=$(date +%s)
    if [ "$now" -ge "$next_report" ]; then
        printf '%6d %10s %10s %10s %10s %7d %6d\n' $(( (now - start) / 60 )) "$(rss_kb $pid_a)" "$(anon_kb $pid_a)" \
            "$(rss_kb $pid_b)" "$(anon_kb $pid_b)" "$lines" "$intact"
        next_report=$((next_report + 60))
    fi
    # A finished file is compared; then B sends the next one.
    if [ -n "$pending" ] && [ "$(size_of "$pending")" -ge $((mb * 1024 * 1024)) ]; then
        sleep 0.5
        if cmp -s "$pending" "$work/payload.bin"; then intact=$((intact + 1)); else broken=$((broken + 1)); fi
        rm -f "$pending"; pending=
    fi
    if [ -z "$pending" ] && [ "$sent" -lt "$rounds" ] && [ "$now" -ge "$next_send" ]; then
        sent=$((sent + 1)); pending=$work/received-$sent.bin; next_send=$((now + 20))
        command_to "$b" "Cmd SendFile" || echo "B did not take its command"
    fi
    lines=$((lines + 1))
    command_to "$a" "Input soak line $lines of the typing side" || echo "A did not take its command"
    command_to "$a" "Key Enter" || echo "A did not take its command"
done

# The session ends from A: both copies write their session record.
command_to "$a" "Cmd Disconnect"
sleep 2
record=$(ls "$b"/[0-9]*.txt 2>/dev/null | head -1)
got=0
[ -n "$record" ] && got=$(grep -c "soak line [0-9]* of the typing side" "$record")
missing=0
for n in $(seq "$lines"); do
    grep -q "soak line $n of the typing side" "$record" 2>/dev/null || missing=$((missing + 1))
done
echo
echo "lines typed by A: $lines; in B's session record: $got; missing: $missing"
echo "files received by A: $intact identical, $broken different, $( [ -n "$pending" ] && echo 1 || echo 0) unfinished at the end"
echo "boxes shown: A $(grep -c '^box' "$a/stderr"), B $(grep -c '^box' "$b/stderr")"
grep '^box' "$a/stderr" "$b/stderr" | grep -v "File Receiving Request" | sort | uniq -c | head
