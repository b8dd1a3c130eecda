#include "links/UrlHistoryFile.h"

#include "links/UrlHistory.h"

namespace vonnel {

QString urlListText(const QStringList& urls, const QStringList& descriptions)
{
    QString out;
    for (qsizetype i = 0; i < urls.size(); ++i) {
        out += urls[i];
        out += QLatin1String("\r\n\t");
        if (i < descriptions.size())
            out += descriptions[i];
        out += QLatin1String("\r\n");
    }
    return out;
}

QStringList readListFields(const QString& text)
{
    QStringList fields;
    const qsizetype n = text.size();
    qsizetype pos = 0;
    auto isLineEnd = [](QChar c) { return c == QLatin1Char('\r') || c == QLatin1Char('\n'); };
    while (pos < n) {
        while (pos < n && (text[pos] == QLatin1Char(' ') || text[pos] == QLatin1Char('\t')))
            ++pos;
        QString field;
        if (pos < n && text[pos] == QLatin1Char('"')) {
            const qsizetype close = text.indexOf(QLatin1Char('"'), pos + 1);
            const qsizetype end = close < 0 ? n : close;
            field = text.mid(pos + 1, end - pos - 1);
            pos = close < 0 ? n : close + 1;
            // Whatever stands between the closing quote and the delimiter is passed over.
            while (pos < n && text[pos] != QLatin1Char(',') && !isLineEnd(text[pos]))
                ++pos;
        } else {
            const qsizetype from = pos;
            while (pos < n && text[pos] != QLatin1Char(',') && !isLineEnd(text[pos]))
                ++pos;
            field = text.mid(from, pos - from);
        }
        if (pos < n) {
            if (text[pos] == QLatin1Char('\r') && pos + 1 < n && text[pos + 1] == QLatin1Char('\n'))
                ++pos;
            ++pos;
        }
        fields.append(field);
    }
    return fields;
}

QList<UrlListEntry> urlListEntries(const QString& text)
{
    const QStringList fields = readListFields(text);
    QList<UrlListEntry> entries;
    for (qsizetype i = 0; i < fields.size(); i += 2) {
        UrlListEntry e;
        e.url = trimBelow33(fields[i]);
        e.description = i + 1 < fields.size() ? trimBelow33(fields[i + 1]) : QString();
        if (e.description.isEmpty())
            e.description = e.url;
        entries.append(e);
    }
    return entries;
}

}  // namespace vonnel
