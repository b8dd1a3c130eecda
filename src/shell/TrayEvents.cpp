// What the tray icon's messages do, apart from any widget: the tip by the
// session socket's state and the rules of the tray menu.

#include "access/Encryption.h"
#include "access/PasswordStore.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "core/Views.h"
#include "shell/FrmMain.h"

namespace vonnel {

QString FrmMain::trayStateTip(int state, const QString& remoteHostIP, const QString& peerHostName,
                              const std::function<QString(const QString&)>& translate)
{
    QString text;
    switch (state) {
    case Winsock::sckClosed: text = translate(QStringLiteral("Closed")); break;
    case Winsock::sckListening: text = translate(QStringLiteral("Listening")); break;
    case Winsock::sckConnected:
        text = translate(QStringLiteral("Connected")) + QLatin1Char(' ') + remoteHostIP + QStringLiteral(" [") +
               peerHostName + QLatin1Char(']');
        break;
    case Winsock::sckError: text = translate(QStringLiteral("Socket Error")); break;
    case Winsock::sckConnectionPending:
    case Winsock::sckResolvingHost:
    case Winsock::sckHostResolved:
    case Winsock::sckConnecting: text = translate(QStringLiteral("Connecting")); break;
    default: break;  // open and closing have no word of their own
    }
    return MainModel::kTitle + QStringLiteral(" - ") + text;
}

void FrmMain::trayMouseMove()
{
    const Winsock& ws = session().winsock(0);
    model().setTrayTip(trayStateTip(ws.State(), ws.RemoteHostIP(), session().PeerHostName,
                                    [this](const QString& key) { return ctx().translate(key); }));
}

bool FrmMain::trayRightButtonUp()
{
    // The station list and the properties are not for whoever finds the
    // icon: with a password at either level (or a start that was not let
    // in) they stay in the window, behind its lock.
    const PasswordStore& lock = encryption().passwords();
    const bool open = !lock.hasFirstPassword && !lock.hasSecondPassword && !lock.startupLockFailed;
    model().controls.setEnabled(Control::mnuSysAutoConnect, open);
    model().controls.setEnabled(Control::mnuSysProperties, open);
    return !lock.lockScreenUp() && !ctx().views().isVisible(Form::frmLock) &&
           !ctx().views().isVisible(Form::frmPassLock);
}

}  // namespace vonnel
