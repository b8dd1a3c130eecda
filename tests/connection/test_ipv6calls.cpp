// Calls over IPv6 and the words a failed call ends with.

#include "connection/CallAddress.h"
#include "connection/CallFailure.h"
#include "connection/SessionPeers.h"
#include "platform/ScriptedPrompter.h"
#include "shell/CommandControl.h"
#include "support/Session.h"

#include <QTcpServer>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

TEST(CallAddressText, TheAddressBoxTakesIpv6WithOrWithoutItsPort)
{
    struct Case {
        const char* typed;
        const char* host;
        std::optional<quint16> port;
        bool ipv6;
    };
    const Case cases[] = {
        {"192.168.0.7", "192.168.0.7", std::nullopt, false},
        {" host.example ", "host.example", std::nullopt, false},
        {"2001:db8::1", "2001:db8::1", std::nullopt, true},
        {"::1", "::1", std::nullopt, true},
        {"[2001:db8::1]:2500", "2001:db8::1", 2500, true},
        {"[::1]", "::1", std::nullopt, true},
        {"fe80::1%lo", "fe80::1%lo", std::nullopt, true},
        // Not an address with a port: left whole, to fail as a name would.
        {"[::1]:0", "[::1]:0", std::nullopt, false},
        {"[::1]:65536", "[::1]:65536", std::nullopt, false},
        {"[::1]x", "[::1]x", std::nullopt, false},
        {"[host]:25", "[host]:25", std::nullopt, false},
        // An IPv4 address with a port is not a form of the box.
        {"10.0.0.1:2500", "10.0.0.1:2500", std::nullopt, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.typed);
        const CallAddress a = parseCallAddress(QString::fromLatin1(c.typed));
        EXPECT_EQ(a.host, QString::fromLatin1(c.host));
        EXPECT_EQ(a.port, c.port);
        EXPECT_EQ(a.ipv6, c.ipv6);
    }
    EXPECT_EQ(addressWithPort("::1", 2500), "[::1]:2500");
    EXPECT_EQ(addressWithPort("10.0.0.1", 2500), "10.0.0.1:2500");
}

bool ipv6Loopback()
{
    QTcpServer probe;
    return probe.listen(QHostAddress::LocalHostIPv6, 0);
}

TEST(Ipv6Calls, ACopyIsCalledOnIpv6LoopbackBothWays)
{
    if (!ipv6Loopback())
        GTEST_SKIP() << "no ::1 here";
    Callee b;
    Caller a;
    ASSERT_TRUE(b.started && a.started);
    // The bracketed form brings its port: the port box says something else.
    LoginDialog* d = a.call("[::1]:" + QString::number(b.copy.port()), 1);
    ASSERT_TRUE(d);
    EXPECT_EQ(d->txtConnectPort, QString::number(b.copy.port()));
    a.endCall();
    FrmMain& fa = a.copy.frm();
    FrmMain& fb = b.copy.frm();
    ASSERT_TRUE(waitUntil([&] { return fb.session().IsConnected() && fa.session().IsConnected(); }));
    EXPECT_EQ(fa.session().winsock(0).RemoteHostIP(), "::1");
    EXPECT_EQ(fb.session().winsock(0).RemoteHostIP(), "::1");
    EXPECT_EQ(fa.model().stStatusbar.text(2), "Connected: ::1");
    EXPECT_TRUE(sessionLog(b.copy).contains("::1"));
    // Typing crosses as on IPv4.
    fa.model().txtServer.setText("over six");
    fa.sender().xSendData("<Paste> v6 </Paste>");
    EXPECT_TRUE(waitUntil([&] { return fb.model().txtClient(0).text().contains("v6"); }));
    fa.connection().mnuDisconnect_Click();
    ASSERT_TRUE(waitUntil([&] { return fb.session().winsock(0).State() == Winsock::sckListening; }));

    // A bare IPv6 address with the port in its own box; and IPv4 still.
    ASSERT_TRUE(waitUntil([&] { return fa.session().winsock(0).State() == Winsock::sckListening; }));
    ASSERT_TRUE(a.call("::1", b.copy.port()));
    a.endCall();
    ASSERT_TRUE(waitUntil([&] { return fb.session().IsConnected() && fa.session().IsConnected(); }));
    fa.connection().mnuDisconnect_Click();
    ASSERT_TRUE(waitUntil([&] { return fb.session().winsock(0).State() == Winsock::sckListening; }));
    ASSERT_TRUE(waitUntil([&] { return fa.session().winsock(0).State() == Winsock::sckListening; }));
    ASSERT_TRUE(a.call("127.0.0.1", b.copy.port()));
    a.endCall();
    EXPECT_TRUE(waitUntil([&] { return fb.session().IsConnected() && fa.session().IsConnected(); }));
}

TEST(Ipv6Calls, ACallToItselfOnIpv6IsRefusedToo)
{
    Caller a;
    ASSERT_TRUE(a.started);
    for (const QString& typed : {QStringLiteral("::1"), "[::1]:" + QString::number(a.copy.port())}) {
        SCOPED_TRACE(typed.toStdString());
        a.copy.prompter().clearRecords();
        a.call(typed, a.copy.port());
        a.endCall();
        EXPECT_TRUE(a.copy.prompter().asked("Warning: Cannot connect to itself"));
        EXPECT_EQ(a.copy.frm().session().winsock(0).State(), Winsock::sckListening);
    }
}

// The address command of a second start, as parseCommandLine hands it on.
TEST(CallAddressText, TheAddressCommandTakesIpv6)
{
    using P = std::pair<QString, QString>;
    EXPECT_EQ(splitCommandAddress("10.0.0.1:2600"), P("10.0.0.1", "2600"));
    EXPECT_EQ(splitCommandAddress("somehost:"), P("somehost", ""));
    EXPECT_EQ(splitCommandAddress("[::1]:2600"), P("::1", "2600"));
    EXPECT_EQ(splitCommandAddress("[2001:db8::7]"), P("2001:db8::7", ""));
    // A bare address: the command line put a ":" behind it, as behind a host.
    ScriptedPrompter prompter;
    EXPECT_EQ(splitCommandAddress(parseCommandLine("2001:db8::7", prompter, nullptr)),
              P("2001:db8::7", ""));
    EXPECT_EQ(splitCommandAddress(parseCommandLine("::1", prompter, nullptr)), P("::1", ""));
}

TEST(CallFailures, EachReasonHasItsWords)
{
    EXPECT_EQ(callFailureFromError(Winsock::errConnectionRefused), CallFailure::Refused);
    EXPECT_EQ(callFailureFromError(Winsock::errNetworkUnreachable), CallFailure::Unreachable);
    EXPECT_EQ(callFailureFromError(Winsock::errHostNotFound), CallFailure::NameNotFound);
    EXPECT_EQ(callFailureFromError(Winsock::errConnectionReset), CallFailure::ClosedAtOnce);
    EXPECT_EQ(callFailureFromError(Winsock::errTimedOut), CallFailure::TimedOut);
    QStringList seen;
    for (CallFailure f : {CallFailure::Refused, CallFailure::TimedOut, CallFailure::Unreachable,
                          CallFailure::NameNotFound, CallFailure::ClosedAtOnce}) {
        const QString t = callFailureText(f);
        EXPECT_FALSE(t.isEmpty());
        EXPECT_FALSE(seen.contains(t));
        seen << t;
    }
}

}  // namespace
