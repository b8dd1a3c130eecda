#pragma once
// The two checks before a picture is decoded: are its bytes a whole JPEG or
// GIF, and is there memory for it. A picture from the peer is decoded only
// after both, and then with an allocation limit, so a crafted header cannot
// claim gigabytes.

#include "platform/MemoryStatus.h"

#include <QImage>
#include <QString>
#include <functional>

namespace vonnel {

class CopyContext;

class PictureCheck {
public:
    // The most a picture may take decoded, and the most a file may be.
    static constexpr int kAllocationLimitMb = 256;
    static constexpr qint64 kSizeLimit = qint64(kAllocationLimitMb) * 1024 * 1024;

    explicit PictureCheck(CopyContext& ctx);

    // The byte check by the name's last three letters ("JPG", "GIF"); any
    // other ending is called corrupted. Tells the user unless silenced.
    bool pictureIsValid(const QString& path);
    // Free memory for a picture of this many bytes, and the load below the
    // limit; also no more than kSizeLimit.
    bool memoryIsEnough(qint64 bytes);

    // Where the memory figures come from; the system's unless a test sets it.
    std::function<MemoryStatus()> memoryStatus = readMemoryStatus;

    // Decodes a file with the allocation limit; null when it cannot.
    static QImage load(const QString& path);

private:
    bool fail(const QString& text, bool silent);
    CopyContext& m_ctx;
};

}  // namespace vonnel
