#include "media/Sound.h"

#include "core/CopyContext.h"
#include "platform/AudioPlayer.h"

#include <QFileInfo>

namespace vonnel {

Sound::Sound(CopyContext& ctx, QObject* parent) : QObject(parent), m_ctx(ctx)
{
    connect(&player(), &AudioPlayer::done, this, &Sound::mmcAudio_Done);
}

AudioPlayer& Sound::player() const { return m_ctx.audio(); }

void Sound::PresetMMC()
{
    AudioPlayer& p = player();
    p.Wait = false;
    p.Notify = false;
    p.Shareable = false;
    p.command(QStringLiteral("Close"));
}

bool Sound::PlayMMCFile(const QString& path)
{
    if (m_ctx.settingNumber(QStringLiteral("Disable Sound")) != 0)
        return false;
    // A second press while a sound plays stops it and starts nothing.
    if (PlayAndStop())
        return false;
    AudioPlayer& p = player();
    if (m_ctx.settingNumber(QStringLiteral("Play Together")) == 0)
        p.command(QStringLiteral("Close"));
    p.setFileName(path);
    p.command(QStringLiteral("Open"));
    p.command(QStringLiteral("Play"));
    return true;
}

bool Sound::PlayAndStop()
{
    if (m_ctx.settingNumber(QStringLiteral("No Play n Stop")) != 0)
        return false;
    AudioPlayer& p = player();
    if (p.lastCommand() != QLatin1String("Play"))
        return false;
    p.command(QStringLiteral("Stop"));
    p.command(QStringLiteral("Close"));
    return true;
}

void Sound::playRing(const QString& file)
{
    const QString path = QFileInfo(file).isAbsolute() ? file : m_ctx.appFile(file);
    lastPlayResult = PlayMMCFile(path);
}

void Sound::playKey(const QString& key)
{
    playRing(m_ctx.setting(key));
}

void Sound::stopAudio()
{
    player().command(QStringLiteral("Stop"));
    player().command(QStringLiteral("Close"));
}

void Sound::mmcAudio_Done()
{
    player().command(QStringLiteral("Close"));
}

}  // namespace vonnel
