#pragma once
// Drawn pictures for the toolbar, the tray and the state panel.

#include <QColor>
#include <QIcon>
#include <QString>

namespace vonnel {

// A round light in the fill colour with a rim.
QIcon dotIcon(const QColor& fill, const QColor& rim);
// One or two letters, as a text button's picture.
QIcon letterIcon(const QString& text, const QColor& color, bool bold = true, bool italic = false);
// Two sheets, one over the other.
QIcon copyIcon(const QColor& ink);
// A clipboard with a sheet on it.
QIcon pasteIcon(const QColor& ink);

}  // namespace vonnel
