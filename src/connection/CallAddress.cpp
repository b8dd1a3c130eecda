#include "connection/CallAddress.h"

#include <QHostAddress>

namespace vonnel {

namespace {
bool isIpv6(const QString& text)
{
    QHostAddress a;
    return a.setAddress(text) && a.protocol() == QAbstractSocket::IPv6Protocol;
}
}  // namespace

CallAddress parseCallAddress(const QString& typed)
{
    const QString t = typed.trimmed();
    if (t.startsWith(QLatin1Char('['))) {
        const qsizetype close = t.indexOf(QLatin1Char(']'));
        if (close > 1) {
            const QString inside = t.mid(1, close - 1);
            const QString behind = t.mid(close + 1);
            if (isIpv6(inside)) {
                CallAddress out{inside, std::nullopt, true};
                if (behind.startsWith(QLatin1Char(':'))) {
                    bool ok = false;
                    const uint port = behind.mid(1).toUInt(&ok);
                    if (ok && port > 0 && port <= 65535)
                        out.port = quint16(port);
                    else
                        return {t, std::nullopt, false};  // not an address with a port
                } else if (!behind.isEmpty()) {
                    return {t, std::nullopt, false};
                }
                return out;
            }
        }
        return {t, std::nullopt, false};
    }
    return {t, std::nullopt, isIpv6(t)};
}

QString addressWithPort(const QString& address, quint16 port)
{
    const QString p = QString::number(port);
    if (address.contains(QLatin1Char(':')))
        return QLatin1Char('[') + address + QStringLiteral("]:") + p;
    return address + QLatin1Char(':') + p;
}

}  // namespace vonnel
