#include "transfer/PartialFiles.h"

#include <QFileInfo>

namespace vonnel {

bool PartialFiles::keep(const QString& peerAddress, const QString& offeredPath,
                        qint64 offeredSize, const QString& path)
{
    forget(path);
    const QFileInfo info(path);
    if (!info.isFile() || info.size() <= 0 || info.size() >= offeredSize)
        return false;
    if (m_kept.size() >= kMaxKept)
        m_kept.removeFirst();
    m_kept.append({peerAddress, offeredPath, offeredSize, path, info.size(), info.lastModified()});
    return true;
}

bool PartialFiles::unchanged(const PartialFile& p)
{
    const QFileInfo info(p.path);
    return info.isFile() && info.size() == p.length && info.lastModified() == p.modified;
}

std::optional<PartialFile> PartialFiles::match(const QString& peerAddress,
                                               const QString& offeredPath, qint64 offeredSize)
{
    m_kept.removeIf([](const PartialFile& p) { return !unchanged(p); });
    for (const PartialFile& p : std::as_const(m_kept)) {
        if (p.peerAddress == peerAddress && p.offeredPath == offeredPath &&
            p.offeredSize == offeredSize)
            return p;
    }
    return std::nullopt;
}

void PartialFiles::forget(const QString& path)
{
    m_kept.removeIf([&](const PartialFile& p) { return p.path == path; });
}

}  // namespace vonnel
