#include "nettools/Echo.h"

#include "nettools/LikePattern.h"

namespace vonnel {

qint32 sendEcho(Pinger& pinger, const QString& address, EchoResult& reply)
{
    reply = pinger.sendEcho(address, kEchoTimeoutMs);
    if (reply.status == EchoStatus::Success)
        return reply.roundTripMs;
    return -qint32(reply.status);
}

bool pingStation(Pinger& pinger, const QString& address)
{
    EchoResult reply;
    sendEcho(pinger, address, reply);
    return reply.status == EchoStatus::Success &&
           likeMatch(QString::fromLatin1(reply.data), QStringLiteral("Echo*"));
}

}  // namespace vonnel
