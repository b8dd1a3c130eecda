#pragma once
// The remote pane's half of live text: what each position-bearing frame
// does to txtClient, and the self-repair that asks the peer for its whole
// text when the pane is known to differ.
//
// The frames say what the sender's pane looks like after a key, in the
// sending rules' own terms; this class reads them for what the sender
// meant. The full table stands at the head of RemotePane.cpp and in
// docs/LIVE_TEXT.md.

#include <QObject>
#include <QString>
#include <QTimer>

namespace vonnel {

class Clock;
class MainModel;
class Session;
class Sender;
class Receiver;
class TextPane;

class RemotePane : public QObject {
    Q_OBJECT
public:
    RemotePane(const Clock& clock, MainModel& model, Session& session, Sender& sender,
               Receiver& receiver, QObject* parent);

    // "<KEY> " c n "</KEY>", c already deciphered.
    void typedCharacter(const QString& c, int n);
    // "^SPC" n "#SPC".
    void space(int n);
    // "^RETURN" n "#RETURN"; counted is false when n was no number (the
    // last one read stands in for it).
    void lineBreak(int n, bool counted = true);
    // "^BK" n "#BK"; blockFollows: a "<Paste> " frame stands right behind it
    // in the same arrival.
    void deletion(int n, bool blockFollows = false);
    // "^Clr": the pane was emptied; so was the sender's.
    void cleared();
    // Text of an arrival was dropped unread: the pane may have missed frames,
    // so a position running ahead is no longer taken for a held key.
    void lost();
    // The pane was emptied here and the whole text asked for (Refresh): until
    // the answer's "^Clr" nothing fits, and no repair is to be asked.
    void awaitResend();
    // A new session: nothing is known to differ and no repair was asked.
    void beginSession();

    // The pane's length is believed to be the sender's: a frame whose
    // position runs ahead of the pane is then a held key, not a lag.
    bool inStep() const { return m_inStep; }

    // --- self-repair ----------------------------------------------------------
    // Repairs asked for in this session; Repair Count Limit is the ceiling.
    int repairCount = 0;
    // How long a known difference waits for the sender's own resend (which
    // follows any edit the typing frames cannot carry) before a repair is
    // asked.
    int repairDelayMs = 400;
    bool repairMayRun() const;
    // A difference is known and a repair will be asked when the wait ends.
    bool repairPending() const { return m_repairTimer.isActive(); }
    // Counts the request and asks the peer for a resend now.
    void repair();

private:
    TextPane& pane() const;
    void add(const QString& text);
    // The pane is known to differ from the sender's: a repair is planned.
    void differs();
    void repairDue();

    const Clock& m_clock;
    MainModel& m_model;
    Session& m_session;
    Sender& m_sender;
    Receiver& m_receiver;
    QTimer m_repairTimer;
    bool m_inStep = true;
    // A repair was asked and its answer ("^Clr" first) has not come yet.
    qint64 m_answerAwaitedSince = -1;  // steady ms; -1: no answer awaited
};

}  // namespace vonnel
