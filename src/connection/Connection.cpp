#include "connection/Connection.h"


#include "connection/AddressServices.h"
#include "connection/LoginDialog.h"
#include "connection/PropertyDialog.h"
#include "core/IniStore.h"
#include "platform/Prompter.h"
#include "shell/FrmMain.h"
#include "shell/Views.h"

#include <QHostAddress>
#include <QLocale>
#include <QNetworkInterface>
#include <QThread>

namespace vonnel {

namespace {
const QString kCrLf = QStringLiteral("\r\n");
}

Connection::Connection(FrmMain& frm)
    : QObject(&frm), m_frm(frm), m_address(std::make_unique<AddressServices>(frm))
{
    for (int i = 0; i < 2; ++i) {
        Winsock& ws = frm.winsock(i);
        // Decisions and ends of sessions run from the event loop, never
        // inside the socket's own signal.
        connect(&ws, &Winsock::ConnectionRequest, this, &Connection::Winsock_ConnectionRequest,
                Qt::QueuedConnection);
        connect(&ws, &Winsock::Connect_, this, &Connection::winsock_Connect, Qt::QueuedConnection);
        connect(&ws, &Winsock::Close_, this, &Connection::Winsock_Close, Qt::QueuedConnection);
        connect(&ws, &Winsock::Error, this, &Connection::Winsock_Error);
    }
    Winsock& ws = frm.winsock(0);
    connect(&ws, &Winsock::SendComplete, this, &Connection::Winsock_SendComplete);
    connect(&ws, &Winsock::SendProgress, this, &Connection::Winsock_SendProgress);
    // The first data of a session is what the caller waits for.
    connect(&ws, &Winsock::DataArrival, this, [this](int index, qint64) {
        if (index == 0)
            m_frm.RemoteResponded = true;
    });
}

Connection::~Connection() = default;

void Connection::spin()
{
    m_frm.yieldEvents();
    QThread::usleep(50);
}

void Connection::showMain()
{
    FrmMain& f = m_frm;
    if (!f.isVisible() || f.windowState() == FrmMain::vbMinimized) {
        f.setVisible(true);
        f.setWindowState(FrmMain::vbNormal);
        f.setVisible(true);
    }
}

bool Connection::isOwnAddress(const QString& text) const
{
    const QString t = text.trimmed();
    Winsock& ws = m_frm.winsock(0);
    if (t.compare(ws.LocalHostName(), Qt::CaseInsensitive) == 0 || t == ws.LocalIP() ||
        t.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0)
        return true;
    QHostAddress a;
    if (!a.setAddress(t))
        return false;
    if (a.isLoopback())
        return true;
    for (const QHostAddress& own : QNetworkInterface::allAddresses())
        if (own.isEqual(a, QHostAddress::ConvertV4MappedToIPv4))
            return true;
    return false;
}

// --- local identity and port ------------------------------------------------------------

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
                         kCrLf + QStringLiteral("it will automatically change to");
    f.prompter().msgBox(text, MsgStyle::Information,
                        QStringLiteral("Port Setting") + QLatin1Char(' ') + QString::number(next));
    f.stStatusbar.setTag(2, f.translate(QStringLiteral("Local Port")));
    f.stStatusbar.setText(2, f.stStatusbar.panel(2).tag + QStringLiteral(" = ") +
                                 QString::number(ws.LocalPort()));
    f.stStatusbar.setToolTip(2, f.stStatusbar.text(2));
    ShowLocalInfo();
    // An automatic change lasts.
    f.writeSetting(QStringLiteral("LocalPort"), QString::number(ws.LocalPort()));
}

void Connection::ShowLocalInfo()
{
    FrmMain& f = m_frm;
    if (f.IsConnected())
        return;
    AddressServices& a = address();
    a.GetLocalHost();
    QString lines = f.translate(QStringLiteral("Computer Name")) + QStringLiteral(": ") +
                    a.ComputerName() + kCrLf;
    for (const QString& ip : a.localAddresses) {
        if (ip == QLatin1String("0.0.0.0"))
            continue;
        lines += f.translate(QStringLiteral("Address")) + QStringLiteral("    IP ") +
                 QStringLiteral(": ") + ip + kCrLf;
    }
    lines += f.translate(QStringLiteral("Port")) + QStringLiteral("\t : ") +
             QString::number(f.winsock(0).LocalPort());
    f.txtServer.append(lines);
}

PropertyDialog& Connection::propertyDialog()
{
    if (!m_property) {
        m_property = std::make_unique<PropertyDialog>(m_frm);
        m_property->Form_Load();
    }
    return *m_property;
}

void Connection::unloadProperty()
{
    m_property.reset();
}

// --- the running session's send events ------------------------------------------------

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
