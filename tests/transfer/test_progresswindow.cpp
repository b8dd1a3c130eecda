// The progress window shows its model and hands its buttons to the logic.

#include "shell/MainWindow.h"
#include "shell/dialogs/ProgressDialog.h"
#include "transfer/TwoCopies.h"
#include "connection/Session.h"
#include "transfer/Transfer.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

// Two copies, a sending to b, with b's progress window on the screen.
class ProgressWindow : public TwoCopies {
protected:
    void SetUp() override
    {
        TwoCopies::SetUp();
        a.set("Byte Per Send", "2000");
        window.reset(installProgressDialog(b.frm(), nullptr));
    }
    std::unique_ptr<ProgressDialog> window;
};

TEST_F(ProgressWindow, FollowsThePauseAndTheHoldOfATransfer)
{
    EXPECT_FALSE(window->isVisible());
    startTransfer(8 * 1024 * 1024, 51);
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
    EXPECT_TRUE(b.frm().session().TransferOnHold);
    ASSERT_TRUE(waitUntil([&] { return !a.frm().transfer().progress().loaded; }));

    // With the window away, the main window says the transfer is on hold.
    EXPECT_TRUE(MainWindow::holdText(b.frm()).startsWith("Receiving on hold: "))
        << MainWindow::holdText(b.frm()).toStdString();
    EXPECT_TRUE(MainWindow::holdText(b.frm()).endsWith("%)"));
    EXPECT_TRUE(MainWindow::holdText(a.frm()).startsWith("Sending on hold: "));

    // Back from the hold; closing the window by its frame is a hold again.
    b.frm().transfer().mnuSendFile_Click();
    ASSERT_TRUE(waitUntil([&] { return window->isVisible(); }));
    EXPECT_TRUE(window->cmdPause()->isEnabled());
    EXPECT_FALSE(b.frm().session().TransferOnHold);
    EXPECT_TRUE(MainWindow::holdText(b.frm()).isEmpty());
    // The percentage stays in sight on the bar while the label is away.
    EXPECT_TRUE(window->prbProgress()->isTextVisible());
    EXPECT_TRUE(window->prbProgress()->text().endsWith('%'));
    window->close();
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(b.frm().session().TransferOnHold);
    EXPECT_TRUE(b.frm().transfer().transferPaused);
}

// The sender cancels: the receiver's window has nothing left to cancel,
// its button closes it, and it says where the part received stays.
TEST_F(ProgressWindow, AfterTheSenderCancelsTheReceiverIsToldAndCloses)
{
    startTransfer(8 * 1024 * 1024, 52);
    ASSERT_TRUE(waitUntil([&] { return QFileInfo(target).size() > 100 * 1000; }));
    a.frm().transfer().cmdCancel_Click();
    ASSERT_TRUE(waitUntil([&] { return window->windowTitle().contains("(Cancelled)"); }));
    EXPECT_EQ(window->cmdCancel()->text(), "Close");
    EXPECT_TRUE(window->lblProgress()->text().contains("The part received is kept in " + target))
        << window->lblProgress()->text().toStdString();
    window->grab().save(QStringLiteral(VONNEL_BINARY_DIR "/frmProgress-cancelled.png"));
    window->cmdCancel()->click();
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(b.frm().transfer().progress().loaded);
}

// A window that closes itself at the end leaves a word beside the status panels.
TEST_F(ProgressWindow, ClosingItselfAtTheEndLeavesANotice)
{
    b.set("Close Progress", "1");
    MainWindow main(b.frm());
    startTransfer(5000, 53);
    ASSERT_TRUE(waitUntil([&] { return received() == 5000; }));
    ASSERT_TRUE(waitUntil([&] { return !b.frm().transfer().progress().loaded; }));
    EXPECT_EQ(main.transferNotice()->text(), "File received: target.bin");
    EXPECT_FALSE(main.transferNotice()->isHidden());
    // The sender hears of the end with the last acknowledgement, which may
    // still be on its way when the receiver is done.
    EXPECT_TRUE(waitUntil([&] {
        return ProgressDialog::finishedNotice(a.frm()).startsWith("File sent: ");
    }));
}

}  // namespace
