#include "board/PictureCheck.h"

#include "core/CopyContext.h"
#include "platform/Prompter.h"

#include <QFile>
#include <QImageReader>

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

bool PictureCheck::memoryIsEnough(qint64 bytes)
{
    const MemoryStatus s = memoryStatus();
    int limit = m_ctx.settingInt(QStringLiteral("Memory Limit"));
    if (limit <= 0 || limit > 99)
        limit = 90;
    const bool enough = s.known && bytes <= kSizeLimit && s.availableBytes >= 2 * bytes &&
                        s.loadPercent < limit;
    if (!enough)
        m_ctx.prompter().msgBox(QStringLiteral("Not enough memory: ") +
                                    QString::number(s.loadPercent) + QStringLiteral("% used"),
                                MsgStyle::Exclamation, QStringLiteral("Memory Error"));
    return enough;
}

QImage PictureCheck::load(const QString& path)
{
    QImageReader reader(path);
    reader.setAllocationLimit(kAllocationLimitMb);
    return reader.read();
}

}  // namespace vonnel
