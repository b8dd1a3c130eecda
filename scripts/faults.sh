#!/usr/bin/env bash
# Network faults under a file transfer: two headless copies in two network
# namespaces joined by a veth pair, one sending a file to the other while
# the link loses packets, goes down for a while, or one copy is killed.
# Each case prints what both copies showed (their box lines and log lines),
# how they ended, and what the receiver has on disk.
#
# Needs root and `ip netns`; touches nothing outside its own namespaces.
# usage: scripts/faults.sh [CASE...]     cases: loss down90 down150 kill
# env:   FAULTS_QUICK=1  shorter outages (20 s and 70 s) and files
#        VONNEL_BUILD=DIR  the build folder (default build/)
set -u
here=$(cd "$(dirname "$0")/.." && pwd)
build=${VONNEL_BUILD:-$here/build}
vonnel=$build/vonnel
preset=$build/vonnel.ini.preset
quick=${FAULTS_QUICK:-0}
cases=${*:-loss down90 down150 kill}

[ "$(id -u)" -eq 0 ] || { echo "faults.sh: needs root (network namespaces)"; exit 2; }
command -v ip >/dev/null && ip netns list >/dev/null 2>&1 || { echo "faults.sh: needs ip netns"; exit 2; }
[ -x "$vonnel" ] && [ -f "$preset" ] || { echo "faults.sh: build $vonnel first"; exit 2; }
# nft drops the packets where the kernel has no netem.
command -v nft >/dev/null || bash "$here/scripts/deps.sh" nftables

# Names carry our process id, so two runs (or a stale one) never meet.
nsa=vonnel-fa-$$; nsb=vonnel-fb-$$
veth_a=vfa$$; veth_b=vfb$$
ip_a=10.77.0.1; ip_b=10.77.0.2; port=2500
call_port=$port
work=$(mktemp -d /tmp/vonnel-faults.XXXXXX)
pid_a=; pid_b=

