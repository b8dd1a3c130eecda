#include "platform/ScreenSaver.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QGuiApplication>

#include <optional>

#ifdef VONNEL_HAVE_XSS
#include <X11/Xlib.h>
#include <X11/extensions/scrnsaver.h>
#endif

namespace vonnel {

namespace {

// The freedesktop screen saver interface; desktops publish it under one of
// two object paths.
std::optional<bool> askDBus()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return std::nullopt;
    for (const char* path : {"/org/freedesktop/ScreenSaver", "/ScreenSaver"}) {
        const QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.ScreenSaver"), QLatin1String(path),
            QStringLiteral("org.freedesktop.ScreenSaver"), QStringLiteral("GetActive"));
        // A tick must never hang on a slow desktop.
        const QDBusReply<bool> reply = bus.call(call, QDBus::Block, 500);
        if (reply.isValid())
            return reply.value();
    }
    return std::nullopt;
}

std::optional<bool> askX()
{
#ifdef VONNEL_HAVE_XSS
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    Display* display = x11 ? x11->display() : nullptr;
    if (!display)
        return std::nullopt;
    int event = 0, error = 0;
    if (!XScreenSaverQueryExtension(display, &event, &error))
        return std::nullopt;
    XScreenSaverInfo* info = XScreenSaverAllocInfo();
    if (!info)
        return std::nullopt;
    const Status ok = XScreenSaverQueryInfo(display, DefaultRootWindow(display), info);
    const bool on = info->state == ScreenSaverOn;
    const unsigned long idleMs = info->idle;
    XFree(info);
    if (!ok)
        return std::nullopt;
    int timeout = 0, interval = 0, blanking = 0, exposures = 0;
    XGetScreenSaver(display, &timeout, &interval, &blanking, &exposures);
    const unsigned long limitMs =
        1000UL * unsigned(timeout > 0 ? timeout : SystemScreenSaver::kDefaultIdleSeconds);
    return on || idleMs >= limitMs;
#else
    return std::nullopt;
#endif
}

}  // namespace

SystemScreenSaver::SystemScreenSaver() = default;
SystemScreenSaver::~SystemScreenSaver() = default;

bool SystemScreenSaver::running()
{
    if (!m_dbusGone) {
        if (const std::optional<bool> active = askDBus()) {
            m_source = Source::DBus;
            return *active;
        }
        m_dbusGone = true;
    }
    if (const std::optional<bool> idle = askX()) {
        m_source = Source::XIdle;
        return *idle;
    }
    m_source = Source::Nothing;
    return false;
}

}  // namespace vonnel
