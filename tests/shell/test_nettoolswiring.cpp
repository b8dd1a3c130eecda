// The network tools inside a whole copy: the station check at the end of
// start-up calls or lists what answers, the sweep of frmNetView fills the
// window in address order without holding the event loop, and a machine
// without ICMP sockets is told so once.

#include "connection/Connection.h"
#include "connection/Session.h"
#include "nettools/AutoConnect.h"
#include "nettools/AutoNotify.h"
#include "nettools/NetViewModel.h"
#include "platform/Winsock.h"
#include "shell/MainWindow.h"
#include "shell/NetTools.h"
#include "shell/dialogs/NetViewWindow.h"
#include "support/Session.h"

#include <QElapsedTimer>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <gtest/gtest.h>
#include <iostream>

using namespace vonnel;
using namespace vonnel::test;

namespace {

using Settings = QList<QPair<QString, QString>>;

// A station list whose first slot stays silent and whose second and third
// answer: 127.0.0.1 first in priority, 127.0.0.7 after it.
Settings stationList(const QString& autoConnect, const QString& option, quint16 peerPort)
{
    return {{"AutoConnect", autoConnect},
            {"AutoConnect Option", option},
            {"AutoConnectMax", "4"},
            {"AutoConnect IP 1", "127.0.0.5"},
            {"AutoConnect Host 1", "silent"},
            {"AutoConnect IP 2", "127.0.0.1"},
            {"AutoConnect Host 2", "- - - - - - "},
            {"AutoConnect IP 3", "127.0.0.7"},
            {"AutoConnect Host 3", "seven"},
            {"AutoConnect IP 4", ""},
            {"RemotePort", QString::number(peerPort)},
            {"AutoCheck After Session", "1"}};
}

void onlyLive(TestCopy& copy)
{
    copy.pinger().liveOnly = {"127.0.0.1", "127.0.0.7"};
}

bool connected(TestCopy& copy)
{
    return copy.frm().session().winsock(0).State() == Winsock::sckConnected;
}

TEST(AutoConnectAtStart, OptionConnectCallsTheFirstAnsweringStationOnly)
{
    TestCopy callee(0, {{"Auto Accept Connection", "1"}});
    ASSERT_TRUE(callee.start());
    TestCopy caller(0, stationList("1", "1", callee.port()));
    onlyLive(caller);
    ASSERT_TRUE(caller.start());

    ASSERT_TRUE(waitUntil([&] { return connected(caller) && connected(callee); }, 8000));
    EXPECT_EQ(caller.pinger().probed, QStringList({"127.0.0.5", "127.0.0.1", "127.0.0.7", ""}));
    EXPECT_EQ(caller.get("Previous IP Address"), "127.0.0.1");
    EXPECT_EQ(caller.frm().session().winsock(0).RemotePort(), callee.port());
    EXPECT_TRUE(caller.frm().tTimer1().isActive());
    EXPECT_TRUE(caller.frm().model().controls.checked(Control::mnuAutoCheck));
    EXPECT_TRUE(caller.frm().netTools().autoNotify().lstOnlineIP().isEmpty());

    // The peer ends the session: "AutoCheck After Session" switches the
    // check off, and the next check stops the timer.
    callee.frm().connection().mnuDisconnect_Click();
    ASSERT_TRUE(waitUntil([&] { return caller.get("AutoConnect") == "0"; }, 5000));
    caller.frm().netTools().autoConnect().checkStations();
    EXPECT_FALSE(caller.frm().tTimer1().isActive());
}

TEST(AutoConnectAtStart, OptionShowListsTheHostTextsOfAllThatAnsweredAndCallsNobody)
{
    TestCopy callee(0, {{"Auto Accept Connection", "1"}});
    ASSERT_TRUE(callee.start());
    TestCopy caller(0, stationList("1", "0", callee.port()));
    onlyLive(caller);
    ASSERT_TRUE(caller.start());

    AutoNotify& notify = caller.frm().netTools().autoNotify();
    ASSERT_TRUE(waitUntil([&] { return !notify.lstOnlineIP().isEmpty(); }, 3000));
    // The host text stands in the line, the failed-lookup text included
    // (as the settings file gives it back: without its closing blank).
    EXPECT_EQ(notify.lstOnlineIP(), QStringList({"- - - - - -", "seven"}));
    EXPECT_TRUE(notify.stbTime().startsWith("Last Checked: ")) << notify.stbTime().toStdString();
    pump(300);
    EXPECT_FALSE(connected(callee));
    EXPECT_TRUE(caller.get("Previous IP Address").isEmpty());
}

TEST(AutoConnectAtStart, SwitchOffProbesNothingAndLeavesTheTimerOff)
{
    for (const char* value : {"0", "2"}) {
        SCOPED_TRACE(value);
        TestCopy callee(0, {{"Auto Accept Connection", "1"}});
        ASSERT_TRUE(callee.start());
        TestCopy caller(0, stationList(value, "1", callee.port()));
        onlyLive(caller);
        ASSERT_TRUE(caller.start());
        pump(300);
        EXPECT_TRUE(caller.pinger().probed.isEmpty());
        EXPECT_FALSE(caller.frm().tTimer1().isActive());
        EXPECT_FALSE(connected(callee));
        EXPECT_TRUE(caller.frm().netTools().autoNotify().lstOnlineIP().isEmpty());
    }
}

TEST(NetViewInACopy, SweepListsExactlyTheLiveStationsInOrderAndTheLoopKeepsTurning)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    // The copy stands on 127.0.0.1 (its own-address seam); a few stations
    // of 127.0.0.x answer, later ones sooner, the rest stay silent.
    copy.pinger().liveOnly = {"127.0.0.1", "127.0.0.3", "127.0.0.17", "127.0.0.42",
                              "127.0.0.200"};
    copy.pinger().answerDelayMs = [](const QString& a) {
        return 80 - a.section('.', 3).toInt() / 4;
    };
    MainWindow main(copy.frm());
    main.showModeless(Form::frmNetView);
    auto* window = qobject_cast<NetViewWindow*>(main.netToolWindow(Form::frmNetView));
    ASSERT_NE(window, nullptr);
    NetViewModel& view = copy.frm().netTools().netView();

