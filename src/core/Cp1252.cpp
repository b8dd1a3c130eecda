#include "core/Cp1252.h"

namespace vonnel {

namespace {
// Code points of 0x80..0x9F in cp1252; 0 where the code page has a hole,
// which maps to the C1 control of the same number.
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

}  // namespace

QString fromCp1252(QByteArrayView bytes)
{
    QString out(bytes.size(), Qt::Uninitialized);
    QChar* d = out.data();
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const uchar c = uchar(bytes[i]);
        d[i] = (c >= 0x80 && c < 0xA0 && kCp1252High[c - 0x80]) ? QChar(kCp1252High[c - 0x80])
                                                                 : QChar(c);
    }
    return out;
}

QByteArray toCp1252(const QString& text)
{
    QByteArray out(text.size(), Qt::Uninitialized);
    char* d = out.data();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t u = text[i].unicode();
        if (u < 0x80 || (u >= 0xA0 && u < 0x100) || (u >= 0x80 && u < 0xA0 && !kCp1252High[u - 0x80])) {
            d[i] = char(u);
            continue;
        }
        char b = '?';
        for (int k = 0; k < 32; ++k)
            if (kCp1252High[k] == u) {
                b = char(0x80 + k);
                break;
            }
        d[i] = b;
    }
    return out;
}

}  // namespace vonnel
