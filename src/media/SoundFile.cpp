#include "media/SoundFile.h"

#include "core/CopyContext.h"
#include "platform/Prompter.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>

namespace vonnel {

QString soundFileFilter()
{
    // The first pattern has no dot before mp3; it is kept as it is.
    return QStringLiteral(
        "All Support Format|*mp3;*.wma;*.mid;*.wav;*.au;*.aiff|MP3 Files (*.mp3)|*.mp3|"
        "Windows Media Audio (*.wma)|*.wma|MIDI Files (*.mid)|*.mid|Wave Files (*.wav)|*.wav|"
        "AU Files (*.au)|*.au|AIFF Files (*.aiff)|*.aiff");
}

qint64 soundSizeLimit(const CopyContext& ctx)
{
    const qint64 limit = qint64(ctx.settingNumber(QStringLiteral("SndMaxSize")));
    return limit == 0 ? 50000 : limit;
}

QString takeSoundFile(CopyContext& ctx, const QString& path, const QString& current)
{
    const qint64 limit = soundSizeLimit(ctx);
    const QFileInfo chosen(path);
    if (chosen.size() > limit) {
        // Stored in bytes, told in units of 1024.
        ctx.prompter().msgBox(QStringLiteral("File should not larger than ") +
                              QString::number(double(limit) / 1024.0, 'g', 15) +
                              QStringLiteral("KB."));
        return current;
    }
    // The bare name: what follows the last separator of either kind.
    const qsizetype cut = std::max(path.lastIndexOf(QLatin1Char('\\')), path.lastIndexOf(QLatin1Char('/')));
    const QString name = path.mid(cut + 1);
    const QString target = ctx.appFile(name);
    if (QFileInfo(target).absoluteFilePath() != chosen.absoluteFilePath()) {
        if (QFileInfo::exists(target)) {
            QFile::setPermissions(target, QFile::permissions(target) | QFileDevice::WriteOwner);
            QFile::remove(target);
        }
        QFile source(path);
        if (!source.copy(target)) {
            ctx.prompter().msgBox(QStringLiteral("Error: ") + source.errorString());
            return current;
        }
    }
    return name;
}

QString browseSoundFile(CopyContext& ctx, const QString& current)
{
    FileRequest req;
    req.filter = soundFileFilter();
    req.folder = ctx.AppPath();
    const QString path = ctx.prompter().file(req);
    if (path.isEmpty())
        return current;
    return takeSoundFile(ctx, path, current);
}

}  // namespace vonnel
