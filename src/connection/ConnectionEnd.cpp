#include "connection/Connection.h"


#include "connection/LoginDialog.h"
#include "connection/PropertyDialog.h"
#include "core/Logs.h"
#include "platform/Prompter.h"
#include "shell/FrmMain.h"
#include "shell/Views.h"


// The ends of a session: the peer's close, a socket error, and the
// user's disconnect.

namespace vonnel {

namespace {
const QString kCrLf = QStringLiteral("\r\n");
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

}  // namespace vonnel
