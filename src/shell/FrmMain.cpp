#include "shell/FrmMain.h"

#include "access/Encryption.h"
#include "connection/Connection.h"
#include "shell/CommandControl.h"
#include "shell/SessionRecords.h"
#include "transfer/Transfer.h"
#include "wire/LiveTyping.h"
#include "wire/Receiver.h"
#include "core/CopyLock.h"
#include "core/IniStore.h"
#include "core/Logs.h"
#include "core/Translator.h"
#include "platform/Clock.h"
#include "platform/Cursor.h"
#include "platform/Desktop.h"
#include "platform/Pinger.h"
#include "platform/Prompter.h"
#include "shell/Views.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>
#include <QThread>
#include <optional>

namespace vonnel {

FrmMain::FrmMain(const CopyEnvironment& env, QObject* parent)
    : QObject(parent),
      m_env(env),
      m_translator(std::make_unique<Translator>(env.appPath)),
      m_iniWatch(std::make_unique<IniFileWatch>(env.appPath + QStringLiteral("vonnel.ini"))),
      m_logs(std::make_unique<Logs>(env.appPath, *env.clock))
{
    for (int i = 0; i < 2; ++i) {
        m_winsock[size_t(i)] = std::make_unique<Winsock>(i);
        m_txtClient[size_t(i)] =
            std::make_unique<TextPane>(QStringLiteral("txtClient(%1)").arg(i));
    }
    if (!m_env.pinger) {
        m_ownPinger = std::make_unique<Pinger>();
        m_env.pinger = m_ownPinger.get();
    }
    if (!m_env.cursor) {
        m_ownCursor = std::make_unique<Cursor>();
        m_env.cursor = m_ownCursor.get();
    }
    tTimer1.setInterval(60000);
    tTimer2.setInterval(5000);
    m_connection = std::make_unique<Connection>(*this);
    m_receiver = std::make_unique<Receiver>(*this);
    m_typing = std::make_unique<LiveTyping>(*this);
    m_transfer = std::make_unique<Transfer>(*this);
    m_encryption = std::make_unique<Encryption>(*this);
    m_records = std::make_unique<SessionRecords>(*this);

    // Routines that live in one subsystem and are called from another.
    connect(this, &FrmMain::sessionOpened, this, &FrmMain::aftOptSet);
    connect(&receiver(), &Receiver::updateRequested, this, &FrmMain::mnuUpdate_Click);
    connect(this, &FrmMain::sessionEnded, this, [this] {
        typing().keySent = false;
    });
    // The counters belong to one session: none is carried past its end or
    // into the next one.
    const auto resetCounters = [this] {
        bytesSentCount = 0;
        arrivedLength = 0;
        stStatusbar.setText(10, QString());
        stStatusbar.setText(11, QString());
        stStatusbar.setText(3, QString::number(txtServer.length()) + QStringLiteral(" - ") +
                                   QString::number(txtClient().length()));
    };
    connect(this, &FrmMain::sessionEnded, this, resetCounters);
    connect(this, &FrmMain::sessionOpened, this, resetCounters);
    receiver().keySent = [this] { return typing().keySent; };
    receiver().cSendFileCheck = [this](QString& data, QByteArray& bytes) {
        return transfer().cSendFileCheck(data, bytes);
    };
    receiver().frameArrival = [this](QByteArray& bytes) {
        return transfer().dataFrame(bytes, 0);
    };
    receiver().joinArrival = [this](const QByteArray& bytes, QList<QByteArray>& parts) {
        return transfer().joinArrival(bytes, parts);
    };
    connect(&receiver(), &Receiver::formatReceived, &typing(), &LiveTyping::receiveFormat);
    connect(&receiver(), &Receiver::refreshAnswerNeedsSettings, &typing(), &LiveTyping::sentSetting);
    typing().commands().connectToAddress = [this](const QString& host, const QString& port) {
        connection().connectTo(host, port);
    };
    m_caption = titleWithVersion();
}

FrmMain::~FrmMain() = default;

// --- settings ---------------------------------------------------------------

QString FrmMain::setting(const QString& key) const
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

void FrmMain::writeSetting(const QString& key, const QString& value) const
{
    WriteIni(kSection, key, value, iniPath());
}

double FrmMain::settingNumber(const QString& key) const
{
    return iniNumber(setting(key));
}

int FrmMain::settingInt(const QString& key) const
{
    return iniInt(setting(key));
}

bool FrmMain::settingFlag(const QString& key) const
{
    return flagByNumber(setting(key));
}

QString FrmMain::translate(const QString& key, const QString& fallback) const
{
    return m_translator->translate(key, fallback);
}

void FrmMain::setPinger(Pinger* p)
{
    m_env.pinger = p ? p : m_ownPinger.get();
    if (!m_env.pinger) {
        m_ownPinger = std::make_unique<Pinger>();
        m_env.pinger = m_ownPinger.get();
    }
}

// --- window model -----------------------------------------------------------

void FrmMain::setCaption(const QString& c)
{
    if (c == m_caption)
        return;
    m_caption = c;
    Q_EMIT captionChanged();
}

QString FrmMain::titleWithVersion() const
{
    return kTitle + QLatin1Char(' ') + QString::number(kMajor) + QLatin1Char('.') +
           QString::number(kMinor);
}

void FrmMain::setVisible(bool v)
{
    if (v == m_visible)
        return;
    m_visible = v;
    Q_EMIT visibilityChanged(v);
}

void FrmMain::setWindowState(int s)
{
    if (s == m_windowState)
        return;
    m_windowState = s;
    Q_EMIT windowStateChanged(s);
}

// --- socket set -------------------------------------------------------------

bool FrmMain::IsConnected() const
{
    if (ProgramExiting)
        return false;
    return m_winsock[0]->State() == Winsock::sckConnected;
}

void FrmMain::checkStatus()
{
    const QString minute = translate(QStringLiteral("Minute"), QStringLiteral("min"));
    const QString connecting = translate(QStringLiteral("Connecting"));
    const QString pending = translate(QStringLiteral("Connection Pending"));
    const QString ready = translate(QStringLiteral("Ready"));
    const QString closed = translate(QStringLiteral("Connection Closed"));
    const QString wsError = translate(QStringLiteral("Winsock Error"));
    const QString resolving = translate(QStringLiteral("Resolving Host"));
    const QString resolved = translate(QStringLiteral("Host Resolved"));
    const QString reset = translate(QStringLiteral(" - Click here to reset to Listening mode"));

    // During a paste the panels are left as they stand.
    if (PasteInProgress)
        return;

    Winsock& ws = winsock(sIdx);
    auto paintClosed = [&](const QString& text) {
        if (views().isVisible(QStringLiteral("frmDraw"))) {
            Q_EMIT drawStatus(1, QString(), StatePicture::picOff);
            Q_EMIT drawStatus(2, text, StatePicture::None);
        } else {
            stStatusbar.setPicture(1, StatePicture::picOff);
        }
    };
    if (ws.State() == Winsock::sckConnected) {
        stStatusbar.setText(2, translate(QStringLiteral("Connected:")) + QLatin1Char(' ') +
                                   ws.RemoteHostIP());
        txtServer.setEnabled(true);
        const qint64 mins = SessionDateStart.isValid()
                                ? SessionDateStart.secsTo(clock().now()) / 60
                                : 0;
        stStatusbar.setText(4, QString::number(mins) + QLatin1Char(' ') + minute);
        EnableDisconnect();
    }
    if (ws.State() == Winsock::sckConnecting)
        stStatusbar.setText(2, connecting + QStringLiteral(" ..."));
    if (ws.State() == Winsock::sckConnectionPending)
        stStatusbar.setText(2, pending);
    if (ws.State() == Winsock::sckClosing)
        stStatusbar.setText(2, QStringLiteral("..."));
    if (ws.State() == Winsock::sckListening) {
        stStatusbar.setText(2, ready);
        EnableConnect();
    }
    if (ws.State() <= Winsock::sckClosed) {
        stStatusbar.setText(2, closed + reset);
        paintClosed(closed + reset);
        EnableConnect();
    }
    if (ws.State() == Winsock::sckError) {
        stStatusbar.setText(2, wsError + QLatin1Char(':'));
        paintClosed(wsError + QLatin1Char(':'));
        EnableConnect();
    }
    if (ws.State() == Winsock::sckResolvingHost)
        stStatusbar.setText(2, resolving + QStringLiteral("..."));
    if (ws.State() == Winsock::sckHostResolved)
        stStatusbar.setText(2, resolved);
}

void FrmMain::EnableConnect()
{
    controls.setEnabled(QStringLiteral("mnuConnect"), true);
    controls.setEnabled(toolbarButton(1), true);
    controls.setEnabled(QStringLiteral("mnuDisconnect"), false);
    controls.setEnabled(toolbarButton(2), false);
}

void FrmMain::EnableDisconnect()
{
    controls.setEnabled(QStringLiteral("mnuConnect"), false);
    controls.setEnabled(toolbarButton(1), false);
    controls.setEnabled(QStringLiteral("mnuDisconnect"), true);
    controls.setEnabled(toolbarButton(2), true);
}

void FrmMain::cmdHiddenReady_Click()
{
    NotReadySent = false;
    yieldEvents();
    if (!ProgramExiting && IsConnected())
        xSendData(QStringLiteral("&&!Ready!&&"));
}

void FrmMain::cmdHiddenNotReady_Click()
{
    NotReadySent = true;
    yieldEvents();
    if (!ProgramExiting && IsConnected())
        xSendData(QStringLiteral("&&!NotReady!&&"));
}

void FrmMain::stStatusbar_PanelClick(int panel)
{
    if (stStatusbar.panel(panel).key != QLatin1String("Status"))
        return;
    const QString text = stStatusbar.text(2);
    if (text == translate(QStringLiteral("Winsock Error: Connection time out"))) {
        prompter().msgBox(translate(QStringLiteral("Possible Error:")) +
                              QStringLiteral(" \r\t") + QStringLiteral("Invalid Remote IP Address") +
                              QStringLiteral("\r\t") +
                              translate(QStringLiteral("Invalid Remote Port Address")) +
                              QStringLiteral("\r\t") +
                              translate(QStringLiteral("Remote user is not in Ready mode")),
                          MsgStyle::Information);
        stStatusbar.setToolTip(2, QString());
        connection().mnuDisconnect_Click();
    }
    if (stStatusbar.text(2) == translate(QStringLiteral("Ready")))
        stStatusbar.setToolTip(2, translate(QStringLiteral("Ready to be connected")));
    if (stStatusbar.text(2).startsWith(translate(QStringLiteral("Connection Closed"))) &&
        winsock(sIdx).State() == Winsock::sckClosed)
        connection().mnuDisconnect_Click();
    if (stStatusbar.text(2) ==
        translate(QStringLiteral("Socket Error: Disconnected by remote computer")))
        stStatusbar.setToolTip(2, translate(QStringLiteral("Click Refresh button to reset")));
    checkStatus();
}

void FrmMain::idleDelay(double& seconds, bool keepPointer)
{
    if (seconds == 0)
        seconds = settingNumber(QStringLiteral("Connect Idle"));
    if (seconds <= 0)
        return;
    // The hourglass is asked for before the spin and the normal pointer
    // after it. No events run meanwhile, and the window system is handed
    // pointer changes at the next turn of the event loop: for a wait on
    // its own the user sees a window that does not answer and, depending
    // on the platform, the hourglass for the wait or no change at all; a
    // wait that a blocking send or another wait follows shows the
    // hourglass until the loop runs again.
    std::optional<WaitPointer> busy;
    if (!keepPointer)
        busy.emplace(cursor());
    // No events run meanwhile: nothing may change the socket during it.
    const double start = clock().timer();
    while (clock().timer() < start + seconds)
        QThread::msleep(1);
}

void FrmMain::mnuUpdate_Click()
{
    const QString address = setting(QStringLiteral("Update"));
    QString tool = setting(QStringLiteral("UpdateExe"));
    if (!tool.isEmpty()) {
        // The user's own update tool, from the settings: never peer text.
        if (QFileInfo(tool).isRelative())
            tool = appFile(tool);
        QStringList args = setting(QStringLiteral("UpdateParam")).split(QLatin1Char(' '),
                                                                      Qt::SkipEmptyParts);
        if (!address.isEmpty())
            args << address;
        desktop().startProgram(tool, args);
    } else if (!address.isEmpty()) {
        desktop().openUrl(address);
    }
}

void FrmMain::yieldEvents()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

QString FrmMain::byteCountText(qint64 bytes)
{
    if (bytes <= 1000)
        return QString::number(bytes) + QStringLiteral(" B");
    return QLocale().toString(double(bytes) / 1024.0, 'f', 2) + QStringLiteral(" KB");
}

// --- sending ----------------------------------------------------------------

void FrmMain::sendRaw(const QString& text)
{
    sendRawBytes(toCp1252(text));
}

void FrmMain::sendRawBytes(const QByteArray& bytes)
{
    winsock(0).SendData(bytes);
}

void FrmMain::endProcess(int code)
{
    if (m_ended)
        return;
    m_ended = true;
    m_exitCode = code;
    ProgramExiting = true;
    Q_EMIT endRequested(code);
}

}  // namespace vonnel
