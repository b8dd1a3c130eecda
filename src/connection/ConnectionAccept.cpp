#include "core/Cp1252.h"
#include "connection/Connection.h"
#include "connection/PrivateLink.h"

#include "access/Encryption.h"

#include "connection/AddressServices.h"
#include "connection/IpList.h"
#include "core/IniStore.h"
#include "core/Logs.h"
#include "platform/Prompter.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "platform/Clock.h"
#include "core/MainModel.h"
#include "core/Views.h"
#include "core/WireCodec.h"


// The callee's decision on a caller: black and white lists, the busy
// responder, the question, and the accepting side's start of a session.

namespace vonnel {

// --- the callee's decision --------------------------------------------------------

void Connection::Winsock_ConnectionRequest(int index, qintptr requestId)
{
    auto fail = [&](const QString& description) {
        m_ctx.prompter().msgBox(QStringLiteral("Winsock(") + QString::number(index) +
                                QStringLiteral(") Protocol ConnectionRequest Error") +
                                QLatin1Char('\r') + description + QLatin1Char('\r') +
                                MainModel::kTitle,
                            MsgStyle::Exclamation);
        Winsock& ws = m_session.winsock(m_session.sIdx);
        ws.Close();
        m_session.idleDelay0();
        ws.Listen();
    };
    const QString outOfRange = QStringLiteral("Subscript out of range");

    m_session.PeerIP = m_session.winsock(m_session.sIdx).RemoteHostIP();
    m_model.stStatusbar.setText(2, m_ctx.translate(QStringLiteral("Connection request from ")) + m_session.PeerIP +
                                 QStringLiteral("..."));
    m_ctx.logs().connection(QStringLiteral("Incomming connection request from ") + m_session.PeerIP);
    m_model.txtServer.clear();
    m_model.txtClient(m_session.sIdx).setEnabled(false);
    m_model.txtClient(m_session.sIdx).clear();
    m_model.txtTextMsg.clear();

    const bool badOn = m_ctx.settingFlag(QStringLiteral("Detect Bad IP"));
    const bool safeOn = m_ctx.settingFlag(QStringLiteral("Detect Safe IP"));

    IpList black(m_ctx, IpListKind::Blocked);
    if (badOn && black.exists()) {
        const auto entries = black.readForCall();
        if (!entries) {
            fail(outOfRange);
            return;
        }
        if (IpList::anyMatches(*entries, m_session.PeerIP)) {
            // Not taken, not answered: the caller hears nothing.
            const QString text =
                m_session.PeerIP + m_ctx.translate(QStringLiteral(" is blocked to be connected"));
            m_model.stStatusbar.setText(2, text);
            m_ctx.logs().connection(text);
            return;
        }
    }

    bool acceptDirectly = m_ctx.settingFlag(QStringLiteral("Auto Accept Connection"));
    IpList white(m_ctx, IpListKind::Permitted);
    if (safeOn && white.exists()) {
        const auto entries = white.readForCall();
        if (!entries) {
            fail(outOfRange);
            return;
        }
        // A caller absent from the white list is taken without asking; one
        // on it goes by Auto Accept Connection. This order stands.
        if (!IpList::anyMatches(*entries, m_session.PeerIP))
            acceptDirectly = true;
    }

    if (index == 1 && m_session.winsock(m_session.sIdx).State() == Winsock::sckConnected) {
        Winsock& busy = m_session.winsock(1);
        busy.Close();
        busy.Accept(requestId);
        m_session.idleDelay0();
        const QString message =
            wire::text(wire::kPasteOpen) +
            QStringLiteral("{ Vonnel:: Remote user is currently in session. Please retry later!! }") +
            wire::text(wire::kPasteClose);
        if (busy.State() <= Winsock::sckConnected) {
            busy.SendData(toCp1252(message));
            m_session.idleDelay0();
            busy.Close();
            m_session.idleDelay0();
            busy.Listen();
        }
    }

    m_ctx.requestRing(m_ctx.rings.Ring3);
    // A window away from sight: the desktop says who is calling.
    m_ctx.wantNotice(NoticeKind::Call, m_ctx.translate(QStringLiteral("From: ")) + m_session.PeerIP);

    if (!acceptDirectly) {
        int wait = m_ctx.settingInt(QStringLiteral("Incomming Connection Timeout"));
        if (wait < 5)
            wait = 5;  // read and adjusted; the box itself has no time limit
        Q_UNUSED(wait);
        // A hidden window: the tray icon says who is calling.
        if (!m_model.isVisible() || m_model.windowState() == MainModel::vbMinimized)
            m_model.setTrayTip(m_ctx.translate(QStringLiteral("From: ")) + m_session.PeerIP);
        m_session.PeerHostName = address().ResolveAddress(m_session.PeerIP);
        if (m_session.PeerHostName == AddressServices::kFailed)
            m_session.PeerHostName.clear();
        const Answer a = m_ctx.prompter().msgBox(
            m_ctx.translate(QStringLiteral("Do you accept connection requested from:")) +
                QLatin1Char(' ') + kCrLf + m_session.PeerIP + QStringLiteral(" [") + m_session.PeerHostName +
                QLatin1Char(']'),
            MsgStyle::YesNo | MsgStyle::Information | MsgStyle::Foreground,
            m_ctx.translate(QStringLiteral("Connection Request")) + QStringLiteral(" - ") +
                MainModel::kTitle);
        if (a != Answer::Yes) {
            m_ctx.logs().connection(m_session.PeerIP + QStringLiteral(" is rejected to make a connection"));
            // The request's own status line would stay up: say how it ended.
            m_model.stStatusbar.setText(
                2, m_session.PeerIP + m_ctx.translate(QStringLiteral(" is rejected to make a connection")));
            Winsock& ws = m_session.winsock(m_session.sIdx);
            ws.Close();
            m_session.idleDelay0();
            ws.Listen();
            m_model.txtServer.setEnabled(true);
            return;
        }
    }

    m_model.txtServer.setEnabled(false);
    m_ctx.logs().connection(QStringLiteral("Connection with ") + m_session.PeerIP);
    if (m_ctx.views().isVisible(Form::frmDraw))
        m_ctx.views().unload(Form::frmDraw);
    m_session.SessionStartTime = m_ctx.clock().timeOfDay();
    m_model.controls.setEnabled(Control::mnuSave, false);
    m_ctx.rings.Ring = m_ctx.setting(QStringLiteral("Ring"));
    m_cipher.beginSession();

    showMain();
    m_model.setCaption(MainModel::kTitle + QStringLiteral(" - ") + m_session.PeerIP + QStringLiteral(" [") +
                 m_session.PeerHostName + QLatin1Char(']'));
    m_ctx.views().raiseMain();

    m_session.sIdx = index;
    Winsock& ws = m_session.winsock(m_session.sIdx);
    ws.Close();
    if (ws.Accept(requestId) != 0) {
        fail(ws.lastErrorText());
        return;
    }
    // Before anything below lets events run: the caller's version and offer
    // may come in at any turn of the loop from here on.
    m_private->calleeOpened();
    m_session.peerForRecord = ws.RemoteHostIP();
    m_cipher.readEncryptedSetting();
    m_model.stStatusbar.setText(2, m_ctx.translate(QStringLiteral("Connection from ")) + m_session.PeerIP +
                                 QStringLiteral("..."));
    m_model.stStatusbar.setPicture(1, StatePicture::picReady);
    if (m_cipher.encryptOn)
        m_model.stStatusbar.setText(8, m_ctx.translate(QStringLiteral("E")));

    // The version message is the first data: the caller waits for it.
    m_ctx.setting(QStringLiteral("Version Check"));
    ws.SendData(wire::versionFrame(toCp1252(QLatin1Char(' ') + m_ctx.VersionString + QLatin1Char(' '))));
    m_cipher.sendKeyOnAccept();
    m_session.ConnectionStartedHere = false;
    m_session.checkStatus();

    if (m_session.PeerHostName.isEmpty() && m_ctx.settingNumber(QStringLiteral("No Resolve To Connect")) == 0)
        m_session.PeerHostName = address().ResolveAddress(ws.RemoteHostIP());
    m_model.setCaption(MainModel::kTitle + QStringLiteral(" - ") + ws.RemoteHostIP() +
                 QStringLiteral(" [") + m_session.PeerHostName + QLatin1Char(']'));
    m_session.SessionDateStart = m_ctx.clock().now();
    m_model.stStatusbar.setText(4, m_session.minutesText());
    m_ctx.requestRing(m_ctx.rings.Ring1);
    m_session.opened();
    m_private->calleeOpeningSent();
    m_model.txtServer.setEnabled(true);
    m_model.txtClient(m_session.sIdx).setEnabled(true);
    m_session.EnableDisconnect();
}

}  // namespace vonnel
