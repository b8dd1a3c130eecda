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

    // What one decode of the peer's picture may cost is bounded, even off
    // the window's thread: at most kDecodePixels pixels come out
    // (2560 x 1600, a whole large screen). A JPEG larger than that is
    // decoded at the reduced scale its coding allows (n/8), which costs
    // little more than reading its codes, up to kJpegSourcePixels (8192 x
    // 8192); any other kind must fit as it is. The header gives the size
    // without decoding, and a picture past these limits, or past the free
    // memory, is refused before any decoding.
    static constexpr qint64 kDecodePixels = qint64(2560) * 1600;
    static constexpr qint64 kJpegSourcePixels = qint64(8192) * 8192;
    struct Received {
        QImage image;
        QString error;  // the runtime's text when image is null
    };
    // The first half, on the window's thread: the header's size and the
    // memory checked, the size to decode at chosen. No pixels yet.
    struct DecodePlan {
        QSize size;     // to decode at; invalid when refused
        QString error;  // why it was refused
    };
    DecodePlan planReceived(const QString& path) const;
    // The second half, on any thread: the pixels at the planned size.
    static Received decodeReceived(const QString& path, const DecodePlan& plan);
    // The memory test of memoryIsEnough without its box.
    bool memoryAllows(qint64 bytes) const;

private:
    bool fail(const QString& text, bool silent);
    CopyContext& m_ctx;
};

}  // namespace vonnel
