// The lock windows bound to their forms: masked boxes, and the window
// stays up until the form is satisfied or cancelled.

#include "access/AccessBench.h"
#include "access/Encryption.h"
#include "access/LockForms.h"
#include "access/PasswordStore.h"
#include "shell/dialogs/LockDialogs.h"

#include <QLineEdit>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

TEST(LockDialogs, UnlockWindowStaysUntilTheRightPassword)
{
    AccessBench b;
    PasswordStore& s = b.frm->encryption().passwords();
    b.set("Override Password", "0");
    s.loadBoth();  // no records: the marker word opens
    s.passLevel = "1st";
    FrmUnlock form(b.frm->ctx(), s);
    form.Form_Load();
    UnlockDialog dialog(*b.frm, form);
    EXPECT_EQ(dialog.windowTitle(), "Vonnel - [Locked]");
    EXPECT_EQ(dialog.txtUnlock()->echoMode(), QLineEdit::Password);

    dialog.txtUnlock()->setText("Tulip");
    dialog.imgLock_Click();
    dialog.OKButton_Click();
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_TRUE(dialog.txtUnlock()->text().isEmpty());
    EXPECT_TRUE(b.prompter.asked("Password is: qzyrtnEdiov"));
    dialog.txtUnlock()->setText("qzyrtnEdiov");
    dialog.OKButton_Click();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(s.unlockPassed);
}

TEST(LockDialogs, PassLockWindowEmptiesRefusedBoxesAndStores)
{
    AccessBench b;
    PasswordStore& s = b.frm->encryption().passwords();
    s.passLevel = "2nd";
    FrmPassLock form(b.frm->ctx(), s);
    PassLockDialog dialog(*b.frm, form);
    EXPECT_EQ(dialog.txtPass()->echoMode(), QLineEdit::Password);
    dialog.txtPass()->setText("abc");
    dialog.txtPassword()->setText("abc");
    dialog.cmdOK_Click();
    EXPECT_NE(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(dialog.txtPass()->text().isEmpty() && dialog.txtPassword()->text().isEmpty());
    dialog.txtPass()->setText("abcd");
    dialog.txtPassword()->setText("abcd");
    dialog.cmdOK_Click();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    s.loadPassword("2nd");
    EXPECT_EQ(s.secondPassword, "abcd");
}

TEST(LockDialogs, InstalledWindowsReplaceTheInputBoxes)
{
    AccessBench b;
    PasswordStore& s = b.frm->encryption().passwords();
    int shown = 0;
    s.unlockScreen = [&](FrmUnlock& form) {
        ++shown;
        form.txtUnlock = "qzyrtnEdiov";
        form.OKButton_Click();
    };
    b.set("Override Password", "0");
    s.loadBoth();
    EXPECT_TRUE(s.runUnlock("1st"));
    EXPECT_EQ(shown, 1);
    EXPECT_TRUE(b.prompter.records().isEmpty());
}
