#include "connection/AddressServices.h"

#include "connection/IpList.h"
#include "core/CopyContext.h"
#include "core/MainModel.h"

#include <QEventLoop>
#include <QHostAddress>
#include <QHostInfo>
#include <QNetworkInterface>
#include <QSysInfo>

namespace vonnel {

AddressServices::AddressServices(CopyContext& ctx, MainModel& model, QObject* parent)
    : QObject(parent), m_ctx(ctx), m_model(model)
{
}

bool AddressServices::looksDotted(const QString& text)
{
    return vbLike(text, QStringLiteral("*#.*#.*#.*#"));
}

QString AddressServices::lookup(const QString& text, bool reverse, const QString& word,
                                bool showStatus)
{
    const QString before = m_model.stStatusbar.text(2);
    if (showStatus)
        m_model.stStatusbar.setText(2, word);
    m_busy = true;
    Q_EMIT lookupRunning(true);

    QHostInfo info;
    bool done = false;
    QEventLoop loop;
    const int id = QHostInfo::lookupHost(text, &loop, [&](const QHostInfo& result) {
        info = result;
        done = true;
        loop.quit();
    });
    if (!done)
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    Q_UNUSED(id);

    m_busy = false;
    Q_EMIT lookupRunning(false);
    if (showStatus)
        m_model.stStatusbar.setText(2, before);

    if (info.error() != QHostInfo::NoError)
        return kFailed;
    if (reverse) {
        // A reverse lookup without an entry gives back the address itself.
        const QString name = info.hostName();
        if (name.isEmpty() || QHostAddress(name) == QHostAddress(text))
            return kFailed;
        return name;
    }
    // IPv4 first, as the lists and the address panels know it best; a name
    // with IPv6 addresses only is called over IPv6.
    for (const QHostAddress& a : info.addresses()) {
        bool ok = false;
        const quint32 v4 = a.toIPv4Address(&ok);
        if (ok)
            return QHostAddress(v4).toString();
    }
    for (const QHostAddress& a : info.addresses())
        if (a.protocol() == QAbstractSocket::IPv6Protocol)
            return a.toString();
    return kFailed;
}

QString AddressServices::ResolveName(const QString& host, bool showStatus)
{
    const QString word = m_ctx.translate(QStringLiteral("ResolvingAddress"),
                                         QStringLiteral("Resolving network address..."));
    const QString name = host.trimmed();
    if (name.isEmpty())
        return kFailed;
    return lookup(name, false, word, showStatus);
}

QString AddressServices::ResolveAddress(const QString& address)
{
    const QString word = m_ctx.translate(QStringLiteral("ResolvingHost"),
                                         QStringLiteral("Resolving network host..."));
    if (address.isEmpty())
        return QString();
    // An IPv4 or IPv6 address is looked up in reverse; anything else fails.
    QHostAddress a;
    if (!a.setAddress(address.trimmed()) || (a.protocol() != QAbstractSocket::IPv4Protocol &&
                                             a.protocol() != QAbstractSocket::IPv6Protocol))
        return kFailed;
    return lookup(a.toString(), true, word, true);
}

QString AddressServices::ComputerName() const
{
    return QSysInfo::machineHostName();
}

void AddressServices::GetLocalHost()
{
    localHostName = QHostInfo::localHostName();
    localAddresses.clear();
    QStringList loopback;
    for (const QHostAddress& a : QNetworkInterface::allAddresses()) {
        if (a.protocol() != QAbstractSocket::IPv4Protocol)
            continue;
        if (a.isLoopback()) {
            loopback << a.toString();
            continue;
        }
        if (localAddresses.size() < kMaxLocalAddresses)
            localAddresses << a.toString();
    }
    // A computer without a network still has its own address.
    if (localAddresses.isEmpty())
        localAddresses = loopback.mid(0, kMaxLocalAddresses);
}

}  // namespace vonnel
