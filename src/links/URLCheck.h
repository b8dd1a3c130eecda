#pragma once
// URLCheck: finds one Internet address in a text. Callers run it in a loop,
// each round on what stood behind the address the round before.
//
// The rules are kept to the letter because both sides must agree on what an
// address is: "www." counts only where no "http://" or "https://" occurs,
// "news://" is never an address, an apostrophe does not end the left side of
// a mail address, and the earliest start wins whatever its kind.

#include <QString>

namespace vonnel {

// What kind of start won; it decides how an address may be opened.
enum class UrlKind { None, Http, Https, Www, Ftp, Mailto, Mail };

struct UrlFind {
    // True when some start was found, even if the cut left the address empty
    // (a mail address opened by an apostrophe, say).
    bool found = false;
    QString address;
    // What stands in the text behind the address; empty when nothing was found.
    QString rest;
    UrlKind kind = UrlKind::None;
    qsizetype start = -1;  // 0-based start of the address in the text
};

// One round of the scan. Linear in the length of the text.
UrlFind findUrl(const QString& text);

// The routine with its mode word: "URL" gives the address, any other mode
// ("AnyStr", "anyStr") what stands behind it.
QString URLCheck(const QString& text, const QString& mode);

// "*[0-9a-zA-Z]@*.[!0-9][!0-9]*": an alphanumeric character, an at sign, any
// text, a point and two characters that are not digits.
bool looksLikeMail(const QString& text);

// Where a mail address starts, 0-based: behind the last delimiter in front of
// the first "@" (0 when none). Only meaningful when looksLikeMail holds.
qsizetype mailStart(const QString& text);

}  // namespace vonnel
