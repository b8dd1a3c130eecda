// The network tools' windows on a copy: what the user does in them reaches
// the models, and what the models hold is what the windows show.

#include "access/AccessBench.h"
#include "access/LockForms.h"
#include "access/PasswordStore.h"
#include "access/Encryption.h"
#include "nettools/AutoConnectSettings.h"
#include "nettools/AutoNotify.h"
#include "nettools/NetViewModel.h"
#include "shell/CommandControl.h"
#include "shell/MainWindow.h"
#include "shell/NetTools.h"
#include "shell/dialogs/AutoConnectDialog.h"
#include "shell/dialogs/AutoIPWindow.h"
#include "shell/dialogs/NetViewWindow.h"
#include "support/TestCopy.h"

#include <QApplication>
#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

// Types the text key by key, as the user would.
void typeInto(QLineEdit* box, const QString& text)
{
    box->setFocus();
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(box, &press);
    }
}

template <typename T>
T* child(QWidget* w, const char* name)
{
    T* found = w->findChild<T*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
}

TEST(AutoConnectWindow, WritesTheListAsShownAndChecksAtOnce)
{
    TestCopy copy(0, {{"AutoConnect", "0"},
                      {"AutoConnectMax", "3"},
                      {"AutoConnect IP 1", "127.0.0.2"},
                      {"AutoConnect Host 1", "two"},
                      {"AutoConnect Option", "1"}});
    ASSERT_TRUE(copy.start());
    copy.pinger().liveOnly = {"127.0.0.250"};  // none of the list answers
    MainWindow main(copy.frm());
    main.showModeless(Form::frmAutoConnect);
    auto* d = qobject_cast<AutoConnectDialog*>(main.netToolWindow(Form::frmAutoConnect));
    ASSERT_NE(d, nullptr);
    EXPECT_FALSE(d->txtAutoCheck()->isEnabled());  // the switch is off
    child<QCheckBox>(d, "chkAutoCheckOn")->setChecked(true);
    EXPECT_TRUE(d->txtAutoCheck()->isEnabled());

    typeInto(d->txtAutoCheck(), "127.0.0.9");  // not "#.#.#.#": looked up as a name
    child<QPushButton>(d, "cmdAdd")->click();
    ASSERT_EQ(d->lstAutoCheck()->count(), 2);
    EXPECT_EQ(d->lstAutoHost()->item(1)->text(), "127.0.0.9");
    d->lstAutoCheck()->setCurrentRow(1);
    child<QToolButton>(d, "cmdPriorUp")->click();
    EXPECT_EQ(d->lstAutoCheck()->item(0)->text(), "127.0.0.9");
    EXPECT_EQ(d->lstAutoHost()->item(1)->text(), "two");
    EXPECT_EQ(d->lstAutoCheck()->currentRow(), 0);

    d->txtChkMin()->clear();
    typeInto(d->txtChkMin(), "75");
    EXPECT_EQ(d->txtChkMin()->text(), "59");
    child<QRadioButton>(d, "optAutoShow")->click();
    child<QPushButton>(d, "OKButton")->click();

    EXPECT_FALSE(d->isVisible());
    EXPECT_EQ(copy.get("AutoConnect"), "1");
    EXPECT_EQ(copy.get("AutoConnect IP 1"), "127.0.0.9");
    EXPECT_EQ(copy.get("AutoConnect Host 1"), "127.0.0.9");
    EXPECT_EQ(copy.get("AutoConnect IP 2"), "127.0.0.2");
    EXPECT_EQ(copy.get("AutoConnect Host 2"), "two");
    EXPECT_EQ(copy.get("AutoConnect IP 3"), "");
    EXPECT_EQ(copy.get("AutoConnect Interval"), "59");
    EXPECT_EQ(copy.get("AutoConnect Option"), "0");
    // With the switch on, OK checks the stations at once.
    EXPECT_EQ(copy.pinger().probed, QStringList({"127.0.0.9", "127.0.0.2", ""}));
    EXPECT_TRUE(copy.frm().tTimer1().isActive());
}

