#include "wire/FrameText.h"

#include <cmath>
#include <limits>

namespace vonnel {

QString getBetween(const QString& data, const QString& openToken, const QString& closeToken)
{
    QString search = data;
    if (!openToken.isEmpty()) {
        qsizetype p = data.indexOf(openToken);
        if (p < 0)
            p = 0;
        search = data.mid(p + openToken.size());
    }
    // An empty closing token is found at once, at the start of the search.
    const qsizetype q = closeToken.isEmpty() ? 0 : search.indexOf(closeToken);
    if (q <= 0)
        return QString();
    return search.left(q);
}

QString stripThrough(const QString& data, const QString& token)
{
    qsizetype p = token.isEmpty() ? 0 : data.indexOf(token);
    if (p < 0)
        p = 0;
    return data.mid(p + token.size());
}

QString removeFirst(const QString& text, const QString& token)
{
    if (token.isEmpty() || text.size() < token.size())
        return text;
    if (text == token)
        return QString();
    const qsizetype p = text.indexOf(token);
    if (p < 0)
        return text;
    QString out = text;
    out.remove(p, token.size());
    return out;
}

QString leftOf(const QString& text, const QString& token)
{
    if (text.isEmpty() || token.isEmpty())
        return text;
    const qsizetype p = text.indexOf(token);
    return p < 0 ? text : text.left(p);
}

bool readPosition(const QString& text, int& value)
{
    const QString t = text.trimmed();
    if (t.isEmpty())
        return false;
    bool ok = false;
    const double d = t.toDouble(&ok);
    if (!ok || !std::isfinite(d))
        return false;
    const double r = std::nearbyint(d);  // banker's rounding, as the conversion rounds
    if (r < double(std::numeric_limits<int>::min()) || r > double(std::numeric_limits<int>::max()))
        return false;
    value = int(r);
    return true;
}

void keepCleared(QString& history, const QString& cleared)
{
    history += cleared;
    if (history.size() > kClearedKept)
        history.remove(0, history.size() - kClearedKept);
}

}  // namespace vonnel
