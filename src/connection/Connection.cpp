#include "connection/Connection.h"

#include "core/IniStore.h"
#include "platform/Prompter.h"
#include "shell/FrmMain.h"
#include "shell/Views.h"

#include <QHostInfo>
#include <QNetworkInterface>

namespace vonnel {

Connection::Connection(FrmMain& frm) : QObject(&frm), m_frm(frm)
{
    Winsock& ws = frm.winsock(0);
    connect(&ws, &Winsock::SendComplete, this, &Connection::Winsock_SendComplete);
    connect(&ws, &Winsock::SendProgress, this, &Connection::Winsock_SendProgress);
}

void Connection::mnuDisconnect_Click()
{
    FrmMain& f = m_frm;
    Winsock& ws = f.winsock(f.sIdx);
    f.StopConnecting = true;
    if (f.TransferOnHold) {
        const Answer a = f.prompter().msgBox(
            f.translate(QStringLiteral("You have a file sending/receiving 'on hold',")) +
                QStringLiteral("\r\n") + f.translate(QStringLiteral("Do you want to continue to exit?")),
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
        f.checkStatus();
    }
    if (ws.State() == Winsock::sckConnected) {
        f.txtClient().setEnabled(false);
        f.xSendData(QString(QChar(7)));
        ws.Close();
        f.checkStatus();
        ws.setLocalPort(quint16(f.settingInt(QStringLiteral("LocalPort"))));
        ws.Listen();
        f.checkStatus();
        f.controls.setEnabled(QStringLiteral("mnuSave"), true);
        f.SessionEndTime = f.clock().timeOfDay();
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
}

void Connection::ListenOnLocalPort()
{
    FrmMain& f = m_frm;
    Winsock& ws = f.winsock(f.sIdx);
    ws.setLocalPort(quint16(f.settingInt(QStringLiteral("LocalPort"))));
    ws.Listen();
    f.checkStatus();
    if (ws.State() == Winsock::sckListening)
        return;
    const quint16 next = quint16(ws.LocalPort() + 1);
    ws.setLocalPort(next);
    ws.Listen();
    const QString text = QStringLiteral("Error: Local Port Address in use by another program") +
                         QStringLiteral("\r\n") + QStringLiteral("it will automatically change to");
    f.prompter().msgBox(text, MsgStyle::Information,
                        QStringLiteral("Port Setting") + QLatin1Char(' ') + QString::number(next));
    f.stStatusbar.setTag(2, f.translate(QStringLiteral("Local Port")));
    f.stStatusbar.setText(2, f.stStatusbar.panel(2).tag + QStringLiteral(" = ") +
                                 QString::number(ws.LocalPort()));
    f.stStatusbar.setToolTip(2, f.stStatusbar.text(2));
    ShowLocalInfo();
    f.writeSetting(QStringLiteral("LocalPort"), QString::number(ws.LocalPort()));
}

void Connection::ShowLocalInfo()
{
    FrmMain& f = m_frm;
    if (f.IsConnected())
        return;
    QString lines = f.translate(QStringLiteral("Computer Name")) + QStringLiteral(": ") +
                    QHostInfo::localHostName() + QStringLiteral("\r\n");
    int n = 0;
    for (const QHostAddress& a : QNetworkInterface::allAddresses()) {
        if (a.protocol() != QAbstractSocket::IPv4Protocol || a.toString() == QLatin1String("0.0.0.0"))
            continue;
        if (++n > 10)
            break;
        lines += f.translate(QStringLiteral("Address")) + QStringLiteral("    IP ") +
                 QString::number(n) + QStringLiteral(": ") + a.toString() + QStringLiteral("\r\n");
    }
    lines += f.translate(QStringLiteral("Port")) + QStringLiteral("\t : ") +
             QString::number(f.winsock(0).LocalPort());
    f.txtServer.append(lines);
}

void Connection::Winsock_SendComplete(int index)
{
    if (index > 0)
        return;
    FrmMain& f = m_frm;
    if (f.txtServer.locked())
        f.txtServer.setLocked(false);
    if (f.SessionDateStart.isValid()) {
        const qint64 mins = f.SessionDateStart.secsTo(f.clock().now()) / 60;
        if (mins > iniInt(f.stStatusbar.text(4)))
            f.stStatusbar.setText(4, QString::number(mins) + QLatin1Char(' ') +
                                         f.translate(QStringLiteral("min.")));
    }
    f.stStatusbar.setPicture(1, StatePicture::picReady);
    if (f.views().isVisible(QStringLiteral("frmDraw")))
        Q_EMIT f.drawStatus(1, QString(), StatePicture::picReady);
}

void Connection::Winsock_SendProgress(int index, qint64 bytesSent, qint64)
{
    if (index > 0)
        return;
    FrmMain& f = m_frm;
    f.stStatusbar.setPicture(1, StatePicture::picSend);
    if (f.views().isVisible(QStringLiteral("frmDraw")))
        Q_EMIT f.drawStatus(1, QString(), StatePicture::picSend);
    f.bytesSentCount += bytesSent;
    f.stStatusbar.setText(11, FrmMain::byteCountText(f.bytesSentCount));
}

}  // namespace vonnel
