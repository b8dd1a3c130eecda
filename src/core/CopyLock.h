#pragma once
// Tells whether another copy runs on the same application folder. The lock
// lives as long as the copy; a copy that died leaves a stale lock, which the
// next start takes over.

#include <QString>
#include <memory>

class QLockFile;

namespace vonnel {

class CopyLock {
public:
    explicit CopyLock(const QString& appPath);
    ~CopyLock();
    // True when this copy is the first on its folder.
    bool acquired() const { return m_acquired; }

private:
    std::unique_ptr<QLockFile> m_lock;
    bool m_acquired = false;
};

}  // namespace vonnel
