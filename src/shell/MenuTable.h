#pragma once
// The main window's menus, toolbar tips and tray menu as data: which
// control sits where, under which translation key and with which caption
// of its own (with its access key). The window builds from it; TransMenu,
// miniMenu and the check of Lang.txt walk it. No widgets here.

#include "core/Control.h"

#include <functional>
#include <span>
#include <vector>

namespace vonnel {

struct MenuEntry {
    Control c;
    const char* key;       // null: a separator
    const char* fallback;  // the caption with its access key
    bool separator() const { return key == nullptr; }
};

struct MenuHead {
    Control c;
    const char* key;
    const char* fallback;
    std::span<const MenuEntry> entries;
};

struct ToolbarTip {
    Control c;
    const char* key;
    bool groupEnds = false;  // a separator follows
};

// The menu bar's heads in order: File, Edit, Messages, Voice, Tools,
// Window, Extras, Help.
std::span<const MenuHead> mainMenus();
// mnuTray's entries in order.
std::span<const MenuEntry> trayMenu();
// Toolbar1's buttons in the order they stand, the most used first:
// connecting, then what goes to the peer (file, board, rings), then the
// look of the text, then the panes, then help.
std::span<const ToolbarTip> toolbarTips();

// Which separators of a menu stand: one stands only between two shown
// entries, and never two in a row. One flag per separator, in order.
std::vector<bool> separatorsShown(std::span<const MenuEntry> entries,
                                  const std::function<bool(Control)>& shown);

}  // namespace vonnel
