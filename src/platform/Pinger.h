#pragma once
// One ICMP echo to an address, as the connect report and the network
// tools use it: payload "Echo", a short wait for the answer. The caller
// waits; for many probes side by side see EchoProber.

#include "platform/EchoTransport.h"

class QObject;

#include <QString>
#include <functional>
#include <memory>

namespace vonnel {

class EchoProber;

// What one echo brought: the status (EchoStatus), the round trip, and the
// data the answer carried back.
struct EchoResult {
    quint32 status = EchoStatus::GeneralFailure;
    int roundTripMs = 0;
    QByteArray data;
};

class Pinger {
public:
    // Without a platform the system's own is used.
    explicit Pinger(EchoPlatform* platform = nullptr);
    virtual ~Pinger();
    Pinger(const Pinger&) = delete;
    Pinger& operator=(const Pinger&) = delete;

    // True when the address answered within the time with our data. Where
    // the system offers no ICMP socket the answer is false ("offline"),
    // which callers treat as a report only.
    virtual bool echo(const QString& address, int timeoutMs = kEchoTimeoutMs);

    // One echo with its whole result. A text that is no dotted address is
    // not sent anywhere: BadDestination.
    virtual EchoResult sendEcho(const QString& address, int timeoutMs = kEchoTimeoutMs);

    // Probes side by side on the same platform, for the sweep and the
    // station check. The prober's word that no socket can be had goes to
    // the same once-only notice as this pinger's own.
    virtual std::unique_ptr<EchoProber> makeProber(QObject* parent = nullptr);

    // Told once when neither socket kind can be had; unset, the text goes
    // to the warning log.
    void setUnavailableNotice(std::function<void(const QString&)> notice);
    // The socket kind in use once an echo has opened one.
    EchoSocketKind kind() const;

protected:
    // The notice, at most once for this pinger and every prober it made.
    void tellUnavailable(const QString& why);

private:
    bool ensureTransport();

    std::unique_ptr<EchoPlatform> m_ownPlatform;
    EchoPlatform* m_platform;
    std::unique_ptr<EchoTransport> m_transport;
    std::function<void(const QString&)> m_notice;
    quint16 m_nextSequence = 1;
    bool m_toldUnavailable = false;
};

}  // namespace vonnel
