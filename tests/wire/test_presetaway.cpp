// The Messages menu and the away notice: between two copies the text
// arrives as a paste and goes again on both sides; against a raw peer the
// bytes are the ones the frames say.

#include "connection/Connection.h"
#include "core/Controls.h"
#include "core/MainModel.h"
#include "support/Session.h"
#include "wire/AwayNotice.h"
#include "wire/LiveTyping.h"
#include "wire/PresetMessages.h"

#include <QTcpSocket>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

QString paneOf(TestCopy& c) { return c.frm().model().txtServer.text(); }
QString remoteOf(TestCopy& c) { return c.frm().model().txtClient(0).text(); }

class PresetAway : public ::testing::Test {
protected:
    void start(const QList<QPair<QString, QString>>& settings = {})
    {
        for (const auto& [key, value] : settings)
            a.set(key, value);
        ASSERT_TRUE(a.start());
        ASSERT_TRUE(b.start());
        ASSERT_TRUE(connectCopies(a, b));
    }
    // b's view of a's pane has caught up with a.
    bool sameOnBoth() { return waitUntil([&] { return remoteOf(b) == paneOf(a); }); }
    TestCopy a;
    TestCopy b;
};

TEST_F(PresetAway, APresetArrivesAsAPasteAndTheClipboardStaysTheUsers)
{
    start({{"Menu1", "Greeting"}, {"Message1", "Good morning, all"}, {"Menu2", ""}, {"Message2", "unseen"}});
    const Controls& menu = a.frm().model().controls;
    EXPECT_TRUE(menu.visible(Control::mnuMsg1));
    EXPECT_EQ(menu.caption(Control::mnuMsg1), "Greeting");
    EXPECT_FALSE(menu.visible(Control::mnuMsg2)) << "an entry without a caption is hidden";

    a.clipboard().setText("the user's own words");
    a.frm().typing().typeText("hi ");
    a.frm().presets().mnuMsg_Click(1);
    EXPECT_EQ(paneOf(a), "hi Good morning, all\r\n");
    ASSERT_TRUE(sameOnBoth());
    EXPECT_EQ(a.clipboard().text(), "the user's own words");

    a.frm().presets().mnuMsg_Click(8);
    ASSERT_TRUE(sameOnBoth());
    EXPECT_EQ(paneOf(a), "hi Good morning, all\r\nI am back.\r\n");
    EXPECT_EQ(a.clipboard().text(), "the user's own words");
}

TEST_F(PresetAway, TheScreenSaverSetsTheNoticeAndItsEndTakesItBackOnBothSides)
{
    start({{"Away Message On", "1"}, {"Away Message", ""}, {"Automatic Minimize (Screen Saver)", "0"}});
    a.frm().typing().typeText("brb");
    ASSERT_TRUE(sameOnBoth());
    AwayNotice& away = a.frm().away();

    away.tTimer2_Timer();
    EXPECT_FALSE(away.awayShown) << "no screen saver, no notice";
    a.screenSaver().on = true;
    away.tTimer2_Timer();
    away.tTimer2_Timer();
    EXPECT_EQ(paneOf(a), "brb\r\n[ User is away... ]\r\n") << "set once, with the default text";
    ASSERT_TRUE(sameOnBoth());
    EXPECT_EQ(a.frm().model().lblStealth(), "Away");

    a.screenSaver().on = false;
    away.tTimer2_Timer();
    EXPECT_FALSE(away.awayShown);
    EXPECT_EQ(paneOf(a), "brb\r") << "cut before the notice, less the character before it";
    ASSERT_TRUE(sameOnBoth());
    EXPECT_TRUE(a.frm().model().lblStealth().isEmpty());
}

