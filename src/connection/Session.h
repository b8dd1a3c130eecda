#pragma once
// The session of one copy: the socket pair, which of them carries the
// session, who the peer is, when the session began and ended, and the
// waiting and status routines every part of the session uses.

#include "core/JoinedText.h"
#include "platform/Winsock.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QTime>
#include <QTimer>
#include <array>
#include <memory>

namespace vonnel {

class CopyContext;
class MainModel;
class Sender;

class Session : public QObject {
    Q_OBJECT
public:
    Session(CopyContext& ctx, MainModel& model, Sender& sender, QObject* parent = nullptr);
    ~Session() override;

    // Socket 0 carries the session; socket 1 takes a caller for the
    // moment it is turned away.
    Winsock& winsock(int index) { return *m_winsock.at(size_t(index)); }
    const Winsock& winsock(int index) const { return *m_winsock.at(size_t(index)); }
    int sIdx = 0;

    bool IsConnected() const;
    // Panel 2 and the connect/disconnect entries from the socket's state.
    void checkStatus();
    // Whole minutes since the session began (0 without a session), and
    // panel 4's text of them.
    qint64 minutesSinceStart() const;
    const QString& minutesText();
    void EnableConnect();
    void EnableDisconnect();
    // The hidden Ready/Not ready buttons: the peer learns whether this
    // side takes the board.
    void cmdHiddenReady_Click();
    void cmdHiddenNotReady_Click();

    // Spins on the clock without running events. 0 seconds means the
    // Connect Idle time, which is written back to the caller. The wait
    // pointer is up for the spin unless keepPointer is set, in which case
    // the pointer is left as the caller has it.
    void idleDelay(double& seconds, bool keepPointer = false);
    void idleDelay0() { double s = 0; idleDelay(s); }
    void idleDelayFor(double s) { idleDelay(s); }
    // Runs pending events once; the waiting loops call this on every turn.
    void yieldEvents();
    // Panels 10 and 11: bytes up to 1000, kilobytes from 1001.
    static QString byteCountText(qint64 bytes);
    // Shows a byte count in panel 10 or 11. A transfer changes the counts
    // with every frame; their texts are made at most every 50 ms, and the
    // latest count shows at most 50 ms after it came.
    void showByteCount(int panel, qint64 bytes);
    static constexpr int kCountRepaintMs = 50;

    // --- the running session -----------------------------------------------
    bool RemoteResponded = false;
    bool StopConnecting = false;
    bool ConnectionStartedHere = false;
    bool NotReadySent = false;
    // A paste is on its way out: the panels are left as they stand.
    bool PasteInProgress = false;
    QString PeerHostName;
    QString PeerIP;
    QString peerForRecord;  // the remote address named in session records
    QDateTime SessionDateStart;
    QTime SessionStartTime;
    QTime SessionEndTime;
    // Panels 10 and 11 count the bytes of this session only.
    qint64 bytesSentCount = 0;
    qint64 arrivedLength = 0;
    // A file sending or receiving of this session waits on a pause.
    bool TransferOnHold = false;

    // The session ended: its record is asked for (sessionEnded). endedNow
    // also takes the end time.
    void ended() { Q_EMIT sessionEnded(); }
    // A session has just started on either side (sessionOpened).
    void opened() { Q_EMIT sessionOpened(); }
    void endedNow();

Q_SIGNALS:
    // A session has just started on either side: the format options are
    // to be sent (aftOptSet).
    void sessionOpened();
    // A session ended: its record is to be saved.
    void sessionEnded();

private:
    CopyContext& m_ctx;
    MainModel& m_model;
    Sender& m_sender;
    std::array<std::unique_ptr<Winsock>, 2> m_winsock;
    struct CountPanel {
        qint64 bytes = 0;
        qint64 shownAtMs = -1;
        QTimer timer;
    };
    std::array<CountPanel, 2> m_counts;  // panels 10 and 11
    void paintCount(int panel);
    JoinedText<QString, QString> m_connectedText{QLatin1StringView(" ")};
    JoinedText<qint64, QString> m_minutesText{QLatin1StringView(" ")};
};

}  // namespace vonnel
