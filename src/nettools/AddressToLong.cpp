#include "nettools/AddressToLong.h"

#include <QStringList>
#include <cmath>
#include <optional>

namespace vonnel {

namespace {

// The numeric reading of a text: as far as it is a number, else 0.
double numericPrefix(const QString& raw)
{
    QString t;
    for (const QChar c : raw)
        if (c != QLatin1Char(' ') && c != QLatin1Char('\t') && c != QLatin1Char('\n') &&
            c != QLatin1Char('\r'))
            t += c;
    if (t.startsWith(QLatin1String("&H"), Qt::CaseInsensitive) ||
        t.startsWith(QLatin1String("&O"), Qt::CaseInsensitive)) {
        const int base = t[1].toUpper() == QLatin1Char('H') ? 16 : 8;
        qint64 v = 0;
        int i = 2;
        for (; i < t.size(); ++i) {
            const int d = QString(t[i]).toInt(nullptr, base);
            if (d == 0 && t[i] != QLatin1Char('0'))
                break;
            v = v * base + d;
            if (v > 0xffffffffLL)
                break;
        }
        // Up to four hexadecimal digits are a 16-bit number, up to eight a
        // 32-bit one: &HFFFF is -1.
        if (base == 16 && i - 2 <= 4 && v > 0x7fff)
            v -= 0x10000;
        else if (v > 0x7fffffffLL && v <= 0xffffffffLL)
            v -= 0x100000000LL;
        return double(v);
    }
    int i = 0;
    if (i < t.size() && (t[i] == QLatin1Char('+') || t[i] == QLatin1Char('-')))
        ++i;
    int end = i;
    while (end < t.size() && t[end].isDigit() && t[end].unicode() < 128)
        ++end;
    if (end < t.size() && t[end] == QLatin1Char('.'))
        for (++end; end < t.size() && t[end].isDigit() && t[end].unicode() < 128;)
            ++end;
    bool ok = false;
    const double v = t.left(end).toDouble(&ok);
    return ok ? v : 0.0;
}

// Two hexadecimal digits of a number, or nothing when it cannot be written
// as a 32-bit number.
std::optional<QString> lastTwoHexDigits(double value)
{
    const double rounded = std::nearbyint(value);  // to even, as the conversion rounds
    if (rounded < -2147483648.0 || rounded > 2147483647.0)
        return std::nullopt;
    const auto low = quint8(quint32(qint32(rounded)) & 0xff);
    return QStringLiteral("%1").arg(low, 2, 16, QLatin1Char('0')).toUpper();
}

}  // namespace

qint32 addressToLong(const QString& address)
{
    const QStringList parts = address.split(QLatin1Char('.'));
    QString digits[4];
    for (int i = 0; i < 4; ++i) {
        const QString part = i < parts.size() ? parts[i] : QString();
        if (const auto hex = lastTwoHexDigits(numericPrefix(part)))
            digits[i] = *hex;
    }
    const QString all = digits[3] + digits[2] + digits[1] + digits[0];
    if (all.isEmpty())
        return 0;
    return qint32(all.toUInt(nullptr, 16));
}

}  // namespace vonnel