TEST_F(PresetAway, MinimisingSetsTheNoticeAndTheMouseTakesItBack)
{
    start({{"Away Message On", "1"}, {"Away Message", "at lunch"}, {"Away Message When Minimized", "1"},
           {"Automatic Minimize (Screen Saver)", "1"}});
    a.frm().model().setWindowState(MainModel::vbMinimized);
    EXPECT_EQ(paneOf(a), "\r\n[ at lunch ]\r\n");
    ASSERT_TRUE(sameOnBoth());

    a.frm().away().txtServer_MouseMove();
    EXPECT_EQ(paneOf(a), "\r");
    ASSERT_TRUE(sameOnBoth());

    // The screen saver minimises the window, which sets the notice: it
    // stands once all the same.
    a.frm().model().setWindowState(MainModel::vbNormal);
    a.screenSaver().on = true;
    a.frm().away().tTimer2_Timer();
    EXPECT_EQ(a.frm().model().windowState(), MainModel::vbMinimized);
    EXPECT_EQ(paneOf(a), "\r\r\n[ at lunch ]\r\n");
    ASSERT_TRUE(sameOnBoth());
}

TEST_F(PresetAway, WordsTypedBehindTheNoticeSurviveItsTakingBack)
{
    start({{"Away Message On", "1"}, {"Away Message When Minimized", "1"}});
    a.frm().typing().typeText("one");
    a.frm().model().setWindowState(MainModel::vbMinimized);
    a.frm().model().setWindowState(MainModel::vbNormal);
    a.frm().typing().typeText("two");
    ASSERT_TRUE(sameOnBoth());
    a.frm().away().txtServer_MouseMove();
    EXPECT_EQ(paneOf(a), "one\r\ntwo");
    EXPECT_TRUE(sameOnBoth()) << "the whole text follows to the peer";
}

TEST_F(PresetAway, NothingIsEverAddedWithTheNoticeOff)
{
    start({{"Away Message On", "0"}, {"Away Message When Minimized", "1"},
           {"Automatic Minimize (Screen Saver)", "1"}});
    a.screenSaver().on = true;
    a.frm().away().tTimer2_Timer();
    a.frm().model().setWindowState(MainModel::vbMinimized);
    a.frm().away().txtServer_MouseMove();
    EXPECT_TRUE(paneOf(a).isEmpty());
    EXPECT_FALSE(a.frm().away().awayShown);
}

TEST_F(PresetAway, TheSessionsEndForgetsTheNotice)
{
    start({{"Away Message On", "1"}});
    a.screenSaver().on = true;
    a.frm().away().tTimer2_Timer();
    ASSERT_TRUE(a.frm().away().awayShown);
    a.frm().connection().mnuDisconnect_Click();
    ASSERT_TRUE(waitUntil([&] { return !a.frm().away().awayShown; }));
    EXPECT_TRUE(a.frm().model().lblStealth().isEmpty());
}

// Against a raw peer: the frames of the notice in the pane and on the board.
class AwayRawPeer : public ::testing::Test {
protected:
    void SetUp() override
    {
        copy.set("Away Message On", "1");
        copy.set("Away Message", "gone");
        ASSERT_TRUE(copy.start());
        acceptRawPeer(copy, peer);
        readFor(peer, 300);  // the session's opening frames
    }
    QByteArray tick()
    {
        copy.frm().away().tTimer2_Timer();
        return readFor(peer, 300);
    }
    TestCopy copy;
    QTcpSocket peer;
};

TEST_F(AwayRawPeer, TheNoticeIsAPasteAndItsTakingBackACut)
{
    copy.screenSaver().on = true;
    EXPECT_EQ(tick(), "<Paste> \r\n[ gone ]\r\n</Paste>");
    copy.screenSaver().on = false;
    EXPECT_EQ(tick(), "^BK1#BK");
}

TEST_F(AwayRawPeer, OnTheBoardTheNoticeIsAChatLine)
{
    copy.frm().away().boardInUse = [] { return true; };
    copy.screenSaver().on = true;
    EXPECT_EQ(tick(), "&&<#> [ gone ] <#>&&");
    EXPECT_TRUE(copy.frm().model().txtServer.text().isEmpty()) << "the pane is not touched";
    copy.screenSaver().on = false;
    EXPECT_EQ(tick(), "&&<#> <#>&&") << "the empty chat line, one blank inside";
    EXPECT_FALSE(copy.frm().away().awayShown);
    EXPECT_EQ(copy.frm().model().lblStealth(), "");
    EXPECT_EQ(tick(), "") << "taken back once";
}

}  // namespace
}  // namespace vonnel::test