stop_copies() {
    for p in $pid_a $pid_b; do kill -KILL "$p" 2>/dev/null; wait "$p" 2>/dev/null; done
    pid_a=; pid_b=
}
teardown_net() {
    ip netns del "$nsa" 2>/dev/null
    ip netns del "$nsb" 2>/dev/null
}
cleanup() {
    stop_copies
    teardown_net
    [ "${FAULTS_KEEP:-0}" = 1 ] && echo "kept $work" || rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

if [ "$quick" = 1 ]; then
    short_down=20; long_down=70; big_mb=60; loss_mb=2; delay_mb=1
else
    short_down=90; long_down=150; big_mb=200; loss_mb=8; delay_mb=3
fi

setup_net() {
    teardown_net
    ip netns add "$nsa" && ip netns add "$nsb" || return 1
    ip link add "$veth_a" netns "$nsa" type veth peer name "$veth_b" netns "$nsb" || return 1
    ip -n "$nsa" addr add $ip_a/30 dev "$veth_a"
    ip -n "$nsb" addr add $ip_b/30 dev "$veth_b"
    for ns in "$nsa" "$nsb"; do ip -n "$ns" link set lo up; done
    ip -n "$nsa" link set "$veth_a" up
    ip -n "$nsb" link set "$veth_b" up
}

# The link is cut on both ends, so neither side's kernel can tell at once.
link() {
    ip -n "$nsa" link set "$veth_a" "$1"
    ip -n "$nsb" link set "$veth_b" "$1"
}

make_payload() { # NAME MB
    [ -f "$work/$1" ] || head -c "$(( $2 * 1024 * 1024 ))" /dev/urandom > "$work/$1"
}

# A copy's folder: the preset with our port, the calls taken without a
# question, and commands polled every second.
make_folder() { # DIR
    mkdir -p "$1"
    sed -e "s/^LocalPort=.*/LocalPort=$port/" -e "s/^RemotePort=.*/RemotePort=$port/" \
        -e "s/^Connect Port=.*/Connect Port=$port/" \
        -e "s/^Auto Accept Connection=.*/Auto Accept Connection=1/" \
        -e "s/^Command Line Interval=.*/Command Line Interval=1000/" "$preset" > "$1/vonnel.ini"
}

size_of() { stat -c %s "$1" 2>/dev/null || echo 0; }
now() { date +%s; }
alive() { [ -n "$1" ] && kill -0 "$1" 2>/dev/null; }

# Starts both copies, calls B from A, hands A the Send File command, and
# waits until the receiver's file holds MIN bytes. Returns 1 on failure.
start_transfer() { # CASEDIR PAYLOAD MINBYTES
    local dir=$1 payload=$2 min=$3 t
    make_folder "$dir/a"; make_folder "$dir/b"
    printf 'file:%s\n' "$payload" > "$dir/a/answers"
    printf 'yes\nfile:%s\n' "$dir/received.bin" > "$dir/b/answers"
    ip netns exec "$nsb" env QT_QPA_PLATFORM=offscreen \
        "$vonnel" --headless --app-path "$dir/b" --answers "$dir/b/answers" 2>"$dir/b/stderr" &
    pid_b=$!
    for t in $(seq 100); do ip netns exec "$nsb" ss -ltn | grep -q ":$port " && break; sleep 0.1; done
    ip netns exec "$nsa" env QT_QPA_PLATFORM=offscreen \
        "$vonnel" --headless --app-path "$dir/a" --answers "$dir/a/answers" "$ip_b:$call_port" 2>"$dir/a/stderr" &
    pid_a=$!
    for t in $(seq 150); do grep -q '> Connection with' "$dir/a/vonnel.log" 2>/dev/null && break; sleep 0.1; done
    grep -q '> Connection with' "$dir/a/vonnel.log" 2>/dev/null || { echo "  no session came up"; return 1; }
    ip netns exec "$nsa" env QT_QPA_PLATFORM=offscreen \
        "$vonnel" --headless --app-path "$dir/a" Cmd SendFile 2>/dev/null
    t0=$(now)
    for t in $(seq 600); do [ "$(size_of "$dir/received.bin")" -ge "$min" ] && return 0; sleep 0.05; done
    echo "  the transfer did not start (received $(size_of "$dir/received.bin") bytes)"
    return 1
}

# Waits up to SECONDS for the received file to reach SIZE, or for it to stop
# growing for STALL seconds. Prints the elapsed time.
wait_done() { # FILE SIZE SECONDS STALL
    local f=$1 size=$2 limit=$3 stall=$4 start last grew n
    start=$(now); last=-1; grew=$start
    while :; do
        n=$(size_of "$f")
        [ "$n" -ge "$size" ] && break
        [ "$n" != "$last" ] && { last=$n; grew=$(now); }
        [ $(( $(now) - grew )) -ge "$stall" ] && break
        [ $(( $(now) - start )) -ge "$limit" ] && break
        sleep 0.2
    done
    sleep 1  # the last acknowledgement and the closing boxes
}

# Ends the copies still running with TERM and records how each ended.
finish_copies() { # CASEDIR
    local dir=$1 side p rc
    for side in a b; do
        if [ $side = a ]; then p=$pid_a; else p=$pid_b; fi
        if [ -z "$p" ]; then continue; fi
        if alive "$p"; then
            echo "running" > "$dir/$side/state"
            kill -TERM "$p"; wait "$p"; rc=$?
            echo "running at the end; TERM -> exit $rc" > "$dir/$side/state"
        else
            wait "$p"; rc=$?
            echo "had ended, exit $rc$([ $rc -gt 128 ] && echo " (signal $((rc - 128)))")" > "$dir/$side/state"
        fi
    done
    pid_a=; pid_b=
}

report_side() { # CASEDIR SIDE LABEL
    local d=$1/$2
    echo "  $3: $(cat "$d/state" 2>/dev/null)"
    # A box line is kind, title, text, answer; long texts are cut in the middle.
    if [ -s "$d/stderr" ]; then
        awk -F'\t' '{ t = $3; if (length(t) > 70) t = substr(t, 1, 40) "..." substr(t, length(t) - 20)
                      printf "    stderr| %s | %s | %s | %s\n", $1, $2, t, $4 }' "$d/stderr"
    fi
    if [ -s "$d/vonnel.log" ]; then grep '> ' "$d/vonnel.log" | sed 's/^/    log   | /'; fi
    if [ -s "$d/error.log" ]; then grep -v '^\[' "$d/error.log" | sed 's/^/    error | /' | cut -c1-200; fi
}

