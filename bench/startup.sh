#!/usr/bin/env bash
# Start-up to listening, headless: starts the program on a scratch folder,
# polls its port, and prints the time until the port answers.
# usage: bench/startup.sh [build/vonnel] [runs]
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
vonnel=${1:-$here/build/vonnel}
runs=${2:-15}
python3 - "$vonnel" "$runs" "$here/dist/vonnel.ini.preset" <<'PY'
import os, socket, statistics, subprocess, sys, tempfile, time, random
vonnel, runs, preset = sys.argv[1], int(sys.argv[2]), sys.argv[3]
times = []
for i in range(runs):
    d = tempfile.mkdtemp()
    port = random.randint(20000, 40000)
    text = open(preset).read().replace("LocalPort=2500", f"LocalPort={port}").replace("Usage=0", "Usage=10")
    open(os.path.join(d, "vonnel.ini"), "w").write(text)
    t0 = time.perf_counter()
    p = subprocess.Popen([vonnel, "--app-path", d, "--headless"], stderr=subprocess.DEVNULL)
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
times.sort()
print(f"start-up to listening, headless, {runs} runs: median {statistics.median(times):.1f} ms, "
      f"min {times[0]:.1f} ms, max {times[-1]:.1f} ms")
PY
