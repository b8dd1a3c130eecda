#pragma once
// The saved URL list: two lines per entry, the address and then a TAB and
// the description, CR LF line ends. It is read back field by field, where a
// comma outside quotes ends a field as a line end does, so a comma in an
// address or description splits it and throws the pairing off. The writer
// does not quote. Texts only; the caller turns them into the code page.

#include <QList>
#include <QString>
#include <QStringList>

namespace vonnel {

struct UrlListEntry {
    QString url;
    QString description;
    bool operator==(const UrlListEntry&) const = default;
};

// The file text for the lists, entry by entry; an empty description is
// written as an empty text behind the TAB.
QString urlListText(const QStringList& urls, const QStringList& descriptions);

// Comma-and-line delimited field input: leading blanks and TABs skipped, a
// field in quotes loses them and may hold commas, and a CR LF, a lone CR or
// a lone LF ends a field as a comma does.
QStringList readListFields(const QString& text);

// The read loop of mnuOpen: one field, trimmed, for the address; the next,
// trimmed, for the description, which takes the address when it is empty.
// A last address without a description field takes the address as well, so
// the lists stay the same length.
QList<UrlListEntry> urlListEntries(const QString& text);

}  // namespace vonnel
