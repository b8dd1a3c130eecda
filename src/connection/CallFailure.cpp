#include "connection/CallFailure.h"

#include "platform/Winsock.h"

namespace vonnel {

CallFailure callFailureFromError(int e)
{
    switch (e) {
    case Winsock::errConnectionRefused: return CallFailure::Refused;
    case Winsock::errNetworkUnreachable: return CallFailure::Unreachable;
    case Winsock::errHostNotFound: return CallFailure::NameNotFound;
    case Winsock::errConnectionReset: return CallFailure::ClosedAtOnce;
    default: return CallFailure::TimedOut;
    }
}

QString callFailureText(CallFailure why)
{
    switch (why) {
    case CallFailure::None: return QString();
    case CallFailure::Refused:
        return QStringLiteral("Refused: nothing listens on that port of that machine");
    case CallFailure::TimedOut:
        return QStringLiteral("No answer: a firewall drops the call, or the machine is off");
    case CallFailure::Unreachable:
        return QStringLiteral("Unreachable: no route to that network or machine");
    case CallFailure::NameNotFound:
        return QStringLiteral("Name not found: no address is known for that name");
    case CallFailure::ClosedAtOnce:
        return QStringLiteral("Closed at once: the other side turned the call away (its black "
                              "list, or its user declined)");
    }
    return QString();
}

}  // namespace vonnel
