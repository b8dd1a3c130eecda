#include "platform/Notifier.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QSystemTrayIcon>
#include <QVariantMap>

namespace vonnel {

void SystemNotifier::setTray(QSystemTrayIcon* tray) { m_tray = tray; }

void SystemNotifier::notify(const QString& title, const QString& text)
{
    m_last = Route::None;
    auto* tray = qobject_cast<QSystemTrayIcon*>(m_tray.data());
    if (tray && tray->isVisible() && QSystemTrayIcon::supportsMessages()) {
        tray->showMessage(title, text, QSystemTrayIcon::Information, 10000);
        m_last = Route::Tray;
        return;
    }
    if (m_dbusGone)
        return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        m_dbusGone = true;
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    // app_name, replaces_id, app_icon, summary, body, actions, hints, timeout
    call << QStringLiteral("Vonnel") << uint(0) << QString() << title << text << QStringList()
         << QVariantMap() << int(10000);
    // A session must never wait on a slow desktop.
    const QDBusReply<uint> reply = bus.call(call, QDBus::Block, 500);
    if (reply.isValid())
        m_last = Route::DBus;
    else
        m_dbusGone = true;
}

}  // namespace vonnel