    QElapsedTimer clock;
    clock.start();
    qint64 last = 0, longestGap = 0;
    QTimer tick;
    tick.setInterval(1);
    QObject::connect(&tick, &QTimer::timeout, [&] {
        const qint64 now = clock.elapsed();
        longestGap = qMax(longestGap, now - last);
        last = now;
    });
    tick.start();
    view.mnuAllStations_Click();
    EXPECT_TRUE(window->cmdAbort()->isVisibleTo(window));
    EXPECT_FALSE(window->lstPing()->isEnabled());
    ASSERT_TRUE(waitUntil([&] { return !view.sweeping(); }, 20000));
    const qint64 took = clock.elapsed();
    tick.stop();
    std::cout << "[ copy sweep of 127.0.0.0-255: " << took << " ms, " << copy.pinger().probed.size()
              << " probes; longest gap between event-loop turns " << longestGap << " ms ]\n";

    const QStringList expected = {"127.0.0.3", "127.0.0.17", "127.0.0.42", "127.0.0.200"};
    EXPECT_EQ(view.lstPing(), expected);
    EXPECT_EQ(copy.pinger().probed.size(), 256);
    EXPECT_EQ(view.txtPing(), "4: Online");
    ASSERT_EQ(window->lstPing()->count(), 4);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(window->lstPing()->item(i)->text(), expected[i]);
    EXPECT_FALSE(window->cmdAbort()->isVisibleTo(window));
    EXPECT_TRUE(window->lstPing()->isEnabled());
    // 256 probes of which 251 run out after 200 ms: side by side that is a
    // few waves, one after the other it would be 50 seconds.
    EXPECT_LT(took, 10000);
    EXPECT_LT(longestGap, 100);
}

// A machine that allows neither an unprivileged ICMP socket nor a raw one.
class RefusingPlatform : public EchoPlatform {
public:
    int opened = 0;
    std::unique_ptr<EchoTransport> open(QString* whyNot) override
    {
        ++opened;
        if (whyNot)
            *whyNot = echoUnavailableText("refused on this test machine");
        return nullptr;
    }
};

TEST(EchoUnavailable, ToldOnceWhateverUsesTheEcho)
{
    RefusingPlatform refusing;
    TestCopy copy(0, {{"AutoConnect", "1"},
                      {"AutoConnect Option", "0"},
                      {"AutoConnectMax", "2"},
                      {"AutoConnect IP 1", "127.0.0.1"},
                      {"AutoConnect IP 2", "127.0.0.2"}});
    copy.pinger().usePlatform(&refusing);
    ASSERT_TRUE(copy.start());
    AutoConnect& check = copy.frm().netTools().autoConnect();
    ASSERT_TRUE(waitUntil([&] { return !check.checking(); }, 3000));

    NetViewModel& view = copy.frm().netTools().netView();
    view.viewRange("127.0.0.1", 1, 5);
    ASSERT_TRUE(waitUntil([&] { return !view.sweeping(); }, 3000));
    EXPECT_FALSE(copy.frm().ctx().pinger().echo("127.0.0.1"));  // the connect report's echo
    check.checkStations();
    ASSERT_TRUE(waitUntil([&] { return !check.checking(); }, 3000));

    EXPECT_GE(refusing.opened, 3);
    EXPECT_EQ(copy.prompter().count("Ping is not available"), 1);
    EXPECT_TRUE(view.lstPing().isEmpty());
    EXPECT_EQ(view.txtPing(), "0: Online");
    EXPECT_TRUE(copy.frm().netTools().autoNotify().lstOnlineIP().isEmpty());
}

}  // namespace
