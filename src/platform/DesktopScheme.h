#pragma once
// Whether the desktop asks programs for a dark look: the settings portal's
// org.freedesktop.appearance color-scheme (1 dark, 2 light, 0 no wish).

#include <optional>

namespace vonnel {

// True for dark, false for light; empty where the desktop states no wish
// or has no portal.
std::optional<bool> desktopPrefersDark();

}  // namespace vonnel
