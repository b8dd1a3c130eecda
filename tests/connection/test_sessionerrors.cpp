// Sessions that end badly: socket errors, refused and repeated calls, the
// counters of a session that is over.

#include "connection/SessionPeers.h"
#include "support/Session.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTimer>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

// Remembers which dialogs were run and what the properties dialog said.
class RecordingViews : public Views {
public:
    explicit RecordingViews(FrmMain& f) : m_frm(f) {}
    bool runModal(Form form) override
    {
        shown << form;
        if (PropertyDialog* p = m_frm.connection().property())
            sysMsg = p->lblSysMsg;
        return false;
    }
    QList<Form> shown;
    QString sysMsg;

private:
    FrmMain& m_frm;
};

TEST(Sessions, SocketErrorReportsAndOffersRecoveryUnlessSwitchedOff)
{
    for (const char* noRecover : {"0", "1"}) {
        Callee b;
        ASSERT_TRUE(b.started);
        b.copy.set("No Recover Socket Error", noRecover);
        FrmMain& f = b.copy.frm();
        Views* headless = &f.ctx().views();
        RecordingViews views(f);
        f.ctx().setViews(&views);
        QTcpSocket peer;
        acceptRawPeer(b.copy, peer);
        ASSERT_TRUE(f.session().IsConnected());
        f.model().txtClient(0).setText("typed");
        b.rings.clear();

        f.connection().Winsock_Error(0, 10054, "Connection reset by peer");
        EXPECT_EQ(b.rings, QStringList{"error.wav"});
        EXPECT_EQ(f.model().stStatusbar.text(2), "Socket Error: Disconnected by remote computer");
        EXPECT_EQ(f.model().caption(), "Vonnel");
        EXPECT_EQ(f.model().txtClient(0).text(), "typed\r\n[Closed]");
        EXPECT_TRUE(f.model().controls.enabled(Control::mnuConnect));
        EXPECT_TRUE(sessionLog(b.copy).contains("=> Close connection with 127.0.0.1"));
        if (QString(noRecover) == "0") {
            EXPECT_EQ(views.shown, QList<Form>{Form::frmProperty});
            EXPECT_EQ(views.sysMsg, "Socket/Network Error: Verify your setting or click OK to "
                                    "recover it automatically.");
        } else {
            EXPECT_TRUE(views.shown.isEmpty());
        }
        EXPECT_EQ(f.connection().property(), nullptr);
        // Not left deaf: the next caller finds it listening.
        EXPECT_EQ(f.session().winsock(0).State(), Winsock::sckListening);
        f.ctx().setViews(headless);
    }
}

TEST(Pings, UnansweredEchoEndsWithinItsTime)
{
    Pinger p;
    EXPECT_FALSE(p.echo("not an address"));
    QElapsedTimer t;
    t.start();
    // Only loopback may be probed from here, and it always answers; the wait
    // of an unanswered echo is tested in the network tools' own tests.
    EXPECT_FALSE(p.echo("127.0.0.300", 200));  // no address: nothing is sent
    EXPECT_LT(t.elapsed(), 1000);
}

}  // namespace

namespace {

// A call after this side ended the previous session itself: the caller
// waits for the answer and never shows "Connected" while the question is
// open; when the other side refuses (closes without a word), the caller
// says so. (The deciding side is a raw listener here: two copies in one
// thread would nest one's question inside the other's wait.)
TEST(Sessions, SecondCallWaitsForTheAnswerAndReportsARefusal)
{
    Caller a;
    ASSERT_TRUE(a.started);
    FrmMain& fa = a.copy.frm();
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost, 0));
    QTcpSocket* peer = nullptr;
    bool answer = true;
    QObject::connect(&server, &QTcpServer::newConnection, [&] {
        peer = server.nextPendingConnection();
        if (answer)
            peer->write("!ver. Other 1.0.0 ver!");
    });
    ASSERT_TRUE(a.call("127.0.0.1", server.serverPort()));
    a.endCall();
    ASSERT_TRUE(fa.session().IsConnected());
    ASSERT_TRUE(fa.session().RemoteResponded);
    fa.connection().mnuDisconnect_Click();

    // Second call: the question stays open for a while, then "No".
    answer = false;
    QStringList shownByCaller;
    QObject listening;  // ends the watch before the list goes
    QObject::connect(&fa.model().stStatusbar, &StatusBar::panelChanged, &listening, [&](int n) {
        if (n == 2)
            shownByCaller << fa.model().stStatusbar.text(2);
    });
    bool upWhileAsking = true;
    QTimer::singleShot(700, [&] {
        upWhileAsking = fa.session().RemoteResponded || fa.model().caption().startsWith("Vonnel - ");
        if (peer)
            peer->disconnectFromHost();
    });
    LoginDialog* d = a.call("127.0.0.1", server.serverPort());
    ASSERT_TRUE(d);
    EXPECT_FALSE(upWhileAsking);
    EXPECT_FALSE(fa.session().IsConnected());
    for (const QString& text : shownByCaller)
        EXPECT_FALSE(text.startsWith("Connected")) << text.toStdString();
    EXPECT_EQ(fa.model().stStatusbar.text(2), "The remote user did not accept the connection")
        << shownByCaller.join(" | ").toStdString();
    EXPECT_TRUE(d->txtStatus->contains("The remote user did not accept the connection"));
    a.endCall();
}

}  // namespace

namespace {

// The byte counters of panels 10 and 11 show one session: they are empty
// again once it has ended.
TEST(Sessions, CountersDoNotOutliveTheSession)
{
    TestCopy copy(0, {{"No Recover Socket Error", "1"}});
    ASSERT_TRUE(copy.start());
    QTcpSocket peer;
    acceptRawPeer(copy, peer);
    FrmMain& f = copy.frm();
    f.sender().xSendData("<MSG> hello </MSG>");
    peer.write("^ffArial^fbFalse^fiFalse^fs10^fc0^bc16777215^>");
    ASSERT_TRUE(waitUntil([&] {
        return !f.model().stStatusbar.text(10).isEmpty() && !f.model().stStatusbar.text(11).isEmpty();
    }));
    peer.disconnectFromHost();
    ASSERT_TRUE(waitUntil([&] { return f.session().winsock(0).State() == Winsock::sckListening; }));
    EXPECT_TRUE(f.model().stStatusbar.text(10).isEmpty()) << f.model().stStatusbar.text(10).toStdString();
    EXPECT_TRUE(f.model().stStatusbar.text(11).isEmpty()) << f.model().stStatusbar.text(11).toStdString();
    EXPECT_EQ(f.session().bytesSentCount, 0);
}

}  // namespace
