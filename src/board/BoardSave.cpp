#include "board/BoardSave.h"

#include "board/BoardPaint.h"
#include "core/CopyContext.h"
#include "platform/Prompter.h"

#include <QFile>
#include <QFileInfo>
#include <QImageWriter>

namespace vonnel {

QString saveBoardImage(const Board& board, const QString& path, QSize minimum)
{
    const QImage image = BoardPaint::render(board, minimum);
    const bool jpeg = path.endsWith(QLatin1String(".jpg"), Qt::CaseInsensitive);
    QImageWriter writer(path, jpeg ? QByteArrayLiteral("jpg") : QByteArrayLiteral("bmp"));
    if (jpeg)
        writer.setQuality(85);
    if (!writer.write(image))
        return writer.errorString();
    return QString();
}

QString cmdSave_Click(CopyContext& ctx, const Board& board)
{
    int filterIndex = 1;
    FileRequest request;
    request.save = true;
    request.title = QStringLiteral("Save as");
    request.filter = QStringLiteral("JPEG Files *.jpg|*.jpg|Bitmap *.bmp|*.bmp");
    request.filterIndex = &filterIndex;
    QString path = ctx.prompter().file(request);
    if (path.isEmpty())
        return QString();
    const QString lower = path.toLower();
    if (!lower.endsWith(QLatin1String(".jpg")) && !lower.endsWith(QLatin1String(".bmp")))
        path += filterIndex == 2 ? QStringLiteral(".bmp") : QStringLiteral(".jpg");
    if (QFileInfo::exists(path)) {
        const Answer a = ctx.prompter().msgBox(
            path + QStringLiteral(" is already exist.\r\nDo you want to overwrite it?"),
            MsgStyle::YesNo + MsgStyle::Question);
        if (a != Answer::Yes)
            return QString();
        QFile::remove(path);
    }
    const QSize minimum = ctx.headless() ? QSize(600, 400) : QSize();
    if (const QString error = saveBoardImage(board, path, minimum); !error.isEmpty()) {
        ctx.prompter().msgBox(QStringLiteral("Save Picture Error: : ") + error,
                              MsgStyle::Exclamation);
        return QString();
    }
    return path;
}

}  // namespace vonnel
