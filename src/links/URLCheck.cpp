#include "links/URLCheck.h"

#include <array>

namespace vonnel {

namespace {

bool isAsciiAlnum(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= u'0' && u <= u'9') || (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z');
}

bool isAsciiDigit(QChar c)
{
    return c.unicode() >= u'0' && c.unicode() <= u'9';
}

// The characters that close the left side of a mail address. The apostrophe
// is looked for too, but its finding is thrown away, so it is not listed.
bool endsMailLeftSide(QChar c)
{
    switch (c.unicode()) {
    case u' ': case u'<': case u'>': case u'"': case u';': case u',':
    case u'(': case u')': case u'[': case u']': case u'\n':
        return true;
    default:
        return false;
    }
}

// Characters in front of which an address is cut. A CR ends it only when an
// LF follows; a lone CR or LF stays in the address.
bool endsAddress(const QString& s, qsizetype i)
{
    switch (s[i].unicode()) {
    case u' ': case u'(': case u')': case u'[': case u']': case u'<': case u'>':
    case u'"': case u'\'': case u';': case u',':
        return true;
    case u'\r':
        return i + 1 < s.size() && s[i + 1] == QLatin1Char('\n');
    default:
        return false;
    }
}

}  // namespace

bool looksLikeMail(const QString& text)
{
    const qsizetype n = text.size();
    // The earliest alphanumeric-then-"@" leaves the most room for the rest of
    // the pattern, so it is the only one worth trying.
    qsizetype at = -1;
    for (qsizetype i = 1; i < n; ++i) {
        if (text[i] == QLatin1Char('@') && isAsciiAlnum(text[i - 1])) {
            at = i;
            break;
        }
    }
    if (at < 0)
        return false;
    for (qsizetype j = at + 1; j + 2 < n; ++j) {
        if (text[j] == QLatin1Char('.') && !isAsciiDigit(text[j + 1]) && !isAsciiDigit(text[j + 2]))
            return true;
    }
    return false;
}

qsizetype mailStart(const QString& text)
{
    const qsizetype at = text.indexOf(QLatin1Char('@'));
    if (at < 0)
        return 0;
    for (qsizetype i = at; i >= 0; --i) {
        if (endsMailLeftSide(text[i]))
            return i + 1;
    }
    return 0;
}

UrlFind findUrl(const QString& text)
{
    // Positions are 1-based here, 0 meaning absent, so that "largest is 0"
    // and "smallest non-zero" read as the rules say.
    auto pos = [&text](const char* needle) {
        return text.indexOf(QLatin1String(needle), 0, Qt::CaseSensitive) + 1;
    };
    std::array<qsizetype, 6> list{};
    list[0] = pos("http://");
    list[1] = pos("https://");
    if (list[0] == 0 && list[1] == 0)
        list[2] = pos("www.");
    list[3] = pos("ftp://");
    list[4] = pos("mailto:");
    if (looksLikeMail(text))
        list[5] = mailStart(text) + 1;
    // "news://" is looked for as well, but its place lies outside the list
    // and nothing reads it, so it never starts an address.

    static constexpr std::array<UrlKind, 6> kinds = {UrlKind::Http, UrlKind::Https, UrlKind::Www,
                                                     UrlKind::Ftp,  UrlKind::Mailto, UrlKind::Mail};
    qsizetype best = 0;
    UrlKind kind = UrlKind::None;
    for (size_t i = 0; i < list.size(); ++i) {
        if (list[i] != 0 && (best == 0 || list[i] < best)) {
            best = list[i];
            kind = kinds[i];
        }
    }
    UrlFind out;
    if (best == 0)
        return out;

    const qsizetype start = best - 1;
    // Cutting in front of the first of each terminator in turn leaves the
    // text up to the earliest of them.
    qsizetype end = start;
    while (end < text.size() && !endsAddress(text, end))
        ++end;

    out.found = true;
    out.kind = kind;
    out.start = start;
    out.address = text.mid(start, end - start);
    out.rest = text.mid(end);
    return out;
}

QString URLCheck(const QString& text, const QString& mode)
{
    const UrlFind f = findUrl(text);
    return mode == QLatin1String("URL") ? f.address : f.rest;
}

}  // namespace vonnel
