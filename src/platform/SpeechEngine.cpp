#include "platform/SpeechEngine.h"

#include <QEventLoop>
#include <QLocale>
#include <QTextToSpeech>
#include <QTimer>
#include <QVoice>
#include <algorithm>
#include <optional>
#include <tuple>

namespace vonnel {

void RecordingSpeechEngine::say(const QString& text, double rate, double pitch, double volume,
                                const SpeechVoice& voice)
{
    said.append(Utterance{text, rate, pitch, volume, voice});
}

// --- the system's engines --------------------------------------------------------------

namespace {
// Lines given while one is spoken wait their turn; a peer that sends line
// after line cannot pile up more than this many.
constexpr qsizetype kMaxWaiting = 32;

struct Line {
    QString text;
    double rate, pitch, volume;
    SpeechVoice voice;
};
}  // namespace

struct SystemSpeechEngine::Engine {
    std::unique_ptr<QTextToSpeech> tts;
    QString name;  // of the engine tts is
    QList<Line> waiting;
    // From a say until the engine falls silent again: the engine takes a
    // line up a moment after it was given.
    bool busy = false;
    int started = 0;
    QTimer release;
    std::optional<QList<SpeechVoice>> voices;
};

SystemSpeechEngine::SystemSpeechEngine(QObject* parent)
    : SpeechEngine(parent), m_engine(std::make_unique<Engine>())
{
    m_engine->release.setSingleShot(true);
    m_engine->release.setInterval(kReleaseAfterMs);
    connect(&m_engine->release, &QTimer::timeout, this, [this] {
        if (!speaking())
            dropEngine();
    });
}

SystemSpeechEngine::~SystemSpeechEngine()
{
    m_engine->waiting.clear();
    dropEngine();
}

void SystemSpeechEngine::dropEngine()
{
    Engine& e = *m_engine;
    if (!e.tts)
        return;
    // An engine taken away in mid-line still has its audio stream open on
    // its own thread, and tearing that down under it crashes: it is
    // stopped first and given a moment to close the stream.
    if (e.tts->state() == QTextToSpeech::Speaking) {
        QEventLoop loop;
        connect(e.tts.get(), &QTextToSpeech::stateChanged, &loop, [&loop](QTextToSpeech::State s) {
            if (s != QTextToSpeech::Speaking)
                loop.quit();
        });
        QTimer::singleShot(kStopWaitMs, &loop, &QEventLoop::quit);
        e.tts->stop();
        if (e.tts->state() == QTextToSpeech::Speaking)
            loop.exec(QEventLoop::ExcludeUserInputEvents);
    }
    e.busy = false;
    e.tts.reset();
}

void SystemSpeechEngine::setReleaseAfter(int ms)
{
    m_engine->release.setInterval(ms);
}

int SystemSpeechEngine::startedSpeaking() const
{
    return m_engine->started;
}

bool SystemSpeechEngine::holdsEngine() const
{
    return m_engine->tts != nullptr;
}

bool SystemSpeechEngine::available()
{
    return !QTextToSpeech::availableEngines().isEmpty();
}

QList<SpeechVoice> SystemSpeechEngine::voices()
{
    if (m_engine->voices)
        return *m_engine->voices;
    QList<SpeechVoice> all;
    QStringList engines = QTextToSpeech::availableEngines();
    engines.sort();
    for (const QString& name : engines) {
        QTextToSpeech tts(name);
        if (tts.state() == QTextToSpeech::Error)
            continue;
        for (const QLocale& locale : tts.availableLocales()) {
            tts.setLocale(locale);
            for (const QVoice& v : tts.availableVoices())
                all.append(SpeechVoice{name, locale.name(), v.name()});
        }
    }
    std::sort(all.begin(), all.end(), [](const SpeechVoice& a, const SpeechVoice& b) {
        return std::tie(a.engine, a.locale, a.name) < std::tie(b.engine, b.locale, b.name);
    });
    all.erase(std::unique(all.begin(), all.end()), all.end());
    m_engine->voices = all;
    return all;
}

void SystemSpeechEngine::say(const QString& text, double rate, double pitch, double volume,
                             const SpeechVoice& voice)
{
    Engine& e = *m_engine;
    if (speaking()) {
        if (e.waiting.size() < kMaxWaiting)
            e.waiting.append(Line{text, rate, pitch, volume, voice});
        return;
    }
    e.release.stop();
    // An engine that failed the last line (a lost audio stream) starts afresh.
    if (!e.tts || (!voice.engine.isEmpty() && voice.engine != e.name) ||
        e.tts->state() == QTextToSpeech::Error) {
        dropEngine();
        e.tts = voice.engine.isEmpty() ? std::make_unique<QTextToSpeech>()
                                       : std::make_unique<QTextToSpeech>(voice.engine);
        e.name = e.tts->engine();
        connect(e.tts.get(), &QTextToSpeech::stateChanged, this, [this](QTextToSpeech::State s) {
            if (s == QTextToSpeech::Speaking) {
                ++m_engine->started;
                return;
            }
            // The next line in turn, or the engine is let go a while later.
            Engine& en = *m_engine;
            en.busy = false;
            if (!en.waiting.isEmpty()) {
                const Line next = en.waiting.takeFirst();
                QTimer::singleShot(0, this, [this, next] {
                    say(next.text, next.rate, next.pitch, next.volume, next.voice);
                });
            } else {
                en.release.start();
            }
        });
    }
    QTextToSpeech& tts = *e.tts;
    if (!voice.locale.isEmpty())
        tts.setLocale(QLocale(voice.locale));
    for (const QVoice& v : tts.availableVoices())
        if (v.name() == voice.name) {
            tts.setVoice(v);
            break;
        }
    tts.setRate(std::clamp(rate, -1.0, 1.0));
    tts.setPitch(std::clamp(pitch, -1.0, 1.0));
    tts.setVolume(std::clamp(volume, 0.0, 1.0));
    e.busy = tts.state() != QTextToSpeech::Error;
    tts.say(text);
    if (!e.busy)
        e.release.start();
}

void SystemSpeechEngine::stop()
{
    m_engine->waiting.clear();
    if (m_engine->tts)
        m_engine->tts->stop();
    m_engine->busy = false;
    if (m_engine->tts)
        m_engine->release.start();
}

bool SystemSpeechEngine::speaking() const
{
    return m_engine->tts &&
           (m_engine->busy || m_engine->tts->state() == QTextToSpeech::Speaking);
}

std::unique_ptr<SpeechEngine> makeSpeechEngine(bool headless)
{
    if (!headless)
        return std::make_unique<SystemSpeechEngine>();
    return std::make_unique<RecordingSpeechEngine>();
}

}  // namespace vonnel
