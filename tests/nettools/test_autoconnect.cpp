// The station check, its settings dialog, and the name converter.

#include "Fakes.h"
#include "nettools/AutoConnect.h"
#include "nettools/AutoConnectSettings.h"
#include "nettools/AutoNotify.h"
#include "nettools/NetResolve.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

struct Check {
    MemorySettings settings;
    FakeSession session;
    FakeProber prober;
    AutoConnect auto_{settings, session, prober};
    QStringList commands;
    QStringList shown;
    QString status;
    int runs = 0;

    Check()
    {
        auto_.setTimeSource([] { return QTime(8, 5, 0); });
        QObject::connect(&auto_, &AutoConnect::commandRequested,
                         [this](const QString& c) { commands << c; });
        QObject::connect(&auto_, &AutoConnect::onlineStations,
                         [this](const QStringList& l, const QString& s) {
                             shown = l;
                             status = s;
                         });
        QObject::connect(&auto_, &AutoConnect::checkDone, [this] { ++runs; });
        settings.values = {{"AutoConnect", "1"},        {"AutoConnectMax", "4"},
                           {"AutoConnect Option", "1"}, {"AutoConnect IP 1", "10.0.0.1"},
                           {"AutoConnect Host 1", "one"}, {"AutoConnect IP 2", "10.0.0.2"},
                           {"AutoConnect Host 2", "- - - - - - "},
                           {"AutoConnect IP 3", "10.0.0.3"}, {"AutoConnect Host 3", "three"}};
    }
    void run()
    {
        const int before = runs;
        auto_.checkStations();
        QElapsedTimer t;
        t.start();
        while (auto_.checking() && t.elapsed() < 3000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
        ASSERT_FALSE(auto_.checking());
        (void)before;
    }
};

}  // namespace

TEST(AutoConnect, ConnectsToTheFirstAnsweringStationInPriorityOrder)
{
    Check c;
    // The third answers first; priority still picks the second.
    c.prober.answerAfterMs = {{"10.0.0.2", 80}, {"10.0.0.3", 1}};
    c.run();
    EXPECT_EQ(c.commands, QStringList({"10.0.0.2"}));
    EXPECT_TRUE(c.shown.isEmpty());
    EXPECT_TRUE(c.auto_.timerEnabled());
}

TEST(AutoConnect, ShowOptionListsTheHostTextOfEveryAnsweringStation)
{
    Check c;
    c.settings.values["AutoConnect Option"] = "0";
    c.prober.answerAfterMs = {{"10.0.0.1", 1}, {"10.0.0.2", 1}};
    c.run();
    EXPECT_TRUE(c.commands.isEmpty());
    EXPECT_EQ(c.shown, QStringList({"one", "- - - - - - "}));
    EXPECT_EQ(c.status, QStringLiteral("Last Checked: 08:05:00"));
}

TEST(AutoConnect, NothingHappensUnlessTheSwitchIsExactlyOne)
{
    for (const char* value : {"0", "2", "", " 1x", "true"}) {
        Check c;
        c.settings.values["AutoConnect"] = value;
        c.prober.answerAfterMs = {{"10.0.0.1", 1}};
        c.auto_.checkStations();
        EXPECT_FALSE(c.auto_.checking()) << value;
        EXPECT_TRUE(c.prober.probed.isEmpty()) << value;
        EXPECT_FALSE(c.auto_.timerEnabled()) << value;
    }
}

TEST(AutoConnect, NoProbesDuringASessionOrWhileClosing)
{
    Check during;
    during.session.connected = true;
    during.auto_.checkStations();
    EXPECT_TRUE(during.prober.probed.isEmpty());
    EXPECT_TRUE(during.auto_.timerEnabled());  // the state is still brought up to date

    Check closing;
    closing.session.closing = true;
    closing.auto_.checkStations();
    EXPECT_TRUE(closing.prober.probed.isEmpty());
    EXPECT_FALSE(closing.auto_.timerEnabled());
}

