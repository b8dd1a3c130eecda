// The password store and the three lock windows, and who asks: the start,
// the first starts' set-up, the away lock of ShowMain.

#include "access/AccessBench.h"
#include "access/CipherText.h"
#include "access/Encryption.h"
#include "access/LockForms.h"
#include "access/PasswordStore.h"
#include "support/TestCopy.h"
#include "platform/Prompter.h"
#include "core/MainModel.h"

#include <QTcpSocket>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

PasswordStore& store(AccessBench& b)
{
    return b.frm->encryption().passwords();
}

// Sets a level's password the way the window does.
void setPassword(AccessBench& b, const QString& level, const QString& text)
{
    store(b).passLevel = level;
    FrmPassLock form(b.frm->ctx(), store(b));
    form.txtPass = text;
    form.txtPassword = text;
    form.cmdOK_Click();
    ASSERT_TRUE(form.closed);
}

bool listening(quint16 port)
{
    QTcpSocket s;
    s.connectToHost(QHostAddress::LocalHost, port);
    return s.waitForConnected(1000);
}

}  // namespace

TEST(PassLock, RulesOfANewPassword)
{
    const struct {
        QString pass, confirm;
        const char* box;     // "" for none
        bool stored;
        QString readBack;    // the level's password after loading
        bool boxesEmptied;
    } cases[] = {
        {"abc", "abc", "Password must be at least 4 characters.", false, {}, true},
        {"", "abcd", "Password must be at least 4 characters.", false, {}, true},
        {"abcd", "abcd", "", true, "abcd", false},
        {"abcd", "abce", "Please enter the SAME password for both boxes.", false, {}, true},
        {"Abcd", "abcd", "Please enter the SAME password for both boxes.", false, {}, true},
        {"  abcd\t", "  abcd\t", "", true, "abcd", false},
        {QStringLiteral("abc\u00e9"), QStringLiteral("abc\u00e9"),
         "Any other than standard ASCII character is not support", false, {}, false},
        {QStringLiteral("ab\u4e2dd"), QStringLiteral("ab\u4e2dd"),
         "Any other than English character is not support", false, {}, false},
        {QStringLiteral("abc\u00ff"), QStringLiteral("abc\u00ff"), "", true, QStringLiteral("abc\u00ff"), false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pass.toStdString() + " / " + c.confirm.toStdString());
        AccessBench b;
        b.set("Override Password", "1");
        store(b).passLevel = "1st";
        FrmPassLock form(b.frm->ctx(), store(b));
        form.txtPass = c.pass;
        form.txtPassword = c.confirm;
        form.cmdOK_Click();
        EXPECT_EQ(form.closed, c.stored);
        EXPECT_EQ(!b.get("1st Level Password").isEmpty(), c.stored);
        EXPECT_EQ(b.get("Override Password"), c.stored ? "0" : "1");
        if (*c.box) {
            ASSERT_EQ(b.prompter.records().size(), 1);
            EXPECT_EQ(b.prompter.records()[0].text, c.box);
        } else {
            EXPECT_TRUE(b.prompter.records().isEmpty());
        }
        if (c.boxesEmptied)
            EXPECT_TRUE(form.txtPass.isEmpty() && form.txtPassword.isEmpty());
        if (c.stored) {
            store(b).loadPassword("1st");
            EXPECT_TRUE(store(b).hasFirstPassword);
            EXPECT_EQ(store(b).firstPassword, c.readBack);
        }
    }
}

TEST(PassLock, BothBoxesEmptyMeansNoPasswordAndCancelChangesNothing)
{
    AccessBench b;
    b.set("Override Password", "0");
    store(b).passLevel = "2nd";
    FrmPassLock form(b.frm->ctx(), store(b));
    form.cmdOK_Click();
    EXPECT_TRUE(form.closed);
    EXPECT_EQ(form.txtPass, "voidEntryzq");
    EXPECT_EQ(form.txtPassword, "voidEntryzq");
    store(b).loadPassword("2nd");
    EXPECT_FALSE(store(b).hasSecondPassword);
    EXPECT_TRUE(store(b).secondPassword.isEmpty());

    FrmPassLock other(b.frm->ctx(), store(b));
    const QString before = b.get("2nd Level Password");
    other.txtPass = other.txtPassword = "wxyz";
    other.cmdCancel_Click();
    EXPECT_TRUE(other.closed);
    EXPECT_EQ(b.get("2nd Level Password"), before);
}

