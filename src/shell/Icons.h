#pragma once
// Drawn pictures for the window, the tray and the state panel.

#include <QColor>
#include <QIcon>
#include <QString>

namespace vonnel {

// A round light in the fill colour with a rim.
QIcon dotIcon(const QColor& fill, const QColor& rim);
}  // namespace vonnel
