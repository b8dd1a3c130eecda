#include "connection/Connection.h"
#include "core/Cp1252.h"


#include "connection/LoginDialog.h"
#include "connection/PropertyDialog.h"
#include "core/Logs.h"
#include "platform/Prompter.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "platform/Clock.h"
#include "core/Sender.h"
#include "core/MainModel.h"
#include "core/Views.h"
#include "core/WireCodec.h"


// The ends of a session: the peer's close, a socket error, and the
// user's disconnect.

namespace vonnel {

// --- ends -------------------------------------------------------------------------

void Connection::Winsock_Close(int index)
{
    if (index > 0) {
        m_session.winsock(index).Close();
        return;
    }
    Winsock& ws = m_session.winsock(m_session.sIdx);
    m_session.PeerIP = ws.RemoteHostIP();
    m_session.RemoteResponded = false;
    m_model.controls.setEnabled(Control::mnuSave, true);
    m_ctx.requestRing(m_ctx.rings.Ring2);
    m_model.txtClient(m_session.sIdx).setEnabled(false);
    m_model.stStatusbar.setText(4, m_session.minutesText());
    m_model.stStatusbar.setText(2, m_ctx.translate(QStringLiteral("Connection Closed")));
    m_model.stStatusbar.setPicture(1, StatePicture::picOff);
    m_model.stStatusbar.setText(8, QString());
    m_model.stStatusbar.setText(9, QString());
    m_session.ended();
    ws.Close();
    m_ctx.logs().connection(QStringLiteral("Close connection with ") + m_session.PeerIP);
    m_session.idleDelay0();
    m_session.checkStatus();
    ws.setLocalPort(quint16(m_ctx.settingInt(QStringLiteral("LocalPort"))));
    m_session.idleDelay0();
    ws.Listen();
    m_session.checkStatus();
    m_model.setCaption(m_model.titleWithVersion());
    TextPane& client = m_model.txtClient(m_session.sIdx);
    if (!client.text().isEmpty()) {
        client.caretToEnd();
        client.append(kCrLf + QLatin1Char('[') + m_ctx.translate(QStringLiteral("Closed")) +
                      QLatin1Char(']'));
        client.caretToEnd();
    }
    m_session.ended();
    Q_EMIT peerClosed();
    m_session.EnableConnect();
}

void Connection::Winsock_Error(int index, int, const QString&)
{
    if (index > 0)
        return;
    m_session.RemoteResponded = false;
    m_model.setCaption(MainModel::kTitle);
    m_model.stStatusbar.setPicture(1, StatePicture::picOff);
    m_model.stStatusbar.setText(2, QString());

    const bool sessionFailed = login() == nullptr;
    if (LoginDialog* d = login()) {
        // The attempt failed.
        if (d->lastStatusLine() == QLatin1String("Waiting for response..."))
            d->setLastStatusLine(QStringLiteral("Error: Connecting Timeout"));
    } else {
        // The session failed.
        m_ctx.requestRing(m_ctx.rings.Ring4);
        m_model.stStatusbar.setText(
            2, m_ctx.translate(QStringLiteral("Socket Error: Disconnected by remote computer")));
        m_session.idleDelay0();
        m_session.ended();
        m_ctx.logs().connection(QStringLiteral("Close connection with ") + m_session.PeerIP);
    }

    if (m_ctx.settingNumber(QStringLiteral("No Recover Socket Error")) == 0) {
        PropertyDialog& p = propertyDialog();
        p.lblSysMsg = m_ctx.translate(QStringLiteral(
            "Socket/Network Error: Verify your setting or click OK to recover it automatically."));
        m_ctx.views().runModal(Form::frmProperty);
        unloadProperty();
    }
    // A session lost to a reset or a dead link must not leave the copy
    // deaf to the next caller: unless the recovery put the socket back
    // already, it listens again on its port.
    if (sessionFailed && m_session.winsock(m_session.sIdx).State() != Winsock::sckListening) {
        const QString why = m_model.stStatusbar.text(2);
        m_session.winsock(m_session.sIdx).Close();
        ListenOnLocalPort();
        m_model.stStatusbar.setText(2, why);  // still says why the session ended
    }
    TextPane& client = m_model.txtClient(m_session.sIdx);
    if (!client.text().isEmpty())
        client.append(kCrLf + m_ctx.translate(QStringLiteral("[Closed]")));
    m_session.EnableConnect();
}

void Connection::mnuDisconnect_Click()
{
    Winsock& ws = m_session.winsock(m_session.sIdx);
    m_session.StopConnecting = true;
    if (m_session.TransferOnHold) {
        const Answer a = m_ctx.prompter().msgBox(
            m_ctx.translate(QStringLiteral("You have a file sending/receiving 'on hold',")) + kCrLf +
                m_ctx.translate(QStringLiteral("Do you want to continue to exit?")),
            MsgStyle::YesNo | MsgStyle::DefaultButton2,
            QStringLiteral("File Sending/Receiving On Hold"));
        if (a != Answer::Yes)
            return;
    }
    if (ws.State() == Winsock::sckConnected && m_session.ConnectionStartedHere) {
        m_sender.xSendData(wire::text(wire::kShutDown));
        m_session.ConnectionStartedHere = false;
        m_model.controls.setEnabled(Control::mnuSave, true);
        m_session.endedNow();
        m_session.checkStatus();
    }
    if (ws.State() == Winsock::sckConnected) {
        // The code-7 byte ahead of the close marks the end as ordered.
        m_model.txtClient(m_session.sIdx).setEnabled(false);
        m_sender.xSendData(QString(QChar(7)));
        ws.Close();
        m_session.checkStatus();
        ws.setLocalPort(quint16(m_ctx.settingInt(QStringLiteral("LocalPort"))));
        ws.Listen();
        m_session.checkStatus();
        m_model.controls.setEnabled(Control::mnuSave, true);
        m_session.endedNow();
        m_session.checkStatus();
    } else {
        m_model.controls.setEnabled(Control::Toolbar1_2, false);
        ws.Close();
        m_session.checkStatus();
        ListenOnLocalPort();
    }
    m_model.stStatusbar.setText(8, QString());
    m_model.stStatusbar.setText(9, QString());
    m_model.setCaption(m_model.titleWithVersion());
    m_ctx.closeFilesAtEnd();
}

void Connection::closeAfterPeerShutDown()
{
    Winsock& ws = m_session.winsock(m_session.sIdx);
    ws.Close();
    m_model.stStatusbar.setPicture(1, StatePicture::picOff);
    m_session.checkStatus();
    ws.setLocalPort(quint16(m_ctx.settingInt(QStringLiteral("LocalPort"))));
    m_session.idleDelay0();
    ws.Listen();
    m_session.checkStatus();
}

}  // namespace vonnel
