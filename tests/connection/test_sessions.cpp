// Calls between copies and against raw peers: the start on both sides,
// the decision on callers, the retries, and every way a session ends.

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

TEST(Sessions, CallerWaitsForFirstDataThenSendsVersionAndEndsInOrder)
{
    Caller a;
    ASSERT_TRUE(a.started);
    QTcpServer server;
    const quint16 port = freePort();
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost, port));
    QTcpSocket* peer = nullptr;
    QObject::connect(&server, &QTcpServer::newConnection,
                     [&] { peer = server.nextPendingConnection(); });

    // The peer takes the call and stays silent for a while.
    bool upBeforeData = true;
    QByteArray sentBeforeData;
    int stateWhileWaiting = -1;
    QTimer::singleShot(700, [&] {
        stateWhileWaiting = a.copy.frm().session().winsock(0).State();
        upBeforeData = a.copy.frm().session().RemoteResponded ||
                       a.copy.frm().model().caption().startsWith("Vonnel - ");
        if (peer) {
            sentBeforeData = peer->readAll();
            peer->write("!ver. Other 1.0.0 ver!");
        }
    });
    LoginDialog* d = a.call("127.0.0.1", port);
    ASSERT_TRUE(d);
    ASSERT_TRUE(peer);
    EXPECT_EQ(stateWhileWaiting, Winsock::sckConnected);
    EXPECT_FALSE(upBeforeData);
    EXPECT_TRUE(sentBeforeData.isEmpty());
    EXPECT_TRUE(d->unloaded);
    EXPECT_EQ(a.pinger.asked, QStringList{"127.0.0.1"});
    a.endCall();

    FrmMain& f = a.copy.frm();
    EXPECT_TRUE(f.session().ConnectionStartedHere);
    EXPECT_EQ(f.model().stStatusbar.text(2), "Connected: 127.0.0.1");
    EXPECT_EQ(f.model().caption(), "Vonnel - 127.0.0.1 [localhost]");
    EXPECT_TRUE(f.model().controls.enabled(Control::mnuDisconnect));
    EXPECT_FALSE(f.model().controls.enabled(Control::mnuConnect));
    EXPECT_EQ(a.rings, QStringList{"connect.wav"});
    EXPECT_TRUE(sessionLog(a.copy).contains("=> Connection with 127.0.0.1 [localhost]"));
    { const QByteArray o = readOpening(*peer); EXPECT_TRUE(opensWithVersionFormatAndVoice(o)) << o.constData(); }

    // The caller ends it: "^SD", the code-7 byte, then the close.
    bool closed = false;
    QObject::connect(peer, &QTcpSocket::disconnected, [&] { closed = true; });
    f.connection().mnuDisconnect_Click();
    QByteArray tail;
    waitUntil([&] {
        tail += peer->readAll();
        return closed;
    });
    tail += peer->readAll();
    EXPECT_TRUE(closed);
    EXPECT_EQ(tail, QByteArray("^SD\x07"));
    EXPECT_FALSE(f.session().ConnectionStartedHere);
    EXPECT_EQ(f.session().winsock(0).State(), Winsock::sckListening);
    EXPECT_EQ(f.model().stStatusbar.text(2), "Ready");
}

TEST(Sessions, SilentPeerKeepsTheCallerWaitingUntilAbort)
{
    Caller a;
    ASSERT_TRUE(a.started);
    QTcpServer server;
    const quint16 port = freePort();
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost, port));
    QTcpSocket* peer = nullptr;
    QObject::connect(&server, &QTcpServer::newConnection,
                     [&] { peer = server.nextPendingConnection(); });
    // Longer than the connect wait: only Abort ends this one.
    QTimer::singleShot(2500, [&] {
        if (LoginDialog* d = a.copy.frm().connection().login())
            d->cmdAbortConnect_Click();
    });
    LoginDialog* d = a.call("127.0.0.1", port);
    ASSERT_TRUE(d);
    EXPECT_TRUE(d->unloaded);
    a.endCall();
    FrmMain& f = a.copy.frm();
    EXPECT_EQ(f.session().winsock(0).State(), Winsock::sckListening);
    EXPECT_TRUE(f.model().controls.enabled(Control::mnuConnect));
    ASSERT_TRUE(peer);
    // No version frame: the session never came up. The abort of a
    // connected socket still marks its close with the code-7 byte.
    EXPECT_EQ(readFor(*peer, 100), QByteArray("\x07"));
    EXPECT_FALSE(sessionLog(a.copy).contains("Connection with"));
}

