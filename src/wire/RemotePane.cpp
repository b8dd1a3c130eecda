// What each position-bearing frame does to the remote pane.
//
// A sender that follows the typing rules writes, for a pane that held L
// characters before the key and the key's effect:
//   a character        "<KEY> " c n   n = L + 1
//   a key held down    "<KEY> " c n   one frame for p presses, n = L + p
//   a space            "^SPC" n       n = L + 1 (held: n = L + p)
//   Return             "^RETURN" n    n = L, sent before the line break
//                                     enters the pane, which then has L + 2
//   the release after Return, Shift, arrows (nothing pending)
//                      "<KEY> " + code 0 + n, n = the pane's length
//   Backspace          "^BK" n        n = the length after the deletion
//   Delete at the end  "^BK" n        n = L, nothing was deleted
//   several keys before one release: letters and spaces as "<Paste> "
//   blocks, a trailing Return as "^RETURN" n (n = L before the break), a
//   trailing deletion as "^BK" n (the final length); a deletion between
//   letters as "^BK" with the final length less the number of keys, which
//   is no length at all (our sender follows such a burst with its whole
//   text).
//
// So with P the remote pane's length when the frame arrives, the frames
// are read as:
//
//   frame            condition                  meaning / what we do
//   "<KEY> " c n     c is the code-0 character  a release with nothing
//                                               pending: dropped, nothing
//                                               shifts
//                    P = n - 1                  one character: added
//                    P < n - 1, pane in step    a held key: n - P copies
//                    otherwise                  dropped; the pane is out
//                                               of step (a difference)
//   "^SPC" n         P = n - 1                  one space: added, no
//                                               difference
//                    P < n - 1, in step         held space bar: blanks up
//                                               to n, no difference
//                    P < n - 1, out of step     blanks up to n (the lost
//                                               characters come back as
//                                               blanks); a difference
//                    P >= n                     nothing; a difference
//   "^RETURN" n      P = n                      the line break is added
//                    (n no number)              the plain fill-up only
//                    P < n                      line breaks up to n, then
//                                               the break itself when that
//                                               lands on n; a difference
//                    P > n                      nothing; a difference
//   "^BK" n          pane empty                 nothing
//                    n < 0                      a deletion inside a burst:
//                                               nothing (no error box); a
//                                               difference
//                    P > n                      cut back to n
//                    a block follows at once    a deletion between letters
//                                               of a burst: cut back to n;
//                                               a difference
//                    P = n                      nothing was deleted
//                    P < n                      nothing; a difference
//   "<Paste> " t     -                          t added at the end
//   "^Clr"           -                          pane emptied; in step again
//
// A frame whose meaning cannot be told apart keeps the plain rule of the
// frame (fill up, cut back, drop). A difference plans one repair: after
// repairDelayMs, unless a "^Clr" came first (the sender's own resend, or
// the answer to an earlier repair), "^reFresh" goes out, at most Repair
// Count Limit + 1 times a session, and never a second time while the
// answer to the first is still awaited.

#include "wire/RemotePane.h"
#include "core/Cp1252.h"

#include "connection/Session.h"
#include "core/CopyContext.h"
#include "platform/Clock.h"
#include "wire/Receiver.h"
#include "core/Sender.h"
#include "core/MainModel.h"
#include "core/WireCodec.h"

