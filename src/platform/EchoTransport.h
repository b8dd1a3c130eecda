#pragma once
// The socket an echo goes out on. On Linux an unprivileged ICMP datagram
// socket where net.ipv4.ping_group_range lets our group have one, else a raw
// ICMP socket where the process may open one. Behind an interface so tests
// can stand in a machine that allows neither, or a peer that forges replies.

#include "platform/EchoPacket.h"

#include <QString>
#include <QStringList>
#include <memory>

namespace vonnel {

enum class EchoSocketKind { None, Datagram, Raw };

class EchoTransport {
public:
    virtual ~EchoTransport() = default;
    virtual EchoSocketKind kind() const = 0;
    // Descriptor that turns readable when a datagram waits (for a notifier
    // or poll); -1 when there is none.
    virtual int descriptor() const = 0;
    // The identifier replies to our requests carry. A datagram socket has
    // the kernel put its own in; a raw socket sends ours.
    virtual quint16 identifier() const = 0;
    virtual EchoFraming framing() const = 0;
    // Sends one request to an address (host order). False when it did not go.
    virtual bool send(quint32 target, const QByteArray& packet) = 0;
    // Takes one waiting datagram without blocking; false when none waits.
    virtual bool receive(QByteArray& datagram, quint32& from) = 0;
};

// Opens transports. The system's tries the two socket kinds in turn.
class EchoPlatform {
public:
    virtual ~EchoPlatform() = default;
    // A transport, or nullptr with the reason in whyNot.
    virtual std::unique_ptr<EchoTransport> open(QString* whyNot) = 0;
};

class SystemEchoPlatform : public EchoPlatform {
public:
    // Which kinds may be tried; tests pin one.
    explicit SystemEchoPlatform(bool tryDatagram = true, bool tryRaw = true)
        : m_tryDatagram(tryDatagram), m_tryRaw(tryRaw)
    {
    }
    std::unique_ptr<EchoTransport> open(QString* whyNot) override;

private:
    bool m_tryDatagram;
    bool m_tryRaw;
};

// What the user is told once when neither socket kind can be had.
QString echoUnavailableText(const QString& detail);

}  // namespace vonnel
