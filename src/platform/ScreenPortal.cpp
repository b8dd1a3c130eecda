#include "platform/ScreenPortal.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QEventLoop>
#include <QRandomGenerator>
#include <QTimer>
#include <QUrl>

namespace vonnel {

namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kRequest = QStringLiteral("org.freedesktop.portal.Request");

bool listen(QDBusConnection& bus, const QString& path, PortalAnswer& answer)
{
    return bus.connect(QString(), path, kRequest, QStringLiteral("Response"), &answer,
                       SLOT(response(uint,QVariantMap)));
}

}  // namespace

void PortalAnswer::response(uint c, const QVariantMap& r)
{
    came = true;
    code = c;
    results = r;
    Q_EMIT answered();
}

bool screenPortalOffered()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface())
        return false;
    if (bus.interface()->isServiceRegistered(kService))
        return true;
    QDBusMessage list = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ListActivatableNames"));
    const QDBusReply<QStringList> names = bus.call(list, QDBus::Block, 500);
    return names.isValid() && names.value().contains(kService);
}

QImage screenFromPortal(QString* why, int timeoutMs)
{
    auto fail = [why](const QString& text) {
        if (why)
            *why = text;
        return QImage();
    };
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return fail(QStringLiteral("no session bus"));
    // The request object's path is known before the call, so its answer
    // cannot come before we listen.
    const QString token =
        QStringLiteral("vonnel%1").arg(QRandomGenerator::global()->generate());
    QString sender = bus.baseService().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    const QString expected = kPath + QStringLiteral("/request/") + sender + QLatin1Char('/') + token;
    PortalAnswer answer;
    listen(bus, expected, answer);

    QDBusMessage call = QDBusMessage::createMethodCall(
        kService, kPath, QStringLiteral("org.freedesktop.portal.Screenshot"), QStringLiteral("Screenshot"));
    call << QString() << QVariantMap{{QStringLiteral("handle_token"), token},
                                     {QStringLiteral("interactive"), false}};
    QEventLoop loop;
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
    QObject::connect(&answer, &PortalAnswer::answered, &loop, &QEventLoop::quit);
    QDBusPendingCallWatcher watcher(bus.asyncCall(call, timeoutMs));
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    limit.start(timeoutMs);
    if (!watcher.isFinished())
        loop.exec();
    if (!answer.came) {
        if (!watcher.isFinished())
            return fail(QStringLiteral("no answer in time"));
        const QDBusPendingReply<QDBusObjectPath> handle = watcher;
        if (!handle.isValid())
            return fail(handle.error().message().isEmpty() ? QStringLiteral("no answer")
                                                           : handle.error().message());
        // An older portal names the request its own way.
        if (handle.value().path() != expected)
            listen(bus, handle.value().path(), answer);
        if (!answer.came && limit.isActive())
            loop.exec();
    }
    if (!answer.came)
        return fail(QStringLiteral("no answer in time"));
    if (answer.code != 0)
        return fail(answer.code == 1 ? QStringLiteral("cancelled") : QStringLiteral("refused"));
    const QUrl uri(answer.results.value(QStringLiteral("uri")).toString());
    QImage image(uri.toLocalFile());
    if (image.isNull())
        return fail(QStringLiteral("the picture it made could not be read"));
    return image;
}

}  // namespace vonnel
