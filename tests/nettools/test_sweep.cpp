// The network sweep: each own network once, lines in address order, the
// event loop kept turning, abort, views with host names, and range texts
// that must never send anywhere else.

#include "Fakes.h"
#include "nettools/NetRange.h"
#include "nettools/NetViewModel.h"
#include "platform/EchoProber.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMap>
#include <QSet>
#include <QTimer>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

struct Rig {
    FakeProber prober;
    FixedOwnAddresses own{{}};
    FakeNames names;
    FakeSession session;
    NetViewModel view{prober, own, names, session};
    Rig() { view.setTimeSource([] { return QTime(12, 34, 56); }); }
};

// Runs the event loop until the sweep is over; false on time-out.
bool waitForSweep(NetViewModel& view, int limitMs = 10000)
{
    QElapsedTimer t;
    t.start();
    while (view.sweeping() && t.elapsed() < limitMs)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    return !view.sweeping();
}

// Runs the event loop while the address box ends in the given text.
bool waitUntilNot(NetViewModel& view, const char* ending, int limitMs = 3000)
{
    QElapsedTimer t;
    t.start();
    while (view.txtPing().endsWith(QLatin1String(ending)) && t.elapsed() < limitMs)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    return !view.txtPing().endsWith(QLatin1String(ending));
}

bool rawOrDatagramAllowed()
{
    QString why;
    return SystemEchoPlatform().open(&why) != nullptr;
}

}  // namespace

// A sweep with the real echo over loopback, the own address faked as
// 127.0.0.1; skipped where the machine allows no ICMP socket.
class LoopbackSweep : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!rawOrDatagramAllowed())
            GTEST_SKIP() << "this machine allows neither an unprivileged ICMP socket "
                            "(net.ipv4.ping_group_range) nor a raw one (cap_net_raw)";
    }
    SocketEchoProber prober;
    FixedOwnAddresses own{{QStringLiteral("127.0.0.1")}};
    FakeNames names;
    FakeSession session;
    NetViewModel view{prober, own, names, session};
};

TEST_F(LoopbackSweep, StationsAreListedExactlyAndInOrder)
{
    view.viewRange(QStringLiteral("127.0.0.1"), 1, 40);
    ASSERT_TRUE(waitForSweep(view));
    QStringList expected;
    for (int n = 2; n <= 40; ++n)  // our own 127.0.0.1 answers, but does not count
        expected << QStringLiteral("127.0.0.%1").arg(n);
    EXPECT_EQ(view.lstPing(), expected);
    EXPECT_EQ(view.txtPing(), QStringLiteral("39: Online"));
}

TEST_F(LoopbackSweep, TheEventLoopKeepsTurningDuringAWholeNetwork)
{
    QElapsedTimer clock;
    clock.start();
    qint64 last = 0, longestGap = 0;
    QTimer tick;
    tick.setInterval(0);
    QObject::connect(&tick, &QTimer::timeout, [&] {
        const qint64 now = clock.elapsed();
        longestGap = qMax(longestGap, now - last);
        last = now;
    });
    tick.start();
    last = clock.elapsed();
    view.NetView(QString());  // the whole 0..255 of 127.0.0.x
    ASSERT_TRUE(waitForSweep(view, 20000));
    std::cout << "[ sweep of 256 addresses took " << clock.elapsed()
              << " ms; longest gap between event-loop turns " << longestGap << " ms ]\n";
    EXPECT_LT(longestGap, 100);
    EXPECT_GE(view.lstPing().size(), 200);  // loopback answers for all of 127/8
}

TEST(NetSweep, ResultsComeInAddressOrderWhateverOrderTheAnswersArriveIn)
{
    Rig r;
    r.own.set({QStringLiteral("10.1.2.3")});
    // Later addresses answer sooner; .7 and .9 stay silent (200 ms).
    r.prober.answerAfterMs = {{"10.1.2.1", 90}, {"10.1.2.4", 60}, {"10.1.2.8", 5},
                              {"10.1.2.3", 1}};
    r.view.viewRange(QStringLiteral("10.1.2.3"), 0, 10);
    ASSERT_TRUE(waitForSweep(r.view));
    EXPECT_EQ(r.view.lstPing(),
              QStringList({"10.1.2.1", "10.1.2.4", "10.1.2.8"}));  // own .3 left out
    EXPECT_EQ(r.prober.probed.size(), 11);
    EXPECT_EQ(r.view.txtPing(), QStringLiteral("3: Online"));
    EXPECT_EQ(r.view.txtInfo(), QStringLiteral("Updated: 12:34:56"));
}

