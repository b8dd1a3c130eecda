#include "connection/PropertyDialog.h"

#include "core/IniStore.h"
#include "platform/Desktop.h"
#include "platform/Prompter.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "core/MainModel.h"
#include "core/Views.h"

#include <QSysInfo>

namespace vonnel {

PropertyDialog::PropertyDialog(CopyContext& ctx, MainModel& model, Session& session, QObject* parent)
    : QObject(parent), m_ctx(ctx), m_model(model), m_session(session)
{
}

void PropertyDialog::Form_Load()
{
    Winsock& ws = m_session.winsock(0);
    txtComputerName = QSysInfo::machineHostName();
    txtLocalHost = ws.LocalHostName();
    txtLocalIP = ws.LocalIP();
    txtLocalPort = QString::number(m_ctx.settingInt(QStringLiteral("LocalPort")));
    txtRemotePort = QString::number(m_ctx.settingInt(QStringLiteral("RemotePort")));
    txtLocalPort5 = QString::number(iniInt(txtLocalPort) + 5);
    txtRemotePort5 = QString::number(iniInt(txtRemotePort) + 5);
    lblLocalPort = QString::number(ws.LocalPort());
    lblRemotePort = QString::number(ws.RemotePort());
}

bool PropertyDialog::cmdCancelEnabled() const
{
    return m_model.controls.enabled(Control::frmProperty_cmdCancel);
}

bool PropertyDialog::cmdApplyEnabled() const
{
    return m_model.controls.enabled(Control::frmProperty_cmdApply);
}

bool PropertyDialog::cmdOKEnabled() const
{
    return m_model.controls.enabled(Control::frmProperty_cmdOK);
}

void PropertyDialog::cmdRestore_Click()
{
    txtLocalPort = QStringLiteral("2500");
    txtLocalPort5 = QStringLiteral("2505");
    txtRemotePort = QStringLiteral("2500");
    txtRemotePort5 = QStringLiteral("2505");
}

void PropertyDialog::cmdApply_Click()
{
    if (!cmdApplyEnabled())
        return;
    if (txtLocalPort->trimmed().isEmpty() || txtRemotePort->trimmed().isEmpty()) {
        m_ctx.prompter().msgBox(m_ctx.translate(QStringLiteral("Local Port and Remote Port must be filled in")));
        cmdRestore_Click();
    }
    Q_EMIT applied();
    Winsock& ws = m_session.winsock(0);
    if (ws.State() != Winsock::sckClosed)
        ws.Close();
    ws.setRemotePort(quint16(iniInt(txtRemotePort)));

    // The asked port, else the next free one of the five after it.
    const int asked = iniInt(txtLocalPort);
    int error = 0;
    for (int counter = 0;; ++counter) {
        if (counter > 5) {
            m_ctx.prompter().msgBox(QStringLiteral("Local Port Setting Error: ") +
                                    QString::number(error) + QLatin1Char(' ') + ws.lastErrorText(),
                                MsgStyle::Exclamation, MainModel::kTitle);
            ws.Close();
            return;
        }
        if (ws.State() != Winsock::sckClosed)
            ws.Close();
        ws.setLocalPort(quint16(asked + counter));
        m_session.idleDelay0();
        error = ws.Listen();
        if (error == 0)
            break;
    }
    m_session.checkStatus();

    m_ctx.views().unload(Form::frmPopMsg);
    txtLocalHost = ws.LocalHostName();
    txtLocalIP = ws.LocalIP();
    lblLocalPort = QString::number(ws.LocalPort());
    lblRemotePort = QString::number(ws.RemotePort());

    if (int(ws.LocalPort()) != asked) {
        m_ctx.prompter().msgBox(m_ctx.translate(QStringLiteral("Local Port")) + QLatin1Char(' ') +
                                QString::number(asked) + QLatin1Char(' ') +
                                m_ctx.translate(QStringLiteral("is used by another application,")) +
                                QStringLiteral("\r\n") +
                                m_ctx.translate(QStringLiteral("it will automatically change to")) +
                                QLatin1Char(' ') + QString::number(ws.LocalPort()),
                            MsgStyle::OkOnly, QStringLiteral("Port Setting"));
        txtLocalPort = QString::number(ws.LocalPort());
    }
    txtLocalPort5 = QString::number(iniInt(txtLocalPort) + 5);
    txtRemotePort5 = QString::number(iniInt(txtRemotePort) + 5);
    m_ctx.writeSetting(QStringLiteral("LocalPort"), QString::number(iniInt(txtLocalPort)));
    m_ctx.writeSetting(QStringLiteral("RemotePort"), QString::number(iniInt(txtRemotePort)));
}

void PropertyDialog::cmdOK_Click()
{
    if (!cmdOKEnabled())
        return;
    lblSysMsg.clear();
    // During a session the ports are not touched.
    if (m_session.winsock(0).State() != Winsock::sckConnected) {
        if (txtLocalPort->trimmed().isEmpty() || txtRemotePort->trimmed().isEmpty())
            cmdRestore_Click();
        cmdApply_Click();
    }
    unloaded = true;
}

void PropertyDialog::cmdCancel_Click()
{
    unloaded = true;
}

QString PropertyDialog::HostsPath() const
{
    const QString configured = m_ctx.setting(QStringLiteral("HostsPath"));
    if (!configured.isEmpty())
        return configured;
#ifdef Q_OS_WIN
    return qEnvironmentVariable("SystemRoot", QStringLiteral("C:\\Windows")) +
           QStringLiteral("\\System32\\drivers\\etc\\hosts");
#else
    return QStringLiteral("/etc/hosts");
#endif
}

void PropertyDialog::cmdHostConfig_Click()
{
    m_ctx.desktop().openFile(HostsPath());
}

void PropertyDialog::cmdBadIPLst_Click()
{
    m_ctx.views().runModal(Form::frmIPBlocking);
}

void PropertyDialog::cmdSafeLst_Click()
{
    m_ctx.views().runModal(Form::frmIPPermit);
}

void PropertyDialog::cmdHelp_Click()
{
    m_ctx.desktop().openFile(m_ctx.HelpPath + QStringLiteral("property.htm"));
}

}  // namespace vonnel
