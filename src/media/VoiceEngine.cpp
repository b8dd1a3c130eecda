#include "media/VoiceEngine.h"

#include "platform/SpeechEngine.h"

#include <algorithm>

namespace vonnel {

int VoiceEngine::countModes() const
{
    return int(m_engine.voices().size());
}

QList<SpeechVoice> VoiceEngine::modes() const
{
    return m_engine.voices();
}

void VoiceEngine::setCurrentMode(int mode)
{
    if (mode >= 1 && mode <= countModes())
        m_mode = mode;
}

SpeechMode VoiceEngine::mode(int index) const
{
    const QList<SpeechVoice> all = m_engine.voices();
    if (index < 1 || index > all.size())
        return SpeechMode{};
    return modeOf(all[index - 1]);
}

int VoiceEngine::find(const QString& text) const
{
    return findMode(m_engine.voices(), text, m_mode);
}

double VoiceEngine::rateOf(int speed)
{
    return std::clamp((double(speed) - kNormalSpeed) / (kMaxSpeed - kNormalSpeed), -1.0, 1.0);
}

double VoiceEngine::pitchOf(int pitch)
{
    return std::clamp((double(pitch) - kNormalPitch) / (kMaxPitch - kNormalPitch), -1.0, 1.0);
}

double VoiceEngine::volumeOf(int volume)
{
    return std::clamp(double(volume) / kMaxVolume, 0.0, 1.0);
}

void VoiceEngine::speak(const QString& text)
{
    // A frame cut short by the read gives an empty line: nothing to say.
    if (text.isEmpty())
        return;
    const QList<SpeechVoice> all = m_engine.voices();
    const SpeechVoice voice = m_mode >= 1 && m_mode <= all.size() ? all[m_mode - 1] : SpeechVoice{};
    m_engine.say(text.left(kMaxSpokenLength), rateOf(speed), pitchOf(pitch), volumeOf(volume),
                 voice);
}

void VoiceEngine::audioReset()
{
    m_engine.stop();
}

}  // namespace vonnel
