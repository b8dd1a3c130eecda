#pragma once
// The screen's contents as a picture, for the board's capture. Where the
// program may read the screen itself (X11 and the other desktops Qt can
// read), the primary screen; where it may not (Wayland), the desktop's
// screenshot portal is asked; where neither is there, a null picture and
// the reason in words the user can act on.

#include <QImage>
#include <QString>

#include <functional>

namespace vonnel {

// The ways to the screen, each a seam a test can replace.
struct ScreenSources {
    // Whether the program may read the screen itself, and the reading.
    std::function<bool()> direct;
    std::function<QImage()> grab;
    // Whether the desktop offers the screenshot portal, and the asking: the
    // picture, or null and why.
    std::function<bool()> portal;
    std::function<QImage(QString* why)> askPortal;
};

// The sources of the desktop this copy runs on.
ScreenSources desktopScreenSources();

QImage grabScreen(const ScreenSources& sources, QString* why);
QImage grabScreen(QString* why = nullptr);

}  // namespace vonnel
