#include "connection/Connection.h"

#include "access/Encryption.h"

#include "connection/AddressServices.h"
#include "connection/LoginDialog.h"
#include "core/IniStore.h"
#include "core/Logs.h"
#include "platform/Prompter.h"
#include "shell/FrmMain.h"
#include "shell/Views.h"


// Calling out: the connect dialog, the connect procedure with its retries,
// and the caller's side of the start of a session.

namespace vonnel {

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

}  // namespace vonnel
