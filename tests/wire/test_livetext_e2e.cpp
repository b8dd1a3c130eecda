// Two copies joined over loopback: what one side types, the other shows.

#include "support/Session.h"
#include "wire/LiveTyping.h"
#include "wire/Receiver.h"
#include "wire/RemotePane.h"
#include "access/Encryption.h"
#include "core/Sender.h"

#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

class LiveText : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(a.start());
        ASSERT_TRUE(b.start());
        ASSERT_TRUE(connectCopies(a, b));
    }
    // True once b's remote pane reads what a's local pane holds.
    bool samePanes(int ms = 3000)
    {
        return waitUntil([&] {
            return b.frm().model().txtClient(0).text() == a.frm().model().txtServer.text();
        }, ms);
    }
    TestCopy a;
    TestCopy b;
};

TEST_F(LiveText, TypingReturnBackspacePasteAndClearKeepThePanesEqual)
{
    LiveTyping& t = a.frm().typing();
    t.typeText("hello world");
    ASSERT_TRUE(samePanes()) << b.frm().model().txtClient(0).text().toStdString();
    EXPECT_EQ(b.frm().model().txtClient(0).text(), "hello world");

    t.typeText("\r");
    t.typeText("second");
    t.typeText("\b");
    ASSERT_TRUE(samePanes());
    EXPECT_EQ(b.frm().model().txtClient(0).text(), "hello world\r\nsecon");
    // The line went into the other side's record.
    EXPECT_TRUE(b.frm().model().txtTextMsg.text().contains(": hello world"));

    a.clipboard().setText(" pasted text");
    t.mnuEditPaste_Click();
    ASSERT_TRUE(samePanes());
    EXPECT_TRUE(b.frm().model().txtClient(0).text().endsWith("secon pasted text"));

    t.mnuClrScr_Click();
    ASSERT_TRUE(waitUntil([&] { return b.frm().model().txtClient(0).text().isEmpty(); }));
    t.typeText("again");
    ASSERT_TRUE(samePanes());
    EXPECT_EQ(b.frm().model().txtClient(0).text(), "again");
}

TEST_F(LiveText, BothSidesTypeAtOnce)
{
    a.frm().typing().typeText("from a");
    b.frm().typing().typeText("from b");
    EXPECT_TRUE(samePanes());
    EXPECT_TRUE(waitUntil([&] { return a.frm().model().txtClient(0).text() == "from b"; }));
}

TEST_F(LiveText, ADroppedFrameIsHealedByTheRepair)
{
    b.frm().receiver().selfRepair = true;
    b.frm().receiver().repairCountLimit = 50;
    b.frm().receiver().remotePane().repairDelayMs = 20;
    a.frm().typing().typeText("abc");
    ASSERT_TRUE(samePanes());
    // A frame whose end was lost reaches b: its pane may have missed a key.
    b.frm().receiver().handleArrival(0, "<KEY> z <:KEY>");
    a.frm().typing().typeText(" d");
    ASSERT_TRUE(waitUntil([&] { return b.frm().receiver().remotePane().repairCount == 1; }));
    ASSERT_TRUE(samePanes()) << b.frm().model().txtClient(0).text().toStdString();
    EXPECT_EQ(b.frm().model().txtClient(0).text(), "abc d");
}

TEST_F(LiveText, RefreshBringsBackTheWholeText)
{
    a.frm().typing().typeText("keep this");
    ASSERT_TRUE(samePanes());
    b.frm().model().txtClient(0).setText("garbled");
    b.frm().sender().xSendData("^reFresh");
    ASSERT_TRUE(samePanes());
    EXPECT_EQ(b.frm().model().txtClient(0).text(), "keep this");
}

TEST_F(LiveText, EncryptionOnOneSideReadsInClearOnTheOther)
{
    a.set("Encrypted", "1");
    a.frm().encryption().encryptOn = true;
    a.frm().encryption().sessionKey = "10:15 AM";
    a.frm().typing().typeText("secret words");
    ASSERT_TRUE(samePanes()) << b.frm().model().txtClient(0).text().toStdString();
    EXPECT_TRUE(b.frm().encryption().remoteEncrypted);
    EXPECT_EQ(b.frm().encryption().remoteKey, "10:15 AM");
}

}  // namespace
