// Two copies over loopback: a file goes from a to b while both users chat,
// pause, put the transfer on hold, bring it back and cancel it.

#include "transfer/TwoCopies.h"
#include "wire/LiveTyping.h"
#include "connection/Session.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTimer>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

TEST_F(TwoCopies, TenMegabytesArriveWhileBothSidesChat)
{
    // Typing on both sides, a character every few milliseconds, for as
    // long as the transfer runs.
    QString fromA, fromB;
    int typedWhileRunning = 0;
    QTimer typist;
    typist.setInterval(3);
    QObject::connect(&typist, &QTimer::timeout, [&] {
        if (fromA.size() >= 60)
            return;
        const QChar c = QChar(char16_t(u'a' + fromA.size() % 26));
        a.frm().typing().typeText(QString(c));
        b.frm().typing().typeText(QString(c.toUpper()));
        fromA += c;
        fromB += c.toUpper();
    });
    QObject::connect(&b.frm().model().txtClient(0), &TextPane::textChanged, [&] {
        if (!data.isEmpty() && received() < data.size())
            ++typedWhileRunning;
    });
    typist.start();
    startTransfer(10 * 1024 * 1024, 11);
    ASSERT_TRUE(finished(60000)) << received();
    typist.stop();

    EXPECT_EQ(readFile(target), data);
    EXPECT_TRUE(waitUntil([&] { return b.frm().model().txtClient(0).text() == fromA; }))
        << b.frm().model().txtClient(0).text().toStdString();
    EXPECT_TRUE(waitUntil([&] { return a.frm().model().txtClient(0).text() == fromB; }));
    // The typing went out between the frames, not after the file.
    EXPECT_GT(typedWhileRunning, 0);
    EXPECT_EQ(rings[0], QStringList{"alert.wav"});
    EXPECT_EQ(rings[1], QStringList{"alert.wav"});
    EXPECT_EQ(tb().progress().cmdPause.tag, "Open");
}

TEST_F(TwoCopies, PauseFromEitherSideHoldReopenAndContinueGiveTheSameFile)
{
    // Each step waits for the file to grow past where the last one left
    // it: a busy machine may carry a fifth of a small file in one turn.
    const qsizetype size = 24 * 1024 * 1024;
    const qint64 step = 128 * 1024;
    startTransfer(size, 12);
    ProgressModel& wa = ta().progress();
    ProgressModel& wb = tb().progress();

    // The sender pauses.
    ASSERT_TRUE(waitUntil([&] { return received() > step; }));
    ta().cmdPause_Click();
    ASSERT_TRUE(waitUntil([&] { return tb().transferPaused; }));
    EXPECT_EQ(wa.cmdPause.tag, "Continue");
    EXPECT_TRUE(wa.cmdPause.enabled);
    EXPECT_EQ(wa.cmdCancel.tag, "Unload");
    // Only the side that paused may go on; the other hears the bell twice.
    EXPECT_EQ(wb.cmdPause.tag, "Continue");
    EXPECT_FALSE(wb.cmdPause.enabled);
    EXPECT_EQ(wb.cmdPause.toolTip, "You have no right to contine to send/receive file");
    EXPECT_EQ(wb.cmdCancel.tag, "Unload");
    EXPECT_EQ(wb.caption, "Pause - Receiving File");
    EXPECT_EQ(rings[1], (QStringList{"alert.wav", "alert.wav"}));
    EXPECT_TRUE(standsStill());
    tb().cmdPause_Click();  // disabled: nothing happens
    EXPECT_TRUE(tb().transferPaused);
    qint64 before = received();
    ta().cmdPause_Click();
    ASSERT_TRUE(waitUntil([&] { return received() > before + step; }));
    ASSERT_TRUE(waitUntil([&] { return wb.cmdPause.tag == "Pause"; }));
    EXPECT_TRUE(wb.cmdPause.enabled);

    // The receiver pauses while a frame is being copied.
    bool clicked = false;
    auto c = QObject::connect(&tb(), &Transfer::copyingFrame, [&] {
        if (!clicked) {
            clicked = true;
            tb().cmdPause_Click();
        }
    });
    ASSERT_TRUE(waitUntil([&] { return ta().transferPaused; }));
    QObject::disconnect(c);
    EXPECT_EQ(wa.cmdPause.tag, "Continue");
    EXPECT_FALSE(wa.cmdPause.enabled);
    EXPECT_TRUE(standsStill());
    before = received();
    tb().cmdPause_Click();
    ASSERT_TRUE(waitUntil([&] { return received() > before + step; }));

    // A hold: paused, then back to the chat on both sides.
    ta().cmdPause_Click();
    ASSERT_TRUE(waitUntil([&] { return tb().transferPaused; }));
    ta().cmdCancel_Click();
    ASSERT_TRUE(waitUntil([&] { return !wb.loaded; }));
    EXPECT_FALSE(wa.loaded);
    EXPECT_TRUE(a.frm().session().TransferOnHold);
    EXPECT_TRUE(b.frm().session().TransferOnHold);
    EXPECT_EQ(a.frm().model().controls.caption(Control::mnuSendFile), "Send &File");
    EXPECT_EQ(b.frm().model().controls.caption(Control::mnuSendFile), "&Receive File");
    EXPECT_TRUE(b.frm().model().controls.enabled(Control::mnuSendFile));
    EXPECT_EQ(tb().holdDirection, "Receiving File");
    EXPECT_EQ(ta().holdPosition, ta().sendFileSent);
    EXPECT_TRUE(standsStill());
    a.frm().typing().typeText("later");
    EXPECT_TRUE(waitUntil([&] { return b.frm().model().txtClient(0).text() == "later"; }));

    // The receiver brings both windows back; either may continue.
    tb().mnuSendFile_Click();
    ASSERT_TRUE(waitUntil([&] { return wa.loaded && wb.loaded; }));
    for (ProgressModel* w : {&wa, &wb}) {
        EXPECT_EQ(w->cmdPause.tag, "Continue");
        EXPECT_TRUE(w->cmdPause.enabled);
        EXPECT_EQ(w->cmdCancel.tag, "Unload");
    }
    EXPECT_EQ(wb.lblProgress.text, tb().holdProgressText);
    EXPECT_EQ(wa.txtSendRec, "Sending File");
    EXPECT_FALSE(b.frm().session().TransferOnHold);
    tb().cmdPause_Click();

    ASSERT_TRUE(finished()) << received();
    EXPECT_EQ(readFile(target), data);
}

