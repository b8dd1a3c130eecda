#!/usr/bin/python3
"""Reads the accessibility tree of a running vonnel over AT-SPI: lists every
control of the main window, the Connect window (File > Connect...), the
options (Tools > Options...) and the board (Tools > Scrivet), each with its
role and name, and exits 1 when a control has no name.

Runs inside a D-Bus session with a display (see atspi_check.sh).
usage: atspi_check.py VONNEL PRESET
"""
import os
import shutil
import socket
import subprocess
import sys
import tempfile
import time

import pyatspi
from gi.repository import Atspi, GLib

# What a user operates. Labels, panels and fillers are not controls; the
# items of a list or table are its contents; a scroll bar takes no focus
# and is told by its role and direction.
CONTROL_ROLES = {
    pyatspi.ROLE_PUSH_BUTTON, pyatspi.ROLE_TOGGLE_BUTTON, pyatspi.ROLE_CHECK_BOX,
    pyatspi.ROLE_RADIO_BUTTON, pyatspi.ROLE_COMBO_BOX, pyatspi.ROLE_TEXT,
    pyatspi.ROLE_ENTRY, pyatspi.ROLE_PASSWORD_TEXT, pyatspi.ROLE_SPIN_BUTTON,
    pyatspi.ROLE_SLIDER, pyatspi.ROLE_DIAL,
    pyatspi.ROLE_MENU, pyatspi.ROLE_MENU_ITEM, pyatspi.ROLE_CHECK_MENU_ITEM,
    pyatspi.ROLE_RADIO_MENU_ITEM, pyatspi.ROLE_PAGE_TAB, pyatspi.ROLE_LIST,
    pyatspi.ROLE_LIST_BOX, pyatspi.ROLE_TREE, pyatspi.ROLE_TABLE,
    pyatspi.ROLE_TREE_TABLE, pyatspi.ROLE_LINK,
}
CONTENT_ROLES = {pyatspi.ROLE_LIST, pyatspi.ROLE_LIST_BOX, pyatspi.ROLE_TREE,
                 pyatspi.ROLE_TABLE, pyatspi.ROLE_TREE_TABLE}
MENU_ROLES = {pyatspi.ROLE_MENU, pyatspi.ROLE_MENU_ITEM, pyatspi.ROLE_CHECK_MENU_ITEM,
              pyatspi.ROLE_RADIO_MENU_ITEM}
WINDOW_ROLES = {pyatspi.ROLE_FRAME, pyatspi.ROLE_DIALOG, pyatspi.ROLE_WINDOW}

SETTINGS = {"LocalPort": None, "Show Tips at Startup": 0, "Confirm Exit": 0, "Usage": 10,
            "No Network Info Display": 1, "First Run": 0}
DEADLINE = time.monotonic() + float(os.environ.get("ATSPI_CHECK_SECONDS", "50"))


def wait_for(what, probe, seconds=15.0):
    end = min(time.monotonic() + seconds, DEADLINE)
    while time.monotonic() < end:
        found = probe()
        if found:
            return found
        time.sleep(0.2)
    raise SystemExit(f"FAILED: no {what} within {seconds:.0f} s")


def free_port():
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        return s.getsockname()[1]


def the_app():
    for app in pyatspi.Registry.getDesktop(0):
        if app is not None and app.name.lower() == "vonnel":
            return app
    return None


def windows(app):
    out = []
    for i in range(app.childCount):
        w = app.getChildAtIndex(i)
        if w is not None and w.getRole() in WINDOW_ROLES:
            out.append(w)
    return out


def showing(acc):
    return acc.getState().contains(pyatspi.STATE_SHOWING)


def walk(acc, path, out):
    """Every control under acc a user can reach: (path, role, name, states).
    Menus are walked into while closed, their entries are controls too; a
    hidden widget (a page not shown, a tool bar's overflow button) is not
    there for the user and is left out."""
    for i in range(acc.childCount):
        child = acc.getChildAtIndex(i)
        if child is None:
            continue
        role = child.getRole()
        state = child.getState()
        if role not in MENU_ROLES and role != pyatspi.ROLE_POPUP_MENU and \
                not state.contains(pyatspi.STATE_VISIBLE):
            continue
        if role in CONTROL_ROLES:
            out.append((path, child.getRoleName(), child.name))
        if role not in CONTENT_ROLES:
            walk(child, path + "/" + (child.name or child.getRoleName()), out)


def report(title, window):
    controls = []
    walk(window, window.name, controls)
    unnamed = [c for c in controls if not c[2].strip()]
    print(f"== {title}: {len(controls)} controls, {len(unnamed)} unnamed")
    for path, role, name in controls:
        mark = "  UNNAMED" if not name.strip() else ""
        print(f"  {role:<16} {name!r:<40} in {path}{mark}")
    return unnamed