TEST(NetSweep, AtMostThirtyTwoProbesInFlightAndAWholeSilentNetworkTakesAboutOneSecond)
{
    Rig r;
    r.own.set({QStringLiteral("10.1.2.3")});
    QElapsedTimer t;
    t.start();
    r.view.NetView(QString());
    ASSERT_TRUE(waitForSweep(r.view));
    EXPECT_EQ(r.prober.probed.size(), 256);
    EXPECT_EQ(r.prober.maxInFlight, SweepEngine::kMaxInFlight);
    EXPECT_LT(t.elapsed(), 5000);  // 8 waves of 200 ms, not 256 of them
    EXPECT_TRUE(r.view.lstPing().isEmpty());
}

TEST(NetSweep, EachOwnNetworkOnceAndUnusedAddressesNever)
{
    Rig r;
    r.own.set({"0.0.0.0", "10.1.2.3", "10.1.2.9", "", "192.168.5.1", "10.1.2.3"});
    r.view.NetView(QString(), 1, 2);
    ASSERT_TRUE(waitForSweep(r.view));
    EXPECT_EQ(r.prober.probed,
              QStringList({"10.1.2.1", "10.1.2.2", "192.168.5.1", "192.168.5.2"}));

    Rig none;
    none.own.set({"0.0.0.0", "0.0.0.0"});
    none.view.NetView(QString());
    EXPECT_TRUE(waitForSweep(none.view));
    EXPECT_TRUE(none.prober.probed.isEmpty());
}

TEST(NetSweep, RangesNeverReachBeyondTheLastPlaceOfTheNetwork)
{
    struct Case {
        const char* what;
        QString network;
        int from, to;
        QStringList sent;  // what may reach the prober as a clean address
    };
    const Case cases[] = {
        {"above 255", "10.0.0.1", 254, 300, {"10.0.0.254", "10.0.0.255"}},
        {"below 0", "10.0.0.1", -3, 1, {"10.0.0.0", "10.0.0.1"}},
        {"not given", "10.0.0.1", 65535, 65535, {}},
        {"name that fails", "nosuch.example", 0, 255, {}},
        {"IPv6", "fe80::1", 0, 255, {}},
        {"no network part", "x1.y2.z3.4", 0, 1, {}},
    };
    for (const Case& c : cases) {
        Rig r;
        r.own.set({QStringLiteral("10.0.0.1")});
        r.view.viewRange(c.network, c.from, c.to);
        ASSERT_TRUE(waitForSweep(r.view)) << c.what;
        QStringList clean;
        for (const QString& a : r.prober.probed)
            if (parseDottedQuad(a))
                clean << a;
        if (QString(c.what) == QLatin1String("not given"))
            EXPECT_EQ(clean.size(), 256) << c.what;
        else
            EXPECT_EQ(clean, c.sent) << c.what;
    }
}