TEST(Sessions, TwoCopiesCallDisconnectAndCallAgain)
{
    Callee b;
    Caller a;
    ASSERT_TRUE(b.started && a.started);
    LoginDialog* d = a.call("127.0.0.1", b.copy.port());
    ASSERT_TRUE(d);
    a.endCall();
    FrmMain& fa = a.copy.frm();
    FrmMain& fb = b.copy.frm();
    ASSERT_TRUE(waitUntil([&] { return fb.session().IsConnected() && fa.session().IsConnected(); }));
    EXPECT_EQ(fa.model().stStatusbar.text(2), "Connected: 127.0.0.1");
    EXPECT_EQ(fb.model().stStatusbar.text(2), "Connected: 127.0.0.1");
    EXPECT_TRUE(fb.model().txtServer.enabled());
    EXPECT_TRUE(fb.model().txtClient(0).enabled());
    EXPECT_EQ(b.rings, QStringList({"request.wav", "connect.wav"}));
    EXPECT_TRUE(sessionLog(a.copy).contains("=> Connection with 127.0.0.1 [localhost]"));
    // Request and acceptance may share their second; either way one stands.
    const QString logB = sessionLog(b.copy);
    EXPECT_TRUE(logB.contains("=> Connection with 127.0.0.1") ||
                logB.contains("=> Incomming connection request from 127.0.0.1"));

    fb.model().txtClient(0).setText("hello");
    fa.connection().mnuDisconnect_Click();
    ASSERT_TRUE(waitUntil([&] { return fb.session().winsock(0).State() == Winsock::sckListening; }));
    EXPECT_EQ(fb.model().txtClient(0).text(), "hello\r\n[Closed]");
    EXPECT_FALSE(fb.model().txtClient(0).enabled());
    EXPECT_EQ(fb.model().stStatusbar.text(2), "Ready");
    EXPECT_TRUE(fb.model().controls.enabled(Control::mnuConnect));
    EXPECT_EQ(fb.model().caption(), "Vonnel 3.0");
    EXPECT_TRUE(sessionLog(b.copy).contains("=> Close connection with 127.0.0.1"));
    EXPECT_EQ(b.rings.last(), "close.wav");
    EXPECT_EQ(fa.session().winsock(0).State(), Winsock::sckListening);

    // Both listen again: a second call goes through.
    ASSERT_TRUE(a.call("127.0.0.1", b.copy.port()));
    a.endCall();
    EXPECT_TRUE(waitUntil([&] { return fb.session().IsConnected() && fa.session().IsConnected(); }));
}

TEST(Sessions, RetriesReachACopyOnALaterPortOrGiveUp)
{
    const quint16 base = freePort();
    Callee b(quint16(base + 3));
    Caller a;
    ASSERT_TRUE(b.started && a.started);
    LoginDialog* d = a.call("127.0.0.1", base);
    ASSERT_TRUE(d);
    EXPECT_EQ(d->txtConnectPort, QString::number(base + 3));
    a.endCall();
    EXPECT_TRUE(waitUntil([&] { return b.copy.frm().session().IsConnected(); }));
    EXPECT_TRUE(a.copy.frm().session().IsConnected());
    a.copy.frm().connection().mnuDisconnect_Click();

    // Nobody answers on any of the six ports.
    const quint16 none = freePort();
    a.pinger.answer = false;
    d = a.call("127.0.0.1", none);
    ASSERT_TRUE(d);
    EXPECT_FALSE(d->unloaded);  // the report stays up until closed
    QStringList expected = {
        "Please wait: Resolving network host...",
        // An unanswered echo claims nothing about the address.
        "127.0.0.1 gave no answer to the echo request",
        "Connecting .....",
    };
    for (int i = 1; i <= 5; ++i)
        expected << "Connecting: retry with Remote Port " + QString::number(none + i);
    expected << "Fail to connect to <127.0.0.1 : Port " + QString::number(none) + " -- " +
                    QString::number(none + 5) + ">"
             << "Possible Error: Invalid Remote Port Address OR Remote user is not in Ready mode"
             << "Refused: nothing listens on that port of that machine"
             << "";
    QStringList lines = d->txtStatus->split("\r\n");
    ASSERT_EQ(lines.size(), expected.size()) << d->txtStatus->toStdString();
    // The first wait counts its seconds down in the line of the attempt.
    EXPECT_TRUE(QRegularExpression("^Connecting( \\.\\.\\.\\.\\.|: \\d+ second)$")
                    .match(lines.at(2))
                    .hasMatch())
        << lines.at(2).toStdString();
    lines[2] = expected.at(2);
    EXPECT_EQ(lines.join("\n").toStdString(), expected.join("\n").toStdString());
    FrmMain& f = a.copy.frm();
    EXPECT_EQ(f.session().winsock(0).State(), Winsock::sckListening);
    EXPECT_EQ(f.session().winsock(0).LocalPort(), a.copy.port());
    EXPECT_TRUE(f.model().controls.enabled(Control::mnuConnect));
    EXPECT_TRUE(sessionLog(a.copy).contains("Fail to connect to 127.0.0.1:" + QString::number(none) +
                                            ": Refused"));
    d->cmdAbortConnect_Click();  // "Close" after the failure
    EXPECT_TRUE(d->unloaded);
    a.endCall();
    EXPECT_EQ(f.session().winsock(0).State(), Winsock::sckListening);
}

