#pragma once
// TransMenu and miniMenu: the captions of the main window's menus and
// toolbar from the language, and the entries the user switched off. Both
// set the window model's controls; the window follows. Run at form load
// and again when the language or the options change.

#include "core/Control.h"

#include <optional>
#include <span>

namespace vonnel {

class CopyContext;
class Controls;

// One "Menu Off" switch: the entry it hides and that entry's twin in the
// tray menu, if it has one.
struct MenuSwitch {
    const char* key;
    std::optional<Control> entry;  // none: no such entry in these menus
    std::optional<Control> trayTwin;
};

// The switches in the order miniMenu reads them.
std::span<const MenuSwitch> menuSwitches();

// Every head, entry and toolbar button gets its caption and tool tip from
// the lookup: the plain caption as the key, the caption with its access
// key as the fallback; the tip is the key's own lookup, without the access
// key's mark. The six presets keep the user's captions.
void TransMenu(CopyContext& ctx, Controls& controls);

// Reads each switch; one not 0 hides its entry and the tray twin, 0 shows
// them again. Heads stay even when all their entries are off.
void miniMenu(CopyContext& ctx, Controls& controls);

}  // namespace vonnel
