#include "platform/EchoProber.h"

#include <QSocketNotifier>

namespace vonnel {

SocketEchoProber::SocketEchoProber(EchoPlatform* platform, QObject* parent)
    : EchoProber(parent), m_platform(platform)
{
    if (!m_platform) {
        m_ownPlatform = std::make_unique<SystemEchoPlatform>();
        m_platform = m_ownPlatform.get();
    }
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &SocketEchoProber::expire);
    m_clock.start();
}

SocketEchoProber::~SocketEchoProber() = default;

EchoSocketKind SocketEchoProber::kind() const
{
    return m_transport ? m_transport->kind() : EchoSocketKind::None;
}

bool SocketEchoProber::ensureTransport()
{
    if (m_transport)
        return true;
    QString why;
    m_transport = m_platform->open(&why);
    if (!m_transport) {
        if (!m_toldUnavailable) {
            m_toldUnavailable = true;
            Q_EMIT unavailable(why);
        }
        return false;
    }
    if (m_transport->descriptor() >= 0) {
        m_notifier = new QSocketNotifier(m_transport->descriptor(), QSocketNotifier::Read, this);
        connect(m_notifier, &QSocketNotifier::activated, this, &SocketEchoProber::readReplies);
    }
    return true;
}

void SocketEchoProber::finishLater(quint64 ticket, quint32 status)
{
    const quint64 generation = m_generation;
    QMetaObject::invokeMethod(
        this,
        [this, ticket, status, generation] {
            if (generation == m_generation)
                Q_EMIT probeDone(ticket, false, status, 0);
        },
        Qt::QueuedConnection);
}

void SocketEchoProber::probe(quint64 ticket, const QString& address, int timeoutMs)
{
    const std::optional<quint32> target = parseDottedQuad(address);
    if (!target) {
        finishLater(ticket, EchoStatus::BadDestination);
        return;
    }
    if (!ensureTransport()) {
        finishLater(ticket, EchoStatus::GeneralFailure);
        return;
    }
    const quint16 sequence = m_nextSequence++;
    if (m_nextSequence == 0)
        m_nextSequence = 1;
    if (!m_transport->send(*target, buildEchoRequest(m_transport->identifier(), sequence))) {
        finishLater(ticket, EchoStatus::GeneralFailure);
        return;
    }
    const qint64 now = m_clock.elapsed();
    m_pending.append({ticket, *target, sequence, now, now + qMax(0, timeoutMs)});
    armTimer();
}

void SocketEchoProber::cancelAll()
{
    ++m_generation;
    m_pending.clear();
    m_timer.stop();
}

void SocketEchoProber::readReplies()
{
    if (!m_transport)
        return;
    QByteArray datagram;
    quint32 from = 0;
    while (m_transport->receive(datagram, from)) {
        const EchoReplyFields reply = parseEchoReply(datagram, m_transport->framing());
        if (!reply.valid)
            continue;
        for (int i = 0; i < m_pending.size(); ++i) {
            const Pending p = m_pending[i];
            if (!isAnswerTo(reply, from, m_transport->identifier(), p.sequence, p.target))
                continue;
            m_pending.removeAt(i);
            Q_EMIT probeDone(p.ticket, true, EchoStatus::Success,
                             int(m_clock.elapsed() - p.sentAt));
            break;
        }
    }
    armTimer();
}

void SocketEchoProber::expire()
{
    // A reply that is already waiting counts before its probe runs out.
    readReplies();
    const qint64 now = m_clock.elapsed();
    QList<Pending> due;
    for (int i = 0; i < m_pending.size();) {
        if (m_pending[i].deadline <= now)
            due.append(m_pending.takeAt(i));
        else
            ++i;
    }
    armTimer();
    for (const Pending& p : due)
        Q_EMIT probeDone(p.ticket, false, EchoStatus::TimedOut, 0);
}

void SocketEchoProber::armTimer()
{
    if (m_pending.isEmpty()) {
        m_timer.stop();
        return;
    }
    qint64 earliest = m_pending.first().deadline;
    for (const Pending& p : m_pending)
        earliest = qMin(earliest, p.deadline);
    m_timer.start(int(qMax<qint64>(0, earliest - m_clock.elapsed())));
}

}  // namespace vonnel
