#pragma once
// The copy's sounds: the three routines around the one player (PresetMMC,
// PlayMMCFile, PlayAndStop) and the event bells that every part asks for
// through CopyContext::ringRequested. Every play is quiet about failures:
// a missing or unplayable file is simply not heard.

#include <QObject>
#include <QString>

namespace vonnel {

class CopyContext;
class AudioPlayer;

class Sound : public QObject {
    Q_OBJECT
public:
    explicit Sound(CopyContext& ctx, QObject* parent = nullptr);

    // Once at form load: the three modes off, then "Close".
    void PresetMMC();
    // Plays the file at path. False when sound is disabled or when the
    // call only stopped a sound that was playing; true otherwise, even for
    // a file that does not exist.
    bool PlayMMCFile(const QString& path);
    // Stops a sound that is playing (unless No Play n Stop is set); true
    // when one was stopped.
    bool PlayAndStop();
    // The result of the last PlayMMCFile, whoever called it.
    bool lastPlayResult = false;

    // An event's bell: a bare name from the settings (taken from the
    // application folder) or a path in it.
    void playRing(const QString& file);
    // The sound named by the setting key, read again now ("Ring2" ...).
    void playKey(const QString& key);
    // The copy ends: "Stop" and "Close".
    void stopAudio();

    AudioPlayer& player() const;

private:
    // The player's completion event: "Close" and nothing else.
    void mmcAudio_Done();

    CopyContext& m_ctx;
};

}  // namespace vonnel
