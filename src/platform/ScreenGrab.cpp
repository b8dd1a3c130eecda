#include "platform/ScreenGrab.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

namespace vonnel {

QImage grabScreen(QString* why)
{
    auto fail = [why](const QString& text) {
        if (why)
            *why = text;
        return QImage();
    };
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return fail(QStringLiteral("The desktop does not let programs read the screen (Wayland); "
                                   "take a screenshot and put it on the board with the image tool"));
    QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return fail(QStringLiteral("No screen"));
    const QImage image = screen->grabWindow(0).toImage();
    if (image.isNull())
        return fail(QStringLiteral("The screen could not be read"));
    return image;
}

}  // namespace vonnel
