#pragma once
// What the user typed in the Connect window's address box, taken apart:
// a name or an IPv4 address as before, an IPv6 address bare
// ("2001:db8::1") or in brackets, and a port behind the brackets
// ("[2001:db8::1]:2500"), the form addresses with ports are written in.

#include <QString>
#include <optional>

namespace vonnel {

struct CallAddress {
    QString host;                 // the address or name, brackets taken off
    std::optional<quint16> port;  // only from the bracketed form
    bool ipv6 = false;            // host is an IPv6 address
};

CallAddress parseCallAddress(const QString& typed);

// An address as a person writes it beside a port: IPv6 in brackets.
QString addressWithPort(const QString& address, quint16 port);

}  // namespace vonnel
