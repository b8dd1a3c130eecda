#include "nettools/LikePattern.h"

#include <vector>

namespace vonnel {

namespace {

// One pattern element: a wildcard or a character class.
struct Element {
    enum Kind { Any, One, Digit, Set } kind;
    QString chars;  // for Set, and the literal character
    bool negate = false;
};

std::vector<Element> compile(const QString& pattern)
{
    std::vector<Element> out;
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern[i];
        if (c == QLatin1Char('*')) {
            out.push_back({Element::Any, {}});
        } else if (c == QLatin1Char('?')) {
            out.push_back({Element::One, {}});
        } else if (c == QLatin1Char('#')) {
            out.push_back({Element::Digit, {}});
        } else if (c == QLatin1Char('[')) {
            const int close = pattern.indexOf(QLatin1Char(']'), i + 1);
            if (close < 0) {  // an open bracket matches itself
                out.push_back({Element::Set, QString(c)});
                continue;
            }
            QString body = pattern.mid(i + 1, close - i - 1);
            const bool negate = body.startsWith(QLatin1Char('!'));
            if (negate)
                body.remove(0, 1);
            QString chars;
            for (int k = 0; k < body.size(); ++k) {
                if (k + 2 < body.size() && body[k + 1] == QLatin1Char('-')) {
                    for (ushort u = body[k].unicode(); u <= body[k + 2].unicode(); ++u)
                        chars += QChar(u);
                    k += 2;
                } else {
                    chars += body[k];
                }
            }
            out.push_back({Element::Set, chars, negate});
            i = close;
        } else {
            out.push_back({Element::Set, QString(c)});
        }
    }
    return out;
}

bool matchesOne(const Element& e, QChar c)
{
    switch (e.kind) {
    case Element::One: return true;
    case Element::Digit: return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    case Element::Set: return e.chars.contains(c) != e.negate;
    case Element::Any: break;
    }
    return false;
}

}  // namespace

bool likeMatch(const QString& text, const QString& pattern)
{
    const std::vector<Element> p = compile(pattern);
    // can[j]: the first i characters of the text match the first j elements.
    std::vector<char> can(p.size() + 1, 0), next(p.size() + 1, 0);
    can[0] = 1;
    for (size_t j = 0; j < p.size() && p[j].kind == Element::Any; ++j)
        can[j + 1] = 1;
    for (const QChar c : text) {
        std::fill(next.begin(), next.end(), 0);
        for (size_t j = 0; j < p.size(); ++j) {
            if (p[j].kind == Element::Any)
                next[j + 1] = char(next[j + 1] | can[j + 1] | next[j] | can[j]);
            else if (can[j] && matchesOne(p[j], c))
                next[j + 1] = 1;
        }
        // A star after a match may take nothing.
        for (size_t j = 0; j < p.size(); ++j)
            if (p[j].kind == Element::Any && next[j])
                next[j + 1] = 1;
        can.swap(next);
    }
    return can[p.size()] != 0;
}

}  // namespace vonnel
