#!/usr/bin/python3
"""Listens on the accessibility bus the way a screen reader does while a
caller's text and ring arrive at a listening copy: the text must come as an
insert event on the remote pane, the ring as a notification showing, and
the listener's focus must stay in its own (lower) pane.

Runs inside a D-Bus session with a display (see announce_check.sh).
usage: announce_check.py VONNEL PRESET WORKDIR
"""
import os
import shutil
import socket
import subprocess
import sys
import time

import pyatspi
from gi.repository import GLib

SETTINGS = {"Show Tips at Startup": 0, "Confirm Exit": 0, "Usage": 10,
            "No Network Info Display": 1, "First Run": 0}
ARRIVAL = "hello arrival 42"
heard = []


def free_port():
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        return s.getsockname()[1]


def folder(work, name, preset, settings):
    path = os.path.join(work, name)
    shutil.rmtree(path, ignore_errors=True)  # a run on a new screen starts afresh
    os.makedirs(path)
    with open(preset, encoding="latin-1") as f:
        lines = [l for l in f.read().splitlines() if l.split("=", 1)[0] not in settings]
    lines += [f"{k}={v}" for k, v in settings.items()]
    with open(os.path.join(path, "vonnel.ini"), "w", encoding="latin-1") as f:
        f.write("\n".join(lines) + "\n")
    return path


def pump(seconds, until=lambda: False):
    end = time.monotonic() + seconds
    ctx = GLib.MainContext.default()
    while time.monotonic() < end:
        while ctx.pending():
            ctx.iteration(False)
        if until():
            return True
        time.sleep(0.05)
    return until()


def app_of(pid):
    for app in pyatspi.Registry.getDesktop(0):
        try:
            if app is not None and app.get_process_id() == pid:
                return app
        except Exception:
            pass
    return None


def find(acc, keep, out):
    try:
        if keep(acc):
            out.append(acc)
        for i in range(acc.childCount):
            find(acc.getChildAtIndex(i), keep, out)
    except Exception:
        pass
    return out


def frame(app):
    frames = find(app, lambda a: a.getRole() == pyatspi.ROLE_FRAME and
                  a.getState().contains(pyatspi.STATE_SHOWING), [])
    return frames[0] if frames else None


def panes(app):
    found = find(frame(app), lambda a: a.getRole() == pyatspi.ROLE_TEXT, [])
    found.sort(key=lambda a: a.queryComponent().getExtents(pyatspi.DESKTOP_COORDS).y)
    return found[0], found[-1]  # remote (upper), own (lower)


def on_event(event):
    try:
        heard.append((event.type, event.source.getRole(), event.source.name, str(event.any_data),
                      event.host_application.get_process_id()))
    except Exception:
        pass


def main():
    vonnel, preset, work = sys.argv[1:4]
    lport, cport = free_port(), free_port()
    listener_dir = folder(work, "listener", preset,
                          dict(SETTINGS, LocalPort=lport, **{"Auto Accept Connection": 1}))
    caller_dir = folder(work, "caller", preset, dict(SETTINGS, LocalPort=cport))
    env = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_QPA_PLATFORM="xcb")
    procs = []
    try:
        listener = subprocess.Popen([vonnel, "--app-path", listener_dir], env=env,
                                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        procs.append(listener)
        app = None

        def listener_up():
            nonlocal app
            app = app_of(listener.pid)
            return app is not None and frame(app) is not None
        if not pump(30, listener_up):
            print("FAILED: the listener is not on the accessibility bus")
            return 1
        caller = subprocess.Popen([vonnel, "--app-path", caller_dir, f"127.0.0.1:{lport}"], env=env,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        procs.append(caller)
        if not pump(20, lambda: frame(app) is not None and frame(app).name.startswith("Vonnel - ")):
            print("FAILED: no session:", frame(app).name if frame(app) else None)
            return 1
        remote, own = panes(app)
        own.queryComponent().grabFocus()
        if not pump(5, lambda: own.getState().contains(pyatspi.STATE_FOCUSED)):
            print("FAILED: the listener's own pane did not take the focus")
            return 1

        pyatspi.Registry.registerEventListener(on_event, "object:text-changed:insert",
                                               "object:state-changed:showing")
        pump(0.5)
        with open(os.path.join(caller_dir, "Command.ini"), "w", encoding="latin-1") as f:
            f.write(f"[Vonnel]\nCommand=Input {ARRIVAL}\n")

        def text_heard():
            return any(role == pyatspi.ROLE_TEXT and name == remote.name and ARRIVAL in data and
                       pid == listener.pid for _, role, name, data, pid in heard)
        ok = True
        if not pump(15, text_heard):
            print("FAILED: no insert event with the arrived text; heard:", heard)
            ok = False
        if remote.queryText().getText(0, -1) != ARRIVAL:
            print("FAILED: the remote pane holds", repr(remote.queryText().getText(0, -1)))
            ok = False

        if not own.getState().contains(pyatspi.STATE_FOCUSED):
            print("FAILED: the focus left the listener's own pane")
            ok = False
        if remote.getState().contains(pyatspi.STATE_FOCUSED):
            print("FAILED: the remote pane took the focus")
            ok = False

        # A ring: the caller leaves and a raw peer calls and rings.
        caller.terminate()
        caller.wait(10)
        if not pump(15, lambda: frame(app) is not None and not frame(app).name.startswith("Vonnel - ")):
            print("FAILED: the listener did not see the caller leave")
            return 1
        peer = None
        end = time.monotonic() + 15
        while peer is None and time.monotonic() < end:
            pump(0.5)
            try:
                peer = socket.create_connection(("127.0.0.1", lport), timeout=2)
            except OSError:
                peer = None
        if peer is None:
            print("FAILED: the listener takes no second call")
            return 1
        if not pump(15, lambda: frame(app) is not None and frame(app).name.startswith("Vonnel - ")):
            print("FAILED: the raw peer's call is not taken:", frame(app).name if frame(app) else None)
            return 1
        pump(1)
        peer.sendall(b"^gRing1.wav^G^")

        def ring_heard():
            return any(role == pyatspi.ROLE_NOTIFICATION and "Ring" in name and pid == listener.pid
                       for _, role, name, _, pid in heard)
        if not pump(15, ring_heard):
            print("FAILED: no announcement of the ring; heard:", heard)
            notes = find(app, lambda a: a.getRole() == pyatspi.ROLE_NOTIFICATION, [])
            print("notifications in the tree:", [(n.name, n.getState().contains(pyatspi.STATE_SHOWING)) for n in notes])
            ok = False
        peer.close()
        print("heard:", [h[:4] for h in heard if h[4] == listener.pid])
        return 0 if ok else 1
    finally:
        for p in procs:
            p.terminate()
        for p in procs:
            try:
                p.wait(5)
            except subprocess.TimeoutExpired:
                p.kill()


if __name__ == "__main__":
    sys.exit(main())
