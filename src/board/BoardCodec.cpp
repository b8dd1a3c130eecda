#include "board/BoardCodec.h"

#include <cmath>

namespace vonnel::board {

namespace {

// The runtime's conversion of text to a number: the whole text, blanks
// around it allowed, nothing else.
double number(const QString& text)
{
    bool ok = false;
    const double v = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(v))
        throw DrawError{13, QStringLiteral("Type mismatch")};
    return v;
}

double rounded(const QString& text, double low, double high)
{
    // Halves go to the even neighbour, as the runtime rounds.
    const double v = std::nearbyint(number(text));
    if (v < low || v > high)
        throw DrawError{6, QStringLiteral("Overflow")};
    return v;
}

QString pairs(QByteArrayView head, const QList<QPoint>& points)
{
    QString out = text(head);
    out.reserve(out.size() + points.size() * 12 + 1);
    for (const QPoint& p : points)
        out += QString::number(p.x()) + kPairSplit + QString::number(p.y()) + kFieldEnd;
    return out + kListEnd;
}

QString field(QByteArrayView head, const QString& value)
{
    return text(head) + value + kFieldEnd;
}

QString flag(bool b)
{
    return b ? QStringLiteral("True") : QStringLiteral("False");
}

}  // namespace

bool isBoardMessage(const QString& data)
{
    return data.startsWith(text(wire::kBoardHead)) && (data.size() < 3 || data.at(2) != u'&');
}

bool cutInsideHead(const QString& data)
{
    if (data.isEmpty())
        return false;
    for (const TestWord& w : kTests)
        if (data.size() < w.head.size() && text(w.head).startsWith(data))
            return true;
    return false;
}

bool couldBeginMessage(const QString& t)
{
    for (const TestWord& w : kTests)
        if (t.startsWith(text(w.head)))
            return true;
    return cutInsideHead(t);
}

DrawError cutError()
{
    return DrawError{5, QStringLiteral("Invalid procedure call or argument")};
}

QString cutBefore(const QString& data, QChar sep)
{
    const qsizetype p = data.indexOf(sep);
    if (p < 0)
        throw cutError();
    return data.left(p);
}

QString takeField(QString& data, qsizetype headLength)
{
    // Found in place: a copy of the rest for each field would cost a long
    // read its length again per message.
    const qsizetype p = headLength <= data.size() ? data.indexOf(kFieldEnd, headLength) : -1;
    if (p < 0)
        throw cutError();
    const QString v = data.mid(headLength, p - headLength);
    data.remove(0, p + 1);
    return v;
}

qint16 toInteger(const QString& text)
{
    return qint16(rounded(text, -32768, 32767));
}

qint16 toCutInteger(const QString& text)
{
    const double v = std::trunc(number(text));
    if (v < -32768 || v > 32767)
        throw DrawError{6, QStringLiteral("Overflow")};
    return qint16(v);
}

qint32 toLong(const QString& text)
{
    return qint32(rounded(text, -2147483648.0, 2147483647.0));
}

bool toBoolean(const QString& text)
{
    const QString t = text.trimmed();
    if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
        return true;
    if (t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
        return false;
    return number(t) != 0;
}

bool takePair(QString& data, PairText& pair)
{
    if (data.startsWith(kListEnd)) {
        data.remove(0, 1);
        return false;
    }
    pair.x = cutBefore(data, kPairSplit);
    data.remove(0, pair.x.size() + 1);
    pair.y = cutBefore(data, kFieldEnd);
    data.remove(0, pair.y.size() + 1);
    return true;
}

QString chatLine(const QString& line)
{
    return text(kChatOpen) + line + text(kChatClose);
}

QString foreColor(qint32 colour) { return field(kForeColor, QString::number(colour)); }
QString backColor(qint32 colour) { return field(kBackColor, QString::number(colour)); }

QString font(const FontFields& f)
{
    // The size goes as the text form of a single-precision number.
    return field(kFont, f.name) + QString::number(double(f.size), 'g', 7) + kFieldEnd +
           flag(f.bold) + kFieldEnd + flag(f.italic) + kFieldEnd + flag(f.underline) +
           kFieldEnd + flag(f.strikethrough) + kFieldEnd;
}

QString thickness(int n) { return field(kThickness, QString::number(n)); }

QString start(int x, int y)
{
    return text(kStart) + QString::number(x) + kPairSplit + QString::number(y) + kFieldEnd;
}

QString end(int x, int y)
{
    return text(kEnd) + QString::number(x) + kPairSplit + QString::number(y) + kFieldEnd;
}

QString label(const QString& t) { return field(kLabel, t); }
QString stroke(const QList<QPoint>& points) { return pairs(kStroke, points); }
QString erase(const QList<QPoint>& points) { return pairs(kErase, points); }
QString eraseLabel(int n) { return field(kEraseLabel, QString::number(n)); }
QString ring(const QString& name) { return text(kRing) + name; }

}  // namespace vonnel::board
