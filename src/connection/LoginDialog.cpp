#include "connection/LoginDialog.h"
#include "connection/CallAddress.h"
#include "connection/CallFailure.h"
#include "core/Cp1252.h"

#include "connection/AddressServices.h"
#include "connection/Connection.h"
#include "core/IniStore.h"
#include "core/Logs.h"
#include "platform/Desktop.h"
#include "platform/Pinger.h"
#include "platform/Prompter.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "platform/Clock.h"
#include "core/MainModel.h"
#include "core/Views.h"

namespace vonnel {

namespace {
const QString kHistoryStem = QStringLiteral("Previous IP Address ");
constexpr int kMaxHistory = 100;
}  // namespace

LoginDialog::LoginDialog(CopyContext& ctx, MainModel& model, Session& session,
                         Connection& connection, QObject* parent)
    : QObject(parent), m_ctx(ctx), m_model(model), m_session(session), m_connection(connection)
{
}

void LoginDialog::Form_Load()
{
    QStringList history;
    for (int n = 0; n < kMaxHistory; ++n) {
        const QString entry = m_ctx.setting(kHistoryStem + QString::number(n));
        if (entry.isEmpty())
            break;
        history << entry;
    }
    cmbList = history;
    cmbIPadr = m_ctx.setting(QStringLiteral("Previous IP Address"));
}

void LoginDialog::Form_Activate()
{
    txtConnectPort = QString::number(m_ctx.settingInt(QStringLiteral("RemotePort")));
}

void LoginDialog::appendStatus(const QString& line)
{
    txtStatus += line + kCrLf;
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
    const bool ended = txtStatus->endsWith(kCrLf);
    QString body = txtStatus;
    if (ended)
        body.chop(2);
    const qsizetype cut = body.lastIndexOf(kCrLf);
    txtStatus = (cut < 0 ? QString() : body.left(cut + 2)) + text + (ended ? kCrLf : QString());
}

void LoginDialog::setAbort(const QString& caption, const QString& tag)
{
    cmdAbortCaption = caption;
    cmdAbortTag = tag;
}

void LoginDialog::unload()
{
    unloaded = true;
}

void LoginDialog::cmdOK_Click()
{
    Connection& c = m_connection;
    m_session.StopConnecting = false;
    lblStatus.clear();

    const QString pleaseWait = m_ctx.translate(QStringLiteral("Please wait"));
    const QString resolvingIp = m_ctx.translate(QStringLiteral("Resolving IP address..."));
    const QString resolvingHost = m_ctx.translate(QStringLiteral("Resolving network host..."));
    const QString cannotResolveTo_ = m_ctx.translate(QStringLiteral("Cannot resolve to "));
    const QString ipAddress = m_ctx.translate(QStringLiteral("IP address"));
    const QString hostname = m_ctx.translate(QStringLiteral("hostname"));
    const QString second = m_ctx.translate(QStringLiteral("second"), QStringLiteral("sec."));
    const QString cancelled = m_ctx.translate(QStringLiteral("Connecting Cancelled"));
    const QString online = m_ctx.translate(QStringLiteral("is online"));
    // An unanswered echo proves nothing: echoes may be filtered or not
    // allowed to this program, and the address may still take the call.
    const QString offline = m_ctx.translate(QStringLiteral("gave no answer to the echo request"));
    const QString cannotResolveTo = m_ctx.translate(QStringLiteral("Cannot resolve to"));

    if (cmbIPadr->isEmpty() || txtConnectPort->isEmpty())
        return;
    cmdOKEnabled = false;
    cmdCancelEnabled = false;
    fraConnectStatusVisible = true;
    cmdAbortVisible = true;

    if (!cmbList->contains(cmbIPadr))
        cmbList.edit([this](QStringList& l) { l << cmbIPadr; });
    for (int i = 0; i < cmbList->size(); ++i)
        m_ctx.writeSetting(kHistoryStem + QString::number(i), cmbList->at(i));

    if (flagByText(m_ctx.setting(QStringLiteral("Permanent Port"))).value_or(false))
        m_ctx.writeSetting(QStringLiteral("RemotePort"), txtConnectPort);
    const bool noResolve = m_ctx.settingNumber(QStringLiteral("No Resolve To Connect")) != 0;

    // "[2001:db8::1]:2500" brings its port; a bare IPv6 address is called
    // as a dotted one is.
    const CallAddress typed = parseCallAddress(cmbIPadr);
    if (typed.port)
        txtConnectPort = QString::number(*typed.port);

    // A call to this very copy is refused before the socket is touched.
    if (iniInt(txtConnectPort) == int(m_session.winsock(0).LocalPort()) && c.isOwnAddress(typed.host)) {
        m_ctx.prompter().msgBox(m_ctx.translate(QStringLiteral("Warning: Cannot connect to itself")),
                            MsgStyle::Exclamation, QStringLiteral("Connect Error"));
        unload();
        return;
    }

    QString address = typed.host;
    if (!noResolve) {
        if (!AddressServices::looksDotted(address) && !typed.ipv6) {
            m_session.PeerHostName = address;
            appendStatus(pleaseWait + QStringLiteral(": ") + resolvingIp);
            address = c.address().ResolveName(typed.host, true);
            if (address == AddressServices::kFailed) {
                appendStatus(cannotResolveTo_ + ipAddress + QLatin1Char(' ') + cmbIPadr);
                const QString why = m_ctx.translate(callFailureText(CallFailure::NameNotFound));
                appendStatus(why);
                m_ctx.logs().connection(QStringLiteral("Fail to connect to ") + cmbIPadr +
                                        QStringLiteral(": ") + why);
                return;
            }
        } else {
            appendStatus(pleaseWait + QStringLiteral(": ") + resolvingHost);
            m_session.PeerHostName = c.address().ResolveAddress(address);
            if (m_session.PeerHostName == AddressServices::kFailed) {
                // An address without a name is called all the same.
                appendStatus(cannotResolveTo + QLatin1Char(' ') + hostname + QLatin1Char(' ') +
                             address);
                m_session.PeerHostName.clear();
            }
        }
    }

    m_ctx.writeSetting(QStringLiteral("Previous IP Address"), address);
    m_ctx.writeSetting(QStringLiteral("Connect Port"), txtConnectPort);
    m_model.txtServer.setEnabled(false);
    m_model.txtServer.clear();
    m_model.txtClient(0).clear();

    // A report only: the call goes ahead either way.
    const bool answered = m_ctx.pinger().echo(address, 200);
    appendStatus(address + QLatin1Char(' ') + (answered ? online : offline));

    setAbort(QStringLiteral("Close"), QStringLiteral("Close"));
    c.ConnectProcedure();

    if (m_session.IsConnected()) {
        // The other side's first data may still be on its way.
        const QDateTime start = m_ctx.clock().now();
        const qint64 waitMs =
            (qint64(m_ctx.settingInt(QStringLiteral("Incomming Connection Timeout"))) + 5) * 1000;
        int turns = 0;
        while (start.msecsTo(m_ctx.clock().now()) < waitMs) {
            ++turns;
            c.spin();
            if (m_session.RemoteResponded || m_session.StopConnecting || m_ctx.ProgramExiting)
                break;
            if (turns >= 10000) {
                turns = 1;
                const qint64 left = (waitMs - start.msecsTo(m_ctx.clock().now())) / 1000;
                const QString text = pleaseWait + QStringLiteral(": ") + QString::number(left) +
                                     QLatin1Char(' ') + second;
                setLastStatusLine(text);
                cmdAbortToolTip = text;
                m_model.stStatusbar.setText(2, pleaseWait + QStringLiteral(": ") +
                                             QString::number(left) + QStringLiteral(" second"));
            }
        }
        cmdAbortToolTip.clear();
        m_model.stStatusbar.setToolTip(2, QString());
    }

    // A refused call is no cancel: its report stays open and says so.
    const bool refused = m_session.StopConnecting && c.callRefused();
    if (m_session.StopConnecting) {
        appendStatus(refused ? m_ctx.translate(Connection::refusedText()) : cancelled);
        c.mnuDisconnect_Click();
        m_model.txtServer.setEnabled(true);
        if (m_model.txtServer.text().isEmpty())
            m_model.setVisible(true);
        if (refused)
            m_model.stStatusbar.setText(2, m_ctx.translate(Connection::refusedText()));
    }
    // A failed attempt leaves its report open until the user closes it.
    if ((m_session.StopConnecting && !refused) || m_session.IsConnected())
        unload();
}

void LoginDialog::cmdAbortConnect_Click()
{
    if (cmdAbortTag != QLatin1String("Abort")) {
        unload();
        return;
    }
    m_connection.mnuDisconnect_Click();
    txtStatus.clear();
    m_model.stStatusbar.setText(2, QString());
    unload();
}

void LoginDialog::cmdAbortConnect_Escape()
{
    if (m_session.IsConnected())
        unload();
}

void LoginDialog::cmdCancel_Click()
{
    m_model.txtServer.setEnabled(true);
    unload();
}

void LoginDialog::cmdClearRec_Click()
{
    m_ctx.writeSetting(QStringLiteral("Previous IP Address"), QString());
    for (int i = 0; i < cmbList->size(); ++i)
        m_ctx.writeSetting(kHistoryStem + QString::number(i), QString());
    cmbList.clear();
}

void LoginDialog::cmdHelp_Click()
{
    m_ctx.desktop().openFile(m_ctx.HelpPath + (cmdOKEnabled ? QStringLiteral("connect.htm")
                                                            : QStringLiteral("connectfail.htm")));
}

void LoginDialog::cmdBrowse_Click()
{
    m_ctx.views().showModeless(Form::frmNetView);
}

}  // namespace vonnel
