#pragma once
// What each menu entry and toolbar button looks like: its picture (the
// desktop's icon theme first, our own drawing where the theme has none)
// and the standard key that runs it. Captions and tips stay the menu
// table's.

#include "core/Control.h"

#include <QIcon>
#include <QKeySequence>
#include <QString>

namespace vonnel {

struct ActionPicture {
    const char* themeName;  // a freedesktop icon name; null: ours alone
    const char* drawing;    // the base name of our own picture in :/icons
};

// The menu entry a toolbar button or tray entry does the same as; the
// control itself where it has none.
Control menuTwin(Control c);

// The picture of a menu entry, toolbar button or tray entry; a null
// drawing for a control that has none (a menu head, a pop-up entry).
ActionPicture actionPicture(Control c);
// The picture as an icon: the theme's where it has one, else ours.
QIcon actionIcon(Control c);
// Our own drawing, tinted to the palette's text colour; never the theme's.
QIcon drawnIcon(const QString& drawing);

// The standard key of an entry (a toolbar button names its twin's); none where no standard one fits or where
// the key belongs to the typing in the panes (copy, paste, select all).
QKeySequence::StandardKey actionKey(Control c);

// The keys that run it on this platform: the standard key's bindings.
QList<QKeySequence> actionShortcuts(Control c);

// "Send File (Ctrl+O)": a tip that names the first key as well, where there is one.
QString tipWithKey(const QString& tip, const QList<QKeySequence>& keys);

}  // namespace vonnel
