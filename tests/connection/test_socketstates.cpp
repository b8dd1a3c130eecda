#include "connection/Connection.h"
#include "core/IniStore.h"
#include "core/MainModel.h"
#include "core/StatusBar.h"
#include "wire/LiveTyping.h"
#include "support/Session.h"
#include "support/TestCopy.h"
#include "connection/Session.h"
#include "platform/Winsock.h"
#include "core/CopyContext.h"

#include <QElapsedTimer>
#include <QLocale>
#include <QTcpSocket>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

class SocketStates : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(copy.start()); }
    TestCopy copy;
    FrmMain& f() { return copy.frm(); }
};

TEST_F(SocketStates, ListeningReadsReadyAndEnablesConnect)
{
    f().session().checkStatus();
    EXPECT_EQ(f().model().stStatusbar.text(2), "Ready");
    EXPECT_TRUE(f().model().controls.enabled(Control::mnuConnect));
    EXPECT_TRUE(f().model().controls.enabled(Control::Toolbar1_1));
    EXPECT_FALSE(f().model().controls.enabled(Control::mnuDisconnect));
    EXPECT_FALSE(f().model().controls.enabled(Control::Toolbar1_2));
}

TEST_F(SocketStates, ClosedSocketOffersResetAndAClickListensAgain)
{
    f().session().winsock(0).Close();
    f().session().checkStatus();
    EXPECT_EQ(f().model().stStatusbar.text(2), "Connection Closed - Click here to reset to Listening mode");
    EXPECT_EQ(f().model().stStatusbar.panel(1).picture, StatePicture::picOff);
    f().connection().stStatusbar_PanelClick(3);  // not the status panel: nothing happens
    EXPECT_EQ(f().session().winsock(0).State(), Winsock::sckClosed);
    f().connection().stStatusbar_PanelClick(2);
    EXPECT_EQ(f().session().winsock(0).State(), Winsock::sckListening);
    EXPECT_EQ(f().model().stStatusbar.text(2), "Ready");
    f().connection().stStatusbar_PanelClick(2);
    EXPECT_EQ(f().model().stStatusbar.panel(2).toolTip, "Ready to be connected");
}

TEST_F(SocketStates, PasteInProgressFreezesThePanels)
{
    f().model().stStatusbar.setText(2, "typing");
    f().session().PasteInProgress = true;
    f().session().winsock(0).Close();
    f().session().checkStatus();
    EXPECT_EQ(f().model().stStatusbar.text(2), "typing");
    EXPECT_TRUE(f().model().controls.enabled(Control::mnuConnect));
}

TEST_F(SocketStates, ConnectedSessionAndShutdownFlag)
{
    // A raw peer is taken on as the session.
    QTcpSocket peer;
    acceptRawPeer(copy, peer);
    ASSERT_EQ(f().session().winsock(0).State(), Winsock::sckConnected);
    f().session().checkStatus();
    EXPECT_EQ(f().model().stStatusbar.text(2), "Connected: 127.0.0.1");
    EXPECT_TRUE(f().session().IsConnected());
    EXPECT_TRUE(f().model().controls.enabled(Control::mnuDisconnect));
    EXPECT_FALSE(f().model().controls.enabled(Control::mnuConnect));

    // The hidden commands tell the peer whether this side is ready.
    f().session().cmdHiddenNotReady_Click();
    f().session().cmdHiddenReady_Click();
    ASSERT_TRUE(waitUntil([&] { return peer.bytesAvailable() >= 25; }));
    EXPECT_EQ(peer.readAll(), QByteArray("&&!NotReady!&&&&!Ready!&&"));
    EXPECT_FALSE(f().session().NotReadySent);

    f().ctx().ProgramExiting = true;
    EXPECT_FALSE(f().session().IsConnected());
    EXPECT_EQ(f().session().winsock(0).State(), Winsock::sckConnected);
    f().ctx().ProgramExiting = false;
}

TEST_F(SocketStates, PeerCloseIsReportedAsClosingState)
{
    QTcpSocket peer;
    bool closed = false;
    acceptRawPeer(copy, peer);
    ASSERT_EQ(f().session().winsock(0).State(), Winsock::sckConnected);
    // The session's own close handler would listen again at once.
    QObject::disconnect(&f().session().winsock(0), &Winsock::Close_, &f().connection(), nullptr);
    QObject::connect(&f().session().winsock(0), &Winsock::Close_, [&](int) { closed = true; });
    peer.disconnectFromHost();
    ASSERT_TRUE(waitUntil([&] { return closed; }));
    EXPECT_EQ(f().session().winsock(0).State(), Winsock::sckClosing);
    f().session().checkStatus();
    EXPECT_EQ(f().model().stStatusbar.text(2), "...");
}

