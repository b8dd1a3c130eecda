#pragma once
// cDrawcheck: the board's messages as the receive loop hands them over.
// All 22 tests run one after the other on what the ones before left, so a
// read holding several messages in the tests' order goes in one round;
// what still begins with "&&" behind them goes round again. The remote
// drawing parameters outlive the call. What a message does is the
// target's business: the board in a copy, a recorder in the tests.

#include "board/BoardCodec.h"

#include <QPoint>
#include <QString>
#include <optional>
#include <utility>

namespace vonnel {

// The peer's drawing values, set by one message and used by later ones.
struct RemoteParams {
    QString remoteForeColor, remoteBackColor;  // decimal text, as sent
    qint16 remoteStartX = 0, remoteStartY = 0, remoteEndX = 0, remoteEndY = 0;
    qint16 remoteThickness = 0;
    QString remoteFontName;
    qint16 remoteFontSize = 0;
    bool remoteBold = false, remoteItalic = false, remoteUnderline = false,
         remoteStrikethrough = false;
};

class DrawTarget {
public:
    virtual ~DrawTarget() = default;
    // Each round, before the tests: the state picture.
    virtual void beforeTests() {}
    // The local colour labels, for remote colours that are empty or negative.
    virtual qint32 localForeColour() const = 0;
    virtual qint32 localBackColour() const = 0;
    // The chat line and the label text go through this (the cipher).
    virtual QString decipher(const QString& text) const { return text; }
    // Milliseconds on the copy's clock, for how long a cut-off message waits.
    virtual qint64 nowMs() const { return 0; }

    virtual void request() {}
    virtual void ring(const QString& name) { (void)name; }
    virtual void notReady() {}
    virtual void ready() {}
    virtual void chat(const QString& line) { (void)line; }
    virtual void foreColor(const RemoteParams& r) { (void)r; }
    virtual void backColor(const RemoteParams& r) { (void)r; }
    virtual void font(const RemoteParams& r) { (void)r; }
    virtual void thickness(const RemoteParams& r) { (void)r; }
    virtual void label(const QString& text, const RemoteParams& r) { (void)text, (void)r; }
    virtual void rect(const RemoteParams& r) { (void)r; }
    virtual void circle(const RemoteParams& r) { (void)r; }
    virtual void line(const RemoteParams& r) { (void)r; }
    // from: the point before it in the same stroke message, none for the first.
    virtual void strokePoint(qint16 x, qint16 y, const RemoteParams& r, std::optional<QPoint> from)
    {
        (void)x, (void)y, (void)r, (void)from;
    }
    virtual void erasePoint(qint16 x, qint16 y, const RemoteParams& r) { (void)x, (void)y, (void)r; }
    virtual void erasePic(qint16 n) { (void)n; }
    virtual void eraseLabel(qint16 n) { (void)n; }
    virtual void eraseAll() {}
    virtual void showPic(const RemoteParams& r) { (void)r; }
    virtual void closed() {}
    // The error tail's box, for every error but 5 and 401; text is the
    // whole box text.
    virtual void protocolError(const QString& text) { (void)text; }
};

class DrawCheck {
public:
    explicit DrawCheck(DrawTarget& target) : m_target(target) {}

    // Takes the board's messages off the front of data and returns what is
    // left for the receive loop; empty after the error tail.
    QString cDrawcheck(QString& data);

    RemoteParams remote;
    bool recursionGuard = false;

    // A message the read ended in the middle of (anywhere, in its head too):
    // its text so far, held for the next read to complete, as TCP cuts a
    // long stroke where it likes. Only a message that could still become
    // whole is held, no more than kPendingLimit characters of it, and for
    // no longer than kHoldMs.
    static constexpr qsizetype kPendingLimit = 65536;
    // The rest of one write comes behind its first part at once; a pause
    // this long means it will not come.
    static constexpr qint64 kHoldMs = 5000;
    bool hasPending() const { return !m_pending.isEmpty(); }
    qsizetype pendingSize() const { return m_pending.size(); }
    QString takePending() { return std::exchange(m_pending, QString()); }
    // The next read, behind the held message when it can be that message's
    // rest. It cannot when it begins with the opening of a frame of its
    // own, when it does not go on with the board word the held part began,
    // or when the hold is past its time: then the held part is given up
    // through the error tail (its cut failed, which tells nobody) and the
    // read is handed back alone. An unfinished message so costs at most
    // itself, never what follows it.
    QString joinHeld(const QString& read);

    // The error tail's text for an error met with data as it stood.
    static QString errorText(const board::DrawError& e, const QString& data);

private:
    // One run of the 22 tests.
    void runTests(QString& data);
    // The head of a test matched with this much of data left.
    void matched(board::Test test, const QString& data);
    // Whether the text of a cut-off message can still become whole.
    static bool couldComplete(board::Test test, const QString& message);
    void hold(const QString& message, bool sameMessage);
    // The error tail: the box, unless the error is one that tells nobody.
    void errorTail(const board::DrawError& e, const QString& data);
    DrawTarget& m_target;
    board::Test m_test = board::Test::Request;
    qsizetype m_messageLength = 0;
    QString m_pending;
    qint64 m_heldAt = 0;
    // The read now in the passes begins with the held message.
    bool m_joined = false;
};

}  // namespace vonnel
