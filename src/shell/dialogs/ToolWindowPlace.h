#pragma once
// What the network tools' windows share: a place kept in the settings in
// twips under four keys, and list colours switched on by a "-Colour" key.

#include <QSize>
#include <QString>

class QWidget;

namespace vonnel {

class CopyContext;

struct PlaceKeys {
    QString left, top, width, height;
};

// Moves and sizes the window from the keys; an unset size gives fallback.
void placeFromSettings(QWidget* window, CopyContext& ctx, const PlaceKeys& keys, QSize fallback);
void writePlace(const QWidget* window, CopyContext& ctx, const PlaceKeys& keys);

// With key + "-Colour" at 1, the widgets take key + "-Colour-FG" and
// key + "-Colour-BK" as text and background.
void applyColours(CopyContext& ctx, const QString& key, std::initializer_list<QWidget*> widgets);

}  // namespace vonnel
