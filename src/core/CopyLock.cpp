#include "core/CopyLock.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLockFile>

namespace vonnel {

CopyLock::CopyLock(const QString& appPath)
{
    // Keyed by the folder's canonical path, kept out of the folder itself.
    QString canonical = QFileInfo(appPath).canonicalFilePath();
    if (canonical.isEmpty())
        canonical = QDir::cleanPath(appPath);
    const QByteArray key =
        QCryptographicHash::hash(canonical.toUtf8(), QCryptographicHash::Sha1).toHex().left(16);
    m_lock = std::make_unique<QLockFile>(QDir::tempPath() + QStringLiteral("/vonnel-") +
                                         QString::fromLatin1(key) + QStringLiteral(".lock"));
    m_lock->setStaleLockTime(0);
    m_acquired = m_lock->tryLock(0);
}

CopyLock::~CopyLock() = default;

}  // namespace vonnel
