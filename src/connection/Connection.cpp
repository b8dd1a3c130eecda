#include "connection/Connection.h"

#include "access/Encryption.h"

#include "connection/AddressServices.h"
#include "connection/IpList.h"
#include "connection/LoginDialog.h"
#include "connection/PropertyDialog.h"
#include "core/IniStore.h"
#include "core/Logs.h"
#include "platform/Prompter.h"
#include "shell/FrmMain.h"
#include "shell/Views.h"

#include <QHostAddress>
#include <QLocale>
#include <QNetworkInterface>
#include <QThread>

namespace vonnel {

namespace {
const QString kCrLf = QStringLiteral("\r\n");
}

Connection::Connection(FrmMain& frm)
    : QObject(&frm), m_frm(frm), m_address(std::make_unique<AddressServices>(frm))
{
    for (int i = 0; i < 2; ++i) {
        Winsock& ws = frm.winsock(i);
        // Decisions and ends of sessions run from the event loop, never
        // inside the socket's own signal.
        connect(&ws, &Winsock::ConnectionRequest, this, &Connection::Winsock_ConnectionRequest,
                Qt::QueuedConnection);
        connect(&ws, &Winsock::Connect_, this, &Connection::winsock_Connect, Qt::QueuedConnection);
        connect(&ws, &Winsock::Close_, this, &Connection::Winsock_Close, Qt::QueuedConnection);
        connect(&ws, &Winsock::Error, this, &Connection::Winsock_Error);
    }
    Winsock& ws = frm.winsock(0);
    connect(&ws, &Winsock::SendComplete, this, &Connection::Winsock_SendComplete);
    connect(&ws, &Winsock::SendProgress, this, &Connection::Winsock_SendProgress);
    // The first data of a session is what the caller waits for.
    connect(&ws, &Winsock::DataArrival, this, [this](int index, qint64) {
        if (index == 0)
            m_frm.RemoteResponded = true;
    });
}

Connection::~Connection() = default;

void Connection::spin()
{
    m_frm.yieldEvents();
    QThread::usleep(50);
}

void Connection::showMain()
{
    FrmMain& f = m_frm;
    if (!f.isVisible() || f.windowState() == FrmMain::vbMinimized) {
        f.setVisible(true);
        f.setWindowState(FrmMain::vbNormal);
        f.setVisible(true);
    }
}

bool Connection::isOwnAddress(const QString& text) const
{
    const QString t = text.trimmed();
    Winsock& ws = m_frm.winsock(0);
    if (t.compare(ws.LocalHostName(), Qt::CaseInsensitive) == 0 || t == ws.LocalIP() ||
        t.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0)
        return true;
    QHostAddress a;
    if (!a.setAddress(t))
        return false;
    if (a.isLoopback())
        return true;
    for (const QHostAddress& own : QNetworkInterface::allAddresses())
        if (own.isEqual(a, QHostAddress::ConvertV4MappedToIPv4))
            return true;
    return false;
}

// --- calling out ----------------------------------------------------------------

LoginDialog* Connection::login() const
{
    return m_login && !m_login->unloaded ? m_login.get() : nullptr;
}

LoginDialog* Connection::beginConnect()
{
    FrmMain& f = m_frm;
    if (m_login)
        return nullptr;
    if (f.winsock(f.sIdx).State() == Winsock::sckConnected) {
        f.prompter().msgBox(
            f.translate(QStringLiteral("You have to disconnect before make another connection.")));
        return nullptr;
    }
    f.txtTextMsg.clear();
    if (!f.views().isVisible(QStringLiteral("frmLock")) &&
        !f.views().isVisible(QStringLiteral("frmPassLock")))
        f.txtClient().setEnabled(true);
    m_login = std::make_unique<LoginDialog>(f);
    m_login->Form_Load();
    m_login->Form_Activate();
    return m_login.get();
}

void Connection::endConnect()
{
    // The dialog is gone; nothing may hold it past this point.
    if (m_login)
        m_login->unload();
    m_login.reset();
    m_frm.ConnectionStartedHere = true;
}

void Connection::mnuConnect_Click()
{
    if (m_login)
        return;  // an attempt is under way
    if (beginConnect())
        m_frm.views().runModal(QStringLiteral("frmLogin"));
    endConnect();
}

void Connection::connectTo(const QString& address, const QString& port)
{
    if (m_login)
        return;  // an attempt is under way
    LoginDialog* d = beginConnect();
    if (d) {
        d->cmbIPadr = address;
        if (!port.isEmpty())
            d->txtConnectPort = port;
        d->cmdOK_Click();
    }
    endConnect();
}

void Connection::ConnectProcedure()
{
    FrmMain& f = m_frm;
    const quint16 localPort = quint16(f.settingInt(QStringLiteral("LocalPort")));
    const QString connecting = f.translate(QStringLiteral("Connecting"));
    const QString pleaseWait = f.translate(QStringLiteral("Please wait"));
    const QString second = f.translate(QStringLiteral("second"));
    const QString retryWith = f.translate(QStringLiteral("retry with"));
    const QString portWord = f.translate(QStringLiteral("Port"));
    const QString localPortWord = f.translate(QStringLiteral("Local Port"));
    const QString remotePortWord = f.translate(QStringLiteral("Remote Port"));
    const QString failTo = f.translate(QStringLiteral("Fail to connect to"));
    const QString possible = f.translate(QStringLiteral(
        "Possible Error: Invalid Remote Port Address OR Remote user is not in Ready mode"));
    const QString errorWord = f.translate(QStringLiteral("Error"));
    const QString abortWord = f.translate(QStringLiteral("Abort"));

    auto report = [this](const QString& line) {
        if (LoginDialog* d = login())
            d->appendStatus(line);
    };
    auto status = [this, &f](const QString& text) {
        f.stStatusbar.setText(2, text);
        if (LoginDialog* d = login()) {
            d->lblStatus = text;
            d->notify();
        }
    };
    auto clearTips = [this, &f] {
        f.stStatusbar.setToolTip(2, QString());
        if (LoginDialog* d = login())
            d->cmdAbortToolTip.clear();
    };

    if (LoginDialog* d = login())
        d->setAbort(abortWord, QStringLiteral("Abort"));
    Winsock& ws = f.winsock(f.sIdx);
    ws.Close();
    // Only the answer to this call counts: a session this side ended itself
    // left the flag of its own first data behind.
    f.RemoteResponded = false;
    m_callRefused = false;

    const QString address = f.setting(QStringLiteral("Previous IP Address"));
    const QString portText = f.setting(QStringLiteral("Connect Port"));
    const quint16 remotePort = quint16(iniInt(portText));
    double idle = f.settingNumber(QStringLiteral("Connect Idle"));
    ws.setLocalPort(localPort);

    // A failure that was not expected: back to listening, and say why.
    auto unexpected = [&](const QString& description) {
        ws.Close();
        f.idleDelay0();
        ws.Listen();
        const QString text = errorWord + QStringLiteral(": ") + description;
        report(text);
        f.stStatusbar.setText(2, text);
    };
    // All retries used: the report, and listening again.
    auto giveUp = [&](int lastPort) {
        report(failTo + QStringLiteral(" <") + address + QStringLiteral(" : ") + portWord +
               QLatin1Char(' ') + QString::number(remotePort) + QStringLiteral(" -- ") +
               QString::number(lastPort) + QLatin1Char('>'));
        report(possible);
        if (LoginDialog* d = login())
            d->setAbort(f.translate(QStringLiteral("Close")), QStringLiteral("Close"));
        ws.Close();
        f.yieldEvents();
        f.checkStatus();
        if (!f.StopConnecting) {
            ws.setLocalPort(quint16(f.settingInt(QStringLiteral("LocalPort"))));
            ws.Listen();
            f.checkStatus();
            f.PeerHostName.clear();
        }
    };
    auto secondsLeft = [&f](const QDateTime& start, qint64 ms) {
        return QString::number((ms - start.msecsTo(f.clock().now())) / 1000);
    };

    status(connecting + QStringLiteral(" ......"));
    f.stStatusbar.setVisible(2, true);
    f.idleDelayFor(0.5);

    int error = 0;
    if (ws.State() <= Winsock::sckClosed) {
        error = ws.Connect(address, remotePort);
        report(connecting + QStringLiteral(" ....."));
    }
    if (error != 0 && error != Winsock::errAddressInUse) {
        unexpected(ws.lastErrorText());
        return;
    }

    int timeout = f.settingInt(QStringLiteral("Incomming Connection Timeout"));
    if (timeout == 0)
        timeout = 5;
    if (error == 0) {
        const QDateTime start = f.clock().now();
        int turns = 0;
        while (ws.State() != Winsock::sckConnected) {
            if (f.StopConnecting)
                return;
            if (f.IsConnected() || start.msecsTo(f.clock().now()) > qint64(timeout) * 1000)
                break;
            spin();
            if (f.StopConnecting || f.ProgramExiting)
                return;
            if (++turns >= 1500) {
                turns = 0;
                const QString text = connecting + QStringLiteral(": ") +
                                     secondsLeft(start, qint64(timeout) * 1000) +
                                     QLatin1Char(' ') + second;
                f.stStatusbar.setText(2, text);
                if (LoginDialog* d = login())
                    d->setLastStatusLine(text);
            }
        }
        if (ws.State() == Winsock::sckConnected) {
            // The connect event, posted with the state, runs its wait first.
            spin();
            clearTips();
            f.checkStatus();
            return;
        }
    }

    // Retries: the next local port while this one is taken, the next
    // remote port while nobody answers. One counter serves both.
    int counter = 0;
    bool localStep = error == Winsock::errAddressInUse;
    for (;;) {
        if (localStep) {
            do {
                ++counter;
                if (counter > 5) {
                    giveUp(remotePort + counter - 1);
                    return;
                }
                ws.Close();
                f.yieldEvents();
                if (f.ProgramExiting)
                    return;
                ws.setLocalPort(quint16(localPort + counter));
                const QString text = connecting + QStringLiteral(": ") + retryWith +
                                     QLatin1Char(' ') + localPortWord + QLatin1Char(' ') +
                                     QString::number(localPort + counter);
                status(text);
                report(text);
                f.idleDelay(idle);
                error = ws.Listen();  // a test that the port is free
            } while (error == Winsock::errAddressInUse);
            localStep = false;
        }

        ws.Close();
        ++counter;
        if (counter > 5) {
            giveUp(remotePort + counter - 1);
            return;
        }
        const quint16 port = quint16(remotePort + counter);
        const QString text = connecting + QStringLiteral(": ") + retryWith + QLatin1Char(' ') +
                             remotePortWord + QLatin1Char(' ') + QString::number(port);
        status(text);
        report(text);
        f.idleDelay(idle);
        error = ws.Connect(address, port);
        if (error == Winsock::errAddressInUse) {
            localStep = true;
            continue;
        }
        if (error != 0) {
            unexpected(ws.lastErrorText());
            return;
        }
        const QDateTime start = f.clock().now();
        const qint64 waitMs = (qint64(timeout) + 5) * 1000;
        while (ws.State() != Winsock::sckError && ws.State() != Winsock::sckConnected) {
            f.idleDelay(idle);
            if (f.StopConnecting)
                return;
            if (start.msecsTo(f.clock().now()) > waitMs)
                break;
            spin();
            if (f.ProgramExiting)
                return;
        }
        if (ws.State() == Winsock::sckConnected) {
            spin();
            if (LoginDialog* d = login()) {
                d->txtConnectPort = QString::number(port);
                d->notify();
            }
            clearTips();
            f.checkStatus();
            return;
        }
    }
}

// --- the caller's side of the start -----------------------------------------------

void Connection::winsock_Connect(int index)
{
    if (index > 0)
        return;
    FrmMain& f = m_frm;
    Winsock& ws = f.winsock(0);
    f.encryption().beginSession();
    const QString waiting = f.translate(QStringLiteral("Waiting for remote user's response"));
    const QString disconnected = f.translate(QStringLiteral("Error: Disconnected"));

    // The session is up only when the other side's first data came.
    int turns = 0;
    int dots = 0;
    for (;;) {
        if (f.StopConnecting)
            return;
        if (++turns >= 10000) {
            turns = 1;
            dots = dots % 10 + 1;
            const QString text = waiting + QString(dots, QLatin1Char('.'));
            if (LoginDialog* d = login()) {
                d->setLastStatusLine(text);
                d->cmdAbortToolTip = text;
            }
            f.stStatusbar.setText(2, text);
        }
        if (ws.State() == Winsock::sckListening || f.StopConnecting) {
            // Closed before the other side said a word: it did not take the call.
            m_callRefused = !f.StopConnecting;
            if (LoginDialog* d = login())
                d->appendStatus(disconnected);
            if (m_callRefused)
                f.stStatusbar.setText(2, f.translate(refusedText()));
            f.StopConnecting = true;
            return;
        }
        if (f.RemoteResponded)
            break;
        spin();
    }
    if (LoginDialog* d = login()) {
        d->txtStatus.clear();
        d->notify();
    }
    f.encryptOn = f.settingFlag(QStringLiteral("Encrypted"));
    showMain();
    ConnectOK();
    f.EnableDisconnect();
}

void Connection::ConnectOK()
{
    FrmMain& f = m_frm;
    Winsock& ws = f.winsock(f.sIdx);
    f.SessionStartTime = f.clock().timeOfDay();
    f.controls.setEnabled(QStringLiteral("mnuSave"), false);
    f.PeerIP = f.winsock(0).RemoteHostIP();
    f.setting(QStringLiteral("Version Check"));  // compared on the receiving side
    ws.SendData(toCp1252(QStringLiteral("!ver. ") + f.VersionString + QStringLiteral(" ver!")));
    f.encryption().sendKeyOnConnect();
    f.stStatusbar.setText(2, f.translate(QStringLiteral("Connected")));
    f.stStatusbar.setPicture(1, StatePicture::picReady);
    const QString ip = ws.RemoteHostIP();
    f.PeerHostName = address().ResolveAddress(ip);
    f.setCaption(FrmMain::kTitle + QStringLiteral(" - ") + ip + QStringLiteral(" [") +
                 f.PeerHostName + QLatin1Char(']'));
    f.SessionDateStart = f.clock().now();
    f.peerForRecord = ip;
    f.logs().connection(QStringLiteral("Connection with ") + ip + QStringLiteral(" [") +
                        f.PeerHostName + QLatin1Char(']'));
    f.stStatusbar.setText(4, QStringLiteral("0 ") + f.translate(QStringLiteral("min.")));
    Q_EMIT f.ringRequested(f.Ring1);
    Q_EMIT f.sessionOpened();
    f.txtTextMsg.clear();
}

// --- the callee's decision --------------------------------------------------------

void Connection::Winsock_ConnectionRequest(int index, qintptr requestId)
{
    FrmMain& f = m_frm;
    auto fail = [&](const QString& description) {
        f.prompter().msgBox(QStringLiteral("Winsock(") + QString::number(index) +
                                QStringLiteral(") Protocol ConnectionRequest Error") +
                                QLatin1Char('\r') + description + QLatin1Char('\r') +
                                FrmMain::kTitle,
                            MsgStyle::Exclamation);
        Winsock& ws = f.winsock(f.sIdx);
        ws.Close();
        f.idleDelay0();
        ws.Listen();
    };
    const QString outOfRange = QStringLiteral("Subscript out of range");

    f.PeerIP = f.winsock(f.sIdx).RemoteHostIP();
    f.stStatusbar.setText(2, f.translate(QStringLiteral("Connection request from ")) + f.PeerIP +
                                 QStringLiteral("..."));
    f.logs().connection(QStringLiteral("Incomming connection request from ") + f.PeerIP);
    f.txtServer.clear();
    f.txtClient().setEnabled(false);
    f.txtClient().clear();
    f.txtTextMsg.clear();

    const bool badOn = f.settingFlag(QStringLiteral("Detect Bad IP"));
    const bool safeOn = f.settingFlag(QStringLiteral("Detect Safe IP"));

    IpList black(f, IpListKind::Blocked);
    if (badOn && black.exists()) {
        const auto entries = black.readForCall();
        if (!entries) {
            fail(outOfRange);
            return;
        }
        if (IpList::anyMatches(*entries, f.PeerIP)) {
            // Not taken, not answered: the caller hears nothing.
            const QString text =
                f.PeerIP + f.translate(QStringLiteral(" is blocked to be connected"));
            f.stStatusbar.setText(2, text);
            f.logs().connection(text);
            return;
        }
    }

    bool acceptDirectly = f.settingFlag(QStringLiteral("Auto Accept Connection"));
    IpList white(f, IpListKind::Permitted);
    if (safeOn && white.exists()) {
        const auto entries = white.readForCall();
        if (!entries) {
            fail(outOfRange);
            return;
        }
        // A caller absent from the white list is taken without asking; one
        // on it goes by Auto Accept Connection. This order stands.
        if (!IpList::anyMatches(*entries, f.PeerIP))
            acceptDirectly = true;
    }

    if (index == 1 && f.winsock(f.sIdx).State() == Winsock::sckConnected) {
        Winsock& busy = f.winsock(1);
        busy.Close();
        busy.Accept(requestId);
        f.idleDelay0();
        const QString message =
            QStringLiteral("<Paste> ") +
            QStringLiteral("{ Vonnel:: Remote user is currently in session. Please retry later!! }") +
            QStringLiteral("</Paste>");
        if (busy.State() <= Winsock::sckConnected) {
            busy.SendData(toCp1252(message));
            f.idleDelay0();
            busy.Close();
            f.idleDelay0();
            busy.Listen();
        }
    }

    Q_EMIT f.ringRequested(f.Ring3);

    if (!acceptDirectly) {
        int wait = f.settingInt(QStringLiteral("Incomming Connection Timeout"));
        if (wait < 5)
            wait = 5;  // read and adjusted; the box itself has no time limit
        Q_UNUSED(wait);
        // A hidden window: the tray icon says who is calling.
        if (!f.isVisible() || f.windowState() == FrmMain::vbMinimized)
            f.setTrayTip(f.translate(QStringLiteral("From: ")) + f.PeerIP);
        f.PeerHostName = address().ResolveAddress(f.PeerIP);
        if (f.PeerHostName == AddressServices::kFailed)
            f.PeerHostName.clear();
        const Answer a = f.prompter().msgBox(
            f.translate(QStringLiteral("Do you accept connection requested from:")) +
                QLatin1Char(' ') + kCrLf + f.PeerIP + QStringLiteral(" [") + f.PeerHostName +
                QLatin1Char(']'),
            MsgStyle::YesNo | MsgStyle::Information | MsgStyle::Foreground,
            f.translate(QStringLiteral("Connection Request")) + QStringLiteral(" - ") +
                FrmMain::kTitle);
        if (a != Answer::Yes) {
            f.logs().connection(f.PeerIP + QStringLiteral(" is rejected to make a connection"));
            // The request's own status line would stay up: say how it ended.
            f.stStatusbar.setText(
                2, f.PeerIP + f.translate(QStringLiteral(" is rejected to make a connection")));
            Winsock& ws = f.winsock(f.sIdx);
            ws.Close();
            f.idleDelay0();
            ws.Listen();
            f.txtServer.setEnabled(true);
            return;
        }
    }

    f.txtServer.setEnabled(false);
    f.logs().connection(QStringLiteral("Connection with ") + f.PeerIP);
    if (f.views().isVisible(QStringLiteral("frmDraw")))
        f.views().unload(QStringLiteral("frmDraw"));
    f.SessionStartTime = f.clock().timeOfDay();
    f.controls.setEnabled(QStringLiteral("mnuSave"), false);
    f.Ring = f.setting(QStringLiteral("Ring"));
    f.encryption().beginSession();

    showMain();
    f.setCaption(FrmMain::kTitle + QStringLiteral(" - ") + f.PeerIP + QStringLiteral(" [") +
                 f.PeerHostName + QLatin1Char(']'));
    f.views().raiseMain();

    f.sIdx = index;
    Winsock& ws = f.winsock(f.sIdx);
    ws.Close();
    if (ws.Accept(requestId) != 0) {
        fail(ws.lastErrorText());
        return;
    }
    f.peerForRecord = ws.RemoteHostIP();
    f.encryptOn = f.settingFlag(QStringLiteral("Encrypted"));
    f.stStatusbar.setText(2, f.translate(QStringLiteral("Connection from ")) + f.PeerIP +
                                 QStringLiteral("..."));
    f.stStatusbar.setPicture(1, StatePicture::picReady);
    if (f.encryptOn)
        f.stStatusbar.setText(8, f.translate(QStringLiteral("E")));

    // The version message is the first data: the caller waits for it.
    f.setting(QStringLiteral("Version Check"));
    ws.SendData(toCp1252(QStringLiteral("!ver. ") + f.VersionString + QStringLiteral(" ver!")));
    f.encryption().sendKeyOnAccept();
    f.ConnectionStartedHere = false;
    f.checkStatus();

    if (f.PeerHostName.isEmpty() && f.settingNumber(QStringLiteral("No Resolve To Connect")) == 0)
        f.PeerHostName = address().ResolveAddress(ws.RemoteHostIP());
    f.setCaption(FrmMain::kTitle + QStringLiteral(" - ") + ws.RemoteHostIP() +
                 QStringLiteral(" [") + f.PeerHostName + QLatin1Char(']'));
    f.SessionDateStart = f.clock().now();
    f.stStatusbar.setText(4, QStringLiteral("0 ") + f.translate(QStringLiteral("min.")));
    Q_EMIT f.ringRequested(f.Ring1);
    Q_EMIT f.sessionOpened();
    f.txtServer.setEnabled(true);
    f.txtClient().setEnabled(true);
    f.EnableDisconnect();
}

// --- ends -------------------------------------------------------------------------

void Connection::Winsock_Close(int index)
{
    FrmMain& f = m_frm;
    if (index > 0) {
        f.winsock(index).Close();
        return;
    }
    Winsock& ws = f.winsock(f.sIdx);
    f.PeerIP = ws.RemoteHostIP();
    f.RemoteResponded = false;
    f.controls.setEnabled(QStringLiteral("mnuSave"), true);
    Q_EMIT f.ringRequested(f.Ring2);
    f.txtClient().setEnabled(false);
    const qint64 mins =
        f.SessionDateStart.isValid() ? f.SessionDateStart.secsTo(f.clock().now()) / 60 : 0;
    f.stStatusbar.setText(4, QString::number(mins) + QLatin1Char(' ') +
                                 f.translate(QStringLiteral("min.")));
    f.stStatusbar.setText(2, f.translate(QStringLiteral("Connection Closed")));
    f.stStatusbar.setPicture(1, StatePicture::picOff);
    f.stStatusbar.setText(8, QString());
    f.stStatusbar.setText(9, QString());
    Q_EMIT f.sessionEnded();
    ws.Close();
    f.logs().connection(QStringLiteral("Close connection with ") + f.PeerIP);
    f.idleDelay0();
    f.checkStatus();
    ws.setLocalPort(quint16(f.settingInt(QStringLiteral("LocalPort"))));
    f.idleDelay0();
    ws.Listen();
    f.checkStatus();
    f.setCaption(f.titleWithVersion());
    TextPane& client = f.txtClient();
    if (!client.text().isEmpty()) {
        client.caretToEnd();
        client.append(kCrLf + QLatin1Char('[') + f.translate(QStringLiteral("Closed")) +
                      QLatin1Char(']'));
        client.caretToEnd();
    }
    Q_EMIT f.sessionEnded();
    if (f.settingNumber(QStringLiteral("AutoCheck After Session")) != 0)
        f.writeSetting(QStringLiteral("AutoConnect"), QStringLiteral("0"));
    f.EnableConnect();
}

void Connection::Winsock_Error(int index, int, const QString&)
{
    if (index > 0)
        return;
    FrmMain& f = m_frm;
    f.RemoteResponded = false;
    f.setCaption(FrmMain::kTitle);
    f.stStatusbar.setPicture(1, StatePicture::picOff);
    f.stStatusbar.setText(2, QString());

    const bool sessionFailed = login() == nullptr;
    if (LoginDialog* d = login()) {
        // The attempt failed.
        if (d->lastStatusLine() == QLatin1String("Waiting for response..."))
            d->setLastStatusLine(QStringLiteral("Error: Connecting Timeout"));
    } else {
        // The session failed.
        Q_EMIT f.ringRequested(f.Ring4);
        f.stStatusbar.setText(
            2, f.translate(QStringLiteral("Socket Error: Disconnected by remote computer")));
        f.idleDelay0();
        Q_EMIT f.sessionEnded();
        f.logs().connection(QStringLiteral("Close connection with ") + f.PeerIP);
    }

    if (f.settingNumber(QStringLiteral("No Recover Socket Error")) == 0) {
        PropertyDialog& p = propertyDialog();
        p.lblSysMsg = f.translate(QStringLiteral(
            "Socket/Network Error: Verify your setting or click OK to recover it automatically."));
        f.views().runModal(QStringLiteral("frmProperty"));
        unloadProperty();
    }
    // A session lost to a reset or a dead link must not leave the copy
    // deaf to the next caller: unless the recovery put the socket back
    // already, it listens again on its port.
    if (sessionFailed && f.winsock(f.sIdx).State() != Winsock::sckListening) {
        const QString why = f.stStatusbar.text(2);
        f.winsock(f.sIdx).Close();
        ListenOnLocalPort();
        f.stStatusbar.setText(2, why);  // still says why the session ended
    }
    TextPane& client = f.txtClient();
    if (!client.text().isEmpty())
        client.append(kCrLf + f.translate(QStringLiteral("[Closed]")));
    f.EnableConnect();
}

void Connection::mnuDisconnect_Click()
{
    FrmMain& f = m_frm;
    Winsock& ws = f.winsock(f.sIdx);
    f.StopConnecting = true;
    if (f.TransferOnHold) {
        const Answer a = f.prompter().msgBox(
            f.translate(QStringLiteral("You have a file sending/receiving 'on hold',")) + kCrLf +
                f.translate(QStringLiteral("Do you want to continue to exit?")),
            MsgStyle::YesNo | MsgStyle::DefaultButton2,
            QStringLiteral("File Sending/Receiving On Hold"));
        if (a != Answer::Yes)
            return;
    }
    if (ws.State() == Winsock::sckConnected && f.ConnectionStartedHere) {
        f.xSendData(QStringLiteral("^SD"));
        f.ConnectionStartedHere = false;
        f.controls.setEnabled(QStringLiteral("mnuSave"), true);
        f.SessionEndTime = f.clock().timeOfDay();
        Q_EMIT f.sessionEnded();
        f.checkStatus();
    }
    if (ws.State() == Winsock::sckConnected) {
        // The code-7 byte ahead of the close marks the end as ordered.
        f.txtClient().setEnabled(false);
        f.xSendData(QString(QChar(7)));
        ws.Close();
        f.checkStatus();
        ws.setLocalPort(quint16(f.settingInt(QStringLiteral("LocalPort"))));
        ws.Listen();
        f.checkStatus();
        f.controls.setEnabled(QStringLiteral("mnuSave"), true);
        f.SessionEndTime = f.clock().timeOfDay();
        Q_EMIT f.sessionEnded();
        f.checkStatus();
    } else {
        f.controls.setEnabled(toolbarButton(2), false);
        ws.Close();
        f.checkStatus();
        ListenOnLocalPort();
    }
    f.stStatusbar.setText(8, QString());
    f.stStatusbar.setText(9, QString());
    f.setCaption(f.titleWithVersion());
    Q_EMIT f.closeOpenFiles();
}

// --- local identity and port ------------------------------------------------------------

void Connection::ListenOnLocalPort()
{
    FrmMain& f = m_frm;
    Winsock& ws = f.winsock(f.sIdx);
    ws.setLocalPort(quint16(f.settingInt(QStringLiteral("LocalPort"))));
    ws.Listen();
    f.checkStatus();
    if (ws.State() == Winsock::sckListening)
        return;
    const quint16 next = quint16(ws.LocalPort() + 1);
    ws.setLocalPort(next);
    ws.Listen();
    const QString text = QStringLiteral("Error: Local Port Address in use by another program") +
                         kCrLf + QStringLiteral("it will automatically change to");
    f.prompter().msgBox(text, MsgStyle::Information,
                        QStringLiteral("Port Setting") + QLatin1Char(' ') + QString::number(next));
    f.stStatusbar.setTag(2, f.translate(QStringLiteral("Local Port")));
    f.stStatusbar.setText(2, f.stStatusbar.panel(2).tag + QStringLiteral(" = ") +
                                 QString::number(ws.LocalPort()));
    f.stStatusbar.setToolTip(2, f.stStatusbar.text(2));
    ShowLocalInfo();
    // An automatic change lasts.
    f.writeSetting(QStringLiteral("LocalPort"), QString::number(ws.LocalPort()));
}

void Connection::ShowLocalInfo()
{
    FrmMain& f = m_frm;
    if (f.IsConnected())
        return;
    AddressServices& a = address();
    a.GetLocalHost();
    QString lines = f.translate(QStringLiteral("Computer Name")) + QStringLiteral(": ") +
                    a.ComputerName() + kCrLf;
    for (const QString& ip : a.localAddresses) {
        if (ip == QLatin1String("0.0.0.0"))
            continue;
        lines += f.translate(QStringLiteral("Address")) + QStringLiteral("    IP ") +
                 QStringLiteral(": ") + ip + kCrLf;
    }
    lines += f.translate(QStringLiteral("Port")) + QStringLiteral("\t : ") +
             QString::number(f.winsock(0).LocalPort());
    f.txtServer.append(lines);
}

PropertyDialog& Connection::propertyDialog()
{
    if (!m_property) {
        m_property = std::make_unique<PropertyDialog>(m_frm);
        m_property->Form_Load();
    }
    return *m_property;
}

void Connection::unloadProperty()
{
    m_property.reset();
}

// --- the running session's send events ------------------------------------------------

void Connection::Winsock_SendComplete(int index)
{
    if (index > 0)
        return;
    FrmMain& f = m_frm;
    if (f.txtServer.locked())
        f.txtServer.setLocked(false);
    if (f.SessionDateStart.isValid()) {
        const qint64 mins = f.SessionDateStart.secsTo(f.clock().now()) / 60;
        if (mins > iniInt(f.stStatusbar.text(4)))
            f.stStatusbar.setText(4, QString::number(mins) + QLatin1Char(' ') +
                                         f.translate(QStringLiteral("min.")));
    }
    f.stStatusbar.setPicture(1, StatePicture::picReady);
    if (f.views().isVisible(QStringLiteral("frmDraw")))
        Q_EMIT f.drawStatus(1, QString(), StatePicture::picReady);
}

void Connection::Winsock_SendProgress(int index, qint64 bytesSent, qint64)
{
    if (index > 0)
        return;
    FrmMain& f = m_frm;
    f.stStatusbar.setPicture(1, StatePicture::picSend);
    if (f.views().isVisible(QStringLiteral("frmDraw")))
        Q_EMIT f.drawStatus(1, QString(), StatePicture::picSend);
    f.bytesSentCount += bytesSent;
    f.stStatusbar.setText(11, FrmMain::byteCountText(f.bytesSentCount));
}

}  // namespace vonnel
