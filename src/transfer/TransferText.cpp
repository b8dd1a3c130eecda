#include "transfer/TransferText.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QRegularExpression>
#include <cmath>

namespace vonnel {

namespace {

// A float's value at or above ten million is a whole number; its text keeps
// seven significant digits. The digits and the power of ten of the first
// one, rounded as printf rounds ("%.6E": to nearest, a tie to even).
struct SevenDigits {
    quint64 digits;  // 1,000,000 .. 9,999,999
    int exponent;    // 7 and up
};

SevenDigits sevenDigits(quint64 v)
{
    int exponent = 0;
    quint64 p = 1;
    while (v / p >= 10) {
        p *= 10;
        ++exponent;
    }
    const quint64 drop = p / 1000000;  // 10^(exponent - 6)
    quint64 q = v / drop;
    const quint64 r = v % drop;
    const quint64 half = drop / 2;
    if (r > half || (r == half && (q & 1)))
        ++q;
    if (q == 10000000) {
        q = 1000000;
        ++exponent;
    }
    return {q, exponent};
}

quint64 powerOfTen(int n)
{
    quint64 p = 1;
    while (n-- > 0)
        p *= 10;
    return p;
}

}  // namespace

QString singleText(qint64 count)
{
    const float f = float(count);
    if (std::fabs(f) < 1e7f)
        return QString::number(qint64(f));
    // Seven significant digits, trailing zeros of the mantissa dropped,
    // "E+" and at least two exponent digits. Worked out on integers: this
    // runs for every acknowledgement of a large file.
    const SevenDigits s = sevenDigits(quint64(std::fabs(double(f))));
    char mantissa[10];
    quint64 d = s.digits;
    for (int i = 7; i >= 0; --i) {
        if (i == 1)
            continue;
        mantissa[i] = char('0' + d % 10);
        d /= 10;
    }
    mantissa[1] = '.';
    int len = 8;
    while (mantissa[len - 1] == '0')
        --len;
    if (mantissa[len - 1] == '.')
        --len;
    QString out;
    out.reserve(len + 6);
    if (f < 0)
        out += QLatin1Char('-');
    out += QLatin1String(mantissa, len);
    out += QLatin1String(s.exponent < 10 ? "E+0" : "E+");
    out += QString::number(s.exponent);
    return out;
}

namespace {

// The plain forms a peer's count comes in, digits with at most one point
// and an exponent, read without the locale's parser when they stand for a
// whole number of at most fifteen digits. Anything else goes the long way.
std::optional<double> plainWholeNumber(QStringView t)
{
    qsizetype i = 0;
    quint64 mantissa = 0;
    int digits = 0, fraction = 0;
    bool point = false;
    // A leading zero is left to the locale's reading, as is a bare point.
    if (t.size() > 1 && t[0] == QLatin1Char('0') && t[1] != QLatin1Char('.'))
        return std::nullopt;
    for (; i < t.size(); ++i) {
        const QChar c = t[i];
        if (c >= QLatin1Char('0') && c <= QLatin1Char('9')) {
            if (++digits > 15)
                return std::nullopt;
            mantissa = mantissa * 10 + (c.unicode() - '0');
            fraction += point;
        } else if (c == QLatin1Char('.') && !point && digits > 0) {
            point = true;
        } else {
            break;
        }
    }
    if (digits == 0 || (point && t[i - 1] == QLatin1Char('.')))
        return std::nullopt;
    int exponent = 0;
    if (i < t.size()) {
        if (t[i] != QLatin1Char('E') && t[i] != QLatin1Char('e'))
            return std::nullopt;
        ++i;
        bool negative = false;
        if (i < t.size() && (t[i] == QLatin1Char('+') || t[i] == QLatin1Char('-')))
            negative = t[i++] == QLatin1Char('-');
        if (i >= t.size())
            return std::nullopt;
        for (; i < t.size(); ++i) {
            const QChar c = t[i];
            if (c < QLatin1Char('0') || c > QLatin1Char('9') || exponent > 99)
                return std::nullopt;
            exponent = exponent * 10 + (c.unicode() - '0');
        }
        if (negative)
            exponent = -exponent;
    }
    const int shift = exponent - fraction;
    if (shift < 0 || digits + shift > 15)
        return std::nullopt;  // a fraction, or past a double's exact integers
    return double(mantissa * powerOfTen(shift));
}

std::optional<qint64> readCount(QStringView text, double limit)
{
    const QStringView t = text.trimmed();
    if (t.isEmpty())
        return std::nullopt;
    double v;
    if (const std::optional<double> plain = plainWholeNumber(t)) {
        v = *plain;
    } else {
        bool ok = false;
        v = QLocale::c().toDouble(t, &ok);
        if (!ok || !std::isfinite(v))
            return std::nullopt;
    }
    const double r = std::round(v);
    if (r < -limit - 1 || r > limit)
        return std::nullopt;
    return qint64(r);
}

// The count an acknowledgement's text carries for n: n itself below ten
// million, else its seven significant digits.
qint64 countCarried(qint64 n)
{
    const float f = float(n);
    if (f < 1e7f)
        return qint64(f);
    const SevenDigits s = sevenDigits(quint64(double(f)));
    return qint64(s.digits * powerOfTen(s.exponent - 6));
}

}  // namespace

std::optional<qint64> parseAckCount(QStringView text)
{
    return readCount(text, 2147483647.0);
}

qint64 ackStep(qint64 n)
{
    qint64 step = 1;
    for (qint64 top = 10000000; n >= top && top <= (qint64(1) << 53); top *= 10)
        step *= 10;
    return step;
}

qint64 exactAckLength(qint64 n)
{
    if (n <= 0)
        return 0;
    const qint64 step = ackStep(n);
    if (step == 1)
        return n;  // below ten million every count is written out whole
    // Round down to the digits the text keeps, then step down while the
    // single-precision value on the way would still move it; a few steps
    // at the very most.
    qint64 m = n - n % step;
    for (int tries = 0; m > 0 && tries < 16; ++tries, m -= step)
        if (countCarried(m) == m)
            return m;
    return m > 0 ? m : 0;
}

std::optional<qint64> parseOfferSize(const QString& text)
{
    if (text.isEmpty() || text.size() > 16)
        return std::nullopt;
    qint64 v = 0;
    for (QChar c : text) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return std::nullopt;
        v = v * 10 + (c.unicode() - '0');
    }
    if (v >= (qint64(1) << 53))
        return std::nullopt;
    return v;
}

