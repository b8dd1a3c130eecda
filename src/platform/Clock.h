#pragma once
// Time of day and date, behind a seam so tests can step the clock.

#include <QDateTime>

namespace vonnel {

class Clock {
public:
    virtual ~Clock() = default;
    virtual QDateTime now() const { return QDateTime::currentDateTime(); }
    QTime timeOfDay() const { return now().time(); }
    QDate today() const { return now().date(); }
    // Seconds since midnight, with fractions, as the delay routine spins on.
    double timer() const { return now().time().msecsSinceStartOfDay() / 1000.0; }
};

// A clock that stands still until moved; for tests.
class ManualClock : public Clock {
public:
    explicit ManualClock(QDateTime start) : m_now(std::move(start)) {}
    QDateTime now() const override { return m_now; }
    void set(const QDateTime& t) { m_now = t; }
    void advanceMs(qint64 ms) { m_now = m_now.addMSecs(ms); }

private:
    QDateTime m_now;
};

}  // namespace vonnel
