#include "nettools/NetResolve.h"

#include "nettools/LikePattern.h"

namespace vonnel {

namespace {
const QString kWait = QStringLiteral("   Please wait...");
}

NetResolve::NetResolve(NameLookup& names, QObject* parent) : QObject(parent), m_names(names) {}

void NetResolve::setIP(const QString& t)
{
    if (t == m_txtIP)
        return;
    m_txtIP = t;
    Q_EMIT txtIPChanged(t);
}

void NetResolve::setHost(const QString& t)
{
    if (t == m_txtHost)
        return;
    m_txtHost = t;
    Q_EMIT txtHostChanged(t);
}

void NetResolve::setBusy(bool on)
{
    if (on == m_busy)
        return;
    m_busy = on;
    Q_EMIT busyChanged(on);
}

void NetResolve::typeIP(const QString& text)
{
    m_lastBox = QStringLiteral("IP");
    setIP(text);
}

void NetResolve::typeHost(const QString& text)
{
    m_lastBox = QStringLiteral("Host");
    setHost(text);
}

void NetResolve::resolveAddressBox()
{
    if (!looksDotted(m_txtIP)) {
        Q_EMIT notice(QStringLiteral("Example of IP address format: 127.0.0.1"));
        setIP(QString());
        return;
    }
    setHost(kWait);
    setBusy(true);
    setHost(m_names.resolveAddress(m_txtIP.trimmed()));
}

void NetResolve::resolveHostBox()
{
    setIP(kWait);
    setBusy(true);
    setIP(m_names.resolveName(m_txtHost.trimmed()));
}

void NetResolve::cmdResolve_Click()
{
    if (!m_txtIP.isEmpty() && m_lastBox == QLatin1String("IP")) {
        resolveAddressBox();
    } else if (!m_txtHost.isEmpty() && m_lastBox == QLatin1String("Host")) {
        resolveHostBox();
    } else if (!m_txtIP.isEmpty() && (m_txtHost.isEmpty() || m_txtHost == kLookupFailed)) {
        resolveAddressBox();
    } else if (!m_txtHost.isEmpty()) {
        resolveHostBox();
    } else {
        Q_EMIT notice(QStringLiteral("Example of Host name format: Localhost"));
        Q_EMIT focusRequested(QStringLiteral("Host"));
    }
    setBusy(false);
}

void NetResolve::cmdReset_Click()
{
    setIP(QString());
    setHost(QString());
    Q_EMIT focusRequested(QStringLiteral("Host"));
}

}  // namespace vonnel
