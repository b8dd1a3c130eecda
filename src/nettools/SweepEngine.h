#pragma once
// Probes a list of addresses side by side, at most 32 at a time, each with
// its own time-out, and reports the results strictly in list order: an
// answer from the 40th address waits until the 39th has answered or run
// out. Nothing here blocks; the results come through signals.
//
// The engine expects the prober to itself, or to share it with users of
// other tags: tickets carry the tag, a run number and the index, so ends of
// an aborted run or of another user are ignored.

#include "platform/EchoProber.h"

#include <QObject>
#include <QStringList>
#include <QVector>

namespace vonnel {

class SweepEngine : public QObject {
    Q_OBJECT
public:
    static constexpr int kMaxInFlight = 32;

    explicit SweepEngine(EchoProber& prober, quint16 tag = 1, QObject* parent = nullptr);

    // Starts a run over the targets; a run still going is dropped first.
    void start(const QStringList& targets);
    // Stops the run: nothing more is reported, finished(true) comes at once.
    void abort();
    bool running() const { return m_running; }
    void setMaxInFlight(int n) { m_maxInFlight = qMax(1, n); }

Q_SIGNALS:
    // In index order, once per target.
    void result(int index, const QString& target, bool answered);
    void finished(bool aborted);

private:
    void launch();
    void onProbeDone(quint64 ticket, bool answered);
    void flush();
    quint64 ticket(int index) const;

    EchoProber& m_prober;
    quint16 m_tag;
    quint16 m_run = 0;
    bool m_running = false;
    int m_maxInFlight = kMaxInFlight;
    QStringList m_targets;
    QVector<qint8> m_outcome;  // -1 pending, 0 no answer, 1 answered
    int m_nextToLaunch = 0;
    int m_nextToReport = 0;
    int m_inFlight = 0;
    bool m_flushing = false;
};

}  // namespace vonnel