TEST_F(SocketStates, HiddenReadyWithoutSessionSendsNothing)
{
    // A black-listed caller reaches the port but gets no session.
    copy.set("Detect Bad IP", "1");
    WriteIni(kSection, "Limit", "1", copy.file("badip.txt"));
    WriteIni(kSection, "Restricted IP 1", "127.0.0.1", copy.file("badip.txt"));
    QTcpSocket peer;
    peer.connectToHost(QHostAddress::LocalHost, copy.port());
    ASSERT_TRUE(peer.waitForConnected(2000));
    pump(100);
    ASSERT_EQ(f().session().winsock(0).State(), Winsock::sckListening);
    f().session().cmdHiddenNotReady_Click();
    EXPECT_TRUE(f().session().NotReadySent);
    pump(100);
    EXPECT_EQ(peer.bytesAvailable(), 0);
}

TEST_F(SocketStates, IdleDelayZeroWithEmptyConnectIdleReturnsAtOnce)
{
    copy.set("Connect Idle", "");
    QElapsedTimer t;
    t.start();
    double s = 0;
    f().session().idleDelay(s);
    EXPECT_LT(t.elapsed(), 50);
    copy.set("Connect Idle", "0.2");
    s = 0;
    f().session().idleDelay(s);
    EXPECT_GE(t.elapsed(), 190);
    EXPECT_DOUBLE_EQ(s, 0.2);  // written back to the caller
}

TEST_F(SocketStates, ConnectErrorsAndStates)
{
    Winsock ws(0);
    int errorNumber = 0;
    QObject::connect(&ws, &Winsock::Error, [&](int, int n, const QString&) { errorNumber = n; });
    // Nobody listens on a port we just freed.
    const quint16 dead = freePort();
    ASSERT_EQ(ws.Connect("127.0.0.1", dead), 0);
    EXPECT_TRUE(ws.State() == Winsock::sckResolvingHost || ws.State() == Winsock::sckConnecting);
    ASSERT_TRUE(waitUntil([&] { return errorNumber != 0; }));
    EXPECT_EQ(errorNumber, Winsock::errConnectionRefused);
    EXPECT_EQ(ws.State(), Winsock::sckError);
    // A second listen on a taken port says "address in use".
    Winsock other(1);
    other.setLocalPort(copy.port());
    EXPECT_EQ(other.Listen(), Winsock::errAddressInUse);
    EXPECT_EQ(other.State(), Winsock::sckClosed);
}

// The byte panels: bytes up to 1000, then whole kilobytes of 1024 with
// thousands separators, whatever the locale of the machine.
TEST(ByteCounts, BytesUpToAThousandThenKilobytes)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QList<QPair<qint64, QString>> cases = {
        {0, "0 B"},          {1000, "1000 B"},          {1001, "1 KB"},
        {2048, "2 KB"},      {69181, "68 KB"},          {5274624, "5,151 KB"},
        {5275136, "5,152 KB"}, {1073741824, "1,048,576 KB"},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(Session::byteCountText(bytes), text) << bytes;
        EXPECT_EQ(StatusBar::byteCountText(bytes), text) << bytes;
    }
    QLocale::setDefault(before);
}

// The minutes panel has one form on every path that writes it: at the
// accept, at each send, at each arrival and at the close.
TEST(MinutesPanel, OneFormOnEveryPath)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    QTcpSocket peer;
    acceptRawPeer(copy, peer);
    FrmMain& f = copy.frm();
    const StatusBar& bar = f.model().stStatusbar;
    ASSERT_TRUE(waitUntil([&] { return f.session().IsConnected(); }));
    EXPECT_EQ(bar.text(4), "0 min");
    f.session().SessionDateStart = f.session().SessionDateStart.addSecs(-3 * 60 - 5);
    f.typing().typeText("x");
    EXPECT_TRUE(waitUntil([&] { return bar.text(4) == "3 min"; }, 2000)) << bar.text(4).toStdString();
    f.session().SessionDateStart = f.session().SessionDateStart.addSecs(-60);
    peer.write("<KEY> y <:KEY>1</KEY>");
    peer.flush();
    EXPECT_TRUE(waitUntil([&] { return bar.text(4) == "4 min"; }, 2000)) << bar.text(4).toStdString();
    f.session().SessionDateStart = f.session().SessionDateStart.addSecs(-60);
    peer.close();
    EXPECT_TRUE(waitUntil([&] { return !f.session().IsConnected(); }));
    EXPECT_EQ(bar.text(4), "5 min");
}

}  // namespace
