#pragma once
// The speech engine as the speech routines use it (dssTTS): numbered
// modes, a current mode, speed, pitch and two volumes in the engine's own
// units with their ranges, speak and audio reset. It sits on the platform's
// SpeechEngine and turns the units into the platform's rate, pitch and
// volume only when it speaks. Writes outside what the engine can take
// (a mode that does not exist) are ignored, as a failing engine call is.

#include "media/SpeechModes.h"

#include <QString>

namespace vonnel {

class SpeechEngine;

class VoiceEngine {
public:
    explicit VoiceEngine(SpeechEngine& engine) : m_engine(engine) {}

    // Units: speed in words a minute, pitch in hertz, volume in hundredths.
    static constexpr int kMinSpeed = 50, kMaxSpeed = 350, kNormalSpeed = 200;
    static constexpr int kMinPitch = 50, kMaxPitch = 250, kNormalPitch = 150;
    static constexpr int kMinVolume = 0, kMaxVolume = 100;
    // The longest text one speak hands to the engine: a peer decides what
    // arrives, and must not make this side talk on without end (about four
    // minutes at normal speed).
    static constexpr qsizetype kMaxSpokenLength = 4000;

    // The modes: the engine's voices, in its order.
    int countModes() const;
    QList<SpeechVoice> modes() const;
    // 1-based; a mode that does not exist is not taken.
    int currentMode() const { return m_mode; }
    void setCurrentMode(int mode);
    // The fields of a mode (1-based); all empty for one that does not exist.
    SpeechMode mode(int index) const;
    // The mode that best fits "LanguageID=..;EngineID=..;ModeName=..".
    int find(const QString& text) const;

    int speed = kNormalSpeed;
    int pitch = kNormalPitch;
    int volume = kMaxVolume;
    // The second volume value, beside the first.
    int volume2 = kMaxVolume;

    // Speaks text (at most kMaxSpokenLength characters of it) in the
    // current mode, speed, pitch and volume.
    void speak(const QString& text);
    // Cuts off what is being spoken.
    void audioReset();

    // The platform's values for the engine's units.
    static double rateOf(int speed);
    static double pitchOf(int pitch);
    static double volumeOf(int volume);

private:
    SpeechEngine& m_engine;
    int m_mode = 1;
};

}  // namespace vonnel
