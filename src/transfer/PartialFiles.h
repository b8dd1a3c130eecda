#pragma once
// The parts of files that broken receives left on the disk, remembered so
// that the same peer's next offer of the same file can go on from where the
// part ends rather than from zero.
//
// The record lives with the copy's transfer, in memory: it outlives the
// session that broke (the usual case is the peer's program or line going
// down while this copy stays up) but not this program. After a restart
// nothing tells us that a file on the disk is a part of anything, and the
// settings file is the user's, not a store of ours.

#include <QDateTime>
#include <QList>
#include <QString>
#include <optional>

namespace vonnel {

struct PartialFile {
    QString peerAddress;  // the address the offer came from
    QString offeredPath;  // the sender's path as its offer carried it
    qint64 offeredSize = 0;
    QString path;         // where the part lies here
    qint64 length = 0;    // its length when it was kept
    QDateTime modified;   // its modification time when it was kept
};

class PartialFiles {
public:
    // Remembers the part at path as the file at that point; replaces an
    // earlier record of the same path. Nothing is kept for an empty part or
    // one that already holds the whole size. True when kept.
    bool keep(const QString& peerAddress, const QString& offeredPath, qint64 offeredSize,
              const QString& path);
    // The part kept for this offer, if its file still stands as it was
    // left. Records whose file is gone or was changed since are forgotten
    // on the way: such a part can never be gone on with.
    std::optional<PartialFile> match(const QString& peerAddress, const QString& offeredPath,
                                     qint64 offeredSize);
    void forget(const QString& path);
    qsizetype count() const { return m_kept.size(); }

    // The oldest records go first beyond this many.
    static constexpr qsizetype kMaxKept = 16;

private:
    static bool unchanged(const PartialFile& p);
    QList<PartialFile> m_kept;
};

}  // namespace vonnel