report_file() { # CASEDIR PAYLOAD
    local got want
    got=$(size_of "$1/received.bin"); want=$(size_of "$2")
    if [ ! -e "$1/received.bin" ]; then
        echo "  file: none on disk"
    elif cmp -s "$1/received.bin" "$2"; then
        echo "  file: INTACT ($got bytes, cmp equal)"
    elif cmp -s <(head -c "$got" "$2") "$1/received.bin"; then
        echo "  file: PARTIAL kept, $got of $want bytes ($(( got * 100 / want ))%), a clean prefix"
    else
        echo "  file: CORRUPT, $got of $want bytes, first difference: $(cmp "$1/received.bin" "$2" 2>&1 | head -1)"
    fi
}

header() { echo; echo "=== $1"; }

# A TCP relay that holds every chunk for DELAY seconds before passing it
# on, each direction on its own, order kept: the stand-in for netem's delay.
write_relay() {
    cat > "$work/relay.py" <<'PY'
import asyncio, sys, time
listen_host, listen_port, to_host, to_port, delay = sys.argv[1], int(sys.argv[2]), sys.argv[3], int(sys.argv[4]), float(sys.argv[5])
async def pump(reader, writer):
    queue = asyncio.Queue()
    async def feed():
        while True:
            data = await reader.read(65536)
            await queue.put((time.monotonic() + delay, data))
            if not data:
                return
    async def drain():
        while True:
            due, data = await queue.get()
            wait = due - time.monotonic()
            if wait > 0:
                await asyncio.sleep(wait)
            if not data:
                writer.close()
                return
            writer.write(data)
            await writer.drain()
    try:
        await asyncio.gather(feed(), drain())
    except Exception:
        writer.close()
async def serve(r1, w1):
    try:
        r2, w2 = await asyncio.open_connection(to_host, to_port)
    except Exception:
        w1.close(); return
    await asyncio.gather(pump(r1, w2), pump(r2, w1), return_exceptions=True)
async def main():
    server = await asyncio.start_server(serve, listen_host, listen_port)
    await server.serve_forever()
asyncio.run(main())
PY
}

add_loss() { # drops 5% of what each end sends into the veth
    local ns dev
    for e in "$nsa $veth_a" "$nsb $veth_b"; do
        set -- $e; ns=$1; dev=$2
        ip netns exec "$ns" nft add table inet vonnelfaults &&
        ip netns exec "$ns" nft add chain inet vonnelfaults out '{ type filter hook output priority 0; }' &&
        ip netns exec "$ns" nft add rule inet vonnelfaults out oifname "$dev" numgen random mod 100 lt 5 drop ||
            return 1
    done
}

have_netem() {
    ip netns exec "$nsa" tc qdisc add dev "$veth_a" root netem delay 1ms 2>/dev/null || return 1
    ip netns exec "$nsa" tc qdisc del dev "$veth_a" root 2>/dev/null
    return 0
}

case_loss() { # MB DELAY(0|1)
    local mb=$1 delay=$2 dir=$work/loss$2 payload=$work/loss$1.bin size start relay=
    header "case: $mb MB file, 5% packet loss each way$( [ "$delay" = 1 ] && echo ", 50 ms added round trip")"
    make_payload "loss$mb.bin" "$mb"; size=$(size_of "$payload")
    setup_net || { echo "  network set-up failed"; return; }
    mkdir -p "$dir"
    call_port=$port
    if [ "$delay" = 1 ] && have_netem; then
        for e in "$nsa $veth_a" "$nsb $veth_b"; do set -- $e
            ip netns exec "$1" tc qdisc add dev "$2" root netem delay 25ms loss 5%; done
        echo "  netem: 25 ms delay and 5% loss on each end"
    else
        add_loss || { echo "  loss: nftables could not be set up; case not run"; teardown_net; return; }
        echo "  loss: nftables drops 5% of the packets each end sends into the veth"
        if [ "$delay" = 1 ]; then
            # No netem in this kernel ("Specified qdisc kind is unknown"):
            # a relay in B's namespace holds each chunk 25 ms each way.
            # B then sees its caller as 127.0.0.1.
            write_relay
            ip netns exec "$nsb" python3 "$work/relay.py" "$ip_b" $(( port + 100 )) 127.0.0.1 "$port" 0.025 &
            relay=$!
            call_port=$(( port + 100 ))
            echo "  delay: no netem in this kernel; a relay in B's namespace holds each chunk 25 ms each way" \
                 "(A calls $ip_b:$call_port, B sees 127.0.0.1; the lossy leg is A to relay)"
        fi
    fi
    start=$(now)
    if start_transfer "$dir" "$payload" 1; then
        wait_done "$dir/received.bin" "$size" $(( quick == 1 ? 120 : 240 )) 60
        local n; n=$(size_of "$dir/received.bin")
        echo "  elapsed: $(( $(now) - start )) s for $n bytes ($(( n / 1024 / ( $(now) - start + 1 ) )) KB/s)"
    fi
    finish_copies "$dir"
    [ -n "$relay" ] && { kill "$relay" 2>/dev/null; wait "$relay" 2>/dev/null; }
    call_port=$port
    report_side "$dir" a "sender A  "; report_side "$dir" b "receiver B"
    report_file "$dir" "$payload"
    teardown_net
}

