#include "media/Speech.h"

#include "connection/Session.h"
#include "core/Controls.h"
#include "core/CopyContext.h"
#include "core/Logs.h"
#include "core/MainModel.h"
#include "core/Sender.h"
#include "core/WireCodec.h"
#include "platform/Prompter.h"

#include <algorithm>

namespace vonnel {

namespace {
// The Mute button of the toolbar (the sixteenth of the window's buttons).
constexpr int kMuteButton = 16;
}  // namespace

Speech::Speech(CopyContext& ctx, MainModel& model, Session& session, Sender& sender, QObject* parent)
    : QObject(parent), m_ctx(ctx), m_model(model), m_session(session), m_sender(sender),
      m_tts(ctx.speech())
{
    connect(&session, &Session::sessionOpened, this, [this] { m_saveBoxShown = false; });
}

void Speech::GetVoiceSettings()
{
    // Speaker is the list position; one past the last is not caught here
    // and leaves the mode as it was, since the engine takes no such mode.
    int n = m_ctx.settingInt(QStringLiteral("Speaker"));
    m_tts.setCurrentMode(n > m_tts.countModes() || n < 0 ? 1 : n + 1);

    n = m_ctx.settingInt(QStringLiteral("Voice Volume"));
    if (n >= 11 || n < 1)
        n = 10;
    m_tts.volume = VoiceEngine::kMaxVolume / 10 * n;
    m_tts.volume2 = m_tts.volume;

    n = m_ctx.settingInt(QStringLiteral("Voice Speed"));
    if (!(n > VoiceEngine::kMaxSpeed || n < VoiceEngine::kMinSpeed))
        m_tts.speed = n;

    // Only the maximum pitch is taken: both tests are against the maximum.
    n = m_ctx.settingInt(QStringLiteral("Voice Pitch"));
    if (!(n > VoiceEngine::kMaxPitch || n < VoiceEngine::kMaxPitch))
        m_tts.pitch = n;
}

void Speech::SpeakText(const QString& text, bool noSend)
{
    GetVoiceSettings();
    if (text.isEmpty())
        return;
    if (m_sender.IsConnected() && !noSend &&
        !m_ctx.settingFlag(QStringLiteral("Disable Manual TTS Signal")))
        m_sender.xSendData(wire::text(wire::kSpeakOpen) + text + wire::text(wire::kSpeakClose));
    if (m_ctx.settingFlag(QStringLiteral("Audio Reset")))
        m_tts.audioReset();
    m_tts.speak(text);
}

void Speech::SendSpeakerSetting()
{
    if (m_ctx.settingFlag(QStringLiteral("Disable Auto TTS Signal")))
        return;
    GetVoiceSettings();
    // Without an engine the fields go out empty: the peer then reads in
    // its own voice. No engine call is left that could fail here.
    const SpeechMode m = m_tts.mode(m_tts.currentMode());
    m_sender.xSendData(speakerSettingFrame(m.languageId, m.product, m.engineId, m.modeName,
                                           m_tts.speed, m_tts.pitch));
}

void Speech::SaveSpeakerSetting(const QString& fields)
{
    const SpeakerSettingParse parsed = parseSpeakerSetting(fields);
    if (!parsed.error) {
        remoteVoice = parsed.voice;
        return;
    }
    // What was set before stays. A peer that keeps sending such fields
    // gets one box a session.
    if (m_saveBoxShown)
        return;
    m_saveBoxShown = true;
    const QString text = QStringLiteral("SAVESPKSET ") + QString::number(parsed.error) +
                         QLatin1Char(' ') + parsed.description;
    m_ctx.logs().failure(QStringLiteral("SaveSpeakerSetting"), text);
    m_ctx.prompter().msgBox(text, MsgStyle::Exclamation);
}

void Speech::ApplySpeakerSetting()
{
    RemoteVoice& v = remoteVoice;
    const SpeechMode own = m_tts.mode(m_tts.currentMode());
    if (v.remoteLanguage == 0)
        v.remoteLanguage = own.languageId;
    if (v.remoteProduct.isEmpty())
        v.remoteProduct = own.product;
    if (v.remoteEngine.isEmpty())
        v.remoteEngine = own.engineId;
    if (v.remoteMode.isEmpty())
        v.remoteMode = own.modeName;
    if (v.remoteSpeed == 0)
        v.remoteSpeed = m_tts.speed;
    if (v.remotePitch == 0)
        v.remotePitch = m_tts.pitch;
    m_tts.setCurrentMode(m_tts.find(findText(v.remoteLanguage, v.remoteEngine, v.remoteMode)));
    m_tts.speed = v.remoteSpeed;
    m_tts.pitch = v.remotePitch;
    m_tts.audioReset();
}

void Speech::speakReceived(const QString& line, bool behindControlCode)
{
    if (m_ctx.settingFlag(QStringLiteral("Remote Speaker Off")))
        return;
    if (m_model.controls.checked(Control::mnuOverride)) {
        // Read in our own voice, and never sent back.
        SpeakText(line, true);
        return;
    }
    ApplySpeakerSetting();
    if (behindControlCode && m_ctx.settingFlag(QStringLiteral("Audio Reset")))
        m_tts.audioReset();
    m_tts.speak(line);
}

// --- menus and buttons ---------------------------------------------------------------

void Speech::speakSelection(int pane, const QString& offKey)
{
    const bool noSend = m_ctx.settingFlag(offKey);
    const TextPane& p = pane == 0 ? m_model.txtServer : m_model.txtClient(m_session.sIdx);
    if (p.selLength() > 0)
        SpeakText(p.text().mid(p.selStart(), p.selLength()), noSend);
}

void Speech::popsSpeak_Click()
{
    speakSelection(0, QStringLiteral("Server Selected Remote Speaker Off"));
}

void Speech::popcSpeak_Click()
{
    speakSelection(1, QStringLiteral("Client Selected Remote Speaker Off"));
}

void Speech::mnuSpeak_Click()
{
    popsSpeak_Click();
    popcSpeak_Click();
}

void Speech::mnuMute_Click()
{
    const bool checked = m_model.controls.checked(Control::mnuMute);
    const QString on = checked ? QStringLiteral("0") : QStringLiteral("1");
    if (!checked)
        m_tts.audioReset();
    m_ctx.writeSetting(QStringLiteral("Local Speaker Off"), on);
    m_ctx.writeSetting(QStringLiteral("Remote Speaker Off"), on);
    m_model.controls.setChecked(toolbarButton(kMuteButton), !checked);
    m_model.controls.setChecked(Control::mnuMute, !checked);
}

bool Speech::muted() const
{
    return m_ctx.settingFlag(QStringLiteral("Local Speaker Off")) &&
           m_ctx.settingFlag(QStringLiteral("Remote Speaker Off"));
}

void Speech::readMuteState()
{
    const bool on = muted();
    m_model.controls.setChecked(Control::mnuMute, on);
    m_model.controls.setChecked(toolbarButton(kMuteButton), on);
}

void Speech::mnuVoice_Click()
{
    readMuteState();
    Controls& c = m_model.controls;
    const bool server = m_model.txtServer.length() > 0;
    c.setEnabled(Control::popsSpeak, server);
    c.setEnabled(Control::mnuSpeak, server);
    c.setEnabled(Control::popcSpeak, m_model.txtClient(m_session.sIdx).length() > 0);
    const bool mute = c.checked(Control::mnuMute);
    c.setEnabled(Control::mnuVolUp, !mute);
    c.setEnabled(Control::mnuVolDown, !mute);
}

void Speech::setVolume(int volume)
{
    m_tts.volume = volume;
    m_tts.volume2 = volume;
}

void Speech::mnuVolumeDown_Click()
{
    setVolume(std::min(m_tts.volume + VoiceEngine::kMaxVolume / 10, int(VoiceEngine::kMaxVolume)));
}

void Speech::mnuVolumeUp_Click()
{
    setVolume(std::max(m_tts.volume - VoiceEngine::kMaxVolume / 10, int(VoiceEngine::kMinVolume)));
}

void Speech::cmdSpeak_Click(const QString& text, const OptionsVoice& sliders)
{
    m_tts.audioReset();
    const int max = std::max(sliders.volumeMax, 1);
    m_tts.volume = sliders.volume * (VoiceEngine::kMaxVolume / max);
    m_tts.volume2 = sliders.volume * (VoiceEngine::kMaxVolume / max);
    m_tts.speed = sliders.speed;
    m_tts.pitch = sliders.pitch;
    m_tts.speak(text);
}

Speech::OptionsPage Speech::optionsPage()
{
    GetVoiceSettings();
    OptionsPage page{VoiceEngine::kMinSpeed, VoiceEngine::kMaxSpeed, m_tts.speed,
                     VoiceEngine::kMinPitch, VoiceEngine::kMaxPitch, m_tts.pitch,
                     m_tts.volume * 10 / VoiceEngine::kMaxVolume, {}, m_tts.currentMode() - 1};
    for (const SpeechVoice& v : m_tts.modes())
        page.modeNames << modeOf(v).modeName;
    return page;
}

}  // namespace vonnel
