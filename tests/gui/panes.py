"""Reads a running copy's window the way a screen reader does (AT-SPI).

    panes.py text PID DIR             the texts of the lower (own) and upper
                                      (remote) pane, as the widgets show them,
                                      into DIR/lower and DIR/upper
    panes.py centre PID lower|upper   the pane's centre on the screen: "x y"
    panes.py centre PID button:NAME   the centre of the push button NAME

Exits 1 when the copy's window or the thing asked for is not (yet) there.
"""
import sys

import pyatspi


def nodes(acc, found):
    try:
        role = acc.getRoleName()
    except Exception:
        return
    found.append((role, acc))
    for i in range(acc.childCount):
        nodes(acc.getChildAtIndex(i), found)


def application(pid):
    desk = pyatspi.Registry.getDesktop(0)
    for i in range(desk.childCount):
        app = desk.getChildAtIndex(i)
        try:
            if app.get_process_id() == pid:
                return app
        except Exception:
            continue
    return None


def extents(acc):
    return acc.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)


def main():
    what, pid, which = sys.argv[1], int(sys.argv[2]), sys.argv[3]
    app = application(pid)
    if app is None:
        return 1
    found = []
    nodes(app, found)
    if what == 'text':
        panes = sorted((a for role, a in found if role == 'text'), key=lambda a: extents(a).y)
        if len(panes) < 2:
            return 1
        for name, acc in (('lower', panes[-1]), ('upper', panes[0])):
            with open(f'{which}/{name}', 'w', encoding='utf-8') as f:
                f.write(acc.queryText().getText(0, -1))
        return 0
    if which.startswith('button:'):
        name = which[len('button:'):]
        hits = [a for role, a in found if role == 'push button' and a.name.replace('&', '') == name]
    else:
        # The main window's two panes, top to bottom.
        panes = sorted((a for role, a in found if role == 'text'), key=lambda a: extents(a).y)
        if len(panes) < 2:
            return 1
        hits = [panes[-1] if which == 'lower' else panes[0]]
    if not hits:
        return 1
    e = extents(hits[0])
    print(e.x + e.width // 2, e.y + e.height // 2)
    return 0


if __name__ == '__main__':
    sys.exit(main())
