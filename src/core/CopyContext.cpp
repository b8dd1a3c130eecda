#include "core/CopyContext.h"

#include "core/IniStore.h"
#include "core/Logs.h"
#include "core/Translator.h"
#include "platform/AudioPlayer.h"
#include "platform/Cursor.h"
#include "platform/EchoProber.h"
#include "platform/Notifier.h"
#include "platform/OwnAddresses.h"
#include "platform/Pinger.h"
#include "platform/ScreenSaver.h"
#include "platform/SpeechEngine.h"

#include <optional>

namespace vonnel {

CopyContext::CopyContext(const CopyEnvironment& env, QObject* parent)
    : QObject(parent),
      m_env(env),
      m_translator(std::make_unique<Translator>(env.appPath)),
      m_iniWatch(std::make_unique<IniFileWatch>(env.appPath + QStringLiteral("vonnel.ini"))),
      m_logs(std::make_unique<Logs>(env.appPath, *env.clock))
{
    setPinger(m_env.pinger);
    m_prober = m_env.pinger->makeProber();
    if (!m_env.ownAddresses) {
        m_ownAddresses = std::make_unique<SystemOwnAddresses>();
        m_env.ownAddresses = m_ownAddresses.get();
    }
    if (!m_env.cursor) {
        m_ownCursor = std::make_unique<Cursor>();
        m_env.cursor = m_ownCursor.get();
    }
    if (!m_env.audio) {
        m_ownAudio = makeAudioPlayer(m_env.headless);
        m_env.audio = m_ownAudio.get();
    }
    if (!m_env.speech) {
        m_ownSpeech = makeSpeechEngine(m_env.headless);
        m_env.speech = m_ownSpeech.get();
    }
    if (!m_env.screenSaver) {
        m_ownScreenSaver = std::make_unique<SystemScreenSaver>();
        m_env.screenSaver = m_ownScreenSaver.get();
    }
    if (!m_env.notifier) {
        if (m_env.headless)
            m_ownNotifier = std::make_unique<RecordingNotifier>();
        else
            m_ownNotifier = std::make_unique<SystemNotifier>();
        m_env.notifier = m_ownNotifier.get();
    }
}

CopyContext::~CopyContext() = default;

void CopyContext::setPinger(Pinger* p)
{
    if (!p && !m_ownPinger)
        m_ownPinger = std::make_unique<Pinger>();
    m_env.pinger = p ? p : m_ownPinger.get();
}

QString CopyContext::setting(const QString& key) const
{
    const std::optional<QByteArray> bytes = m_iniWatch->bytes();
    if (!bytes)
        return ReadIni(kSection, key, iniPath());
    // Values found in these very bytes are kept until the file changes.
    if (m_settingsGeneration != m_iniWatch->generation()) {
        m_settingValues.clear();
        m_settingsGeneration = m_iniWatch->generation();
    }
    auto it = m_settingValues.constFind(key);
    if (it == m_settingValues.constEnd())
        it = m_settingValues.insert(key, ReadIniBytes(*bytes, kSection, key));
    return *it;
}

void CopyContext::writeSetting(const QString& key, const QString& value) const
{
    WriteIni(kSection, key, value, iniPath());
}

double CopyContext::settingNumber(const QString& key) const
{
    const QString text = setting(key);
    // Read wherever a number is wanted: the number is parsed once per text.
    auto it = m_settingNumbers.constFind(key);
    if (it != m_settingNumbers.constEnd() && it->first == text)
        return it->second;
    const double value = iniNumber(text);
    m_settingNumbers.insert(key, {text, value});
    return value;
}

int CopyContext::settingInt(const QString& key) const
{
    return iniInt(setting(key));
}

bool CopyContext::settingFlag(const QString& key) const
{
    return flagByNumber(setting(key));
}

QString CopyContext::translate(const QString& key, const QString& fallback) const
{
    return m_translator->translate(key, fallback);
}

}  // namespace vonnel
