#include "connection/Session.h"

#include "core/CopyContext.h"
#include "core/MainModel.h"
#include "core/Sender.h"
#include "core/Views.h"
#include "platform/Clock.h"
#include "platform/Cursor.h"
#include "core/WireCodec.h"

#include <QCoreApplication>
#include <QLocale>
#include <optional>

namespace vonnel {

Session::Session(CopyContext& ctx, MainModel& model, Sender& sender, QObject* parent)
    : QObject(parent), m_ctx(ctx), m_model(model), m_sender(sender)
{
    for (int i = 0; i < 2; ++i)
        m_winsock[size_t(i)] = std::make_unique<Winsock>(i);
    // The counters belong to one session: none is carried past its end or
    // into the next one.
    const auto resetCounters = [this] {
        bytesSentCount = 0;
        arrivedLength = 0;
        m_model.stStatusbar.setText(10, QString());
        m_model.stStatusbar.setText(11, QString());
        m_model.stStatusbar.setText(3, QString::number(m_model.txtServer.length()) +
                                           QStringLiteral(" - ") +
                                           QString::number(m_model.txtClient(sIdx).length()));
    };
    connect(this, &Session::sessionEnded, this, resetCounters);
    connect(this, &Session::sessionOpened, this, resetCounters);
}

Session::~Session() = default;

bool Session::IsConnected() const
{
    if (m_ctx.ProgramExiting)
        return false;
    return m_winsock[0]->State() == Winsock::sckConnected;
}

void Session::checkStatus()
{
    CopyContext& c = m_ctx;
    StatusBar& bar = m_model.stStatusbar;
    const QString minute = c.translate(QStringLiteral("Minute"), QStringLiteral("min"));
    const QString connecting = c.translate(QStringLiteral("Connecting"));
    const QString pending = c.translate(QStringLiteral("Connection Pending"));
    const QString ready = c.translate(QStringLiteral("Ready"));
    const QString closed = c.translate(QStringLiteral("Connection Closed"));
    const QString wsError = c.translate(QStringLiteral("Winsock Error"));
    const QString resolving = c.translate(QStringLiteral("Resolving Host"));
    const QString resolved = c.translate(QStringLiteral("Host Resolved"));
    const QString reset = c.translate(QStringLiteral(" - Click here to reset to Listening mode"));

    // During a paste the panels are left as they stand.
    if (PasteInProgress)
        return;

    Winsock& ws = winsock(sIdx);
    auto paintClosed = [&](const QString& text) {
        if (c.views().isVisible(Form::frmDraw)) {
            Q_EMIT c.drawStatus(1, QString(), StatePicture::picOff);
            Q_EMIT c.drawStatus(2, text, StatePicture::None);
        } else {
            bar.setPicture(1, StatePicture::picOff);
        }
    };
    if (ws.State() == Winsock::sckConnected) {
        bar.setText(2, c.translate(QStringLiteral("Connected:")) + QLatin1Char(' ') +
                           ws.RemoteHostIP());
        m_model.txtServer.setEnabled(true);
        const qint64 mins = SessionDateStart.isValid()
                                ? SessionDateStart.secsTo(c.clock().now()) / 60
                                : 0;
        bar.setText(4, QString::number(mins) + QLatin1Char(' ') + minute);
        EnableDisconnect();
    }
    if (ws.State() == Winsock::sckConnecting)
        bar.setText(2, connecting + QStringLiteral(" ..."));
    if (ws.State() == Winsock::sckConnectionPending)
        bar.setText(2, pending);
    if (ws.State() == Winsock::sckClosing)
        bar.setText(2, QStringLiteral("..."));
    if (ws.State() == Winsock::sckListening) {
        bar.setText(2, ready);
        EnableConnect();
    }
    if (ws.State() <= Winsock::sckClosed) {
        bar.setText(2, closed + reset);
        paintClosed(closed + reset);
        EnableConnect();
    }
    if (ws.State() == Winsock::sckError) {
        bar.setText(2, wsError + QLatin1Char(':'));
        paintClosed(wsError + QLatin1Char(':'));
        EnableConnect();
    }
    if (ws.State() == Winsock::sckResolvingHost)
        bar.setText(2, resolving + QStringLiteral("..."));
    if (ws.State() == Winsock::sckHostResolved)
        bar.setText(2, resolved);
}

void Session::EnableConnect()
{
    Controls& controls = m_model.controls;
    controls.setEnabled(Control::mnuConnect, true);
    controls.setEnabled(Control::Toolbar1_1, true);
    controls.setEnabled(Control::mnuDisconnect, false);
    controls.setEnabled(Control::Toolbar1_2, false);
}

void Session::EnableDisconnect()
{
    Controls& controls = m_model.controls;
    controls.setEnabled(Control::mnuConnect, false);
    controls.setEnabled(Control::Toolbar1_1, false);
    controls.setEnabled(Control::mnuDisconnect, true);
    controls.setEnabled(Control::Toolbar1_2, true);
}

void Session::cmdHiddenReady_Click()
{
    NotReadySent = false;
    yieldEvents();
    if (!m_ctx.ProgramExiting && IsConnected())
        m_sender.xSendData(wire::text(wire::kReady));
}

void Session::cmdHiddenNotReady_Click()
{
    NotReadySent = true;
    yieldEvents();
    if (!m_ctx.ProgramExiting && IsConnected())
        m_sender.xSendData(wire::text(wire::kNotReady));
}

void Session::idleDelay(double& seconds, bool keepPointer)
{
    if (seconds == 0)
        seconds = m_ctx.settingNumber(QStringLiteral("Connect Idle"));
    if (seconds <= 0)
        return;
    // The hourglass is asked for before the spin and the normal pointer
    // after it. No events run meanwhile, and the window system is handed
    // pointer changes at the next turn of the event loop: for a wait on
    // its own the user sees a window that does not answer and, depending
    // on the platform, the hourglass for the wait or no change at all; a
    // wait that a blocking send or another wait follows shows the
    // hourglass until the loop runs again.
    std::optional<WaitPointer> busy;
    if (!keepPointer)
        busy.emplace(m_ctx.cursor());
    // No events run meanwhile: nothing may change the socket during it.
    m_ctx.clock().spinFor(seconds);
}

void Session::yieldEvents()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

QString Session::byteCountText(qint64 bytes)
{
    if (bytes <= 1000)
        return QString::number(bytes) + QStringLiteral(" B");
    return QLocale().toString(double(bytes) / 1024.0, 'f', 2) + QStringLiteral(" KB");
}

}  // namespace vonnel
