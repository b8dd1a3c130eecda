// The security overview and the hand cipher tool as windows: their boxes,
// lock pictures and buttons follow the forms' logic, and each password
// window says which password it sets.

#include "access/AccessBench.h"
#include "access/Encryption.h"
#include "access/LockForms.h"
#include "access/PasswordStore.h"
#include "shell/dialogs/AccessDialogs.h"
#include "shell/dialogs/LockDialogs.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

QString lockShown(const QDialog& d, const char* name)
{
    const auto* l = d.findChild<QLabel*>(QLatin1String(name));
    return l ? l->toolTip() : QStringLiteral("missing");
}

TEST(SecurityWindow, SetButtonsStoreAndTheLocksFollow)
{
    AccessBench b;
    PasswordStore& s = b.frm->encryption().passwords();
    s.loadBoth();  // the preset overrides every password
    SecurityDialog d(*b.frm);
    auto* pass1 = d.findChild<QLineEdit*>("txtPass1");
    auto* pass2 = d.findChild<QLineEdit*>("txtPass2");
    ASSERT_TRUE(pass1 && pass2);
    EXPECT_EQ(pass1->echoMode(), QLineEdit::Password);
    EXPECT_TRUE(pass1->text().isEmpty());
    EXPECT_EQ(lockShown(d, "imgStLock"), "imgStUnlock");
    EXPECT_EQ(lockShown(d, "imgAwLock"), "imgAwUnlock");
    for (const char* text : {"Startup password protected", "Prevent unauthorized person from usage",
                             "Away password protected",
                             "Prevent unauthorized person from accessing during chat session"}) {
        bool found = false;
        for (const QLabel* l : d.findChildren<QLabel*>())
            found = found || l->text().contains(QLatin1String(text));
        EXPECT_TRUE(found) << text;
    }

    // No password applies: the set window runs at once, without an unlock.
    b.prompter.addAnswers({"text:abcd", "text:abcd"});
    d.findChild<QPushButton*>("cmdSetPass1")->click();
    EXPECT_EQ(pass1->text(), "abcd");
    EXPECT_EQ(lockShown(d, "imgStLock"), "imgStLock");
    EXPECT_EQ(b.get("Override Password"), "0");
    EXPECT_FALSE(b.prompter.asked("Please enter password to unlock it"));
    // The away level, never set, is not closed by a word nobody chose.
    EXPECT_TRUE(pass2->text().isEmpty());
    EXPECT_EQ(lockShown(d, "imgAwLock"), "imgAwUnlock");
    EXPECT_FALSE(s.hasSecondPassword);

    // A password applies and this is not one of the first starts: the old
    // one is asked first; a wrong one leaves everything as it was.
    b.prompter.clearRecords();
    b.prompter.addAnswers({"text:wrong", "cancel"});
    d.findChild<QPushButton*>("cmdSetPass1")->click();
    EXPECT_TRUE(b.prompter.asked("Please enter password to unlock it"));
    EXPECT_FALSE(b.prompter.asked("Choose your password:"));
    EXPECT_EQ(pass1->text(), "abcd");

    // The away level: set, then OK names the minimise entry after it.
    b.prompter.addAnswers({"text:wxyz", "text:wxyz"});
    d.findChild<QPushButton*>("cmdSetPass2")->click();
    EXPECT_EQ(pass2->text(), "wxyz");
    EXPECT_EQ(lockShown(d, "imgAwLock"), "imgAwLock");
    d.findChild<QPushButton*>("OKButton")->click();
    EXPECT_EQ(d.result(), QDialog::Accepted);
    EXPECT_EQ(b.frm->model().controls.caption(Control::mnuMin), "Min&Lock");
    EXPECT_TRUE(b.frm->model().controls.checked(Control::mnuSecurity));

    d.findChild<QPushButton*>("cmdHelp")->click();
    EXPECT_EQ(b.desktop.opened.value(0), "/help/security.htm");
}

TEST(EncryptWindow, ButtonsWorkOnTheBoxesAndAnEmptyKeyIsRefused)
{
    AccessBench b;
    b.set("Encrypt-Colour", "1");
    b.set("Encrypt-Colour-FG", "255");  // red
    b.set("Encrypt-Colour-BK", "0");
    EncryptDialog d(*b.frm);
    EXPECT_EQ(d.windowTitle(), "128 Bit Encryption");
    auto* key = d.findChild<QLineEdit*>("txtKey");
    auto* text = d.findChild<QPlainTextEdit*>("txtText");
    auto* result = d.findChild<QPlainTextEdit*>("txtResult");
    ASSERT_TRUE(key && text && result);
    EXPECT_EQ(text->palette().color(QPalette::Text), QColor(255, 0, 0));
    EXPECT_EQ(text->palette().color(QPalette::Base), QColor(0, 0, 0));

    text->setPlainText("hello");
    d.findChild<QPushButton*>("cmdEncrypt")->click();
    EXPECT_TRUE(b.prompter.asked("Key should not be empty"));
    EXPECT_TRUE(result->toPlainText().isEmpty());

    key->setText("03:25 PM");
    d.findChild<QPushButton*>("cmdEncrypt")->click();
    EXPECT_EQ(result->toPlainText().toLatin1(), PeerPc1::encrypt("03:25 PM", "hello"));
    // Decrypt works on the result box, in place.
    d.findChild<QPushButton*>("cmdDecrypt")->click();
    EXPECT_EQ(result->toPlainText(), "hello");
}

TEST(PassLockWindow, SaysWhichPasswordItSets)
{
    const struct {
        const char* level;
        const char* title;
        const char* purpose;
    } cases[] = {
        {"1st", "Vonnel - Startup password", "Prevent unauthorized person from usage"},
        {"2nd", "Vonnel - Away password", "accessing during chat session"},
    };
    for (const auto& c : cases) {
        AccessBench b;
        PasswordStore& s = b.frm->encryption().passwords();
        s.passLevel = c.level;
        FrmPassLock form(b.frm->ctx(), s);
        PassLockDialog d(*b.frm, form);
        EXPECT_EQ(d.windowTitle(), c.title);
        const auto* heading = d.findChild<QLabel*>("lblLevel");
        ASSERT_TRUE(heading);
        EXPECT_TRUE(heading->text().contains(QLatin1String(c.purpose))) << heading->text().toStdString();
        // The input boxes that stand in without windows say it too.
        b.prompter.addAnswers({"cancel"});
        s.runPassLock(c.level);
        EXPECT_TRUE(b.prompter.asked(QLatin1String(c.title)));
    }
}

}  // namespace
