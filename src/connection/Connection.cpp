#include "connection/Connection.h"

#include "connection/PrivateLink.h"
#include "core/Cp1252.h"


#include "connection/AddressServices.h"
#include "connection/LoginDialog.h"
#include "connection/PropertyDialog.h"
#include "core/IniStore.h"
#include "platform/Prompter.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "platform/Clock.h"
#include "core/MainModel.h"
#include "core/Views.h"

#include <QHostAddress>
#include <QLocale>
#include <QNetworkInterface>

namespace vonnel {

Connection::Connection(CopyContext& ctx, MainModel& model, Session& session, Sender& sender,
                       Encryption& cipher, QObject* parent)
    : QObject(parent),
      m_ctx(ctx),
      m_model(model),
      m_session(session),
      m_sender(sender),
      m_cipher(cipher),
      m_address(std::make_unique<AddressServices>(ctx, model)),
      m_private(std::make_unique<PrivateLink>(ctx, session))
{
    // A session that cannot go on (a failed handshake, a refused peer) ends
    // as by the Disconnect entry, once the arrival that decided it is done.
    connect(m_private.get(), &PrivateLink::endSession, this, &Connection::mnuDisconnect_Click,
            Qt::QueuedConnection);
    for (int i = 0; i < 2; ++i) {
        Winsock& ws = m_session.winsock(i);
        // Decisions and ends of sessions run from the event loop, never
        // inside the socket's own signal.
        connect(&ws, &Winsock::ConnectionRequest, this, &Connection::Winsock_ConnectionRequest,
                Qt::QueuedConnection);
        connect(&ws, &Winsock::Connect_, this, &Connection::winsock_Connect, Qt::QueuedConnection);
        connect(&ws, &Winsock::Close_, this, &Connection::Winsock_Close, Qt::QueuedConnection);
        connect(&ws, &Winsock::Error, this, &Connection::Winsock_Error);
    }
    Winsock& ws = m_session.winsock(0);
    connect(&ws, &Winsock::SendComplete, this, &Connection::Winsock_SendComplete);
    connect(&ws, &Winsock::SendProgress, this, &Connection::Winsock_SendProgress);
    // The first data of a session is what the caller waits for.
    connect(&ws, &Winsock::DataArrival, this, [this](int index, qint64) {
        if (index == 0)
            m_session.RemoteResponded = true;
    });
}

Connection::~Connection() = default;

void Connection::spin()
{
    m_session.yieldEvents();
    m_ctx.clock().pauseMicroseconds(50);
}

void Connection::showMain()
{
    if (!m_model.isVisible() || m_model.windowState() == MainModel::vbMinimized) {
        m_model.setVisible(true);
        m_model.setWindowState(MainModel::vbNormal);
        m_model.setVisible(true);
    }
}

bool Connection::isOwnAddress(const QString& text) const
{
    const QString t = text.trimmed();
    Winsock& ws = m_session.winsock(0);
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
    Winsock& ws = m_session.winsock(m_session.sIdx);
    ws.setLocalPort(quint16(m_ctx.settingInt(QStringLiteral("LocalPort"))));
    ws.Listen();
    m_session.checkStatus();
    if (ws.State() == Winsock::sckListening)
        return;
    const quint16 next = quint16(ws.LocalPort() + 1);
    ws.setLocalPort(next);
    ws.Listen();
    const QString text = QStringLiteral("Error: Local Port Address in use by another program") +
                         kCrLf + QStringLiteral("it will automatically change to");
    m_ctx.prompter().msgBox(text, MsgStyle::Information,
                        QStringLiteral("Port Setting") + QLatin1Char(' ') + QString::number(next));
    m_model.stStatusbar.setTag(2, m_ctx.translate(QStringLiteral("Local Port")));
    m_model.stStatusbar.setText(2, m_model.stStatusbar.panel(2).tag + QStringLiteral(" = ") +
                                 QString::number(ws.LocalPort()));
    m_model.stStatusbar.setToolTip(2, m_model.stStatusbar.text(2));
    ShowLocalInfo();
    // An automatic change lasts.
    m_ctx.writeSetting(QStringLiteral("LocalPort"), QString::number(ws.LocalPort()));
}

void Connection::ShowLocalInfo()
{
    if (m_session.IsConnected())
        return;
    AddressServices& a = address();
    a.GetLocalHost();
    QString lines = m_ctx.translate(QStringLiteral("Computer Name")) + QStringLiteral(": ") +
                    a.ComputerName() + kCrLf;
    for (const QString& ip : a.localAddresses) {
        if (ip == QLatin1String("0.0.0.0"))
            continue;
        lines += m_ctx.translate(QStringLiteral("Address")) + QStringLiteral("    IP ") +
                 QStringLiteral(": ") + ip + kCrLf;
    }
    lines += m_ctx.translate(QStringLiteral("Port")) + QStringLiteral("\t : ") +
             QString::number(m_session.winsock(0).LocalPort());
    m_model.txtServer.append(lines);
}

PropertyDialog& Connection::propertyDialog()
{
    if (!m_property) {
        m_property = std::make_unique<PropertyDialog>(m_ctx, m_model, m_session);
        connect(m_property.get(), &PropertyDialog::applied, this, &Connection::propertiesApplied);
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
    if (m_model.txtServer.locked())
        m_model.txtServer.setLocked(false);
    if (m_session.SessionDateStart.isValid()) {
        const qint64 mins = m_session.minutesSinceStart();
        // Every send comes here: the panel's number is parsed once per text.
        const QString shown = m_model.stStatusbar.text(4);
        if (shown != m_minutesText) {
            m_minutesText = shown;
            m_minutesShown = iniInt(shown);
        }
        if (mins > m_minutesShown)
            m_model.stStatusbar.setText(4, m_session.minutesText());
    }
    m_model.stStatusbar.setPicture(1, StatePicture::picReady);
    if (m_ctx.views().isVisible(Form::frmDraw))
        m_ctx.showDrawStatus(1, QString(), StatePicture::picReady);
}

void Connection::Winsock_SendProgress(int index, qint64 bytesSent, qint64)
{
    if (index > 0)
        return;
    m_model.stStatusbar.setPicture(1, StatePicture::picSend);
    if (m_ctx.views().isVisible(Form::frmDraw))
        m_ctx.showDrawStatus(1, QString(), StatePicture::picSend);
    m_session.bytesSentCount += bytesSent;
    m_session.showByteCount(11, m_session.bytesSentCount);
}

void Connection::stStatusbar_PanelClick(int panel)
{
    StatusBar& bar = m_model.stStatusbar;
    if (bar.panel(panel).key != QLatin1String("Status"))
        return;
    const QString text = bar.text(2);
    if (text == m_ctx.translate(QStringLiteral("Winsock Error: Connection time out"))) {
        m_ctx.prompter().msgBox(
            m_ctx.translate(QStringLiteral("Possible Error:")) + QStringLiteral(" \r\t") +
                QStringLiteral("Invalid Remote IP Address") + QStringLiteral("\r\t") +
                m_ctx.translate(QStringLiteral("Invalid Remote Port Address")) +
                QStringLiteral("\r\t") +
                m_ctx.translate(QStringLiteral("Remote user is not in Ready mode")),
            MsgStyle::Information);
        bar.setToolTip(2, QString());
        mnuDisconnect_Click();
    }
    if (bar.text(2) == m_ctx.translate(QStringLiteral("Ready")))
        bar.setToolTip(2, m_ctx.translate(QStringLiteral("Ready to be connected")));
    if (bar.text(2).startsWith(m_ctx.translate(QStringLiteral("Connection Closed"))) &&
        m_session.winsock(m_session.sIdx).State() == Winsock::sckClosed)
        mnuDisconnect_Click();
    if (bar.text(2) ==
        m_ctx.translate(QStringLiteral("Socket Error: Disconnected by remote computer")))
        bar.setToolTip(2, m_ctx.translate(QStringLiteral("Click Refresh button to reset")));
    m_session.checkStatus();
}

}  // namespace vonnel