TEST_F(TwoCopies, AReceiverPauseKeepsTheChunkInFlight)
{
    // The receiver pauses right after it acknowledged a frame: the next
    // frame is already on its way. It is written where the sender's
    // position stands, and continuing goes on from there.
    const qsizetype size = 4000 * 3200;
    startTransfer(size, 13);
    ASSERT_TRUE(waitUntil([&] { return received() > size / 4; }));
    bool clicked = false;
    auto c = QObject::connect(&tb(), &Transfer::copyingFrame, [&] {
        if (!clicked) {
            clicked = true;
            QTimer::singleShot(0, [&] { tb().cmdPause_Click(); });
        }
    });
    ASSERT_TRUE(waitUntil([&] { return ta().transferPaused; }));
    QObject::disconnect(c);
    pump(100);
    const qint64 atPause = received();
    EXPECT_EQ(atPause, ta().sendFileSent);
    tb().cmdPause_Click();
    ASSERT_TRUE(finished()) << received();
    EXPECT_EQ(tb().progress().cmdCancel.tag, "Finish");
    EXPECT_EQ(readFile(target), data);
}

class CancelFrom : public TwoCopies, public ::testing::WithParamInterface<bool> {};

TEST_P(CancelFrom, CancelLeavesThePartialFileAndBothWindowsSaySo)
{
    const bool fromReceiver = GetParam();
    const qsizetype size = 16 * 1024 * 1024;
    startTransfer(size, 14);
    ASSERT_TRUE(waitUntil([&] { return received() > size / 4; }));
    (fromReceiver ? tb() : ta()).cmdCancel_Click();
    ASSERT_TRUE(waitUntil([&] { return ta().transferCancelled && tb().transferCancelled; }));
    pump(200);

    for (Transfer* t : {&ta(), &tb()}) {
        // The receiving side also says where the part it has stays.
        const QString said = t == &tb() ? "File sending/receiving cancelled\nThe part received is kept in " + target
                                        : QString("File sending/receiving cancelled");
        EXPECT_EQ(t->progress().lblProgress.text, said);
        EXPECT_EQ(t->progress().cmdCancel.tag, "Close");
        EXPECT_TRUE(t->progress().lblProgress.visible);
        EXPECT_FALSE(t->progress().cmdPause.enabled);
        EXPECT_FALSE(t->transferPaused);
    }
    // The side told of the cancel marks its caption. (On a receiver that
    // cancelled, a frame already on the way still sets the caption back to
    // "Receiving File" before it is dropped.)
    EXPECT_TRUE((fromReceiver ? ta() : tb()).progress().caption->endsWith(" (Cancelled)"));
    // The side that cancelled closed its window; the other's stays.
    EXPECT_EQ(ta().progress().loaded, fromReceiver);
    EXPECT_EQ(tb().progress().loaded, !fromReceiver);
    EXPECT_EQ(beeps[0], 1);
    EXPECT_EQ(beeps[1], 1);
    EXPECT_TRUE(a.frm().model().controls.enabled(Control::mnuSendFile));
    EXPECT_TRUE(b.frm().model().controls.enabled(Control::mnuSendFile));
    EXPECT_FALSE(ta().sendFileOpen());
    EXPECT_FALSE(tb().recvFileOpen());

    const QByteArray partial = readFile(target);
    EXPECT_GT(partial.size(), size / 4);
    EXPECT_LT(partial.size(), size);
    EXPECT_EQ(partial, data.left(partial.size()));
    EXPECT_TRUE(standsStill());
}

INSTANTIATE_TEST_SUITE_P(Transfer, CancelFrom, ::testing::Values(false, true),
                         [](const auto& info) { return info.param ? "Receiver" : "Sender"; });

}  // namespace
