#pragma once
// Speech: this side reads text aloud, and makes the peer read it too. The
// text goes out as "<SPK> " text " </SPK>", the speaker's voice as
// "<SPKSET> ", so the peer reads my lines in my voice where it has it.
// The engine's configuration is applied again before every local speech,
// the peer's voice before every line the peer sends.

#include "media/SpeakerSetting.h"
#include "media/VoiceEngine.h"

#include <QObject>
#include <QString>
#include <QStringList>

namespace vonnel {

class CopyContext;
class MainModel;
class Session;
class Sender;

class Speech : public QObject {
    Q_OBJECT
public:
    Speech(CopyContext& ctx, MainModel& model, Session& session, Sender& sender,
           QObject* parent = nullptr);

    // The speech engine (dssTTS).
    VoiceEngine& dssTTS() { return m_tts; }

    // The local configuration onto the engine: Speaker, Voice Volume,
    // Voice Speed, Voice Pitch (the pitch only when it is the maximum).
    void GetVoiceSettings();
    // Speaks text here and, unless noSend, has the peer speak it too.
    void SpeakText(const QString& text, bool noSend);
    // Our voice to the peer, unless Disable Auto TTS Signal is set.
    void SendSpeakerSetting();
    // The peer's "<SPKSET> " fields into remoteVoice; fields that do not
    // convert give the "SAVESPKSET " box (once a session) and change
    // nothing.
    void SaveSpeakerSetting(const QString& fields);
    // The peer's voice onto the engine, our own values where it left a
    // field empty or 0.
    void ApplySpeakerSetting();
    // "<SPK> " from the peer, deciphered. behindControlCode: the frame
    // came right behind a "^" code, where Audio Reset also acts between
    // the voice and the speech.
    void speakReceived(const QString& line, bool behindControlCode);

    // --- menus and buttons -----------------------------------------------------
    void mnuSpeak_Click();
    // The selection of txtServer, and of the remote pane.
    void popsSpeak_Click();
    void popcSpeak_Click();
    void mnuMute_Click();
    // "Down" adds a tenth of the range, "Up" takes one off.
    void mnuVolumeDown_Click();
    void mnuVolumeUp_Click();
    // The Voice menu opens: mute, speak and volume entries follow the state.
    void mnuVoice_Click();
    // At Init: the mute entry and button from the two speaker keys.
    void readMuteState();

    // The options page's test button: the sliders' values, not the settings.
    struct OptionsVoice {
        int volume = 0, volumeMax = 10, speed = 0, pitch = 0;
    };
    void cmdSpeak_Click(const QString& text, const OptionsVoice& sliders);
    // What the options page shows when it opens.
    struct OptionsPage {
        int minSpeed, maxSpeed, speed, minPitch, maxPitch, pitch, volume;
        QStringList modeNames;
        int selected;  // list position of the current mode
    };
    OptionsPage optionsPage();

    // The peer's voice as last received and completed.
    RemoteVoice remoteVoice;

private:
    bool muted() const;
    void speakSelection(int pane, const QString& offKey);
    void setVolume(int volume);

    CopyContext& m_ctx;
    MainModel& m_model;
    Session& m_session;
    Sender& m_sender;
    VoiceEngine m_tts;
    // The "SAVESPKSET " box has been shown in this session.
    bool m_saveBoxShown = false;
};

}  // namespace vonnel
