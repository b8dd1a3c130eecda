#include "nettools/SweepEngine.h"

namespace vonnel {

SweepEngine::SweepEngine(EchoProber& prober, quint16 tag, QObject* parent)
    : QObject(parent), m_prober(prober), m_tag(tag)
{
    connect(&m_prober, &EchoProber::probeDone, this,
            [this](quint64 t, bool answered, quint32, int) { onProbeDone(t, answered); });
}

quint64 SweepEngine::ticket(int index) const
{
    return (quint64(m_tag) << 48) | (quint64(m_run) << 32) | quint32(index);
}

void SweepEngine::start(const QStringList& targets)
{
    if (m_running)
        abort();
    ++m_run;
    m_running = true;
    m_targets = targets;
    m_outcome = QVector<qint8>(targets.size(), -1);
    m_nextToLaunch = 0;
    m_nextToReport = 0;
    m_inFlight = 0;
    if (targets.isEmpty()) {
        m_running = false;
        Q_EMIT finished(false);
        return;
    }
    launch();
}

void SweepEngine::abort()
{
    if (!m_running)
        return;
    m_running = false;
    ++m_run;  // what is still in flight no longer matches
    Q_EMIT finished(true);
}

void SweepEngine::launch()
{
    while (m_running && m_inFlight < m_maxInFlight && m_nextToLaunch < m_targets.size()) {
        const int index = m_nextToLaunch++;
        ++m_inFlight;
        m_prober.probe(ticket(index), m_targets[index]);
    }
}

void SweepEngine::onProbeDone(quint64 t, bool answered)
{
    if (!m_running || (t >> 48) != m_tag || ((t >> 32) & 0xffff) != m_run)
        return;
    const int index = int(t & 0xffffffffu);
    if (index < 0 || index >= m_outcome.size() || m_outcome[index] != -1)
        return;
    m_outcome[index] = answered ? 1 : 0;
    --m_inFlight;
    launch();
    flush();
}

void SweepEngine::flush()
{
    // A listener may look a name up and let events run meanwhile; a second
    // flush from in there would report out of order.
    if (m_flushing)
        return;
    m_flushing = true;
    const quint16 run = m_run;
    while (m_running && run == m_run && m_nextToReport < m_outcome.size() &&
           m_outcome[m_nextToReport] != -1) {
        const int index = m_nextToReport++;
        Q_EMIT result(index, m_targets[index], m_outcome[index] == 1);
    }
    m_flushing = false;
    if (m_running && run == m_run && m_nextToReport == m_outcome.size()) {
        m_running = false;
        Q_EMIT finished(false);
    }
}

}  // namespace vonnel
