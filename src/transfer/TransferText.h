#pragma once
// The small texts of a transfer: the count of an acknowledgement, the name
// and reply derived from an offer, the size and path labels of the
// progress window, and the wire form of a local path.

#include "core/Cp1252.h"
#include <QString>
#include <optional>

namespace vonnel {

// The count of a partial acknowledgement: it goes through a 32-bit float
// and that float's default text, at most 7 significant digits and
// scientific from 10,000,000 on ("1.000038E+07"). The final frame's count
// is sent plain.
QString singleText(qint64 count);

// The count of an acknowledgement in either form, rounded to an integer.
// Nothing for a text that is not a number or does not fit 32 bits.
std::optional<qint64> parseAckCount(QStringView text);

// The largest length not above n whose acknowledgement text reads back as
// exactly that length. The receiver cuts its file back to it before it
// acknowledges, so the position the sender goes on from is always the
// file's true length: a count the text would round up would make the
// sender skip bytes, one it would round down would make it send bytes the
// file already holds.
qint64 exactAckLength(qint64 n);
// The distance between lengths that an acknowledgement can carry exactly
// around n: 1 below 10,000,000, then 10, 100, 1000 for each decade.
qint64 ackStep(qint64 n);
// The largest file a sender offers: an acknowledgement's count is read as
// a 32-bit number.
inline constexpr qint64 kMaxSendSize = 2147483647;
// The size of an offer: a whole, non-negative number below 2^53.
std::optional<qint64> parseOfferSize(const QString& text);

// A number as the transfer's dialogs and labels show it: decimal with ","
// between thousands, no decimals.
QString groupedNumber(qint64 n);
// The accept question's size: "n KB" (size / 1024) from 1000 bytes on,
// else "n B".
QString questionSizeText(qint64 size);
// The progress window's size: "n KB" above 1000 bytes, else "n B".
QString labelSizeText(qint64 size);

// The path as lblFilename shows it: a path with more than one separator
// and at least 41 characters becomes its first three characters, "..."
// and everything from the last separator on. "/" and "\" both separate.
QString shortenedPath(const QString& path);

// "*" + name + "*" as a pattern match on a path (in its wire form): the
// name anywhere in it, with the pattern's own wild cards taking part.
bool likeAnywhere(const QString& path, const QString& name);

// Int(a / b * 100) in single precision, as the window shows progress.
int percentOf(qint64 a, qint64 b);

// The next handle number of one direction: its counter plus the other
// direction's two handles plus one, so a send and a receive in flight never
// share a number. The numbers feed each other and would double every few
// transfers; they are kept to the 16-bit range the messages show them in.
inline int nextHandle(int counter, int otherFile, int otherPicture)
{
    return int((qint64(counter) + otherFile + otherPicture + 1) % 32768);
}

// A local path in the form the wire carries: every "/" written as "\", so
// that any receiver finds the name behind the last backslash.
QString wirePath(const QString& localPath);

// What the receiving side makes of an offer ("path>size", without "pic").
struct OfferName {
    QString bare;      // right of the last backslash (the first character
                       // lost when there is none): name + ">" + size
    QString sizeText;  // behind the first ">" of bare
    std::optional<qint64> size;  // sizeText read as a whole number below 2^53
    QString name;      // bare without every copy of sizeText, less its last character
    QString okPath;    // what the accept message carries back
};
OfferName deriveOfferName(const QString& offer);

// The name proposed in the Save dialog: what follows the last "/" of the
// derived name, and nothing at all for a name that would lead out of the
// folder ("." or "..").
QString proposedSaveName(const QString& derivedName);

// Where the Save dialog of a received file opens: the user's download
// folder (XDG_DOWNLOAD_DIR) when it exists, else the home folder.
QString downloadFolder();

// A name the program would write by itself (a ring sound): no separator,
// no "..", no drive, not empty.
bool isBareFileName(const QString& name);

}  // namespace vonnel
