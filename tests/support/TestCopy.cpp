#include "support/TestCopy.h"

#include "core/IniStore.h"
#include "shell/Startup.h"
#include "core/CopyContext.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QThread>
#include <QTimer>

#include <QHostAddress>

namespace vonnel::test {

QString presetPath()
{
    return QStringLiteral(VONNEL_SOURCE_DIR "/dist/vonnel.ini.preset");
}

QList<SpeechVoice> testVoices()
{
    return {{QStringLiteral("flite"), QStringLiteral("en_GB"), QStringLiteral("awb")},
            {QStringLiteral("flite"), QStringLiteral("en_US"), QStringLiteral("kal")},
            {QStringLiteral("flite"), QStringLiteral("en_US"), QStringLiteral("slt")},
            {QStringLiteral("speechd"), QStringLiteral("de_DE"), QStringLiteral("male1")}};
}

quint16 freePort()
{
    // Ports are handed out apart from each other, so a copy that moves to
    // the next port or two never lands on another test's copy.
    QTcpServer probe;
    for (int attempt = 0; attempt < 50; ++attempt) {
        if (!probe.listen(QHostAddress::Any, 0))
            continue;
        const quint16 p = probe.serverPort();
        probe.close();
        if (p > 60000)
            continue;
        bool clear = true;
        for (quint16 k = 1; k <= 6 && clear; ++k) {
            QTcpServer next;
            clear = next.listen(QHostAddress::Any, quint16(p + k));
        }
        if (clear)
            return p;
    }
    return 0;
}

bool waitUntil(const std::function<bool()>& condition, int timeoutMs)
{
    QElapsedTimer t;
    t.start();
    while (!condition()) {
        if (t.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
    return true;
}

bool spin(const std::function<bool()>& condition, int timeoutMs)
{
    QElapsedTimer t;
    t.start();
    while (!condition()) {
        if (t.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    }
    return true;
}

QByteArray randomBytes(qsizetype n, quint32 seed)
{
    QRandomGenerator gen(seed);
    QByteArray b(n, Qt::Uninitialized);
    gen.fillRange(reinterpret_cast<quint32*>(b.data()), n / 4);
    for (qsizetype i = (n / 4) * 4; i < n; ++i)
        b[i] = char(gen.generate());
    return b;
}

bool writeRandomFile(const QString& path, qint64 n, quint32 seed)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    QRandomGenerator gen(seed);
    QByteArray block(1 << 20, Qt::Uninitialized);
    for (qint64 left = n; left > 0; left -= block.size()) {
        gen.fillRange(reinterpret_cast<quint32*>(block.data()), block.size() / 4);
        const qint64 part = qMin<qint64>(left, block.size());
        if (f.write(block.constData(), part) != part)
            return false;
    }
    return true;
}

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void pump(int ms)
{
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < ms) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
}

TestCopy::TestCopy(quint16 port, const QList<QPair<QString, QString>>& settings)
    : m_port(port ? port : freePort()), m_speech(testVoices())
{
    m_appPath = m_dir.path() + QLatin1Char('/');
    QFile::copy(presetPath(), file(QStringLiteral("vonnel.ini")));
    QFile(file(QStringLiteral("vonnel.ini")))
        .setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    set(QStringLiteral("LocalPort"), QString::number(m_port));
    set(QStringLiteral("RemotePort"), QString::number(m_port));
    // Past the first starts, when the password set-up runs.
    set(QStringLiteral("Usage"), QStringLiteral("10"));
    set(QStringLiteral("No Network Info Display"), QStringLiteral("1"));
    // A test's copy ends without the exit question and calls without
    // keeping the port, unless the test asks for the preset's choices.
    set(QStringLiteral("Confirm Exit"), QStringLiteral("0"));
    set(QStringLiteral("Permanent Port"), QStringLiteral("0"));
    for (const auto& kv : settings)
        set(kv.first, kv.second);
}

TestCopy::~TestCopy()
{
    if (m_frm && !m_frm->ctx().ProgramExiting)
        m_frm->requestClose(false);
    m_frm.reset();
}

void TestCopy::set(const QString& key, const QString& value)
{
    WriteIni(kSection, key, value, file(QStringLiteral("vonnel.ini")));
}

QString TestCopy::get(const QString& key) const
{
    return ReadIni(kSection, key, file(QStringLiteral("vonnel.ini")));
}

bool TestCopy::start(const QString& commandLine)
{
    CopyEnvironment env;
    env.appPath = m_appPath;
    env.commandLine = commandLine;
    env.headless = true;
    env.prompter = &m_prompter;
    env.clock = m_clockInUse;
    env.clipboard = &m_clipboard;
    env.desktop = &m_desktop;
    env.cursor = &m_cursor;
    env.pinger = &m_pinger;
    env.ownAddresses = &m_own;
    env.audio = &m_audio;
    env.speech = m_speechInUse;
    env.screenSaver = &m_screenSaver;
    env.notifier = &m_notifier;
    env.views = &m_views;
    m_frm = std::make_unique<FrmMain>(env);
    if (beforeStart)
        beforeStart(*m_frm);
    return startCopy(*m_frm);
}

namespace {

// Probes side by side without a socket: loopback addresses the pinger lets
// answer do so (after their delay), the rest run out after their time.
class LoopbackProber : public EchoProber {
public:
    LoopbackProber(LoopbackPinger& pinger, QObject* parent) : EchoProber(parent), m_pinger(pinger) {}
    void probe(quint64 ticket, const QString& address, int timeoutMs) override
    {
        m_pinger.probed << address;
        const bool answers = m_pinger.answers(address);
        const int delay = answers ? (m_pinger.answerDelayMs ? m_pinger.answerDelayMs(address) : 0)
                                  : timeoutMs;
        finish(ticket, answers, delay);
    }
    void cancelAll() override { ++m_generation; }

private:
    void finish(quint64 ticket, bool answered, int afterMs)
    {
        const quint64 generation = m_generation;
        QTimer::singleShot(afterMs, this, [=, this] {
            if (generation == m_generation)
                Q_EMIT probeDone(ticket, answered,
                                 answered ? EchoStatus::Success : EchoStatus::TimedOut, afterMs);
        });
    }
    LoopbackPinger& m_pinger;
    quint64 m_generation = 0;
};

}  // namespace

void LoopbackPinger::usePlatform(EchoPlatform* platform)
{
    m_real = std::make_unique<Pinger>(platform);
    m_real->setUnavailableNotice([this](const QString& why) { tellUnavailable(why); });
}

bool LoopbackPinger::answers(const QString& address) const
{
    const std::optional<quint32> target = parseDottedQuad(address);
    if (!target || !QHostAddress(*target).isLoopback())
        return false;
    return liveOnly.isEmpty() || liveOnly.contains(address);
}

bool LoopbackPinger::echo(const QString& address, int timeoutMs)
{
    return m_real ? m_real->echo(address, timeoutMs) : answers(address);
}

EchoResult LoopbackPinger::sendEcho(const QString& address, int timeoutMs)
{
    if (m_real)
        return m_real->sendEcho(address, timeoutMs);
    EchoResult r;
    if (!parseDottedQuad(address)) {
        r.status = EchoStatus::BadDestination;
    } else if (echo(address)) {
        r.status = EchoStatus::Success;
        r.data = kEchoData;
    } else {
        r.status = EchoStatus::TimedOut;
    }
    return r;
}

std::unique_ptr<EchoProber> LoopbackPinger::makeProber(QObject* parent)
{
    if (m_real)
        return m_real->makeProber(parent);
    return std::make_unique<LoopbackProber>(*this, parent);
}

}  // namespace vonnel::test
