#pragma once
// One ICMP echo to an address, as the connect report and the network
// sweep use it: payload "Echo", a short wait for the answer.

#include <QString>

namespace vonnel {

class Pinger {
public:
    virtual ~Pinger() = default;
    // True when the address answered within the time. Where the system
    // offers no unprivileged ICMP socket the answer is false ("offline"),
    // which callers treat as a report only.
    virtual bool echo(const QString& address, int timeoutMs = 200);
};

}  // namespace vonnel
