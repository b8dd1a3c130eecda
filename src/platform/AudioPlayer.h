#pragma once
// The one sound player of a copy (mmcAudio): a file name, four commands
// ("Open", "Play", "Stop", "Close"), the last command read back, three
// modes that are only kept, and the completion event when a sound ends.
// Nothing here ever blocks or reports an error: a file that is missing or
// cannot be played is simply not heard.
//
// Play Together opens a new file over a playing one: "Open" without a
// "Close" before it leaves the sounds already started playing beside the
// new one; "Stop" and "Close" act on all of them.

#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>

namespace vonnel {

class AudioPlayer : public QObject {
    Q_OBJECT
public:
    explicit AudioPlayer(QObject* parent = nullptr) : QObject(parent) {}
    ~AudioPlayer() override = default;

    // The file the next "Open" takes.
    void setFileName(const QString& path) { m_fileName = path; }
    const QString& fileName() const { return m_fileName; }

    // The three modes (wait, notify, shareable). Kept, and read back.
    bool Wait = false;
    bool Notify = false;
    bool Shareable = false;

    // Gives one of "Open", "Play", "Stop", "Close"; any other word is
    // ignored. The word is what lastCommand() reads back afterwards.
    void command(const QString& word);
    const QString& lastCommand() const { return m_lastCommand; }

Q_SIGNALS:
    // Every sound that was playing has come to its end (or could not play).
    void done();

protected:
    virtual void doOpen(const QString& path) = 0;
    virtual void doPlay() = 0;
    virtual void doStop() = 0;
    virtual void doClose() = 0;

private:
    QString m_fileName;
    QString m_lastCommand;
};

// Writes down every command and plays nothing; what a copy without an audio
// device, and every test, uses. finish() is the end of the sounds.
class RecordingAudioPlayer : public AudioPlayer {
    Q_OBJECT
public:
    using AudioPlayer::AudioPlayer;
    // "Open <path>", "Play", "Stop", "Close", in order.
    QStringList commands;
    // Files opened and played since the last "Close", in order.
    QStringList playing;
    // The files that were played, in order, across closes.
    QStringList played;
    // The sounds come to their end now.
    void finish();

protected:
    void doOpen(const QString& path) override;
    void doPlay() override;
    void doStop() override;
    void doClose() override;

private:
    QString m_opened;
};

// The system's own audio: QSoundEffect for WAV files, a media player with
// an audio output for every other format.
class SystemAudioPlayer : public AudioPlayer {
    Q_OBJECT
public:
    explicit SystemAudioPlayer(QObject* parent = nullptr);
    ~SystemAudioPlayer() override;
    // How many sounds are open now (started and not yet ended or closed).
    int openSounds() const;

protected:
    void doOpen(const QString& path) override;
    void doPlay() override;
    void doStop() override;
    void doClose() override;

private:
    void finishWhenAllEnded();
    struct Sounds;
    std::unique_ptr<Sounds> m_sounds;
};

// True when the system offers an audio output device.
bool audioDevicePresent();

// The player a copy uses when none is given: the system's audio when there
// is an output device and the copy runs with windows, else a recorder.
std::unique_ptr<AudioPlayer> makeAudioPlayer(bool headless);

}  // namespace vonnel