namespace vonnel {

namespace {


// A fill-up never takes the pane beyond this length: a position is only
// the peer's word, and one frame must not grow the pane without bound.
constexpr int kFillCeiling = 1 << 20;

// A held key counts at most as many presses as the sender can gather.
constexpr int kHeldCeiling = 4900;

// How long the answer to a repair is waited for before another may go.
constexpr qint64 kAnswerWaitMs = 5000;

}  // namespace

RemotePane::RemotePane(const Clock& clock, MainModel& model, Session& session, Sender& sender,
                       Receiver& receiver, QObject* parent)
    : QObject(parent), m_clock(clock), m_model(model), m_session(session), m_sender(sender), m_receiver(receiver)
{
    m_repairTimer.setSingleShot(true);
    connect(&m_repairTimer, &QTimer::timeout, this, &RemotePane::repairDue);
}

TextPane& RemotePane::pane() const
{
    return m_model.txtClient(m_session.sIdx);
}

void RemotePane::add(const QString& text)
{
    TextPane& p = pane();
    p.caretToEnd();
    p.append(text);
    p.caretToEnd();
}

void RemotePane::typedCharacter(const QString& c, int n)
{
    if (c == QString(QChar(0)))
        return;
    const int L = pane().length();
    if (L == qint64(n) - 1) {
        add(c);
        m_inStep = true;
        return;
    }
    if (m_inStep && L < qint64(n) - 1 && qint64(n) - L <= kHeldCeiling && !c.isEmpty()) {
        add(c.repeated(n - L));
        return;
    }
    m_inStep = false;
    differs();
}

void RemotePane::space(int n)
{
    const int L = pane().length();
    if (L == qint64(n) - 1) {
        add(QStringLiteral(" "));
        m_inStep = true;
        return;
    }
    if (L < qint64(n) - 1) {
        if (!m_inStep)
            differs();
        const int target = qMin(n, kFillCeiling);
        if (L < target)
            add(QString(target - L, QLatin1Char(' ')));
        m_inStep = true;
        return;
    }
    m_inStep = false;
    differs();
}

void RemotePane::lineBreak(int n, bool counted)
{
    int L = pane().length();
    if (L == n && counted) {
        add(kCrLf);
        m_inStep = true;
        return;
    }
    differs();
    if (L > n) {
        m_inStep = false;
        return;
    }
    const int target = qMin(n, kFillCeiling);
    if (L < target) {
        add(kCrLf.repeated((target - L + 1) / 2));
        L = pane().length();
    }
    if (L == n && counted)
        add(kCrLf);
    m_inStep = pane().length() == qint64(n) + 2;
}

void RemotePane::deletion(int n, bool blockFollows)
{
    TextPane& p = pane();
    // Between two blocks of one burst the number is no length: cut as the
    // frame says, and have the whole text come if the sender does not send
    // it by itself.
    if (blockFollows)
        differs();
    if (p.length() == 0)
        return;
    if (n < 0) {
        m_inStep = false;
        differs();
        return;
    }
    const int L = p.length();
    if (L > n) {
        p.setText(p.text().left(n));
        p.caretToEnd();
        m_inStep = !blockFollows;
        return;
    }
    if (L == n)
        return;
    m_inStep = false;
    differs();
}

void RemotePane::cleared()
{
    m_inStep = true;
    m_repairTimer.stop();
    m_answerAwaitedSince = -1;
}

void RemotePane::lost()
{
    // Not a difference by itself (what was dropped may have been no text
    // at all): the next frame with a position tells.
    m_inStep = false;
}

void RemotePane::awaitResend()
{
    m_inStep = false;
    m_repairTimer.stop();
    m_answerAwaitedSince = m_clock.steadyMs();
}

void RemotePane::beginSession()
{
    m_inStep = true;
    repairCount = 0;
    m_repairTimer.stop();
    m_answerAwaitedSince = -1;
}

// --- self-repair ---------------------------------------------------------------------

bool RemotePane::repairMayRun() const
{
    return m_receiver.selfRepair && repairCount <= m_receiver.repairCountLimit;
}

void RemotePane::differs()
{
    if (!repairMayRun() || m_repairTimer.isActive())
        return;
    if (m_answerAwaitedSince >= 0 && m_clock.steadyMs() - m_answerAwaitedSince < kAnswerWaitMs)
        return;
    m_repairTimer.start(repairDelayMs);
}

void RemotePane::repairDue()
{
    if (!m_session.IsConnected() || !repairMayRun())
        return;
    repair();
}

void RemotePane::repair()
{
    ++repairCount;
    m_answerAwaitedSince = m_clock.steadyMs();
    m_sender.xSendData(wire::text(wire::kRefresh));
}

}  // namespace vonnel