TEST(PasswordStore, RecordIsTheCipherUnderTheDayNumberOfTheSavedDate)
{
    AccessBench b;  // 1 May 2024, day 45413
    setPassword(b, "1st", "abcd");
    EXPECT_EQ(b.get("1st Level Password").toLatin1(), PeerPc1::encrypt("45413", "abcd"));
    EXPECT_EQ(PasswordStore::parseSavedDate(b.get("1st Password Saved")), QDate(2024, 5, 1));

    // Weeks later the saved date still reads it.
    b.clock.set(QDateTime(QDate(2024, 6, 10), QTime(9, 0)));
    store(b).loadPassword("1st");
    EXPECT_EQ(store(b).firstPassword, "abcd");
    // Without the date the key is today's, and the text comes out wrong.
    b.set("1st Password Saved", "");
    store(b).loadPassword("1st");
    EXPECT_NE(store(b).firstPassword, "abcd");
    EXPECT_TRUE(store(b).hasFirstPassword);
    EXPECT_TRUE(b.prompter.records().isEmpty());
    // An unreadable date and a damaged text are reported, and the copy goes on.
    b.set("1st Password Saved", "not a date");
    store(b).loadPassword("1st");
    b.set("1st Password Saved", "2024-05-01");
    b.set("1st Level Password", "abc");
    store(b).loadPassword("1st");
    ASSERT_EQ(b.prompter.records().size(), 2);
    EXPECT_TRUE(b.prompter.records()[0].text.startsWith("Decryption Error: "));
    EXPECT_TRUE(b.prompter.records()[1].text.startsWith("Decryption Error: "));
}

TEST(PasswordStore, LevelsOverrideAndMissingRecords)
{
    AccessBench b;
    PasswordStore& s = store(b);
    EXPECT_EQ(s.readPassword(""), "qzyrtnEdiovoidEntryzq");

    // No record: the level is closed, and only the marker opens it.
    b.set("Override Password", "0");
    s.loadBoth();
    EXPECT_TRUE(s.hasFirstPassword);
    EXPECT_TRUE(s.hasSecondPassword);
    EXPECT_EQ(s.firstPassword, "qzyrtnEdiov");
    EXPECT_EQ(s.secondPassword, "qzyrtnEdiov");
    for (const char* typed : {"", "voidEntryzq", "qzyrtnEdiovoidEntryzq", "qzyrtnediov"}) {
        s.passLevel = "1st";
        FrmUnlock form(b.frm->ctx(), s);
        form.Form_Load();
        form.txtUnlock = typed;
        form.OKButton_Click();
        EXPECT_FALSE(s.unlockPassed) << typed;
    }
    FrmUnlock form(b.frm->ctx(), s);
    form.Form_Load();
    form.txtUnlock = "qzyrtnEdiov";
    form.OKButton_Click();
    EXPECT_TRUE(s.unlockPassed);

    // Records at both levels, then the override: no password anywhere.
    setPassword(b, "1st", "first");
    setPassword(b, "2nd", "second");
    s.loadBoth();
    EXPECT_EQ(s.firstPassword, "first");
    EXPECT_EQ(s.secondPassword, "second");
    b.set("Override Password", "7");
    b.prompter.clearRecords();
    s.loadBoth();
    EXPECT_FALSE(s.hasFirstPassword);
    EXPECT_FALSE(s.hasSecondPassword);
    EXPECT_TRUE(s.firstPassword.isEmpty() && s.secondPassword.isEmpty());
    EXPECT_TRUE(s.startupLock());
    EXPECT_TRUE(s.secondLevelUnlocked());
    EXPECT_TRUE(b.prompter.records().isEmpty());

    // The level is read from its first digit.
    s.loadPassword("2");
    EXPECT_EQ(s.passLevel, "2nd");
    s.loadPassword("x");
    EXPECT_EQ(s.passLevel, "2nd");
}

