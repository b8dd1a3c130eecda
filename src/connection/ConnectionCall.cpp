#include "core/Cp1252.h"
#include "connection/Connection.h"
#include "connection/PrivateLink.h"

#include "access/Encryption.h"

#include "connection/AddressServices.h"
#include "connection/CallAddress.h"
#include "connection/CallFailure.h"
#include "connection/LoginDialog.h"
#include "core/IniStore.h"
#include "core/Logs.h"
#include "platform/Prompter.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "platform/Clock.h"
#include "core/MainModel.h"
#include "core/WireCodec.h"
#include "core/Views.h"


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
    if (m_login)
        return nullptr;
    if (m_session.winsock(m_session.sIdx).State() == Winsock::sckConnected) {
        m_ctx.prompter().msgBox(
            m_ctx.translate(QStringLiteral("You have to disconnect before make another connection.")));
        return nullptr;
    }
    m_model.txtTextMsg.clear();
    if (!m_ctx.views().isVisible(Form::frmLock) &&
        !m_ctx.views().isVisible(Form::frmPassLock))
        m_model.txtClient(m_session.sIdx).setEnabled(true);
    m_login = std::make_unique<LoginDialog>(m_ctx, m_model, m_session, *this);
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
    m_session.ConnectionStartedHere = true;
}

