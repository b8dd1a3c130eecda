#include "platform/DesktopScheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QVariant>

namespace vonnel {

namespace {

// The portal wraps the value in one or two variants, by its version.
uint unwrap(QVariant v)
{
    while (v.canConvert<QDBusVariant>() && v.userType() == qMetaTypeId<QDBusVariant>())
        v = v.value<QDBusVariant>().variant();
    return v.toUInt();
}

}  // namespace

std::optional<bool> desktopPrefersDark()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return std::nullopt;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
    call << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme");
    // Asked once at start: a portal that hangs must not hold the window back.
    const QDBusMessage reply = bus.call(call, QDBus::Block, 300);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return std::nullopt;
    switch (unwrap(reply.arguments().constFirst())) {
    case 1: return true;
    case 2: return false;
    default: return std::nullopt;
    }
}

}  // namespace vonnel