def press(acc):
    """Runs the control's press action. A modal window it opens answers
    only when it closes, so the call does not wait for the answer."""
    action = acc.queryAction()
    for i in range(action.nActions):
        if action.getName(i).lower() in ("press", "click", "activate", "toggle"):
            Atspi.set_timeout(500, -1)
            try:
                action.doAction(i)
            except GLib.GError:
                pass
            finally:
                Atspi.set_timeout(25000, -1)
            return
    raise SystemExit(f"FAILED: {acc.name!r} has no press action")


def press_menu(window, *names):
    """A menu entry, as a screen reader's user runs it: the head by name,
    then the entry."""
    acc = window
    for name in names:
        acc = wait_for(f"menu entry {name!r}", lambda: find_named(acc, name), 5)
    press(acc)


def find_roles(acc, role, out, depth=0):
    if depth > 12:
        return
    for i in range(acc.childCount):
        child = acc.getChildAtIndex(i)
        if child is None:
            continue
        if child.getRole() == role:
            out.append(child)
        find_roles(child, role, out, depth + 1)


def find_named(acc, name, depth=0):
    if depth > 12:
        return None
    for i in range(acc.childCount):
        child = acc.getChildAtIndex(i)
        if child is None:
            continue
        if child.name.replace("&", "") == name and child.getRole() in (
                pyatspi.ROLE_MENU, pyatspi.ROLE_MENU_ITEM, pyatspi.ROLE_CHECK_MENU_ITEM):
            return child
        found = find_named(child, name, depth + 1)
        if found:
            return found
    return None


def close_dialog(window):
    buttons = []
    find_roles(window, pyatspi.ROLE_PUSH_BUTTON, buttons)
    for b in buttons:
        if b.name.replace("&", "") in ("Cancel", "Close"):
            press(b)
            return
    subprocess.run(["xdotool", "key", "Escape"], check=False)


def main():
    vonnel, preset = sys.argv[1], sys.argv[2]
    folder = tempfile.mkdtemp(prefix="vonnel-atspi-")
    port = free_port()
    with open(preset, encoding="latin-1") as f:
        ini = f.read()
    lines = []
    for line in ini.splitlines():
        key = line.split("=", 1)[0]
        if key in SETTINGS:
            continue
        lines.append(line)
    # A copy of its own on a free port, past the first starts' password
    # set-up, with no tips and no exit question in the way.
    lines += [f"{k}={v}" for k, v in SETTINGS.items() if v is not None]
    lines.append(f"LocalPort={port}")
    with open(os.path.join(folder, "vonnel.ini"), "w", encoding="latin-1") as f:
        f.write("\n".join(lines) + "\n")
    shutil.copy(preset, os.path.join(folder, "vonnel.ini.preset"))
    err = open(os.path.join(folder, "stderr.txt"), "w")
    env = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_QPA_PLATFORM="xcb")
    proc = subprocess.Popen([vonnel, "--app-path", folder], env=env,
                            stdout=subprocess.DEVNULL, stderr=err)
    unnamed = []
    try:
        app = wait_for("Vonnel on the accessibility bus", the_app, 30)
        main_window = wait_for("main window", lambda: next(
            (w for w in windows(app) if w.getRole() == pyatspi.ROLE_FRAME and showing(w)), None))
        unnamed += report("main window", main_window)

        press_menu(main_window, "File", "Connect...")
        connect = wait_for("Connect window", lambda: next(
            (w for w in windows(app) if w.getRole() == pyatspi.ROLE_DIALOG and showing(w)), None))
        unnamed += report("Connect window", connect)
        connect_name = connect.name
        close_dialog(connect)
        wait_for("Connect window to close", lambda: not any(
            w.name == connect_name and showing(w) for w in windows(app)), 5)

        press_menu(main_window, "Tools", "Options...")
        options = wait_for("options", lambda: next(
            (w for w in windows(app) if w.getRole() == pyatspi.ROLE_DIALOG and showing(w)), None))
        # Each page in turn: a page not shown is hidden from the user too.
        tabs = []
        find_roles(options, pyatspi.ROLE_PAGE_TAB, tabs)
        if not tabs:
            unnamed += report("options", options)
        for tab in tabs:
            press(tab)
            time.sleep(0.3)
            unnamed += report(f"options, page {tab.name!r}", options)
        options_name = options.name
        close_dialog(options)
        wait_for("options to close", lambda: not any(
            w.name == options_name and showing(w) for w in windows(app)), 5)

        main_name = main_window.name
        press_menu(main_window, "Tools", "Scrivet")
        board = wait_for("board", lambda: next(
            (w for w in windows(app) if w.name != main_name and showing(w)), None))
        unnamed += report("board", board)
    finally:
        proc.terminate()
        try:
            proc.wait(10)
        except subprocess.TimeoutExpired:
            proc.kill()
        err.close()
        with open(err.name, encoding="utf-8", errors="replace") as f:
            said = f.read().strip()
        if said:
            print("== the program's stderr\n" + said[-2000:])
        shutil.rmtree(folder, ignore_errors=True)
    if unnamed:
        print(f"FAILED: {len(unnamed)} controls without an accessible name")
        return 1
    print("every control has an accessible name")
    return 0


if __name__ == "__main__":
    sys.exit(main())
