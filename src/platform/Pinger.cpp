#include "platform/Pinger.h"

#include "platform/EchoProber.h"

#include <QElapsedTimer>
#include <QtDebug>

#ifdef Q_OS_UNIX
#include <poll.h>
#endif

namespace vonnel {

Pinger::Pinger(EchoPlatform* platform) : m_platform(platform)
{
    if (!m_platform) {
        m_ownPlatform = std::make_unique<SystemEchoPlatform>();
        m_platform = m_ownPlatform.get();
    }
}

Pinger::~Pinger() = default;

void Pinger::setUnavailableNotice(std::function<void(const QString&)> notice)
{
    m_notice = std::move(notice);
}

EchoSocketKind Pinger::kind() const
{
    return m_transport ? m_transport->kind() : EchoSocketKind::None;
}

void Pinger::tellUnavailable(const QString& why)
{
    if (m_toldUnavailable)
        return;
    m_toldUnavailable = true;
    if (m_notice)
        m_notice(why);
    else
        qWarning().noquote() << why;
}

std::unique_ptr<EchoProber> Pinger::makeProber(QObject* parent)
{
    auto prober = std::make_unique<SocketEchoProber>(m_platform, parent);
    QObject::connect(prober.get(), &EchoProber::unavailable, prober.get(),
                     [this](const QString& why) { tellUnavailable(why); });
    return prober;
}

bool Pinger::ensureTransport()
{
    if (m_transport)
        return true;
    QString why;
    m_transport = m_platform->open(&why);
    if (!m_transport)
        tellUnavailable(why);
    return bool(m_transport);
}

bool Pinger::echo(const QString& address, int timeoutMs)
{
    const EchoResult r = sendEcho(address, timeoutMs);
    return r.status == EchoStatus::Success && r.data.startsWith(kEchoData);
}

EchoResult Pinger::sendEcho(const QString& address, int timeoutMs)
{
    EchoResult result;
    const std::optional<quint32> target = parseDottedQuad(address);
    if (!target) {
        result.status = EchoStatus::BadDestination;
        return result;
    }
    if (!ensureTransport())
        return result;
    const quint16 sequence = m_nextSequence++;
    if (m_nextSequence == 0)
        m_nextSequence = 1;
    if (!m_transport->send(*target, buildEchoRequest(m_transport->identifier(), sequence)))
        return result;
    result.status = EchoStatus::TimedOut;
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        QByteArray datagram;
        quint32 from = 0;
        while (m_transport->receive(datagram, from)) {
            const EchoReplyFields reply = parseEchoReply(datagram, m_transport->framing());
            if (isAnswerTo(reply, from, m_transport->identifier(), sequence, *target)) {
                result.status = EchoStatus::Success;
                result.roundTripMs = int(clock.elapsed());
                result.data = reply.data;
                return result;
            }
        }
        const qint64 left = timeoutMs - clock.elapsed();
        if (left <= 0)
            return result;
#ifdef Q_OS_UNIX
        if (m_transport->descriptor() >= 0) {
            pollfd p{m_transport->descriptor(), POLLIN, 0};
            ::poll(&p, 1, int(left));
            continue;
        }
#endif
        return result;  // nothing to wait on
    }
}

}  // namespace vonnel