TEST(AutoIPWindow, ShowsTheFoundStationsAndChatCallsTheSelectedOne)
{
    Views none;  // outlives the copy, which still asks for windows as it ends
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    MainWindow main(copy.frm());
    copy.frm().ctx().setViews(&main);  // the windows the logic asks for are these
    int calls = 0;
    QString called;
    copy.frm().commands().connectToAddress = [&](const QString& host, const QString&) {
        ++calls;
        called = host;
    };
    AutoNotify& notify = copy.frm().netTools().autoNotify();
    // A check that shows: the window comes up by itself with the lines.
    notify.show({"alpha", "127.0.0.3"}, "Last Checked: 10:00:00");
    auto* w = qobject_cast<AutoIPWindow*>(main.netToolWindow(Form::frmAutoIP));
    ASSERT_NE(w, nullptr);
    EXPECT_TRUE(main.isVisible(Form::frmAutoIP));
    ASSERT_EQ(w->lstOnlineIP()->count(), 2);
    EXPECT_EQ(w->stbTime()->text(), "Last Checked: 10:00:00");
    w->lstOnlineIP()->setCurrentRow(1);
    child<QPushButton>(w, "OKButton")->click();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(called, "127.0.0.3");
    EXPECT_FALSE(main.isVisible(Form::frmAutoIP));
    copy.frm().ctx().setViews(&none);
}

TEST(NetViewWindowActions, CopyAllAndSaveGoThroughTheCopysClipboardAndPrompter)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    copy.pinger().liveOnly = {"127.0.0.4", "127.0.0.6"};
    MainWindow main(copy.frm());
    main.showModeless(Form::frmNetView);
    auto* w = qobject_cast<NetViewWindow*>(main.netToolWindow(Form::frmNetView));
    ASSERT_NE(w, nullptr);
    NetViewModel& view = copy.frm().netTools().netView();
    typeInto(w->txtPing(), "127.0.0.1");
    child<QPushButton>(w, "cmdCheck")->click();  // a dotted text: its network
    ASSERT_TRUE(waitUntil([&] { return !view.sweeping(); }, 10000));
    EXPECT_EQ(w->txtPing()->text(), "2: Online");
    ASSERT_EQ(w->lstPing()->count(), 2);

    w->findChild<QAction*>("popMnuCopyAll")->trigger();
    EXPECT_EQ(copy.clipboard().text(), "127.0.0.4\r\n127.0.0.6");
    const QString path = copy.file("stations.txt");
    copy.prompter().addAnswers({"file:" + path});
    w->findChild<QAction*>("mnuSave")->trigger();
    EXPECT_EQ(readFile(path), "List of available computers in the network / Internet\r\n" +
                                  QByteArray(53, '=') + "\r\n127.0.0.4\r\n127.0.0.6\r\n");
}

TEST(AutoConnectWindow, TheTrayEntryOfAWindowPutAwayAsksTheAwayPasswordFirst)
{
    AccessBench b;
    b.set("Override Password", "0");
    PasswordStore& store = b.frm->encryption().passwords();
    store.passLevel = "2nd";
    FrmPassLock form(b.frm->ctx(), store);
    form.txtPass = "wxyz";
    form.txtPassword = "wxyz";
    form.cmdOK_Click();
    store.loadBoth();
    MainWindow main(*b.frm);
    ASSERT_FALSE(b.frm->model().isVisible());  // in the tray

    b.prompter.addAnswers({"text:nope", "ok", "cancel"});
    Q_EMIT main.triggered(Control::mnuSysAutoConnect);
    EXPECT_EQ(main.netToolWindow(Form::frmAutoConnect), nullptr);
    EXPECT_FALSE(b.prompter.records().isEmpty());  // the unlock was asked
    b.prompter.addAnswers({"text:wxyz"});
    Q_EMIT main.triggered(Control::mnuSysAutoConnect);
    ASSERT_NE(main.netToolWindow(Form::frmAutoConnect), nullptr);
    // Net View stays open to anybody, as it does from the tray.
    Q_EMIT main.triggered(Control::mnuSysNetView);
    EXPECT_NE(main.netToolWindow(Form::frmNetView), nullptr);
}

}  // namespace
