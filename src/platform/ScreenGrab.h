#pragma once
// The screen's contents as a picture, for the board's capture. On X11 and
// the other desktops Qt can read, the primary screen; where the desktop
// does not let a program read the screen (Wayland), a null picture and the
// reason.

#include <QImage>
#include <QString>

namespace vonnel {

QImage grabScreen(QString* why = nullptr);

}  // namespace vonnel
