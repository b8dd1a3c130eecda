#pragma once
// Time of day and date, behind a seam so tests can step the clock.

#include <QDateTime>
#include <QThread>
#include <chrono>

namespace vonnel {

class Clock {
public:
    virtual ~Clock() = default;
    // Local time. The zone's offset is looked up at most once a second: a
    // lookup of the local zone touches the zone file each time, and the
    // receive path asks for the time on every read.
    virtual QDateTime now() const
    {
        const qint64 ms = QDateTime::currentMSecsSinceEpoch();
        if (!m_offsetKnown || ms < m_offsetAt || ms - m_offsetAt >= 1000) {
            m_offset = QDateTime::fromMSecsSinceEpoch(ms).offsetFromUtc();
            m_offsetAt = ms;
            m_offsetKnown = true;
        }
        return QDateTime::fromMSecsSinceEpoch(ms, Qt::OffsetFromUTC, m_offset);
    }
    // Milliseconds since the epoch: now() without its date and zone, for
    // the differences the receive path takes on every read.
    virtual qint64 nowMs() const { return QDateTime::currentMSecsSinceEpoch(); }
    QTime timeOfDay() const { return now().time(); }
    QDate today() const { return now().date(); }
    // Seconds since midnight, with fractions, as the delay routine spins on.
    double timer() const { return now().time().msecsSinceStartOfDay() / 1000.0; }
    // Milliseconds on a clock that never goes back, for measuring rates.
    virtual qint64 steadyMs() const
    {
        using namespace std::chrono;
        return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
    }
    // A short pause of the calling thread, as a waiting loop takes between
    // two turns.
    virtual void pauseMicroseconds(unsigned long us) const { QThread::usleep(us); }
    // Spins on timer() for the given seconds without running events.
    virtual void spinFor(double seconds) const
    {
        const double start = timer();
        while (timer() < start + seconds)
            QThread::msleep(1);
    }

private:
    mutable qint64 m_offsetAt = 0;
    mutable int m_offset = 0;
    mutable bool m_offsetKnown = false;
};

// A clock that stands still until moved; for tests.
class ManualClock : public Clock {
public:
    explicit ManualClock(QDateTime start) : m_now(std::move(start)) {}
    QDateTime now() const override { return m_now; }
    qint64 nowMs() const override { return m_now.toMSecsSinceEpoch(); }
    void set(const QDateTime& t) { m_now = t; }
    void advanceMs(qint64 ms) { m_now = m_now.addMSecs(ms); }

private:
    QDateTime m_now;
};

}  // namespace vonnel
