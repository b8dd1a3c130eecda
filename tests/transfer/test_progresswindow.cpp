// The progress window shows its model and hands its buttons to the logic.

#include "shell/dialogs/ProgressDialog.h"
#include "support/Session.h"
#include "transfer/Transfer.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

TEST(ProgressWindow, FollowsThePauseAndTheHoldOfATransfer)
{
    TestCopy a, b;
    for (TestCopy* c : {&a, &b}) {
        c->set("Byte Per Send", "2000");
        c->set("Close Progress", "0");
    }
    ASSERT_TRUE(a.start());
    ASSERT_TRUE(b.start());
    ASSERT_TRUE(connectCopies(a, b));
    std::unique_ptr<ProgressDialog> window(installProgressDialog(b.frm(), nullptr));
    EXPECT_FALSE(window->isVisible());

    const QString source = a.file("out/s.bin");
    const QString target = b.file("in/t.bin");
    QDir().mkpath(QFileInfo(source).path());
    QDir().mkpath(QFileInfo(target).path());
    {
        QFile f(source);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(8 * 1024 * 1024, 'x'));
    }
    a.prompter().addAnswers({"file:" + source});
    b.prompter().addAnswers({"yes", "file:" + target});
    a.frm().transfer().mnuSendFile_Click();
    ASSERT_TRUE(waitUntil([&] { return window->isVisible(); }));
    ASSERT_TRUE(waitUntil([&] { return QFileInfo(target).size() > 1024 * 1024; }));

    // The sender pauses: b's window offers Continue, disabled, and Unload.
    a.frm().transfer().cmdPause_Click();
    ASSERT_TRUE(waitUntil([&] { return b.frm().transfer().transferPaused; }));
    // The window follows the model within a few hundredths of a second.
    EXPECT_TRUE(waitUntil([&] { return window->windowTitle() == "Pause - Receiving File"; }, 500));
    EXPECT_EQ(window->cmdPause()->text(), "Continue");
    EXPECT_FALSE(window->cmdPause()->isEnabled());
    EXPECT_EQ(window->cmdPause()->toolTip(), "You have no right to contine to send/receive file");
    EXPECT_EQ(window->cmdCancel()->text(), "Unload");
    EXPECT_TRUE(window->lblProgress()->isVisible());
    EXPECT_TRUE(window->lblProgress()->text().endsWith('%'));
    EXPECT_EQ(window->findChild<QLabel*>("lblFilename")->text(), b.frm().transfer().progress().lblFilename);
    window->grab().save(QStringLiteral(VONNEL_BINARY_DIR "/frmProgress-paused.png"));

    // Its second button puts the transfer on hold on both sides.
    window->cmdCancel()->click();
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(b.frm().TransferOnHold);
    ASSERT_TRUE(waitUntil([&] { return !a.frm().transfer().progress().loaded; }));

    // Back from the hold; closing the window by its frame is a hold again.
    b.frm().transfer().mnuSendFile_Click();
    ASSERT_TRUE(waitUntil([&] { return window->isVisible(); }));
    EXPECT_TRUE(window->cmdPause()->isEnabled());
    EXPECT_FALSE(b.frm().TransferOnHold);
    window->close();
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(b.frm().TransferOnHold);
    EXPECT_TRUE(b.frm().transfer().transferPaused);
}

}  // namespace