TEST(Sessions, CallToItselfIsRefusedBeforeAnySocketOperation)
{
    int changes = 0;  // outlives the copy, whose closing still changes the state
    Caller a;
    ASSERT_TRUE(a.started);
    QObject::connect(&a.copy.frm().session().winsock(0), &Winsock::stateChanged, [&] { ++changes; });
    for (const QString& self : {QStringLiteral("127.0.0.1"), QStringLiteral("localhost")}) {
        LoginDialog* d = a.call(self, a.copy.port());
        ASSERT_TRUE(d);
        EXPECT_TRUE(d->unloaded);
        a.endCall();
    }
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(a.copy.prompter().count("Warning: Cannot connect to itself"), 2);
    EXPECT_EQ(a.copy.prompter().records().first().title, "Connect Error");
    EXPECT_TRUE(a.pinger.asked.isEmpty());
    EXPECT_EQ(a.copy.frm().session().winsock(0).State(), Winsock::sckListening);
}

class Decisions : public ::testing::Test {
protected:
    void start(const QList<QPair<QString, QString>>& settings)
    {
        b = std::make_unique<Callee>(0, settings);
        ASSERT_TRUE(b->started);
    }
    void list(const QString& file, const QString& stem, const QStringList& entries,
              int limit = -1)
    {
        WriteIni(kSection, "Limit", QString::number(limit < 0 ? entries.size() : limit),
                 b->copy.file(file));
        for (int i = 0; i < entries.size(); ++i)
            WriteIni(kSection, stem + QString::number(i + 1), entries.at(i), b->copy.file(file));
    }
    // A raw caller: what it got within a moment, and whether it was dropped.
    QByteArray ring(bool* dropped = nullptr)
    {
        bool reached = false;
        QObject::connect(&peer, &QTcpSocket::connected, [&] { reached = true; });
        peer.connectToHost(QHostAddress::LocalHost, b->copy.port());
        waitUntil([&] { return reached; });
        const QByteArray got = readFor(peer, 400);
        if (dropped)
            *dropped = peer.state() != QAbstractSocket::ConnectedState;
        return got;
    }
    FrmMain& f() { return b->copy.frm(); }
    std::unique_ptr<Callee> b;
    QTcpSocket peer;
};

TEST_F(Decisions, BlackListedCallerGetsNothingAndIsLogged)
{
    start({{"Detect Bad IP", "1"}, {"Auto Accept Connection", "0"}});
    list("badip.txt", "Restricted IP ", {"10.*", "127.0.0.*"});
    const QByteArray got = ring();
    EXPECT_TRUE(got.isEmpty());
    EXPECT_TRUE(b->copy.prompter().records().isEmpty());
    EXPECT_TRUE(b->rings.isEmpty());
    EXPECT_EQ(f().session().winsock(0).State(), Winsock::sckListening);
    EXPECT_EQ(f().model().stStatusbar.text(2), "127.0.0.1 is blocked to be connected");
    EXPECT_TRUE(sessionLog(b->copy).contains("=> 127.0.0.1 is blocked to be connected"));
}

