// After a version conflict the update step runs before the session ends;
// and the wait pointer: up for the blocking waits and the long send that
// show it, and always back to normal afterwards.

#include "core/Cp1252.h"
#include "core/IniStore.h"
#include "platform/Cursor.h"
#include "support/Session.h"
#include "wire/LiveTyping.h"
#include "wire/Receiver.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "core/CopyContext.h"

#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

class Peer : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(copy.start());
        acceptRawPeer(copy, peer);
        ASSERT_TRUE(f().session().IsConnected());
        readFor(peer, 50);
        copy.cursor().changes.clear();
    }
    FrmMain& f() { return copy.frm(); }
    void arrive(const QString& text) { f().receiver().handleArrival(0, toCp1252(text)); }
    QStringList& pointer() { return copy.cursor().changes; }

    TestCopy copy;
    QTcpSocket peer;
};

struct UpdateCase {
    const char* name;
    QString update, exe, param;
    QStringList opened;  // relative programs are under the application folder
};

class VersionConflict : public Peer, public ::testing::WithParamInterface<UpdateCase> {};

TEST_P(VersionConflict, TheUpdateStepRunsAfterTheBoxAndTheSessionEnds)
{
    const UpdateCase& c = GetParam();
    copy.set("Version Check", "1");
    copy.set("Update", c.update);
    copy.set("UpdateExe", c.exe);
    copy.set("UpdateParam", c.param);

    // The same version: no box, no update.
    arrive("!ver. " + f().ctx().VersionString + " ver!");
    EXPECT_TRUE(copy.desktop().opened.isEmpty());
    EXPECT_TRUE(f().session().IsConnected());

    arrive(QStringLiteral("!ver. Vonnel 0.9.1 ver!"));
    EXPECT_TRUE(copy.prompter().asked("Version Conflict"));
    QStringList expected;
    for (QString s : c.opened)
        expected << s.replace(QLatin1String("APP/"), copy.appPath());
    EXPECT_EQ(copy.desktop().opened, expected);
    EXPECT_FALSE(f().session().IsConnected());
}

INSTANTIATE_TEST_SUITE_P(
    Receive, VersionConflict,
    ::testing::Values(
        UpdateCase{"AddressInTheBrowser", "http://127.0.0.1/update", "", "", {"http://127.0.0.1/update"}},
        UpdateCase{"ToolWithItsParameters", "http://127.0.0.1/update", "updater", "-q  -v",
                   {"APP/updater -q -v http://127.0.0.1/update"}},
        UpdateCase{"ToolWithAnAbsolutePath", "", "/opt/upd/run", "", {"/opt/upd/run "}},
        UpdateCase{"NothingConfigured", "", "", "", {}}),
    [](const ::testing::TestParamInfo<UpdateCase>& info) { return std::string(info.param.name); });

TEST_F(Peer, TheBlockingWaitShowsTheWaitPointerAndRestoresIt)
{
    double s = 0.02;
    f().session().idleDelay(s);
    EXPECT_EQ(pointer(), (QStringList{"wait", "normal"}));

    pointer().clear();
    s = 0.02;
    f().session().idleDelay(s, true);
    EXPECT_TRUE(pointer().isEmpty()) << "keepPointer leaves the pointer as it is";

    // No wait at all (zero seconds, no Connect Idle): the pointer is not touched.
    copy.set("Connect Idle", "");
    s = 0;
    f().session().idleDelay(s);
    EXPECT_TRUE(pointer().isEmpty());
    EXPECT_FALSE(copy.cursor().waiting);
}

TEST_F(Peer, APasteThatGoesOutShowsTheWaitPointerForTheSendOnly)
{
    copy.clipboard().setText(QStringLiteral("pasted"));
    f().typing().mnuEditPaste_Click();
    EXPECT_EQ(readAtLeast(peer, 22), QByteArray("<Paste> pasted</Paste>"));
    EXPECT_EQ(pointer(), (QStringList{"wait", "normal"}));

    // Refused for its length: nothing goes out, the pointer never changes.
    pointer().clear();
    copy.clipboard().setText(QString(f().receiver().textLimit + 1, QLatin1Char('x')));
    f().typing().mnuEditPaste_Click();
    EXPECT_TRUE(copy.prompter().asked("over the limit"));
    EXPECT_TRUE(pointer().isEmpty());
    EXPECT_FALSE(copy.cursor().waiting);
}

TEST_F(Peer, AnArrivalAndTheRefreshAnswerSetTheNormalPointer)
{
    copy.cursor().setWait();
    arrive(QStringLiteral("<Paste> a</Paste>"));
    EXPECT_FALSE(copy.cursor().waiting);

    copy.cursor().setWait();
    f().receiver().resendWholeText();
    EXPECT_FALSE(copy.cursor().waiting);
}

}  // namespace
