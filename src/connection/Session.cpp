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
        for (CountPanel& c : m_counts)
            c.timer.stop();
        m_model.stStatusbar.setText(10, QString());
        m_model.stStatusbar.setText(11, QString());
        m_model.stStatusbar.setText(3, QString::number(m_model.txtServer.length()) +
                                           QStringLiteral(" - ") +
                                           QString::number(m_model.txtClient(sIdx).length()));
    };
    for (int i = 0; i < 2; ++i) {
        m_counts[size_t(i)].timer.setSingleShot(true);
        connect(&m_counts[size_t(i)].timer, &QTimer::timeout, this, [this, i] { paintCount(10 + i); });
    }
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
    // This runs at every arrival: only the texts the state needs are looked
    // up, in the branch that shows them.
    // During a paste the panels are left as they stand.
    if (PasteInProgress)
        return;

    Winsock& ws = winsock(sIdx);
    auto paintClosed = [&](const QString& text) {
        if (c.views().isVisible(Form::frmDraw)) {
            c.showDrawStatus(1, QString(), StatePicture::picOff);
            c.showDrawStatus(2, text, StatePicture::None);
        } else {
            bar.setPicture(1, StatePicture::picOff);
        }
    };
    if (ws.State() == Winsock::sckConnected) {
        bar.setText(2, m_connectedText.of(c.translate(QStringLiteral("Connected:")),
                                          ws.RemoteHostIP()));
        m_model.txtServer.setEnabled(true);
        bar.setText(4, minutesText());
        EnableDisconnect();
    }
    if (ws.State() == Winsock::sckConnecting)
        bar.setText(2, c.translate(QStringLiteral("Connecting")) + QStringLiteral(" ..."));
    if (ws.State() == Winsock::sckConnectionPending)
        bar.setText(2, c.translate(QStringLiteral("Connection Pending")));
    if (ws.State() == Winsock::sckClosing)
        bar.setText(2, QStringLiteral("..."));
    if (ws.State() == Winsock::sckListening) {
        bar.setText(2, c.translate(QStringLiteral("Ready")));
        EnableConnect();
    }
    if (ws.State() <= Winsock::sckClosed) {
        const QString text = c.translate(QStringLiteral("Connection Closed")) +
                             c.translate(QStringLiteral(" - Click here to reset to Listening mode"));
        bar.setText(2, text);
        paintClosed(text);
        EnableConnect();
    }
    if (ws.State() == Winsock::sckError) {
        const QString text = c.translate(QStringLiteral("Winsock Error")) + QLatin1Char(':');
        bar.setText(2, text);
        paintClosed(text);
        EnableConnect();
    }
    if (ws.State() == Winsock::sckResolvingHost)
        bar.setText(2, c.translate(QStringLiteral("Resolving Host")) + QStringLiteral("..."));
    if (ws.State() == Winsock::sckHostResolved)
        bar.setText(2, c.translate(QStringLiteral("Host Resolved")));
}

qint64 Session::minutesSinceStart() const
{
    if (!SessionDateStart.isValid())
        return 0;
    return (m_ctx.clock().nowMs() - SessionDateStart.toMSecsSinceEpoch()) / 1000 / 60;
}

const QString& Session::minutesText()
{
    return m_minutesText.of(minutesSinceStart(),
                            m_ctx.translate(QStringLiteral("Minute"), QStringLiteral("min")));
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

void Session::showByteCount(int panel, qint64 bytes)
{
    CountPanel& c = m_counts[size_t(panel - 10)];
    c.bytes = bytes;
    const qint64 now = m_ctx.clock().steadyMs();
    if (c.shownAtMs < 0 || now - c.shownAtMs >= kCountRepaintMs || now < c.shownAtMs)
        paintCount(panel);
    else if (!c.timer.isActive())
        c.timer.start(int(kCountRepaintMs - (now - c.shownAtMs)));
}

void Session::paintCount(int panel)
{
    CountPanel& c = m_counts[size_t(panel - 10)];
    c.timer.stop();
    c.shownAtMs = m_ctx.clock().steadyMs();
    m_model.stStatusbar.setText(panel, byteCountText(c.bytes));
}

QString Session::byteCountText(qint64 bytes)
{
    return StatusBar::byteCountText(bytes);
}

void Session::endedNow()
{
    SessionEndTime = m_ctx.clock().timeOfDay();
    Q_EMIT sessionEnded();
}

}  // namespace vonnel
