// The end of a connection as the socket control reports it: an orderly
// close by the peer is a Close, a reset by the peer is an Error with the
// reset number, on the accepting and on the calling side.

#include "platform/Winsock.h"
#include "support/Session.h"
#include "support/TestCopy.h"
#include "connection/Session.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <gtest/gtest.h>

#include <sys/socket.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

struct Ending {
    int closes = 0;
    int errors = 0;
    int errorNumber = 0;
};

void watch(Winsock& ws, Ending& seen)
{
    QObject::connect(&ws, &Winsock::Close_, [&seen](int) { ++seen.closes; });
    QObject::connect(&ws, &Winsock::Error, [&seen](int, int n, const QString&) {
        ++seen.errors;
        seen.errorNumber = n;
    });
}

// Ends the peer's side: with a FIN, or with a reset (linger zero, then close).
void endPeer(QTcpSocket& peer, bool reset)
{
    if (reset) {
        const linger hard{1, 0};
        ::setsockopt(int(peer.socketDescriptor()), SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
        peer.abort();
    } else {
        peer.disconnectFromHost();
    }
}

TEST(WinsockEnd, ResetIsAnErrorAndAnOrderlyCloseIsAClose)
{
    for (const bool reset : {false, true}) {
        for (const bool accepting : {true, false}) {
            SCOPED_TRACE(std::string(reset ? "reset" : "orderly close") +
                         (accepting ? ", accepting side" : ", calling side"));
            Winsock ws(0);
            Ending seen;
            watch(ws, seen);
            QTcpSocket peer;
            QTcpServer server;
            QTcpSocket* peerSide = &peer;
            if (accepting) {
                ws.setLocalPort(freePort());
                ASSERT_EQ(ws.Listen(), 0);
                QObject::connect(&ws, &Winsock::ConnectionRequest,
                                 [&ws](int, qintptr id) { ws.Accept(id); });
                peer.connectToHost(QHostAddress::LocalHost, ws.LocalPort());
            } else {
                ASSERT_TRUE(server.listen(QHostAddress::LocalHost, 0));
                ASSERT_EQ(ws.Connect("127.0.0.1", server.serverPort()), 0);
                ASSERT_TRUE(waitUntil([&] { return server.hasPendingConnections(); }));
                peerSide = server.nextPendingConnection();
            }
            ASSERT_TRUE(waitUntil([&] { return ws.State() == Winsock::sckConnected; }));
            ASSERT_TRUE(waitUntil([&] { return peerSide->state() == QAbstractSocket::ConnectedState; }));
            // Some traffic first, as in a session.
            ws.SendData("hello");
            ASSERT_TRUE(waitUntil([&] { return peerSide->bytesAvailable() >= 5; }));
            peerSide->readAll();

            endPeer(*peerSide, reset);
            ASSERT_TRUE(waitUntil([&] { return seen.closes + seen.errors > 0; }));
            pump(50);
            if (reset) {
                EXPECT_EQ(seen.errors, 1);
                EXPECT_EQ(seen.closes, 0);
                EXPECT_EQ(seen.errorNumber, Winsock::errConnectionReset);
                EXPECT_EQ(ws.State(), Winsock::sckError);
            } else {
                EXPECT_EQ(seen.closes, 1);
                EXPECT_EQ(seen.errors, 0);
                EXPECT_EQ(ws.State(), Winsock::sckClosing);
            }
        }
    }
}

// Our own close after the peer's orderly close still ends the connection:
// the second descriptor kept to read the socket's state does not hold it.
TEST(WinsockEnd, OwnCloseReachesThePeer)
{
    Winsock ws(0);
    ws.setLocalPort(freePort());
    ASSERT_EQ(ws.Listen(), 0);
    QObject::connect(&ws, &Winsock::ConnectionRequest, [&ws](int, qintptr id) { ws.Accept(id); });
    QTcpSocket peer;
    peer.connectToHost(QHostAddress::LocalHost, ws.LocalPort());
    ASSERT_TRUE(waitUntil([&] { return ws.State() == Winsock::sckConnected; }));
    ws.Close();
    EXPECT_TRUE(waitUntil([&] { return peer.state() == QAbstractSocket::UnconnectedState; }));
}

}  // namespace

namespace {

// At the session: a reset goes the error way, with its status text; an
// orderly close the close way, which listens again.
TEST(WinsockEnd, SessionTellsAResetFromAClose)
{
    const struct {
        bool reset;
        const char* status;
        int state;
    } cases[] = {
        {false, "", Winsock::sckListening},
        {true, "Socket Error: Disconnected by remote computer", Winsock::sckClosed},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.reset ? "reset" : "orderly close");
        TestCopy copy(0, {{"No Recover Socket Error", "1"}});
        ASSERT_TRUE(copy.start());
        QTcpSocket peer;
        acceptRawPeer(copy, peer);
        FrmMain& f = copy.frm();
        ASSERT_TRUE(f.session().IsConnected());
        endPeer(peer, c.reset);
        EXPECT_TRUE(waitUntil([&] { return !f.session().IsConnected(); }));
        pump(200);
        const bool errorShown = f.model().stStatusbar.text(2) == QLatin1String(c.status);
        if (c.reset) {
            EXPECT_TRUE(errorShown) << f.model().stStatusbar.text(2).toStdString();
        } else {
            EXPECT_FALSE(f.model().stStatusbar.text(2).startsWith("Socket Error"));
            EXPECT_EQ(f.session().winsock(0).State(), c.state);
        }
    }
}

}  // namespace

namespace {

// A call from a bound port to that same port of this machine, where nobody
// listens, would meet itself (TCP's simultaneous open) and look like a
// session with nobody. It is refused, as any call to a port nobody takes.
TEST(WinsockCall, ACallToItsOwnBoundPortIsRefused)
{
    for (int attempt = 0; attempt < 20; ++attempt) {
        Winsock ws(0);
        Ending seen;
        watch(ws, seen);
        bool connected = false;
        QObject::connect(&ws, &Winsock::Connect_, [&](int) { connected = true; });
        const quint16 port = freePort();
        ws.setLocalPort(port);
        ASSERT_EQ(ws.Connect(QStringLiteral("127.0.0.1"), port), 0);
        ASSERT_TRUE(waitUntil([&] { return seen.errors > 0 || connected; }, 3000));
        EXPECT_FALSE(connected);
        EXPECT_EQ(seen.errorNumber, Winsock::errConnectionRefused);
        EXPECT_EQ(ws.State(), Winsock::sckError);
    }
}

}  // namespace
