#pragma once
// One running copy of the program inside the test process: its own
// temporary application folder, port, scripted prompter, clipboard and
// recorded desktop. Two of these talk to each other over loopback.

#include "platform/AudioPlayer.h"
#include "platform/Clipboard.h"
#include "platform/Clock.h"
#include "platform/Cursor.h"
#include "platform/Desktop.h"
#include "platform/EchoProber.h"
#include "platform/Notifier.h"
#include "platform/OwnAddresses.h"
#include "platform/Pinger.h"
#include "platform/ScreenSaver.h"
#include "platform/ScriptedPrompter.h"
#include "platform/SpeechEngine.h"
#include "shell/FrmMain.h"
#include "core/Views.h"

#include <QTemporaryDir>
#include <functional>
#include <memory>

namespace vonnel::test {

// A port that was free a moment ago, for a copy to listen on.
quint16 freePort();

// Runs events until the condition holds or the time is up.
bool waitUntil(const std::function<bool()>& condition, int timeoutMs = 5000);
// Runs events for a while.
void pump(int ms);
// As waitUntil, without sleeping between turns: for the benchmarks, where
// a millisecond's nap would be the thing measured.
bool spin(const std::function<bool()>& condition, int timeoutMs = 2000);

// n bytes of repeatable noise.
QByteArray randomBytes(qsizetype n, quint32 seed);
// A file of n bytes of repeatable noise, written a megabyte at a time so a
// file of hundreds of megabytes never stands in memory whole.
bool writeRandomFile(const QString& path, qint64 n, quint32 seed);
// A file's bytes; empty when it cannot be read.
QByteArray readFile(const QString& path);

// The echo of a test copy: loopback answers, nothing else does, and no
// packet ever leaves the process. A test may narrow the stations that
// answer to a few loopback addresses; the rest run out like silent ones.
class LoopbackPinger : public Pinger {
public:
    // Stands in a machine whose echo goes through this platform (one that
    // refuses both socket kinds, say): from here on the real echo code runs
    // on it. Call before the copy starts.
    void usePlatform(EchoPlatform* platform);
    bool echo(const QString& address, int timeoutMs = 200) override;
    EchoResult sendEcho(const QString& address, int timeoutMs = 200) override;
    std::unique_ptr<EchoProber> makeProber(QObject* parent = nullptr) override;

    // When not empty, only these addresses answer.
    QSet<QString> liveOnly;
    // When set, the answer of an address comes after this many ms (else at
    // once, on the next turn of the event loop).
    std::function<int(const QString&)> answerDelayMs;
    bool answers(const QString& address) const;
    // Every address the copy's prober was asked to probe, in order.
    QStringList probed;

private:
    std::unique_ptr<Pinger> m_real;
};

class TestCopy {
public:
    // Prepares the folder with a vonnel.ini made from the shipped preset,
    // then the given settings on top. The copy is not started yet.
    explicit TestCopy(quint16 port = 0, const QList<QPair<QString, QString>>& settings = {});
    ~TestCopy();

    // Runs on the new copy before its start: a test may put up the windows.
    std::function<void(FrmMain&)> beforeStart;
    // The start of the program, as a process entry would run it.
    bool start(const QString& commandLine = QString());

    QString appPath() const { return m_appPath; }
    QString file(const QString& name) const { return m_appPath + name; }
    quint16 port() const { return m_port; }
    void set(const QString& key, const QString& value);
    QString get(const QString& key) const;

    FrmMain& frm() { return *m_frm; }
    ScriptedPrompter& prompter() { return m_prompter; }
    MemoryClipboard& clipboard() { return m_clipboard; }
    RecordingDesktop& desktop() { return m_desktop; }
    RecordingCursor& cursor() { return m_cursor; }
    LoopbackPinger& pinger() { return m_pinger; }
    // The copy's own networks: 127.0.0.1 unless a test sets others.
    FixedOwnAddresses& ownAddresses() { return m_own; }
    RecordingAudioPlayer& audio() { return m_audio; }
    // Offers the voices of testVoices().
    RecordingSpeechEngine& speech() { return m_speech; }
    // Another engine in place of the recorder; before start.
    void useSpeech(SpeechEngine* engine) { m_speechInUse = engine; }
    // Another clock in place of the real one; before start.
    void useClock(Clock* clock) { m_clockInUse = clock; }
    // Off until a test switches it on.
    FixedScreenSaver& screenSaver() { return m_screenSaver; }
    // The desktop notices the copy raised.
    RecordingNotifier& notifier() { return m_notifier; }

private:
    QTemporaryDir m_dir;
    QString m_appPath;
    quint16 m_port;
    Clock m_clock;
    Clock* m_clockInUse = &m_clock;
    ScriptedPrompter m_prompter;
    MemoryClipboard m_clipboard;
    RecordingDesktop m_desktop;
    RecordingCursor m_cursor;
    LoopbackPinger m_pinger;
    FixedOwnAddresses m_own{{QStringLiteral("127.0.0.1")}};
    RecordingAudioPlayer m_audio;
    RecordingSpeechEngine m_speech;
    SpeechEngine* m_speechInUse = &m_speech;
    FixedScreenSaver m_screenSaver;
    RecordingNotifier m_notifier;
    Views m_views;
    std::unique_ptr<FrmMain> m_frm;
};

// The voices a test copy's engine offers, in the engine's order.
QList<SpeechVoice> testVoices();

// The shipped preset configuration.
QString presetPath();

}  // namespace vonnel::test