TEST(Unlock, ComparesExactlyAtTheLevelAsked)
{
    AccessBench b;
    b.set("Override Password", "0");
    setPassword(b, "1st", "abcd");
    setPassword(b, "2nd", "wxyz");
    PasswordStore& s = store(b);
    s.loadBoth();

    const struct {
        const char* level;
        const char* typed;
        bool opens;
    } cases[] = {
        {"1st", "Abcd", false}, {"1st", "abcd ", false}, {"1st", "wxyz", false},
        {"1st", "abcd", true},  {"2nd", "abcd", false},  {"2nd", "wxyz", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.level) + " " + c.typed);
        b.prompter.clearRecords();
        s.passLevel = c.level;
        s.unlockPassed = true;
        FrmUnlock form(b.frm->ctx(), s);
        form.Form_Load();
        EXPECT_FALSE(s.unlockPassed);  // cleared at each load
        form.txtUnlock = c.typed;
        form.OKButton_Click();
        EXPECT_EQ(s.unlockPassed, c.opens);
        EXPECT_EQ(form.closed, c.opens);
        EXPECT_EQ(b.prompter.asked("Not a valid Password!!!"), !c.opens);
        if (!c.opens)
            EXPECT_TRUE(form.txtUnlock.isEmpty());
    }
}

TEST(Unlock, HelpOnlyAfterTheComparisonFailed)
{
    AccessBench b;
    b.set("Override Password", "0");
    setPassword(b, "1st", "abcd");
    setPassword(b, "2nd", "help");
    PasswordStore& s = store(b);
    s.loadBoth();

    s.passLevel = "1st";
    FrmUnlock form(b.frm->ctx(), s);
    form.Form_Load();
    form.txtUnlock = "help";
    form.OKButton_Click();
    EXPECT_FALSE(s.unlockPassed);
    EXPECT_FALSE(form.closed);
    EXPECT_EQ(b.desktop.opened, QStringList({"/help/password.htm"}));
    EXPECT_TRUE(b.prompter.records().isEmpty());

    s.passLevel = "2nd";
    FrmUnlock second(b.frm->ctx(), s);
    second.Form_Load();
    second.txtUnlock = "help";
    second.OKButton_Click();
    EXPECT_TRUE(s.unlockPassed);
    EXPECT_EQ(b.desktop.opened.size(), 1);
}

TEST(Unlock, TulipShowsThePasswordOnce)
{
    AccessBench b;
    b.set("Override Password", "0");
    setPassword(b, "1st", "abcd");
    PasswordStore& s = store(b);
    s.loadBoth();
    s.passLevel = "1st";
    FrmUnlock form(b.frm->ctx(), s);
    form.Form_Load();

    form.txtUnlock = "tulip";  // the word is exact
    form.imgLock_Click();
    EXPECT_FALSE(form.recoveryArmed);
    form.txtUnlock = "Tulip";
    form.imgLock_Click();
    EXPECT_TRUE(form.recoveryArmed);
    form.OKButton_Click();
    ASSERT_EQ(b.prompter.records().size(), 2);
    EXPECT_EQ(b.prompter.records()[0].text, "Password is: abcd");
    EXPECT_EQ(b.prompter.records()[1].text, "Not a valid Password!!!");
    form.txtUnlock = "abcd";
    form.OKButton_Click();
    EXPECT_TRUE(s.unlockPassed);
    EXPECT_EQ(b.prompter.count("Password is: "), 1);
}