void Connection::mnuConnect_Click()
{
    if (m_login)
        return;  // an attempt is under way
    if (beginConnect())
        m_ctx.views().runModal(Form::frmLogin);
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
    const quint16 localPort = quint16(m_ctx.settingInt(QStringLiteral("LocalPort")));
    const QString connecting = m_ctx.translate(QStringLiteral("Connecting"));
    const QString pleaseWait = m_ctx.translate(QStringLiteral("Please wait"));
    const QString second = m_ctx.translate(QStringLiteral("second"));
    const QString retryWith = m_ctx.translate(QStringLiteral("retry with"));
    const QString portWord = m_ctx.translate(QStringLiteral("Port"));
    const QString localPortWord = m_ctx.translate(QStringLiteral("Local Port"));
    const QString remotePortWord = m_ctx.translate(QStringLiteral("Remote Port"));
    const QString failTo = m_ctx.translate(QStringLiteral("Fail to connect to"));
    const QString possible = m_ctx.translate(QStringLiteral(
        "Possible Error: Invalid Remote Port Address OR Remote user is not in Ready mode"));
    const QString errorWord = m_ctx.translate(QStringLiteral("Error"));
    const QString abortWord = m_ctx.translate(QStringLiteral("Abort"));

    auto report = [this](const QString& line) {
        if (LoginDialog* d = login())
            d->appendStatus(line);
    };
    auto status = [this](const QString& text) {
        m_model.stStatusbar.setText(2, text);
        if (LoginDialog* d = login()) {
            d->lblStatus = text;
        }
    };
    auto clearTips = [this] {
        m_model.stStatusbar.setToolTip(2, QString());
        if (LoginDialog* d = login())
            d->cmdAbortToolTip.clear();
    };

    if (LoginDialog* d = login())
        d->setAbort(abortWord, QStringLiteral("Abort"));
    Winsock& ws = m_session.winsock(m_session.sIdx);
    ws.Close();
    // Only the answer to this call counts: a session this side ended itself
    // left the flag of its own first data behind.
    m_session.RemoteResponded = false;
    m_callRefused = false;

    const QString address = m_ctx.setting(QStringLiteral("Previous IP Address"));
    const QString portText = m_ctx.setting(QStringLiteral("Connect Port"));
    const quint16 remotePort = quint16(iniInt(portText));
    double idle = m_ctx.settingNumber(QStringLiteral("Connect Idle"));
    ws.setLocalPort(localPort);

    // A failure that was not expected: back to listening, and say why.
    auto unexpected = [&](const QString& description) {
        ws.Close();
        m_session.idleDelay0();
        ws.Listen();
        const QString text = errorWord + QStringLiteral(": ") + description;
        report(text);
        m_model.stStatusbar.setText(2, text);
    };
    // Why the last attempt failed, said after the report's own lines.
    CallFailure why = CallFailure::TimedOut;
    auto noteFailure = [&] {
        why = ws.State() == Winsock::sckError ? callFailureFromError(ws.lastError())
                                              : CallFailure::TimedOut;
    };
    // All retries used: the report, and listening again.
    auto giveUp = [&](int lastPort) {
        report(failTo + QStringLiteral(" <") + address + QStringLiteral(" : ") + portWord +
               QLatin1Char(' ') + QString::number(remotePort) + QStringLiteral(" -- ") +
               QString::number(lastPort) + QLatin1Char('>'));
        report(possible);
        const QString reason = m_ctx.translate(callFailureText(why));
        report(reason);
        m_ctx.logs().connection(QStringLiteral("Fail to connect to ") +
                                addressWithPort(address, remotePort) + QStringLiteral(": ") +
                                reason);
        if (LoginDialog* d = login())
            d->setAbort(m_ctx.translate(QStringLiteral("Close")), QStringLiteral("Close"));
        ws.Close();
        m_session.yieldEvents();
        m_session.checkStatus();
        if (!m_session.StopConnecting) {
            ws.setLocalPort(quint16(m_ctx.settingInt(QStringLiteral("LocalPort"))));
            ws.Listen();
            m_session.checkStatus();
            m_session.PeerHostName.clear();
        }
    };
    auto secondsLeft = [this](const QDateTime& start, qint64 ms) {
        return QString::number((ms - start.msecsTo(m_ctx.clock().now())) / 1000);
    };

    status(connecting + QStringLiteral(" ......"));
    m_model.stStatusbar.setVisible(2, true);
    m_session.idleDelayFor(0.5);

    int error = 0;
    if (ws.State() <= Winsock::sckClosed) {
        error = ws.Connect(address, remotePort);
        report(connecting + QStringLiteral(" ....."));
    }
    if (error != 0 && error != Winsock::errAddressInUse) {
        unexpected(ws.lastErrorText());
        return;
    }

    int timeout = m_ctx.settingInt(QStringLiteral("Incomming Connection Timeout"));
    if (timeout == 0)
        timeout = 5;
    if (error == 0) {
        const QDateTime start = m_ctx.clock().now();
        int turns = 0;
        while (ws.State() != Winsock::sckConnected) {
            if (m_session.StopConnecting)
                return;
            if (m_session.IsConnected() || start.msecsTo(m_ctx.clock().now()) > qint64(timeout) * 1000)
                break;
            spin();
            if (m_session.StopConnecting || m_ctx.ProgramExiting)
                return;
            if (++turns >= 1500) {
                turns = 0;
                const QString text = connecting + QStringLiteral(": ") +
                                     secondsLeft(start, qint64(timeout) * 1000) +
                                     QLatin1Char(' ') + second;
                m_model.stStatusbar.setText(2, text);
                if (LoginDialog* d = login())
                    d->setLastStatusLine(text);
            }
        }
        if (ws.State() == Winsock::sckConnected) {
            // The connect event, posted with the state, runs its wait first.
            spin();
            clearTips();
            m_session.checkStatus();
            return;
        }
        noteFailure();
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
                m_session.yieldEvents();
                if (m_ctx.ProgramExiting)
                    return;
                ws.setLocalPort(quint16(localPort + counter));
                const QString text = connecting + QStringLiteral(": ") + retryWith +
                                     QLatin1Char(' ') + localPortWord + QLatin1Char(' ') +
                                     QString::number(localPort + counter);
                status(text);
                report(text);
                m_session.idleDelay(idle);
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
        m_session.idleDelay(idle);
        error = ws.Connect(address, port);
        if (error == Winsock::errAddressInUse) {
            localStep = true;
            continue;
        }
        if (error != 0) {
            unexpected(ws.lastErrorText());
            return;
        }
        const QDateTime start = m_ctx.clock().now();
        const qint64 waitMs = (qint64(timeout) + 5) * 1000;
        while (ws.State() != Winsock::sckError && ws.State() != Winsock::sckConnected) {
            m_session.idleDelay(idle);
            if (m_session.StopConnecting)
                return;
            if (start.msecsTo(m_ctx.clock().now()) > waitMs)
                break;
            spin();
            if (m_ctx.ProgramExiting)
                return;
        }
        noteFailure();
        if (ws.State() == Winsock::sckConnected) {
            spin();
            if (LoginDialog* d = login()) {
                d->txtConnectPort = QString::number(port);
            }
            clearTips();
            m_session.checkStatus();
            return;
        }
    }
}