TEST(NetSweep, AbortKeepsTheLinesSoFarAndShowsNoCount)
{
    Rig r;
    r.own.set({QStringLiteral("10.1.2.200")});
    r.prober.answerAfterMs = {{"10.1.2.0", 1}, {"10.1.2.1", 1}};
    r.view.NetView(QString());
    QElapsedTimer t;
    t.start();
    while (r.view.lstPing().size() < 2 && t.elapsed() < 2000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    bool aborted = false;
    QObject::connect(&r.view, &NetViewModel::sweepDone, [&](bool a) { aborted = a; });
    r.view.cmdAbort_Click();
    EXPECT_FALSE(r.view.sweeping());
    EXPECT_TRUE(aborted);
    EXPECT_EQ(r.view.lstPing(), QStringList({"10.1.2.0", "10.1.2.1"}));
    EXPECT_FALSE(r.view.txtPing().contains(QLatin1String("Online")));
    // Answers of the dropped run arrive later and change nothing.
    QElapsedTimer wait;
    wait.start();
    while (wait.elapsed() < 300)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    EXPECT_EQ(r.view.lstPing().size(), 2);
}

TEST(NetSweep, ViewsWithAndWithoutHostNames)
{
    const struct {
        NetViewModel::View view;
        QStringList lines;
    } cases[] = {
        {NetViewModel::View::IPAdr, {"10.0.0.2", "10.0.0.3"}},
        {NetViewModel::View::IPHost, {"10.0.0.2 [alpha]", "10.0.0.3 [- - - - - - ]"}},
        {NetViewModel::View::HostOnly, {"alpha"}},
    };
    for (const auto& c : cases) {
        Rig r;
        r.own.set({QStringLiteral("10.0.0.1")});
        r.prober.answerAfterMs = {{"10.0.0.2", 1}, {"10.0.0.3", 1}};
        r.names.reverse = {{"10.0.0.2", "alpha"}};
        r.view.setView(c.view);
        r.view.NetView(QString(), 1, 4);
        ASSERT_TRUE(waitForSweep(r.view));
        EXPECT_EQ(r.view.lstPing(), c.lines);
    }
}

TEST(NetSweep, SweepByNameCoversThatNetwork)
{
    Rig r;
    r.own.set({QStringLiteral("10.0.0.1")});
    r.names.forward = {{"beta", "172.16.4.9"}};
    r.view.NetView(QStringLiteral("beta"), 8, 9);
    ASSERT_TRUE(waitForSweep(r.view));
    EXPECT_EQ(r.prober.probed, QStringList({"172.16.4.8", "172.16.4.9"}));
}

TEST(NetPing, TheSingleTestOfTheAddressBox)
{
    Rig r;
    r.prober.answerAfterMs = {{"10.0.0.5", 1}};
    r.names.forward = {{"gamma", "10.0.0.5"}};
    QStringList notices;
    QObject::connect(&r.view, &NetViewModel::notice, [&](const QString& n) { notices << n; });
    auto press = [&](const QString& box) {
        r.view.setTxtPing(box);
        r.view.cmdPing_Click();
        QElapsedTimer t;
        t.start();
        while (r.view.txtPing().endsWith(QLatin1String("...")) && t.elapsed() < 2000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
        return r.view.txtPing();
    };
    EXPECT_EQ(press("No reply: 10.0.0.1"), QString());  // a status text is not sent
    EXPECT_EQ(press("3: Online"), QString());
    EXPECT_TRUE(r.prober.probed.isEmpty());
    EXPECT_EQ(press("10.0.0.5"), QStringLiteral("Ping: 10.0.0.5 replied."));
    EXPECT_EQ(press("gamma"), QStringLiteral("Ping: 10.0.0.5 replied."));
    EXPECT_EQ(r.view.lstPing(), QStringList({"10.0.0.5"}));  // once
    EXPECT_EQ(press("10.0.0.6"), QStringLiteral("No reply: 10.0.0.6"));
    EXPECT_EQ(press("nosuch"), QString());
    EXPECT_EQ(notices, QStringList({"Please enter IP address"}));
}

// The status texts of the two boxes are the language's; a status in the
// language in use is still one that a press of Ping only clears.
TEST(NetPing, StatusTextsGoThroughTheLookup)
{
    Rig r;
    const QMap<QString, QString> lang = {{"Please wait....", "Bitte warten...."},
                                         {": Online", ": erreichbar"},
                                         {"Updated: ", "Aktualisiert: "},
                                         {"No reply: ", "Keine Antwort: "},
                                         {"Resolving ", "Suche "}};
    QSet<QString> asked;
    r.view.setTranslate([&](const QString& key) {
        asked << key;
        return lang.value(key, key);
    });
    QStringList pings, infos;
    QObject::connect(&r.view, &NetViewModel::txtPingChanged, [&](const QString& t) { pings << t; });
    QObject::connect(&r.view, &NetViewModel::txtInfoChanged, [&](const QString& t) { infos << t; });
    r.names.forward = {{"gamma", "10.1.2.3"}};
    r.prober.answerAfterMs = {{"10.1.2.1", 5}};
    r.view.viewRange(QStringLiteral("gamma"), 0, 2);
    ASSERT_TRUE(waitForSweep(r.view));
    EXPECT_TRUE(pings.contains("Suche gamma...")) << pings.join(" | ").toStdString();
    EXPECT_TRUE(infos.contains("Bitte warten...."));
    EXPECT_EQ(r.view.txtPing(), "1: erreichbar");
    EXPECT_EQ(r.view.txtInfo(), "Aktualisiert: 12:34:56");

    r.view.setTxtPing(QStringLiteral("10.1.2.9"));
    r.view.cmdPing_Click();
    ASSERT_TRUE(waitUntilNot(r.view, "..."));
    EXPECT_EQ(r.view.txtPing(), "Keine Antwort: 10.1.2.9");
    const qsizetype probes = r.prober.probed.size();
    for (const QString& status : {QStringLiteral("Keine Antwort: 10.1.2.9"), QStringLiteral("4: erreichbar")}) {
        r.view.setTxtPing(status);
        r.view.cmdPing_Click();
        EXPECT_EQ(r.view.txtPing(), QString()) << status.toStdString();
    }
    EXPECT_EQ(r.prober.probed.size(), probes) << "a status text is never pinged";
    for (const auto& key : lang.keys())
        EXPECT_TRUE(asked.contains(key)) << key.toStdString();
}

TEST(NetViewList, ActionsOnTheLines)
{
    Rig r;
    r.own.set({QStringLiteral("10.0.0.1")});
    r.prober.answerAfterMs = {{"10.0.0.12", 1}, {"10.0.0.13", 1}};
    r.names.reverse = {{"10.0.0.12", "alpha"}};
    r.view.setView(NetViewModel::View::IPHost);
    r.view.NetView(QString(), 12, 13);
    ASSERT_TRUE(waitForSweep(r.view));
    EXPECT_EQ(r.view.popMnuCopyAll(), QStringLiteral("10.0.0.12 [alpha]\r\n10.0.0.13 [- - - - - - ]"));
    EXPECT_EQ(r.view.listFileText(),
              QStringLiteral("List of available computers in the network / Internet\r\n") +
                  QString(53, QLatin1Char('=')) +
                  QStringLiteral("\r\n10.0.0.12 [alpha]\r\n10.0.0.13 [- - - - - - ]\r\n"));
    EXPECT_EQ(r.view.hostHint(2), QString());  // no such line
    EXPECT_EQ(r.view.hostHint(0), QStringLiteral("Host: alpha"));
    EXPECT_EQ(r.view.txtInfo(), QStringLiteral(" Host: alpha"));

    QStringList asked, notices;
    QObject::connect(&r.view, &NetViewModel::connectRequested, [&](const QString& a) { asked << a; });
    QObject::connect(&r.view, &NetViewModel::notice, [&](const QString& n) { notices << n; });
    r.session.connected = true;
    r.view.popMnuChat(0);
    r.session.connected = false;
    r.session.locked = true;
    r.view.popMnuChat(0);
    r.session.locked = false;
    r.view.popMnuChat(0);
    EXPECT_EQ(notices, QStringList({"You have to disconnect before make another session.",
                                    "You have to unlock it first."}));
    EXPECT_EQ(asked, QStringList({"10.0.0.12"}));
}

TEST(NetRange, BoxesAreCorrectedSoToIsNeverBelowFrom)
{
    const struct {
        const char *from, *to, *wantFrom, *wantTo;
    } cases[] = {
        {"10", "20", "10", "20"}, {"20", "10", "20", "20"}, {"abc", "5", "0", "5"},
        {"5", "", "5", "255"},    {"300", "400", "255", "255"}, {"-4", "2", "0", "2"},
    };
    for (const auto& c : cases) {
        const NetRangeBoxes b = correctRange({c.from, c.to});
        EXPECT_EQ(b.txtRangeFrom, QString(c.wantFrom)) << c.from << ".." << c.to;
        EXPECT_EQ(b.txtRangeTo, QString(c.wantTo)) << c.from << ".." << c.to;
    }
    const NetRangeChoice choice = cmdRangeView_Click(QStringLiteral(" 10.0.0.1 "), {"9", "3"});
    EXPECT_EQ(choice.network, QStringLiteral("10.0.0.1"));
    EXPECT_EQ(choice.from, 9);
    EXPECT_EQ(choice.to, 9);
}
