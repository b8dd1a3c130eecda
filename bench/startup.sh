#!/usr/bin/env bash
# Start-up times, median of RUNS (default 15) each:
#  - headless, process start to listening: starts the program on a scratch
#    folder, polls its port, and takes the time until the port answers;
#  - with the window, process start to the main window's first paint: runs
#    the program on the X display in $DISPLAY with VONNEL_TRACE_FIRSTPAINT
#    set and takes the time until it reports the first paint on stderr,
#    with the program's own marks through start-up (median of each).
# The window runs are skipped when DISPLAY is empty.
# usage: bench/startup.sh [build/vonnel] [runs]
# env:   VONNEL_BENCH_PORT=N  first port to listen on (default a random one
#                             in 20000-40000); run i uses N+i
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
vonnel=${1:-$here/build/vonnel}
runs=${2:-15}
python3 - "$vonnel" "$runs" "$here/dist/vonnel.ini.preset" <<'PY'
import os, re, shutil, socket, statistics, subprocess, sys, tempfile, time, random
vonnel, runs, preset = sys.argv[1], int(sys.argv[2]), sys.argv[3]
base = int(os.environ.get("VONNEL_BENCH_PORT") or random.randint(20000, 40000 - 2 * runs))

def folder(port):
    d = tempfile.mkdtemp()
    text = open(preset).read().replace("LocalPort=2500", f"LocalPort={port}")
    open(os.path.join(d, "vonnel.ini"), "w").write(text)
    return d

def summary(name, times):
    times = sorted(times)
    print(f"{name}, {len(times)} runs: median {statistics.median(times):.1f} ms, "
          f"min {times[0]:.1f} ms, max {times[-1]:.1f} ms")

env = dict(os.environ)
env.pop("VONNEL_TRACE_FIRSTPAINT", None)
times = []
for i in range(runs):
    port = base + i
    d = folder(port)
    t0 = time.perf_counter()
    p = subprocess.Popen([vonnel, "--app-path", d, "--headless"], stderr=subprocess.DEVNULL, env=env)
    while True:
        try:
            socket.create_connection(("127.0.0.1", port), timeout=0.05).close()
            break
        except OSError:
            if time.perf_counter() - t0 > 10:
                raise SystemExit("no listener after 10 s")
            time.sleep(0.001)
    times.append((time.perf_counter() - t0) * 1000)
    p.terminate(); p.wait()
    shutil.rmtree(d, ignore_errors=True)
summary("start-up to listening, headless", times)

if not os.environ.get("DISPLAY"):
    print("start-up to first paint: skipped (no DISPLAY)")
    raise SystemExit(0)
env = dict(os.environ, VONNEL_TRACE_FIRSTPAINT="1")
env.pop("QT_QPA_PLATFORM", None)
paint, marks, cpu = [], {}, {}
order = []
mark = re.compile(r"^vonnel: startup (.*) at ([0-9.]+) ms \(.*, ([0-9.]+) ms of processor")
for i in range(runs):
    d = folder(base + runs + i)
    t0 = time.perf_counter()
    p = subprocess.Popen([vonnel, "--app-path", d], stderr=subprocess.PIPE, env=env, text=True)
    seen = None
    for line in p.stderr:
        m = mark.match(line)
        if not m:
            continue
        name = m.group(1)
        if name not in order:
            order.append(name)
        marks.setdefault(name, []).append(float(m.group(2)))
        cpu.setdefault(name, []).append(float(m.group(3)))
        if name == "first paint":
            seen = (time.perf_counter() - t0) * 1000
            break
    p.terminate()
    try:
        p.wait(5)
    except subprocess.TimeoutExpired:
        p.kill(); p.wait()
    shutil.rmtree(d, ignore_errors=True)
    if seen is None:
        raise SystemExit("no first paint reported")
    paint.append(seen)
summary("start-up to first paint of the main window (spawn to the report)", paint)
print("the program's marks, median ms since the process began (its start is known to ~10 ms)")
print("and median ms of processor time used by then:")
print(f"  {'mark':<22} {'wall':>8} {'processor':>10}")
for name in sorted(order, key=lambda n: statistics.median(marks[n])):
    print(f"  {name:<22} {statistics.median(marks[name]):8.1f} {statistics.median(cpu[name]):10.1f}")
PY
