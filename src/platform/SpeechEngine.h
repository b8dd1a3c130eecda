#pragma once
// The speech engine of a copy: the voices the system offers and one
// utterance at a time. Rate and pitch run from -1 to 1 (0 is the voice's
// own), volume from 0 to 1. Nothing here blocks or reports an error: a
// missing engine or voice is simply not heard.

#include <QObject>
#include <QString>
#include <QList>
#include <memory>

namespace vonnel {

// One voice: the engine that offers it, its locale as QLocale names it ("en_US") and
// its name within that engine and locale.
struct SpeechVoice {
    QString engine;
    QString locale;
    QString name;
    bool operator==(const SpeechVoice&) const = default;
};

class SpeechEngine : public QObject {
    Q_OBJECT
public:
    explicit SpeechEngine(QObject* parent = nullptr) : QObject(parent) {}
    ~SpeechEngine() override = default;

    // Every voice of every engine, ordered by engine, locale and name, so
    // a list position means the same voice from one start to the next.
    virtual QList<SpeechVoice> voices() = 0;
    // Speaks text in the voice, cutting off whatever was being spoken.
    virtual void say(const QString& text, double rate, double pitch, double volume,
                     const SpeechVoice& voice) = 0;
    // Cuts off what is being spoken.
    virtual void stop() = 0;
    // Whether an utterance is under way.
    virtual bool speaking() const = 0;
    // Whether any engine is there to speak at all.
    virtual bool available() = 0;
};

// Writes down what it is asked and speaks nothing: a copy without windows
// or without an engine, and every test.
class RecordingSpeechEngine : public SpeechEngine {
    Q_OBJECT
public:
    explicit RecordingSpeechEngine(QList<SpeechVoice> voices = {}, QObject* parent = nullptr)
        : SpeechEngine(parent), offered(std::move(voices)) {}

    struct Utterance {
        QString text;
        double rate = 0, pitch = 0, volume = 0;
        SpeechVoice voice;
    };
    // What was said, in order.
    QList<Utterance> said;
    // How many times speech was cut off.
    int stops = 0;
    // The voices this engine pretends to have.
    QList<SpeechVoice> offered;

    QList<SpeechVoice> voices() override { return offered; }
    void say(const QString& text, double rate, double pitch, double volume,
             const SpeechVoice& voice) override;
    void stop() override { ++stops; }
    bool speaking() const override { return false; }
    bool available() override { return true; }
};

// The system's engines through Qt's text-to-speech. An engine is made only
// when it is needed and let go a while after it has finished speaking, so
// a copy that is not speaking holds no engine, no audio stream and no
// thread of one.
class SystemSpeechEngine : public SpeechEngine {
    Q_OBJECT
public:
    explicit SystemSpeechEngine(QObject* parent = nullptr);
    ~SystemSpeechEngine() override;

    QList<SpeechVoice> voices() override;
    void say(const QString& text, double rate, double pitch, double volume,
             const SpeechVoice& voice) override;
    void stop() override;
    bool speaking() const override;
    bool available() override;

    // Whether an engine is held now.
    bool holdsEngine() const;
    // How many times an engine has reported that it began to speak.
    int startedSpeaking() const;
    // How long an engine is kept after it fell silent.
    static constexpr int kReleaseAfterMs = 10000;
    void setReleaseAfter(int ms);

private:
    // Lets the engine go; one in mid-line is stopped first.
    void dropEngine();
    // How long letting go waits for a stopped engine to fall silent.
    static constexpr int kStopWaitMs = 2000;

    struct Engine;
    std::unique_ptr<Engine> m_engine;
};

// The engine a copy uses when none is given: the system's for a copy with
// windows, a recorder for one without.
std::unique_ptr<SpeechEngine> makeSpeechEngine(bool headless);

}  // namespace vonnel
