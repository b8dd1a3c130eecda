#include "connection/LoginDialog.h"

#include "connection/AddressServices.h"
#include "connection/Connection.h"
#include "core/IniStore.h"
#include "platform/Desktop.h"
#include "platform/Pinger.h"
#include "platform/Prompter.h"
#include "shell/FrmMain.h"
#include "shell/Views.h"

namespace vonnel {

namespace {
const QString kHistoryStem = QStringLiteral("Previous IP Address ");
const QString kCrLf = QStringLiteral("\r\n");
constexpr int kMaxHistory = 100;
}  // namespace

LoginDialog::LoginDialog(FrmMain& frm, QObject* parent) : QObject(parent), m_frm(frm) {}

void LoginDialog::Form_Load()
{
    cmbList.clear();
    for (int n = 0; n < kMaxHistory; ++n) {
        const QString entry = m_frm.setting(kHistoryStem + QString::number(n));
        if (entry.isEmpty())
            break;
        cmbList << entry;
    }
    cmbIPadr = m_frm.setting(QStringLiteral("Previous IP Address"));
    notify();
}

void LoginDialog::Form_Activate()
{
    txtConnectPort = QString::number(m_frm.settingInt(QStringLiteral("RemotePort")));
    notify();
}

void LoginDialog::appendStatus(const QString& line)
{
    txtStatus += line + kCrLf;
    notify();
}

QString LoginDialog::lastStatusLine() const
{
    QString body = txtStatus;
    if (body.endsWith(kCrLf))
        body.chop(2);
    const qsizetype cut = body.lastIndexOf(kCrLf);
    return cut < 0 ? body : body.mid(cut + 2);
}

void LoginDialog::setLastStatusLine(const QString& text)
{
    // The last line's text is replaced; its line break, if any, stays.
    const bool ended = txtStatus.endsWith(kCrLf);
    QString body = txtStatus;
    if (ended)
        body.chop(2);
    const qsizetype cut = body.lastIndexOf(kCrLf);
    txtStatus = (cut < 0 ? QString() : body.left(cut + 2)) + text + (ended ? kCrLf : QString());
    notify();
}

void LoginDialog::setAbort(const QString& caption, const QString& tag)
{
    cmdAbortCaption = caption;
    cmdAbortTag = tag;
    notify();
}

void LoginDialog::unload()
{
    unloaded = true;
    notify();
}

void LoginDialog::cmdOK_Click()
{
    FrmMain& f = m_frm;
    Connection& c = f.connection();
    f.StopConnecting = false;
    lblStatus.clear();

    const QString pleaseWait = f.translate(QStringLiteral("Please wait"));
    const QString resolvingIp = f.translate(QStringLiteral("Resolving IP address..."));
    const QString resolvingHost = f.translate(QStringLiteral("Resolving network host..."));
    const QString cannotResolveTo_ = f.translate(QStringLiteral("Cannot resolve to "));
    const QString ipAddress = f.translate(QStringLiteral("IP address"));
    const QString hostname = f.translate(QStringLiteral("hostname"));
    const QString second = f.translate(QStringLiteral("second"), QStringLiteral("sec."));
    const QString cancelled = f.translate(QStringLiteral("Connecting Cancelled"));
    const QString online = f.translate(QStringLiteral("is online"));
    // An unanswered echo proves nothing: echoes may be filtered or not
    // allowed to this program, and the address may still take the call.
    const QString offline = f.translate(QStringLiteral("gave no answer to the echo request"));
    const QString cannotResolveTo = f.translate(QStringLiteral("Cannot resolve to"));

    if (cmbIPadr.isEmpty() || txtConnectPort.isEmpty())
        return;
    cmdOKEnabled = false;
    cmdCancelEnabled = false;
    fraConnectStatusVisible = true;
    cmdAbortVisible = true;
    notify();

    if (!cmbList.contains(cmbIPadr))
        cmbList << cmbIPadr;
    for (int i = 0; i < cmbList.size(); ++i)
        f.writeSetting(kHistoryStem + QString::number(i), cmbList.at(i));

    if (flagByText(f.setting(QStringLiteral("Permanent Port"))).value_or(false))
        f.writeSetting(QStringLiteral("RemotePort"), txtConnectPort);
    const bool noResolve = f.settingNumber(QStringLiteral("No Resolve To Connect")) != 0;

    // A call to this very copy is refused before the socket is touched.
    if (iniInt(txtConnectPort) == int(f.winsock(0).LocalPort()) && c.isOwnAddress(cmbIPadr)) {
        f.prompter().msgBox(f.translate(QStringLiteral("Warning: Cannot connect to itself")),
                            MsgStyle::Exclamation, QStringLiteral("Connect Error"));
        unload();
        return;
    }

    QString address = cmbIPadr;
    if (!noResolve) {
        if (!AddressServices::looksDotted(cmbIPadr)) {
            f.PeerHostName = cmbIPadr;
            appendStatus(pleaseWait + QStringLiteral(": ") + resolvingIp);
            address = c.address().ResolveName(cmbIPadr, true);
            if (address == AddressServices::kFailed) {
                appendStatus(cannotResolveTo_ + ipAddress + QLatin1Char(' ') + cmbIPadr);
                return;
            }
        } else {
            appendStatus(pleaseWait + QStringLiteral(": ") + resolvingHost);
            f.PeerHostName = c.address().ResolveAddress(address);
            if (f.PeerHostName == AddressServices::kFailed) {
                // An address without a name is called all the same.
                appendStatus(cannotResolveTo + QLatin1Char(' ') + hostname + QLatin1Char(' ') +
                             address);
                f.PeerHostName.clear();
            }
        }
    }

    f.writeSetting(QStringLiteral("Previous IP Address"), address);
    f.writeSetting(QStringLiteral("Connect Port"), txtConnectPort);
    f.txtServer.setEnabled(false);
    f.txtServer.clear();
    f.txtClient(0).clear();

    // A report only: the call goes ahead either way.
    const bool answered = f.pinger().echo(address, 200);
    appendStatus(address + QLatin1Char(' ') + (answered ? online : offline));

    setAbort(QStringLiteral("Close"), QStringLiteral("Close"));
    c.ConnectProcedure();

    if (f.IsConnected()) {
        // The other side's first data may still be on its way.
        const QDateTime start = f.clock().now();
        const qint64 waitMs =
            (qint64(f.settingInt(QStringLiteral("Incomming Connection Timeout"))) + 5) * 1000;
        int turns = 0;
        while (start.msecsTo(f.clock().now()) < waitMs) {
            ++turns;
            c.spin();
            if (f.RemoteResponded || f.StopConnecting || f.ProgramExiting)
                break;
            if (turns >= 10000) {
                turns = 1;
                const qint64 left = (waitMs - start.msecsTo(f.clock().now())) / 1000;
                const QString text = pleaseWait + QStringLiteral(": ") + QString::number(left) +
                                     QLatin1Char(' ') + second;
                setLastStatusLine(text);
                cmdAbortToolTip = text;
                f.stStatusbar.setText(2, pleaseWait + QStringLiteral(": ") +
                                             QString::number(left) + QStringLiteral(" second"));
            }
        }
        cmdAbortToolTip.clear();
        f.stStatusbar.setToolTip(2, QString());
    }

    // A refused call is no cancel: its report stays open and says so.
    const bool refused = f.StopConnecting && c.callRefused();
    if (f.StopConnecting) {
        appendStatus(refused ? f.translate(Connection::refusedText()) : cancelled);
        c.mnuDisconnect_Click();
        f.txtServer.setEnabled(true);
        if (f.txtServer.text().isEmpty())
            f.setVisible(true);
        if (refused)
            f.stStatusbar.setText(2, f.translate(Connection::refusedText()));
    }
    // A failed attempt leaves its report open until the user closes it.
    if ((f.StopConnecting && !refused) || f.IsConnected())
        unload();
    notify();
}

void LoginDialog::cmdAbortConnect_Click()
{
    if (cmdAbortTag != QLatin1String("Abort")) {
        unload();
        return;
    }
    m_frm.connection().mnuDisconnect_Click();
    txtStatus.clear();
    m_frm.stStatusbar.setText(2, QString());
    unload();
}

void LoginDialog::cmdAbortConnect_Escape()
{
    if (m_frm.IsConnected())
        unload();
}

void LoginDialog::cmdCancel_Click()
{
    m_frm.txtServer.setEnabled(true);
    unload();
}

void LoginDialog::cmdClearRec_Click()
{
    m_frm.writeSetting(QStringLiteral("Previous IP Address"), QString());
    for (int i = 0; i < cmbList.size(); ++i)
        m_frm.writeSetting(kHistoryStem + QString::number(i), QString());
    cmbList.clear();
    notify();
}

void LoginDialog::cmdHelp_Click()
{
    m_frm.desktop().openFile(m_frm.HelpPath + (cmdOKEnabled ? QStringLiteral("connect.htm")
                                                            : QStringLiteral("connectfail.htm")));
}

void LoginDialog::cmdBrowse_Click()
{
    m_frm.views().showModeless(QStringLiteral("frmNetView"));
}

}  // namespace vonnel
