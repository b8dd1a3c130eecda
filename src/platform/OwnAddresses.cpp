#include "platform/OwnAddresses.h"

#include <QNetworkInterface>

namespace vonnel {

QStringList SystemOwnAddresses::ownAddresses()
{
    QStringList outward;
    QStringList loopback;
    const auto interfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface& i : interfaces) {
        if (!(i.flags() & QNetworkInterface::IsUp))
            continue;
        const bool isLoopback = i.flags() & QNetworkInterface::IsLoopBack;
        for (const QNetworkAddressEntry& e : i.addressEntries()) {
            if (e.ip().protocol() != QAbstractSocket::IPv4Protocol)
                continue;
            (isLoopback ? loopback : outward) << e.ip().toString();
        }
    }
    QStringList all = outward + loopback;
    return all.mid(0, kMax);
}

}  // namespace vonnel
