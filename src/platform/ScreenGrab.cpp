#include "platform/ScreenGrab.h"

#include "platform/ScreenPortal.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

namespace vonnel {

ScreenSources desktopScreenSources()
{
    ScreenSources s;
    s.direct = [] {
        return !QGuiApplication::platformName().startsWith(QLatin1String("wayland")) &&
               QGuiApplication::primaryScreen() != nullptr;
    };
    s.grab = [] {
        QScreen* screen = QGuiApplication::primaryScreen();
        return screen ? screen->grabWindow(0).toImage() : QImage();
    };
    s.portal = [] { return screenPortalOffered(); };
    s.askPortal = [](QString* why) { return screenFromPortal(why); };
    return s;
}

QImage grabScreen(const ScreenSources& sources, QString* why)
{
    auto fail = [why](const QString& text) {
        if (why)
            *why = text;
        return QImage();
    };
    if (sources.direct && sources.direct()) {
        QImage image = sources.grab ? sources.grab() : QImage();
        if (!image.isNull())
            return image;
        // A desktop that lets us try and gives nothing may still answer
        // through the portal.
        if (!(sources.portal && sources.portal()))
            return fail(QStringLiteral("The screen could not be read"));
    }
    if (sources.portal && sources.portal()) {
        QString portalWhy;
        QImage image = sources.askPortal ? sources.askPortal(&portalWhy) : QImage();
        if (!image.isNull())
            return image;
        return fail(QStringLiteral("The desktop's screenshot service gave no picture (") +
                    (portalWhy.isEmpty() ? QStringLiteral("no answer") : portalWhy) +
                    QStringLiteral("); take a screenshot and put it on the board with the image tool"));
    }
    return fail(QStringLiteral("The desktop does not let programs read the screen and offers no "
                               "screenshot service; take a screenshot and put it on the board "
                               "with the image tool"));
}

QImage grabScreen(QString* why)
{
    return grabScreen(desktopScreenSources(), why);
}

}  // namespace vonnel