// --- the caller's side of the start -----------------------------------------------

void Connection::winsock_Connect(int index)
{
    if (index > 0)
        return;
    Winsock& ws = m_session.winsock(0);
    m_cipher.beginSession();
    const QString waiting = m_ctx.translate(QStringLiteral("Waiting for remote user's response"));
    const QString disconnected = m_ctx.translate(QStringLiteral("Error: Disconnected"));

    // The session is up only when the other side's first data came.
    int turns = 0;
    int dots = 0;
    for (;;) {
        if (m_session.StopConnecting)
            return;
        if (++turns >= 10000) {
            turns = 1;
            dots = dots % 10 + 1;
            const QString text = waiting + QString(dots, QLatin1Char('.'));
            if (LoginDialog* d = login()) {
                d->setLastStatusLine(text);
                d->cmdAbortToolTip = text;
            }
            m_model.stStatusbar.setText(2, text);
        }
        if (ws.State() == Winsock::sckListening || m_session.StopConnecting) {
            // Closed before the other side said a word: it did not take the call.
            m_callRefused = !m_session.StopConnecting;
            if (LoginDialog* d = login())
                d->appendStatus(disconnected);
            if (m_callRefused)
                m_model.stStatusbar.setText(2, m_ctx.translate(refusedText()));
            m_session.StopConnecting = true;
            return;
        }
        if (m_session.RemoteResponded)
            break;
        spin();
    }
    if (LoginDialog* d = login()) {
        d->txtStatus.clear();
    }
    m_cipher.readEncryptedSetting();
    showMain();
    ConnectOK();
    // Behind the whole opening (the look went out with sessionOpened).
    m_private->callerOpened();
    m_session.EnableDisconnect();
}

void Connection::ConnectOK()
{
    Winsock& ws = m_session.winsock(m_session.sIdx);
    m_session.SessionStartTime = m_ctx.clock().timeOfDay();
    m_model.controls.setEnabled(Control::mnuSave, false);
    m_session.PeerIP = m_session.winsock(0).RemoteHostIP();
    m_ctx.setting(QStringLiteral("Version Check"));  // compared on the receiving side
    ws.SendData(wire::versionFrame(toCp1252(QLatin1Char(' ') + m_ctx.VersionString + QLatin1Char(' '))));
    m_cipher.sendKeyOnConnect();
    m_model.stStatusbar.setText(2, m_ctx.translate(QStringLiteral("Connected")));
    m_model.stStatusbar.setPicture(1, StatePicture::picReady);
    const QString ip = ws.RemoteHostIP();
    m_session.PeerHostName = address().ResolveAddress(ip);
    m_model.setCaption(MainModel::kTitle + QStringLiteral(" - ") + ip + QStringLiteral(" [") +
                 m_session.PeerHostName + QLatin1Char(']'));
    m_session.SessionDateStart = m_ctx.clock().now();
    m_session.peerForRecord = ip;
    m_ctx.logs().connection(QStringLiteral("Connection with ") + ip + QStringLiteral(" [") +
                        m_session.PeerHostName + QLatin1Char(']'));
    m_model.stStatusbar.setText(4, m_session.minutesText());
    m_ctx.requestRing(m_ctx.rings.Ring1);
    m_session.opened();
    m_model.txtTextMsg.clear();
}

}  // namespace vonnel
