#include "connection/Connection.h"

#include "access/Encryption.h"

#include "connection/AddressServices.h"
#include "connection/IpList.h"
#include "core/IniStore.h"
#include "core/Logs.h"
#include "platform/Prompter.h"
#include "shell/FrmMain.h"
#include "shell/Views.h"


// The callee's decision on a caller: black and white lists, the busy
// responder, the question, and the accepting side's start of a session.

namespace vonnel {

namespace {
const QString kCrLf = QStringLiteral("\r\n");
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

}  // namespace vonnel