TEST(Unlock, InputBoxesDriveItWithoutWindows)
{
    AccessBench b;
    b.set("Override Password", "0");
    setPassword(b, "2nd", "wxyz");
    PasswordStore& s = store(b);
    s.loadBoth();
    // Boxes take their answers from the same script.
    b.prompter.addAnswers({"text:wrong", "ok", "text:help", "text:wxyz"});
    EXPECT_TRUE(s.runUnlock("2nd"));
    QStringList kinds;
    for (const auto& r : b.prompter.records())
        kinds << r.kind + ":" + r.text;
    EXPECT_EQ(kinds, QStringList({"input:Please enter password to unlock it",
                                  "box:Not a valid Password!!!",
                                  "input:Please enter password to unlock it",
                                  "input:Please enter password to unlock it"}));
    EXPECT_EQ(b.prompter.records()[0].title, "Vonnel - [Locked]");
    // Cancelled: not passed.
    EXPECT_FALSE(s.runUnlock("2nd"));
    EXPECT_FALSE(s.lockScreenUp());
}

TEST(Security, ChangingAPasswordAsksTheOldOneFirst)
{
    AccessBench b;  // Usage 10
    b.set("Override Password", "0");
    setPassword(b, "1st", "abcd");
    setPassword(b, "2nd", "");
    PasswordStore& s = store(b);
    s.loadBoth();
    FrmSecurity form(b.frm->ctx(), s);
    form.Form_Load();
    EXPECT_EQ(form.txtPass1, "abcd");
    EXPECT_TRUE(form.imgStLock);
    EXPECT_TRUE(form.txtPass2.isEmpty());
    EXPECT_FALSE(form.imgAwLock);

    // The old password is wrong: the new one is never asked for.
    const QString before = b.get("1st Level Password");
    b.prompter.addAnswers({"text:nope", "ok", "cancel"});
    form.cmdSetPass1_Click();
    EXPECT_FALSE(b.prompter.asked("Choose your password:"));
    EXPECT_EQ(b.get("1st Level Password"), before);

    b.prompter.addAnswers({"text:abcd", "text:newpass", "text:newpass"});
    form.cmdSetPass1_Click();
    EXPECT_EQ(form.txtPass1, "newpass");
    EXPECT_EQ(s.firstPassword, "newpass");

    // A level without a password is set straight away.
    b.prompter.clearRecords();
    b.prompter.addAnswers({"text:awa", "text:awa", "ok", "text:away!", "text:away!"});
    form.cmdSetPass2_Click();
    EXPECT_FALSE(b.prompter.asked("Please enter password to unlock it"));
    EXPECT_TRUE(b.prompter.asked("Password must be at least 4 characters."));
    EXPECT_EQ(form.txtPass2, "away!");
    EXPECT_TRUE(form.imgAwLock);
    form.OKButton_Click();
    EXPECT_TRUE(form.closed);
    EXPECT_EQ(b.frm->model().controls.caption(Control::mnuMin), "Min&Lock");
    EXPECT_TRUE(b.frm->model().controls.checked(Control::mnuSecurity));

    // On the first starts there is nothing to ask first; empty boxes clear it.
    b.set("Usage", "2");
    b.prompter.clearRecords();
    b.prompter.addAnswers({"text:", "text:", "text:", "text:"});
    form.cmdSetPass1_Click();
    form.cmdSetPass2_Click();
    EXPECT_FALSE(b.prompter.asked("Please enter password to unlock it"));
    EXPECT_TRUE(form.txtPass1.isEmpty() && form.txtPass2.isEmpty());
    EXPECT_FALSE(form.imgStLock || form.imgAwLock);
    form.OKButton_Click();
    EXPECT_EQ(b.frm->model().controls.caption(Control::mnuMin), "Minimize");
    EXPECT_FALSE(b.frm->model().controls.checked(Control::mnuSecurity));
    form.cmdHelp_Click();
    EXPECT_EQ(b.desktop.opened.value(0), "/help/security.htm");
}