// The lists hold IPv6 addresses as written: a caller on ::1 is matched by
// its address text, with the patterns' "*" as for IPv4.
TEST_F(Decisions, AnIpv6CallerIsMatchedByTheBlackList)
{
    QTcpServer probe;
    if (!probe.listen(QHostAddress::LocalHostIPv6, 0))
        GTEST_SKIP() << "no ::1 here";
    probe.close();
    start({{"Detect Bad IP", "1"}, {"Auto Accept Connection", "0"}});
    list("badip.txt", "Restricted IP ", {"10.*", "::*"});
    bool reached = false;
    QObject::connect(&peer, &QTcpSocket::connected, [&] { reached = true; });
    peer.connectToHost(QHostAddress::LocalHostIPv6, b->copy.port());
    ASSERT_TRUE(waitUntil([&] { return reached; }));
    EXPECT_TRUE(readFor(peer, 400).isEmpty());
    EXPECT_TRUE(b->copy.prompter().records().isEmpty());
    EXPECT_EQ(f().model().stStatusbar.text(2), "::1 is blocked to be connected");
    EXPECT_TRUE(sessionLog(b->copy).contains("=> ::1 is blocked to be connected"));
}

TEST_F(Decisions, NoAtThePromptRefusesAndListensAgain)
{
    start({{"Auto Accept Connection", "0"}});
    b->copy.set("Auto Accept Connection", "0");
    b->copy.prompter().addAnswers({"No"});
    // The window is away in the tray: the tray's tip names the caller.
    f().model().setVisible(false);
    QStringList tips;
    QObject listening;  // goes before tips does
    QObject::connect(&f().model(), &MainModel::trayTipChanged, &listening, [&tips](const QString& t) { tips << t; });
    bool dropped = false;
    const QByteArray got = ring(&dropped);
    EXPECT_TRUE(got.isEmpty());
    ASSERT_EQ(b->copy.prompter().records().size(), 1);
    const PromptRecord& box = b->copy.prompter().records().first();
    EXPECT_EQ(box.title, "Connection Request - Vonnel");
    EXPECT_EQ(box.text, "Do you accept connection requested from: \r\n127.0.0.1 [localhost]");
    EXPECT_EQ(b->rings, QStringList{"request.wav"});
    EXPECT_TRUE(waitUntil([&] { return peer.state() != QAbstractSocket::ConnectedState; }));
    EXPECT_EQ(f().session().winsock(0).State(), Winsock::sckListening);
    EXPECT_TRUE(f().model().txtServer.enabled());
    EXPECT_TRUE(sessionLog(b->copy).contains("=> 127.0.0.1 is rejected to make a connection"));
    // Named while the question stood; the socket's state is the tip again
    // once it listens.
    EXPECT_TRUE(tips.contains("From: 127.0.0.1")) << tips.join('|').toStdString();
    EXPECT_EQ(f().model().trayTip(), "Vonnel - Listening");
    f().ShowMain();
    EXPECT_EQ(f().model().trayTip(), "Vonnel - Listening");
    // The status line no longer reads "Connection request from ...".
    EXPECT_EQ(f().model().stStatusbar.text(2), "127.0.0.1 is rejected to make a connection");
}

TEST_F(Decisions, ListLongerThanACallReadsFailsTheCall)
{
    start({{"Detect Bad IP", "1"}});
    QStringList many;
    for (int i = 1; i <= 21; ++i)
        many << QStringLiteral("10.1.1.%1").arg(i);
    list("badip.txt", "Restricted IP ", many);
    const QByteArray got = ring();
    EXPECT_TRUE(got.isEmpty());
    ASSERT_EQ(b->copy.prompter().records().size(), 1);
    EXPECT_TRUE(b->copy.prompter().records().first().text.startsWith(
        "Winsock(0) Protocol ConnectionRequest Error\r"));
    EXPECT_EQ(f().session().winsock(0).State(), Winsock::sckListening);
    EXPECT_FALSE(f().session().IsConnected());
}

struct WhiteCase {
    const char* entry;
    const char* autoAccept;
    bool prompted;
};