TEST(AutoConnect, ThePeerThatCalledMeanwhileIsNotCalledBack)
{
    Check c;
    c.prober.answerAfterMs = {{"10.0.0.2", 30}};
    c.auto_.checkStations();
    c.session.connected = true;
    c.session.peer = "10.0.0.2";
    QElapsedTimer t;
    t.start();
    while (c.auto_.checking() && t.elapsed() < 3000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    EXPECT_TRUE(c.commands.isEmpty());
}

TEST(AutoConnect, TimerTicksCheckOnceEveryIntervalAndReadTheOtherKey)
{
    Check c;
    c.settings.values["AutoConnect Interval"] = "3";
    int starts = 0;
    QObject::connect(&c.auto_, &AutoConnect::checkingChanged, [&](bool on) { starts += on; });
    for (int i = 0; i < 7; ++i) {
        c.auto_.tTimer1_Timer();
        QElapsedTimer t;
        t.start();
        while (c.auto_.checking() && t.elapsed() < 1000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    }
    EXPECT_EQ(starts, 3);  // ticks 1, 4 and 7
    EXPECT_EQ(c.auto_.autoCheckTicks(), 1);

    // The dialog's "During Session" box does not reach the tick.
    Check s;
    s.session.connected = true;
    s.settings.values["AutoCheck During Session"] = "1";
    s.auto_.tTimer1_Timer();
    EXPECT_FALSE(s.auto_.autoCheckDuring());
    s.settings.values["AutoCheck During"] = "1";
    s.auto_.tTimer1_Timer();
    EXPECT_TRUE(s.auto_.autoCheckDuring());
}

TEST(AutoConnect, IntervalZeroChecksEveryMinute)
{
    Check c;
    c.settings.values["AutoConnect Interval"] = "0";
    int starts = 0;
    QObject::connect(&c.auto_, &AutoConnect::checkingChanged, [&](bool on) { starts += on; });
    for (int i = 0; i < 3; ++i) {
        c.auto_.tTimer1_Timer();
        EXPECT_EQ(c.auto_.autoCheckTicks(), 0);
        QElapsedTimer t;
        t.start();
        while (c.auto_.checking() && t.elapsed() < 1000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    }
    EXPECT_EQ(starts, 3);
}

TEST(AutoConnect, AfterSessionSwitchesTheCheckOff)
{
    Check c;
    c.settings.values["AutoCheck After Session"] = "1";
    c.auto_.sessionEnded();
    EXPECT_EQ(c.settings.values["AutoConnect"], QStringLiteral("0"));
    c.auto_.checkStations();
    EXPECT_FALSE(c.auto_.timerEnabled());

    Check off;
    off.auto_.sessionEnded();
    EXPECT_EQ(off.settings.values["AutoConnect"], QStringLiteral("1"));
}

TEST(AutoNotify, ChatNeedsNoSessionUp)
{
    Check c;
    QStringList notices;
    QObject::connect(&c.auto_, &AutoConnect::notice, [&](const QString& n) { notices << n; });
    c.session.connected = true;
    c.auto_.chat("three");
    c.session.connected = false;
    c.auto_.chat("three");
    EXPECT_EQ(notices, QStringList({"You have to disconnect before make another session."}));
    EXPECT_EQ(c.commands, QStringList({"three"}));
}

TEST(AutoNotify, EachCheckReplacesTheListAndChatHidesTheWindowOnlyWithoutASession)
{
    Check c;
    AutoNotify notify(c.auto_, c.session);
    int shows = 0, hides = 0;
    QObject::connect(&notify, &AutoNotify::showRequested, [&] { ++shows; });
    QObject::connect(&notify, &AutoNotify::hideRequested, [&] { ++hides; });
    c.settings.values["AutoConnect Option"] = "0";
    c.prober.answerAfterMs = {{"10.0.0.1", 1}, {"10.0.0.3", 1}};
    c.run();
    EXPECT_EQ(notify.lstOnlineIP(), QStringList({"one", "three"}));
    EXPECT_EQ(notify.stbTime(), QStringLiteral("Last Checked: 08:05:00"));
    c.prober.answerAfterMs = {{"10.0.0.2", 1}};
    c.run();
    EXPECT_EQ(notify.lstOnlineIP(), QStringList({"- - - - - - "}));
    EXPECT_EQ(shows, 2);

    c.session.connected = true;
    notify.OKButton_Click(0);
    EXPECT_EQ(hides, 0);
    EXPECT_FALSE(notify.popOnlineAllowed());
    c.session.connected = false;
    notify.OKButton_Click(5);  // no such line
    notify.OKButton_Click(0);
    EXPECT_EQ(hides, 1);
    EXPECT_EQ(c.commands, QStringList({"- - - - - - "}));
}

TEST(AutoConnectDialog, AddRemoveAndPriorityKeepBothListsInStep)
{
    MemorySettings settings;
    settings.values = {{"AutoConnectMax", "3"}, {"AutoConnect IP 2", "10.0.0.2"},
                       {"AutoConnect Host 2", "two"}, {"AutoConnect Interval", "70"}};
    FakeNames names;
    names.forward = {{"delta", "10.0.0.4"}};
    AutoConnectSettings d(settings, names, nullptr);
    QStringList notices;
    QObject::connect(&d, &AutoConnectSettings::notice, [&](const QString& n) { notices << n; });
    d.load();
    EXPECT_EQ(d.lstAutoCheck(), QStringList({"10.0.0.2"}));  // only the used slots
    EXPECT_EQ(d.txtChkMin(), QStringLiteral("59"));

    d.setTxtAutoCheck("1.2.3.4");  // one digit a place: taken as typed
    d.cmdAdd_Click();
    d.setTxtAutoCheck("nosuch");
    d.cmdAdd_Click();
    EXPECT_EQ(d.txtAutoCheck(), QString());
    d.setTxtAutoCheck("delta");
    d.cmdAdd_Click();
    d.setTxtAutoCheck("1.2.3.5");
    d.cmdAdd_Click();
    EXPECT_EQ(notices, QStringList({"Please enter IP address",
                                    "Already reach the Max. limit of the list."}));
    EXPECT_EQ(d.lstAutoCheck(), QStringList({"10.0.0.2", "1.2.3.4", "10.0.0.4"}));
    EXPECT_EQ(d.lstAutoHost(), QStringList({"two", "- - - - - - ", "delta"}));

    d.select(2);
    d.cmdPriorUp_Click();
    d.cmdPriorUp_Click();
    d.cmdPriorUp_Click();  // already at the top
    EXPECT_EQ(d.selected(), 0);
    EXPECT_EQ(d.lstAutoCheck(), QStringList({"10.0.0.4", "10.0.0.2", "1.2.3.4"}));
    EXPECT_EQ(d.lstAutoHost(), QStringList({"delta", "two", "- - - - - - "}));
    d.cmdPriorDwn_Click();
    EXPECT_EQ(d.lstAutoHost(), QStringList({"two", "delta", "- - - - - - "}));
    d.select(0);
    d.cmdRemove_Click();
    EXPECT_EQ(d.lstAutoCheck(), QStringList({"10.0.0.4", "1.2.3.4"}));
    EXPECT_EQ(d.lstAutoHost(), QStringList({"delta", "- - - - - - "}));

    d.setChkAutoCheckOn(true);
    d.setTxtChkMin("0");
    d.optAutoConnect = false;
    d.chkChkDuring = true;
    d.OKButton_Click();
    EXPECT_EQ(settings.values["AutoConnect"], "1");
    EXPECT_EQ(settings.values["AutoConnect IP 1"], "10.0.0.4");
    EXPECT_EQ(settings.values["AutoConnect Host 2"], "- - - - - - ");
    EXPECT_EQ(settings.values["AutoConnect IP 3"], "");
    EXPECT_EQ(settings.values["AutoConnect Interval"], "1");
    EXPECT_EQ(settings.values["AutoConnect Option"], "0");
    EXPECT_EQ(settings.values["AutoCheck During Session"], "1");
    EXPECT_FALSE(settings.values.contains("AutoCheck During"));
}

TEST(AutoConnectDialog, MinutesStayInOneToFiftyNine)
{
    MemorySettings settings;
    FakeNames names;
    AutoConnectSettings d(settings, names, nullptr);
    const struct {
        const char *typed, *shown;
    } cases[] = {{"0", "1"}, {"60", "59"}, {"30", "30"}, {"abc", "1"}, {"-5", "1"}, {"12x", "12"}};
    for (const auto& c : cases) {
        d.setTxtChkMin(c.typed);
        EXPECT_EQ(d.txtChkMin(), QString(c.shown)) << c.typed;
    }
    d.setTxtChkMin("59");
    d.vscMinStep(1);
    EXPECT_EQ(d.txtChkMin(), QStringLiteral("59"));
    d.setTxtChkMin("1");
    d.vscMinStep(-1);
    EXPECT_EQ(d.txtChkMin(), QStringLiteral("1"));
}

TEST(AutoConnectDialog, MaxZeroRefusesEveryAddAndOkRunsTheCheck)
{
    MemorySettings settings;
    settings.values = {{"AutoConnectMax", "0"}};
    FakeNames names;
    FakeSession session;
    FakeProber prober;
    AutoConnect checker(settings, session, prober);
    AutoConnectSettings d(settings, names, &checker);
    QStringList notices;
    QObject::connect(&d, &AutoConnectSettings::notice, [&](const QString& n) { notices << n; });
    d.setTxtAutoCheck("1.2.3.4");
    d.cmdAdd_Click();
    EXPECT_EQ(notices, QStringList({"Already reach the Max. limit of the list."}));
    d.setChkAutoCheckOn(true);
    d.OKButton_Click();
    EXPECT_TRUE(checker.timerEnabled());  // OK with the check on ran it
}

TEST(NetResolve, TheBoxTypedInLastDecidesThenTheContents)
{
    FakeNames names;
    names.forward = {{"localhost", "127.0.0.1"}};
    names.reverse = {{"127.0.0.1", "localhost"}};
    NetResolve r(names);
    QStringList notices;
    QObject::connect(&r, &NetResolve::notice, [&](const QString& n) { notices << n; });

    r.typeHost("localhost");
    r.cmdResolve_Click();
    EXPECT_EQ(r.txtIP(), QStringLiteral("127.0.0.1"));

    r.typeIP(" 127.0.0.1 ");
    r.cmdResolve_Click();
    EXPECT_EQ(r.txtHost(), QStringLiteral("localhost"));

    r.typeIP("1.2.3");
    r.cmdResolve_Click();
    EXPECT_EQ(r.txtIP(), QString());
    EXPECT_EQ(notices.last(), QStringLiteral("Example of IP address format: 127.0.0.1"));

    r.typeIP("x1.y2.z3.4");  // passes the pattern; the lookup fails
    r.cmdResolve_Click();
    EXPECT_EQ(r.txtHost(), QStringLiteral("- - - - - - "));

    r.cmdReset_Click();
    EXPECT_EQ(r.txtIP(), QString());
    EXPECT_EQ(r.txtHost(), QString());
    r.cmdResolve_Click();
    EXPECT_EQ(notices.last(), QStringLiteral("Example of Host name format: Localhost"));
    EXPECT_FALSE(r.busy());
}
