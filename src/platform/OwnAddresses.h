#pragma once
// The machine's own IPv4 addresses, as the network sweep starts from them.
// Behind an interface so a test can stand the machine on a network of its
// choosing (127.0.0.1 on a /24, say).

#include <QStringList>

namespace vonnel {

class OwnAddresses {
public:
    // At most this many, as the address table holds.
    static constexpr int kMax = 10;
    virtual ~OwnAddresses() = default;
    // Dotted texts; "0.0.0.0" marks an unused place.
    virtual QStringList ownAddresses() = 0;
};

// The addresses of the interfaces that are up, loopback last.
class SystemOwnAddresses : public OwnAddresses {
public:
    QStringList ownAddresses() override;
};

// A fixed list; for tests and for a user who names the networks.
class FixedOwnAddresses : public OwnAddresses {
public:
    explicit FixedOwnAddresses(QStringList addresses) : m_addresses(std::move(addresses)) {}
    QStringList ownAddresses() override { return m_addresses; }
    void set(QStringList addresses) { m_addresses = std::move(addresses); }

private:
    QStringList m_addresses;
};

}  // namespace vonnel