TEST(WhiteList, OnlyListedCallersGoByAutoAccept)
{
    // The list's sense is inverted on purpose: an unlisted caller is taken.
    const WhiteCase cases[] = {
        {"127.0.0.1", "0", true},
        {"10.0.0.*", "0", false},
        {"127.0.0.*", "1", false},
    };
    for (const WhiteCase& c : cases) {
        Callee b(0, {{"Detect Safe IP", "1"}});
        ASSERT_TRUE(b.started);
        b.copy.set("Auto Accept Connection", c.autoAccept);
        WriteIni(kSection, "Limit", "1", b.copy.file("safeIP.txt"));
        WriteIni(kSection, "Safe IP 1", c.entry, b.copy.file("safeIP.txt"));
        b.copy.prompter().addAnswers({"Yes"});
        QTcpSocket peer;
        peer.connectToHost(QHostAddress::LocalHost, b.copy.port());
        EXPECT_TRUE(opensWithVersionFormatAndVoice(readOpening(peer))) << c.entry;
        EXPECT_EQ(b.copy.prompter().asked("Do you accept connection"), c.prompted) << c.entry;
        EXPECT_TRUE(b.copy.frm().session().IsConnected());
    }
}

TEST(Sessions, RawPeerHearsTheVersionAndTheKeyFrameFirst)
{
    Callee b(0, {{"Encrypted", "1"}});
    ASSERT_TRUE(b.started);
    QTcpSocket peer;
    const QByteArray first = acceptRawPeer(b.copy, peer);
    FrmMain& f = b.copy.frm();
    ASSERT_TRUE(f.session().IsConnected());
    const QByteArray key = toCp1252(f.encryption().sessionKey);
    ASSERT_EQ(key.size(), 8);  // "hh:mm AM"
    const QByteArray opening = kVersion + "tt:=" + key + "=:tt";
    EXPECT_EQ(first.left(opening.size()), opening);
    EXPECT_TRUE(first.mid(opening.size()).startsWith("^ff"));
    EXPECT_EQ(f.model().stStatusbar.text(8), "E");
    EXPECT_FALSE(f.session().ConnectionStartedHere);

    // A second call during the session is refused with a box; the mark of
    // a started call is set all the same.
    f.connection().mnuConnect_Click();
    EXPECT_TRUE(b.copy.prompter().asked("You have to disconnect before make another connection."));
    EXPECT_TRUE(f.session().ConnectionStartedHere);
    EXPECT_EQ(f.connection().login(), nullptr);
    EXPECT_TRUE(f.session().IsConnected());

    // The peer goes away: the callee closes, logs and listens again.
    peer.disconnectFromHost();
    ASSERT_TRUE(waitUntil([&] { return f.session().winsock(0).State() == Winsock::sckListening; }));
    EXPECT_TRUE(f.model().txtClient(0).text().isEmpty());  // nothing to mark as closed
    EXPECT_EQ(f.model().stStatusbar.text(8), "");
    EXPECT_TRUE(sessionLog(b.copy).contains("=> Close connection with 127.0.0.1"));
}

TEST(Sessions, ClosingTheProgramEndsTheSessionOnTheOtherSide)
{
    Callee b;
    auto a = std::make_unique<Caller>();
    ASSERT_TRUE(b.started && a->started);
    ASSERT_TRUE(a->call("127.0.0.1", b.copy.port()));
    a->endCall();
    FrmMain& fb = b.copy.frm();
    ASSERT_TRUE(waitUntil([&] { return fb.session().IsConnected(); }));
    fb.model().txtClient(0).setText("bye");
    EXPECT_TRUE(a->copy.frm().requestClose(false));
    ASSERT_TRUE(waitUntil([&] { return fb.session().winsock(0).State() == Winsock::sckListening; }));
    EXPECT_EQ(fb.model().txtClient(0).text(), "bye\r\n[Closed]");
    EXPECT_TRUE(sessionLog(b.copy).contains("=> Close connection with 127.0.0.1"));
}

}  // namespace

namespace {

TEST(Sessions, HarnessJoinStillTakesBothSidesUp)
{
    Callee b;
    Caller a;
    ASSERT_TRUE(b.started && a.started);
    ASSERT_TRUE(connectCopies(a.copy, b.copy));
    EXPECT_TRUE(a.copy.frm().session().RemoteResponded);
    EXPECT_TRUE(b.copy.frm().session().IsConnected());
    EXPECT_TRUE(a.copy.frm().model().caption().startsWith("Vonnel - 127.0.0.1"));
    EXPECT_FALSE(b.copy.prompter().asked("Do you accept"));
}

}  // namespace