case_down() { # SECONDS
    local secs=$1 dir=$work/down$1 payload=$work/big.bin size got0 got1 t
    header "case: link down for $secs s mid-transfer (${big_mb} MB file)"
    make_payload big.bin "$big_mb"; size=$(size_of "$payload")
    setup_net || { echo "  network set-up failed"; return; }
    mkdir -p "$dir"
    if start_transfer "$dir" "$payload" $(( 2 * 1024 * 1024 )); then
        link down; got0=$(size_of "$dir/received.bin")
        echo "  link down at $got0 bytes"
        for t in $(seq "$secs"); do
            sleep 1
            if [ $(( t % 15 )) -eq 0 ] || [ "$t" -eq "$secs" ]; then
                echo "  +${t}s: A $(alive "$pid_a" && echo running || echo ended), B $(alive "$pid_b" && echo running || echo ended)," \
                     "A sessions $(ip netns exec "$nsa" ss -tnH state established | wc -l)," \
                     "B sessions $(ip netns exec "$nsb" ss -tnH state established | wc -l)," \
                     "received $(size_of "$dir/received.bin")"
            fi
        done
        link up; echo "  link up"
        wait_done "$dir/received.bin" "$size" 60 15
        got1=$(size_of "$dir/received.bin")
        echo "  after the link came back: received $got1 bytes ($(( got1 - got0 )) more);" \
             "A sessions $(ip netns exec "$nsa" ss -tnH state established | wc -l)," \
             "B sessions $(ip netns exec "$nsb" ss -tnH state established | wc -l)," \
             "B listening $(ip netns exec "$nsb" ss -ltnH | grep -c ":$port ")"
    fi
    finish_copies "$dir"
    report_side "$dir" a "sender A  "; report_side "$dir" b "receiver B"
    report_file "$dir" "$payload"
    teardown_net
}

case_kill() { # a|b
    local victim=$1 dir=$work/kill$1 payload=$work/big.bin size got0 p
    header "case: $( [ "$victim" = a ] && echo "sender A" || echo "receiver B") killed (SIGKILL) mid-transfer (${big_mb} MB file)"
    make_payload big.bin "$big_mb"; size=$(size_of "$payload")
    setup_net || { echo "  network set-up failed"; return; }
    mkdir -p "$dir"
    if start_transfer "$dir" "$payload" $(( 2 * 1024 * 1024 )); then
        if [ "$victim" = a ]; then p=$pid_a; else p=$pid_b; fi
        kill -KILL "$p"; wait "$p" 2>/dev/null
        echo "killed by us (SIGKILL), exit $?" > "$dir/$victim/state"
        if [ "$victim" = a ]; then pid_a=; else pid_b=; fi
        got0=$(size_of "$dir/received.bin")
        echo "  killed at $got0 bytes received"
        sleep 10
        echo "  10 s later: A $(alive "$pid_a" && echo running || echo ended), B $(alive "$pid_b" && echo running || echo ended)," \
             "survivor listening again: $(ip netns exec "$([ "$victim" = a ] && echo "$nsb" || echo "$nsa")" ss -ltnH | grep -c ":$port ")," \
             "received $(size_of "$dir/received.bin")"
    fi
    finish_copies "$dir"
    report_side "$dir" a "sender A  "; report_side "$dir" b "receiver B"
    report_file "$dir" "$payload"
    teardown_net
}

echo "faults.sh: $(date -u '+%F %T') UTC, kernel $(uname -r), quick=$quick, work $work"
for c in $cases; do
    case $c in
        loss) case_loss "$loss_mb" 0; case_loss "$delay_mb" 1 ;;
        down90) case_down "$short_down" ;;
        down150) case_down "$long_down" ;;
        kill) case_kill a; case_kill b ;;
        *) echo "unknown case $c (loss down90 down150 kill)" ;;
    esac
done
