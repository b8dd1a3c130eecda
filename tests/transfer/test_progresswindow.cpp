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
#include <iostream>

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
    EXPECT_FALSE(window->prbProgress()->isTextVisible()) << "the percentage stands once";
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
    // The percentage stays in sight, once: on the label, or on the bar
    // while the label is away.
    EXPECT_NE(window->lblProgress()->isVisible(), window->prbProgress()->isTextVisible());
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

// Both windows end at 100%, shown once each, as soon as the last
// acknowledgement has passed; the status panels count what went.
TEST_F(ProgressWindow, BothSidesEndAtAHundredPercent)
{
    std::unique_ptr<ProgressDialog> sender(installProgressDialog(a.frm(), nullptr));
    const qsizetype size = 5 * 1024 * 1024;
    startTransfer(size, 54);
    ASSERT_TRUE(finished(60000));
    auto shownPercent = [](ProgressDialog& w) {
        return w.lblProgress()->isVisible() ? w.lblProgress()->text() : w.prbProgress()->text();
    };
    for (ProgressDialog* w : {sender.get(), window.get()}) {
        SCOPED_TRACE(w == sender.get() ? "sender" : "receiver");
        EXPECT_TRUE(waitUntil([&] { return shownPercent(*w) == "100%"; }, 200))
            << shownPercent(*w).toStdString();
        EXPECT_NE(w->lblProgress()->isVisible(), w->prbProgress()->isTextVisible())
            << "the percentage stands once";
        EXPECT_EQ(w->prbProgress()->value(), 100);
    }
    EXPECT_EQ(sender->cmdCancel()->text(), "Finish");
    EXPECT_EQ(received(), size);

    // Data sent: the session's whole count, in the form of every size shown.
    const qint64 sent = a.frm().session().bytesSentCount;
    EXPECT_GT(sent, size);
    ASSERT_TRUE(waitUntil([&] { return a.frm().model().stStatusbar.text(11) == Session::byteCountText(sent); }, 500));
    const QString shown = a.frm().model().stStatusbar.text(11);
    EXPECT_TRUE(shown.startsWith("5,1")) << shown.toStdString();
    EXPECT_TRUE(shown.endsWith(" KB"));
    EXPECT_FALSE(shown.contains('.'));
    // The receiver sent its acknowledgements, a few bytes a frame.
    const qint64 acks = b.frm().session().bytesSentCount;
    EXPECT_GT(acks, size / 3200 * 20);
    EXPECT_LT(acks, size / 50);
    EXPECT_TRUE(waitUntil([&] { return b.frm().model().stStatusbar.text(11) == Session::byteCountText(acks); }, 500));
    std::cout << "[ 5 MB file: sender's panel 11 " << shown.toStdString() << ", receiver's panel 11 "
              << b.frm().model().stStatusbar.text(11).toStdString() << ", receiver's panel 10 "
              << b.frm().model().stStatusbar.text(10).toStdString() << " ]\n";
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
