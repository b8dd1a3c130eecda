#include "platform/AudioPlayer.h"

#include <QAudioDevice>
#include <QAudioOutput>
#include <QFileInfo>
#include <QMediaDevices>
#include <QMediaPlayer>
#include <QSoundEffect>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <functional>
#include <vector>

namespace vonnel {

void AudioPlayer::command(const QString& word)
{
    if (word == QLatin1String("Open"))
        doOpen(m_fileName);
    else if (word == QLatin1String("Play"))
        doPlay();
    else if (word == QLatin1String("Stop"))
        doStop();
    else if (word == QLatin1String("Close"))
        doClose();
    else
        return;
    m_lastCommand = word;
}

// --- the recorder ------------------------------------------------------------------

void RecordingAudioPlayer::doOpen(const QString& path)
{
    commands << QStringLiteral("Open ") + path;
    m_opened = path;
}

void RecordingAudioPlayer::doPlay()
{
    commands << QStringLiteral("Play");
    if (m_opened.isEmpty())
        return;
    playing << m_opened;
    played << m_opened;
    m_opened.clear();
}

void RecordingAudioPlayer::doStop()
{
    commands << QStringLiteral("Stop");
}

void RecordingAudioPlayer::doClose()
{
    commands << QStringLiteral("Close");
    playing.clear();
    m_opened.clear();
}

void RecordingAudioPlayer::finish()
{
    playing.clear();
    Q_EMIT done();
}

// --- the system's audio --------------------------------------------------------------

namespace {

// One file being played: a sound effect for WAV, a media player otherwise.
struct Sound {
    std::unique_ptr<QSoundEffect> effect;
    std::unique_ptr<QAudioOutput> output;
    std::unique_ptr<QMediaPlayer> player;
    bool played = false;   // "Play" was given for it
    bool started = false;  // the system said it plays
    bool ended = false;
};

}  // namespace

struct SystemAudioPlayer::Sounds {
    std::vector<std::unique_ptr<Sound>> open;
    // Set while this player stops or closes its sounds itself: their ends
    // are then no completion.
    bool quieting = false;
};

SystemAudioPlayer::SystemAudioPlayer(QObject* parent)
    : AudioPlayer(parent), m_sounds(std::make_unique<Sounds>())
{
}

SystemAudioPlayer::~SystemAudioPlayer()
{
    m_sounds->quieting = true;
    doClose();
}

int SystemAudioPlayer::openSounds() const
{
    int n = 0;
    for (const auto& s : m_sounds->open)
        n += s->ended ? 0 : 1;
    return n;
}

void SystemAudioPlayer::doOpen(const QString& path)
{
    auto sound = std::make_unique<Sound>();
    Sound* s = sound.get();
    // Listed before its source is set: a source that fails at once ends it.
    m_sounds->open.push_back(std::move(sound));
    // A sound's end: when every open sound has ended, the player is done.
    auto ended = [this, s] {
        // A sound closed in the meantime is gone: nothing of it is touched.
        const bool open = std::any_of(m_sounds->open.begin(), m_sounds->open.end(),
                                      [s](const auto& o) { return o.get() == s; });
        if (!open || s->ended || m_sounds->quieting)
            return;
        s->ended = true;
        if (s->played)
            finishWhenAllEnded();
    };
    const QUrl url = QUrl::fromLocalFile(path);
    if (QFileInfo(path).suffix().compare(QLatin1String("wav"), Qt::CaseInsensitive) == 0) {
        s->effect = std::make_unique<QSoundEffect>();
        QSoundEffect* e = s->effect.get();
        connect(e, &QSoundEffect::statusChanged, this, [e, ended] {
            if (e->status() == QSoundEffect::Error)
                ended();
        });
        connect(e, &QSoundEffect::playingChanged, this, [e, s, ended] {
            if (e->isPlaying())
                s->started = true;
            else if (s->started)
                ended();
        });
        e->setSource(url);
    } else {
        s->output = std::make_unique<QAudioOutput>();
        s->player = std::make_unique<QMediaPlayer>();
        QMediaPlayer* p = s->player.get();
        p->setAudioOutput(s->output.get());
        connect(p, &QMediaPlayer::mediaStatusChanged, this, [ended](QMediaPlayer::MediaStatus st) {
            if (st == QMediaPlayer::EndOfMedia || st == QMediaPlayer::InvalidMedia)
                ended();
        });
        connect(p, &QMediaPlayer::errorOccurred, this, [ended] { ended(); });
        p->setSource(url);
    }
}

void SystemAudioPlayer::doPlay()
{
    if (m_sounds->open.empty())
        return;
    Sound& s = *m_sounds->open.back();
    s.played = true;
    // With no device to play on, the sound is over as soon as it started.
    if (!audioDevicePresent())
        s.ended = true;
    if (s.ended) {
        finishWhenAllEnded();
        return;
    }
    if (s.effect)
        s.effect->play();
    else if (s.player)
        s.player->play();
}

void SystemAudioPlayer::finishWhenAllEnded()
{
    // Told after the present event, never from inside a command: the
    // completion may close the player.
    QMetaObject::invokeMethod(this, [this] {
        if (!m_sounds->open.empty() && openSounds() == 0)
            Q_EMIT done();
    }, Qt::QueuedConnection);
}

void SystemAudioPlayer::doStop()
{
    m_sounds->quieting = true;
    for (const auto& s : m_sounds->open) {
        if (s->effect)
            s->effect->stop();
        if (s->player)
            s->player->stop();
    }
    m_sounds->quieting = false;
}

void SystemAudioPlayer::doClose()
{
    m_sounds->quieting = true;
    // Taken apart after the present event: a close may come from inside a
    // sound's own signal.
    for (auto& s : m_sounds->open) {
        if (s->effect) {
            s->effect->disconnect(this);
            s->effect->stop();
            s->effect.release()->deleteLater();
        }
        if (s->player) {
            s->player->disconnect(this);
            s->player->stop();
            s->player.release()->deleteLater();
            s->output.release()->deleteLater();
        }
    }
    m_sounds->open.clear();
    m_sounds->quieting = false;
}

bool audioDevicePresent()
{
    return !QMediaDevices::audioOutputs().isEmpty();
}

std::unique_ptr<AudioPlayer> makeAudioPlayer(bool headless)
{
    if (!headless && audioDevicePresent())
        return std::make_unique<SystemAudioPlayer>();
    return std::make_unique<RecordingAudioPlayer>();
}

}  // namespace vonnel
