#pragma once
// Light or dark: the program follows the desktop's wish, and
// VONNEL_COLOR_SCHEME=dark|light forces one (tests, screenshots). The text
// panes follow it too while they show the preset colours.

#include <QColor>
#include <QPalette>
#include <QString>

#include <optional>
#include <utility>

class QApplication;

namespace vonnel {

enum class ColorScheme { System, Light, Dark };

// "dark" or "light" (any case); anything else leaves the choice to the desktop.
ColorScheme schemeByName(const QString& name);
bool isDark(const QPalette& palette);
// Our palettes for a forced or a desktop-asked scheme.
QPalette schemePalette(ColorScheme scheme);
// Sets the style's palette where the wanted scheme, or the desktop's wish
// when none is forced, differs from what the platform gave. True when it
// changed the palette.
bool applyColorScheme(QApplication& app, ColorScheme wanted, std::optional<bool> desktopDark);

// The text and background colours a pane holds on to. The preset pair
// (black on white) is nobody's choice: none, and the pane follows the
// palette, light or dark, as it changes. Any other pair is the user's or the
// peer's and stays.
std::optional<std::pair<QColor, QColor>> paneColours(qint64 fore, qint64 back);

}  // namespace vonnel
