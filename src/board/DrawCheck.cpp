#include "board/DrawCheck.h"

#include "core/IniStore.h"
#include "core/WireCodec.h"

#include <QList>
#include <QPoint>

namespace vonnel {

using namespace board;

namespace {

bool at(const QString& data, QByteArrayView head)
{
    return data.startsWith(text(head));
}

// Empty or negative: the local label's colour instead.
void fallBack(QString& colour, qint32 local)
{
    if (colour.isEmpty() || iniNumber(colour) < 0)
        colour = QString::number(local);
}

// A font name cut to the limit, in a string of its own size: the field
// may be the rest of a long read.
QString fontName(const QString& field)
{
    if (field.size() <= kFontNameLimit)
        return field;
    return QString(field.constData(), kFontNameLimit);
}

// Whether a read begins with the opening of a frame of its own.
bool opensFrame(const QString& read)
{
    for (const wire::Family f : wire::kReceiveOrder)
        if (read.startsWith(wire::text(wire::head(f))))
            return true;
    return false;
}

// Whether the read brings the rest of a chat line's closing word that the
// held text ends with the beginning of.
bool closesChat(const QString& held, const QString& read)
{
    if (!held.startsWith(text(kChatOpen)))
        return false;
    const QLatin1String close = text(kChatClose);
    for (qsizetype i = 1; i < close.size(); ++i) {
        const QLatin1String rest = close.sliced(i);
        if (held.endsWith(close.first(i)) && (read.startsWith(rest) || rest.startsWith(read)))
            return true;
    }
    return false;
}

// The box shows this much of the data at most: a flood must not make a
// box the size of the read.
constexpr qsizetype kShownData = 1000;

}  // namespace

QString DrawCheck::errorText(const DrawError& e, const QString& data)
{
    return QStringLiteral("Receiving - DrawCheck Protocol Error \r") + e.description +
           QStringLiteral("\r\n\r\nData causing problem:  ") + data.left(kShownData);
}

void DrawCheck::matched(Test test, const QString& data)
{
    m_test = test;
    m_messageLength = data.size();
}

bool DrawCheck::couldComplete(Test test, const QString& message)
{
    qsizetype head = 0;
    for (const TestWord& w : kTests)
        if (w.test == test)
            head = w.head.size();
    auto only = [&](QLatin1String allowed) {
        for (qsizetype i = head; i < message.size(); ++i)
            if (!allowed.contains(message.at(i)))
                return false;
        return true;
    };
    const QLatin1String numbers("0123456789-+. ");
    const QLatin1String pairs("0123456789-+. ,$");
    switch (test) {
    case Test::Chat:
    case Test::Label:
        return true;
    case Test::Font:
        return !message.mid(head).contains(text(wire::kBoardHead));
    case Test::ForeColor:
    case Test::BackColor:
    case Test::Thickness:
    case Test::ErasePic:
    case Test::EraseLabel:
        return only(numbers);
    case Test::Start:
    case Test::End:
    case Test::Stroke:
    case Test::Erase:
        return only(pairs);
    default:
        return false;
    }
}

void DrawCheck::hold(const QString& message, bool sameMessage)
{
    m_pending = message;
    // The time runs from the message's first part.
    if (!sameMessage)
        m_heldAt = m_target.nowMs();
}

void DrawCheck::errorTail(const DrawError& e, const QString& data)
{
    if (e.number != 5 && e.number != 401)
        m_target.protocolError(errorText(e, data));
}

QString DrawCheck::joinHeld(const QString& read)
{
    if (m_pending.isEmpty() || read.isEmpty())
        return read;
    const QString held = takePending();
    const qint64 age = m_target.nowMs() - m_heldAt;
    QString joined = held + read;
    // A word cut short goes on only with its own rest; a message past its
    // head with anything but a frame's opening, or the rest of its closing
    // word (which holds the board's opening itself).
    const bool goesOn = cutInsideHead(held)
                            ? couldBeginMessage(joined)
                            : !opensFrame(read) || closesChat(held, read);
    if (age < 0 || age > kHoldMs || !goesOn) {
        // Given up as the cut that could not be made.
        errorTail(cutError(), held);
        return read;
    }
    m_joined = true;
    return joined;
}

QString DrawCheck::cDrawcheck(QString& data)
{
    // The read as it came: a message cut off at its end is taken from here.
    const QString input = data;
    // A message held again from the head of a joined read is the one held
    // before, still in the making.
    const bool joined = std::exchange(m_joined, false);
    auto same = [&](const QString& message) { return joined && message.size() == input.size(); };
    // The routine calls itself on what still begins with "&&" unless the
    // guard is up, and raises the guard on the way back; the calls are a
    // loop here, with the guard left as the calls would leave it.
    int depth = 0;
    try {
        for (;;) {
            const qsizetype before = data.size();
            runTests(data);
            // The read ended inside a board word: it waits for the rest.
            if (cutInsideHead(data)) {
                if (depth > 0)
                    recursionGuard = true;
                hold(data, same(data));
                return QString();
            }
            if (isBoardMessage(data) && !recursionGuard) {
                // A message no test takes would call itself until the stack
                // runs out.
                if (data.size() == before)
                    throw DrawError{28, QStringLiteral("Out of stack space")};
                ++depth;
                continue;
            }
            recursionGuard = false;
            break;
        }
    } catch (const DrawError& e) {
        if (depth > 0)
            recursionGuard = true;
        if (e.number == 5 && m_messageLength <= kPendingLimit) {
            const QString message = input.right(m_messageLength);
            if (couldComplete(m_test, message)) {
                hold(message, same(message));
                return QString();
            }
        }
        errorTail(e, data);
        return QString();
    }
    if (depth > 0)
        recursionGuard = true;
    // What the innermost call left: the text the peer sent behind its board
    // messages goes on to the loop.
    return data;
}

void DrawCheck::runTests(QString& data)
{
    m_target.beforeTests();
    RemoteParams& r = remote;
    fallBack(r.remoteForeColor, m_target.localForeColour());
    fallBack(r.remoteBackColor, m_target.localBackColour());

    // 1: the request is taken at the head of data, whatever follows it. How
    // the peer's writes fall into reads is chance; a request sharing its
    // read with the away notice or a keystroke would otherwise be lost and
    // end in the error box, so what stands behind it goes on through the
    // tests and back to the loop.
    if (at(data, kRequest)) {
        data.remove(0, kRequest.size());
        m_target.request();
    }
    // 2: the name stays in data and goes back to the loop.
    if (at(data, kRing)) {
        data.remove(0, kRing.size());
        m_target.ring(data);
    }
    if (at(data, kNotReady)) {
        data.remove(0, kNotReady.size());
        m_target.notReady();
    }
    if (at(data, kReady)) {
        data.remove(0, kReady.size());
        m_target.ready();
    }
    if (at(data, kChatOpen)) {
        matched(Test::Chat, data);
        QString t = data.mid(kChatOpen.size());
        // The take-back of an away notice is the empty line with one blank
        // between its markers: the opening's blank is the closing's own.
        const QLatin1String takeBack = text(wire::kBoardChatEmptyClose);
        if (t.startsWith(takeBack)) {
            data = t.mid(takeBack.size());
            m_target.chat(m_target.decipher(QString()));
        } else {
            qsizetype i = t.indexOf(u'\r');
            if (i >= 0)
                t += text(kChatPadding);
            else
                i = t.indexOf(text(kChatClose));
            if (i < 0)
                throw cutError();
            const QString line = m_target.decipher(t.left(i));
            // Six characters on: the closing word, or the CR and the padding.
            data = t.mid(i + kChatClose.size());
            m_target.chat(line);
        }
    }
    if (at(data, kForeColor)) {
        matched(Test::ForeColor, data);
        r.remoteForeColor = takeField(data, kForeColor.size());
        m_target.foreColor(r);
    }
    if (at(data, kBackColor)) {
        matched(Test::BackColor, data);
        r.remoteBackColor = takeField(data, kBackColor.size());
        m_target.backColor(r);
    }
    if (at(data, kFont)) {
        matched(Test::Font, data);
        r.remoteFontName = fontName(takeField(data, kFont.size()));
        r.remoteFontSize = toCutInteger(takeField(data, 0));
        r.remoteBold = toBoolean(takeField(data, 0));
        r.remoteItalic = toBoolean(takeField(data, 0));
        r.remoteUnderline = toBoolean(takeField(data, 0));
        r.remoteStrikethrough = toBoolean(takeField(data, 0));
        m_target.font(r);
    }
    if (at(data, kThickness)) {
        matched(Test::Thickness, data);
        r.remoteThickness = toInteger(takeField(data, kThickness.size()));
        m_target.thickness(r);
    }
    for (const bool isStart : {true, false}) {
        const QByteArrayView head = isStart ? kStart : kEnd;
        if (!at(data, head))
            continue;
        matched(isStart ? Test::Start : Test::End, data);
        const QString x = cutBefore(data.mid(head.size()), kPairSplit);
        data.remove(0, head.size() + x.size() + 1);
        const QString y = takeField(data, 0);
        (isStart ? r.remoteStartX : r.remoteEndX) = toInteger(x);
        (isStart ? r.remoteStartY : r.remoteEndY) = toInteger(y);
    }
    if (at(data, kLabel)) {
        matched(Test::Label, data);
        const QString t = m_target.decipher(takeField(data, kLabel.size()));
        m_target.label(t, r);
    }
    if (at(data, kRect)) {
        data.remove(0, kRect.size());
        m_target.rect(r);
    }
    if (at(data, kCircle)) {
        data.remove(0, kCircle.size());
        m_target.circle(r);
    }
    if (at(data, kLine)) {
        data.remove(0, kLine.size());
        m_target.line(r);
    }
    // A list is read whole before anything is drawn, so a list the read
    // cut off draws nothing until the rest of it has come.
    PairText pair;
    QList<QPoint> points;
    if (at(data, kStroke)) {
        matched(Test::Stroke, data);
        data.remove(0, kStroke.size());
        // A dot only where both numbers are there.
        while (takePair(data, pair))
            if (!pair.x.isEmpty() && !pair.y.isEmpty())
                points.append(QPoint(toInteger(pair.x), toInteger(pair.y)));
        // The points of one message are one stroke, joined in order.
        std::optional<QPoint> from;
        for (const QPoint& p : std::as_const(points)) {
            const QPoint at(qint16(p.x()), qint16(p.y()));
            m_target.strokePoint(qint16(at.x()), qint16(at.y()), r, from);
            from = at;
        }
    }
    if (at(data, kErase)) {
        matched(Test::Erase, data);
        data.remove(0, kErase.size());
        points.clear();
        while (takePair(data, pair))
            points.append(QPoint(toInteger(pair.x), toInteger(pair.y)));
        for (const QPoint& p : std::as_const(points))
            m_target.erasePoint(qint16(p.x()), qint16(p.y()), r);
    }
    if (at(data, kErasePic)) {
        matched(Test::ErasePic, data);
        m_target.erasePic(toInteger(takeField(data, kErasePic.size())));
    }
    if (at(data, kEraseLabel)) {
        matched(Test::EraseLabel, data);
        m_target.eraseLabel(toInteger(takeField(data, kEraseLabel.size())));
    }
    if (at(data, kEraseAll)) {
        data.remove(0, kEraseAll.size());
        m_target.eraseAll();
    }
    if (at(data, kShowPic)) {
        data.remove(0, kShowPic.size());
        m_target.showPic(r);
    }
    if (at(data, kClosed)) {
        data.remove(0, kClosed.size());
        m_target.closed();
    }
}

}  // namespace vonnel
