#include "board/PictureCheck.h"

#include "core/CopyContext.h"
#include "platform/Prompter.h"

#include <QFile>
#include <QImageReader>

#include <algorithm>

namespace vonnel {

namespace {

const QString kTitle = QStringLiteral("Loading Picture Error");

bool tailHas(const QByteArray& tail, char first, char second)
{
    for (qsizetype i = 0; i + 1 < tail.size(); ++i)
        if (tail.at(i) == first && tail.at(i + 1) == second)
            return true;
    return false;
}

}  // namespace

PictureCheck::PictureCheck(CopyContext& ctx) : m_ctx(ctx) {}

bool PictureCheck::fail(const QString& text, bool silent)
{
    if (!silent)
        m_ctx.prompter().msgBox(text, MsgStyle::Exclamation, kTitle);
    return false;
}

bool PictureCheck::pictureIsValid(const QString& path)
{
    if (m_ctx.settingInt(QStringLiteral("No Pic Error Check")) != 0)
        return true;
    const bool silent = m_ctx.settingInt(QStringLiteral("No Pic Error Message")) != 0;

    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("Picture Error: (53) File not found"), silent);
    const QByteArray head = f.read(3);
    // The tail is read from length - 15 on, counting from 1: a file shorter
    // than 16 bytes puts that before the first byte.
    if (f.size() < 16)
        return fail(QStringLiteral("Picture Error: (63) Bad record number"), silent);
    f.seek(f.size() - 16);
    const QByteArray tail = f.read(16);
    auto byte = [&](int i) { return i < head.size() ? quint8(head.at(i)) : 0; };

    const QString ending = path.right(3).toUpper();
    if (ending == QLatin1String("JPG")) {
        if (byte(1) == 0xD8 && byte(0) == 0xFF && byte(2) == 0xFF && tailHas(tail, '\xFF', '\xD9'))
            return true;
        return fail(QStringLiteral("Invalid JPG format"), silent);
    }
    if (ending == QLatin1String("GIF")) {
        // Refused only when the third byte is not "F" and the first two are
        // not "GI" as well.
        const bool refused = byte(2) != 'F' && (byte(0) != 'G' || byte(1) != 'I');
        if (!refused && tailHas(tail, '\0', ';'))
            return true;
        return fail(QStringLiteral("Invalid GIF format"), silent);
    }
    return fail(QStringLiteral("File Corrupted: ") + path, silent);
}

bool PictureCheck::memoryAllows(qint64 bytes) const
{
    const MemoryStatus s = memoryStatus();
    int limit = m_ctx.settingInt(QStringLiteral("Memory Limit"));
    if (limit <= 0 || limit > 99)
        limit = 90;
    return s.known && bytes <= kSizeLimit && s.availableBytes >= 2 * bytes &&
           s.loadPercent < limit;
}

bool PictureCheck::memoryIsEnough(qint64 bytes)
{
    const bool enough = memoryAllows(bytes);
    if (!enough)
        m_ctx.prompter().msgBox(QStringLiteral("Not enough memory: ") +
                                    QString::number(memoryStatus().loadPercent) +
                                    QStringLiteral("% used"),
                                MsgStyle::Exclamation, QStringLiteral("Memory Error"));
    return enough;
}

namespace {
const QString kInvalid = QStringLiteral("Invalid picture");
const QString kOutOfMemory = QStringLiteral("Out of memory");
}  // namespace

PictureCheck::DecodePlan PictureCheck::planReceived(const QString& path) const
{
    QImageReader reader(path);
    // The size from the header; nothing is decoded yet.
    const QSize source = reader.size();
    if (!source.isValid() || source.isEmpty())
        return {QSize(), kInvalid};
    const qint64 pixels = qint64(source.width()) * source.height();
    QSize out = source;
    if (pixels > kDecodePixels) {
        if (reader.format() != "jpeg" || pixels > kJpegSourcePixels)
            return {QSize(), kOutOfMemory};
        // The largest n/8 of the JPEG's scales that fits.
        int eighths = 7;
        auto scaled = [&](int n) {
            return QSize(std::max(1, source.width() * n / 8),
                         std::max(1, source.height() * n / 8));
        };
        while (eighths > 1 && qint64(scaled(eighths).width()) * scaled(eighths).height() >
                                  kDecodePixels)
            --eighths;
        out = scaled(eighths);
    }
    if (!memoryAllows(qint64(out.width()) * out.height() * 4))
        return {QSize(), kOutOfMemory};
    return {out, QString()};
}

PictureCheck::Received PictureCheck::decodeReceived(const QString& path, const DecodePlan& plan)
{
    if (!plan.size.isValid())
        return {QImage(), plan.error};
    QImageReader reader(path);
    reader.setAllocationLimit(kAllocationLimitMb);
    // The file may have been replaced since the plan: a picture of another
    // size is not decoded on the strength of the old one's checks.
    const QSize source = reader.size();
    if (!source.isValid() || source.isEmpty())
        return {QImage(), kInvalid};
    if (source != plan.size) {
        if (reader.format() != "jpeg" ||
            qint64(source.width()) * source.height() > kJpegSourcePixels ||
            plan.size.width() > source.width() || plan.size.height() > source.height())
            return {QImage(), kOutOfMemory};
        reader.setScaledSize(plan.size);
    }
    QImage image = reader.read();
    if (image.isNull())
        return {QImage(), kInvalid};
    return {image, QString()};
}

QImage PictureCheck::load(const QString& path)
{
    QImageReader reader(path);
    reader.setAllocationLimit(kAllocationLimitMb);
    return reader.read();
}

}  // namespace vonnel
