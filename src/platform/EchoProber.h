#pragma once
// Echoes that run side by side without holding the event loop: a sweep puts
// many probes in flight, each with its own time-out, and hears of each one's
// end through a signal. The socket is watched by a notifier; one timer
// stands at the earliest deadline.

#include "platform/EchoTransport.h"

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QTimer>
#include <memory>

class QSocketNotifier;

namespace vonnel {

class EchoProber : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    // Starts one probe. Its end always comes later through probeDone, never
    // from inside this call. A text that is no dotted address ends as no
    // answer, and nothing is sent.
    virtual void probe(quint64 ticket, const QString& address, int timeoutMs = kEchoTimeoutMs) = 0;
    // Forgets every probe in flight; none of them reports any more.
    virtual void cancelAll() = 0;

Q_SIGNALS:
    // status is one of EchoStatus; roundTripMs counts only with Success.
    void probeDone(quint64 ticket, bool answered, quint32 status, int roundTripMs);
    // Neither socket kind can be had: told once per prober.
    void unavailable(const QString& message);
};

class SocketEchoProber : public EchoProber {
    Q_OBJECT
public:
    // Without a platform the system's own is used.
    explicit SocketEchoProber(EchoPlatform* platform = nullptr, QObject* parent = nullptr);
    ~SocketEchoProber() override;

    void probe(quint64 ticket, const QString& address, int timeoutMs = kEchoTimeoutMs) override;
    void cancelAll() override;

    // The socket kind in use once the first probe has opened one.
    EchoSocketKind kind() const;
    int inFlight() const { return int(m_pending.size()); }

private:
    struct Pending {
        quint64 ticket;
        quint32 target;
        quint16 sequence;
        qint64 sentAt;
        qint64 deadline;
    };
    bool ensureTransport();
    void finishLater(quint64 ticket, quint32 status);
    void readReplies();
    void expire();
    void armTimer();

    std::unique_ptr<EchoPlatform> m_ownPlatform;
    EchoPlatform* m_platform;
    std::unique_ptr<EchoTransport> m_transport;
    QSocketNotifier* m_notifier = nullptr;
    QTimer m_timer;
    QElapsedTimer m_clock;
    QList<Pending> m_pending;
    quint16 m_nextSequence = 1;
    quint64 m_generation = 0;  // queued ends of a cancelled generation stay silent
    bool m_toldUnavailable = false;
};

}  // namespace vonnel