QString groupedNumber(qint64 n)
{
    static const QLocale us(QLocale::English, QLocale::UnitedStates);
    return us.toString(n);
}

QString questionSizeText(qint64 size)
{
    if (size >= 1000)
        return groupedNumber(qRound64(double(size) / 1024.0)) + QStringLiteral(" KB");
    return groupedNumber(size) + QStringLiteral(" B");
}

QString labelSizeText(qint64 size)
{
    if (size > 1000)
        return groupedNumber(qRound64(double(size) / 1024.0)) + QStringLiteral(" KB");
    return groupedNumber(size) + QStringLiteral(" B");
}

namespace {
bool isSeparator(QChar c)
{
    return c == QLatin1Char('\\') || c == QLatin1Char('/');
}
}  // namespace

QString shortenedPath(const QString& path)
{
    int separators = 0;
    qsizetype last = -1;
    for (qsizetype i = 0; i < path.size(); ++i)
        if (isSeparator(path.at(i))) {
            ++separators;
            last = i;
        }
    if (separators > 1 && path.size() >= 41)
        return path.left(3) + QStringLiteral("...") + path.mid(last);
    return path;
}

// "*" + name + "*" as a pattern match: the name anywhere in the path, with
// the pattern's own wild cards in the name taking part. The path is taken
// in its wire form, so that "/" can only match inside a name, as on the
// system the rule was made for ("n/a" never matches a folder "n" and a
// file "a...").
bool likeAnywhere(const QString& path, const QString& name)
{
    const QString text = wirePath(path);
    if (name.isEmpty())
        return true;
    QString rx;
    for (QChar c : name) {
        if (c == QLatin1Char('*'))
            rx += QStringLiteral(".*");
        else if (c == QLatin1Char('?'))
            rx += QLatin1Char('.');
        else if (c == QLatin1Char('#'))
            rx += QStringLiteral("\\d");
        else
            rx += QRegularExpression::escape(QString(c));
    }
    return QRegularExpression(rx, QRegularExpression::CaseInsensitiveOption |
                                      QRegularExpression::DotMatchesEverythingOption)
        .match(text)
        .hasMatch();
}

// Int(a / b * 100) in single precision.
int percentOf(qint64 a, qint64 b)
{
    if (b <= 0)
        return 100;
    return int(float(a) / float(b) * 100.0f);
}

QString wirePath(const QString& localPath)
{
    QString s = localPath;
    s.replace(QLatin1Char('/'), QLatin1Char('\\'));
    return s;
}

OfferName deriveOfferName(const QString& offer)
{
    OfferName o;
    // The last backslash, looked for from the second-to-last character down
    // to the second; without one the position ends at the first character,
    // which is then lost.
    const qsizetype len = offer.size();
    qsizetype i = len - 1;  // 1-based position under test
    for (; i >= 2; --i)
        if (offer.at(i - 1) == QLatin1Char('\\'))
            break;
    if (i < 2)
        i = 1;
    o.bare = offer.right(qMax<qsizetype>(0, len - i));

    const qsizetype gt = o.bare.indexOf(QLatin1Char('>'));
    o.sizeText = gt < 0 ? QString() : o.bare.mid(gt + 1);
    o.size = parseOfferSize(o.sizeText);

    QString stripped = o.bare;
    QString offerStripped = offer;
    if (!o.sizeText.isEmpty()) {
        stripped.remove(o.sizeText);
        offerStripped.remove(o.sizeText);
    }
    o.name = stripped.left(qMax<qsizetype>(0, stripped.size() - 1));
    o.okPath = offer.left(qMax<qsizetype>(0, offerStripped.size() - 1));
    return o;
}

QString proposedSaveName(const QString& derivedName)
{
    QString name = derivedName;
    const qsizetype slash = name.lastIndexOf(QLatin1Char('/'));
    if (slash >= 0)
        name = name.mid(slash + 1);
    if (name == QLatin1String(".") || name == QLatin1String(".."))
        return QString();
    return name;
}

QString downloadFolder()
{
    const QString downloads = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    if (!downloads.isEmpty() && QFileInfo(downloads).isDir())
        return downloads;
    return QDir::homePath();
}

bool isBareFileName(const QString& name)
{
    if (name.isEmpty() || name == QLatin1String(".") || name.contains(QLatin1String("..")))
        return false;
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')))
        return false;
    if (name.size() >= 2 && name.at(1) == QLatin1Char(':'))
        return false;
    return !name.contains(QChar(0));
}

}  // namespace vonnel