TEST(ShowMain, AwayLockGuardsTheHiddenWindow)
{
    AccessBench b;
    b.set("Override Password", "0");
    setPassword(b, "1st", "");
    setPassword(b, "2nd", "wxyz");
    store(b).loadBoth();
    FrmMain& f = *b.frm;
    ASSERT_FALSE(f.model().isVisible());

    b.prompter.addAnswers({"text:nope", "ok", "cancel"});
    f.ShowMain();
    EXPECT_FALSE(f.model().isVisible());
    b.prompter.addAnswers({"text:wxyz"});
    f.model().setWindowState(MainModel::vbMinimized);
    f.TrayOnly = 1;
    f.ShowMain();
    EXPECT_TRUE(f.model().isVisible());
    EXPECT_EQ(f.model().windowState(), MainModel::vbNormal);
    EXPECT_EQ(f.TrayOnly, 0);
    // In front already: nothing to unlock.
    b.prompter.clearRecords();
    f.ShowMain();
    EXPECT_TRUE(b.prompter.records().isEmpty());
}

TEST(StartLock, WrongPasswordEndsTheCopy)
{
    for (const char* answer : {"text:wrong", "cancel"}) {
        SCOPED_TRACE(answer);
        TestCopy copy(0, {{"Override Password", "0"}});
        const QDate today = QDate::currentDate();
        copy.set("1st Level Password", QString::fromLatin1(genpass("abcd", today)));
        copy.set("1st Password Saved", today.toString(Qt::ISODate));
        copy.prompter().addAnswers({answer});
        EXPECT_FALSE(copy.start());
        EXPECT_TRUE(copy.frm().ended());
        EXPECT_TRUE(copy.frm().encryption().passwords().startupLockFailed);
        EXPECT_FALSE(copy.frm().model().controls.enabled(Control::mnuConnect));
        EXPECT_FALSE(copy.frm().model().txtServer.enabled());
        EXPECT_TRUE(copy.prompter().asked("Please enter password to unlock it"));
        EXPECT_FALSE(listening(copy.port()));
    }
}

TEST(StartLock, RightPasswordOpensAndOrdinaryCopiesAreNotAsked)
{
    TestCopy copy(0, {{"Override Password", "0"}});
    const QDate today = QDate::currentDate();
    copy.set("1st Level Password", QString::fromLatin1(genpass("abcd", today)));
    copy.set("1st Password Saved", today.toString(Qt::ISODate));
    copy.set("2nd Level Password", QString::fromLatin1(genpass("voidEntryzq", today)));
    copy.set("2nd Password Saved", today.toString(Qt::ISODate));
    copy.prompter().addAnswers({"text:abcd"});
    ASSERT_TRUE(copy.start());
    EXPECT_FALSE(copy.frm().encryption().passwords().startupLockFailed);
    EXPECT_TRUE(listening(copy.port()));
    EXPECT_EQ(copy.frm().model().controls.caption(Control::mnuMin), "Minimize");
    EXPECT_TRUE(copy.frm().model().controls.checked(Control::mnuSecurity));

    TestCopy plain;  // the shipped settings: the override is on
    ASSERT_TRUE(plain.start());
    EXPECT_FALSE(plain.prompter().asked("Vonnel - [Locked]"));
}

TEST(StartLock, FirstStartsSetThePasswordsUp)
{
    TestCopy copy(0, {{"Usage", "1"}});
    // 1st level set, 2nd level cancelled, then the start asks the new one.
    copy.prompter().addAnswers({"text:abcd", "text:abcd", "cancel", "text:abcd"});
    ASSERT_TRUE(copy.start());
    EXPECT_EQ(copy.prompter().count("Choose your password:"), 2);
    EXPECT_FALSE(copy.get("1st Level Password").isEmpty());
    EXPECT_TRUE(copy.get("2nd Level Password").isEmpty());
    EXPECT_EQ(copy.get("Override Password"), "0");
    const PasswordStore& s = copy.frm().encryption().passwords();
    EXPECT_EQ(s.firstPassword, "abcd");
    // The level left without a record is closed by the marker.
    EXPECT_TRUE(s.hasSecondPassword);
    EXPECT_EQ(copy.frm().model().controls.caption(Control::mnuMin), "Min&Lock");
}
