// The frame of the main window: the tray's tip by the socket's state, the
// tray menu's lock rules, the window that has no tray to go to, the
// transparency rule, frmTip, frmAbout, and the desktop notices.

#include "access/Encryption.h"
#include "access/PasswordStore.h"
#include "core/DesktopNotice.h"
#include "shell/MainWindow.h"
#include "shell/WindowLook.h"
#include "shell/dialogs/AboutWindow.h"
#include "shell/dialogs/TipWindow.h"
#include "support/Session.h"
#include "support/TestCopy.h"
#include "transfer/Transfer.h"
#include "core/Views.h"
#include "connection/Session.h"

#include <QAction>
#include <QCheckBox>
#include <QDialog>
#include <QFile>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSystemTrayIcon>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

QString same(const QString& s) { return s; }

}  // namespace

TEST(TrayTip, SaysTheSocketStateAfterTheTitle)
{
    const struct {
        int state;
        const char* tip;
    } cases[] = {
        {Winsock::sckClosed, "Vonnel - Closed"},
        {Winsock::sckListening, "Vonnel - Listening"},
        {Winsock::sckConnectionPending, "Vonnel - Connecting"},
        {Winsock::sckResolvingHost, "Vonnel - Connecting"},
        {Winsock::sckHostResolved, "Vonnel - Connecting"},
        {Winsock::sckConnecting, "Vonnel - Connecting"},
        {Winsock::sckConnected, "Vonnel - Connected 10.1.2.3 [pc7]"},
        {Winsock::sckError, "Vonnel - Socket Error"},
        {Winsock::sckOpen, "Vonnel - "},
        {Winsock::sckClosing, "Vonnel - "},
    };
    for (const auto& c : cases)
        EXPECT_EQ(FrmMain::trayStateTip(c.state, "10.1.2.3", "pc7", same), c.tip) << c.state;
    // Each word goes through the lookup; the address and name do not.
    const auto upper = [](const QString& s) { return s.toUpper(); };
    EXPECT_EQ(FrmMain::trayStateTip(Winsock::sckConnected, "10.1.2.3", "pc7", upper),
              "Vonnel - CONNECTED 10.1.2.3 [pc7]");
    EXPECT_EQ(FrmMain::trayStateTip(Winsock::sckListening, "", "", upper), "Vonnel - LISTENING");
}

TEST(TrayTip, IsCutToTheTraysRecord)
{
    MainModel model;
    const QString longName = QString(80, QLatin1Char('x'));
    model.setTrayTip("From: " + longName);
    // 64 characters with the closing NUL.
    EXPECT_EQ(model.trayTip().size(), 63);
    EXPECT_EQ(model.trayTip(), ("From: " + longName).left(63));
    model.setTrayTip("short");
    EXPECT_EQ(model.trayTip(), "short");
}

TEST(TrayTip, FollowsTheSessionOfTwoCopies)
{
    TestCopy a(freePort()), b(freePort());
    ASSERT_TRUE(a.start());
    ASSERT_TRUE(b.start());
    EXPECT_EQ(b.frm().model().trayTip(), "Vonnel - Listening");
    ASSERT_TRUE(connectCopies(a, b));
    EXPECT_TRUE(waitUntil([&] { return b.frm().model().trayTip().startsWith("Vonnel - Connected 127.0.0.1 ["); }))
        << b.frm().model().trayTip().toStdString();
    EXPECT_TRUE(waitUntil([&] { return a.frm().model().trayTip().startsWith("Vonnel - Connected 127.0.0.1 ["); }))
        << a.frm().model().trayTip().toStdString();
    // The peer's name is in the brackets once the session is open.
    EXPECT_TRUE(waitUntil([&] { return a.frm().model().trayTip() == "Vonnel - Connected 127.0.0.1 [" +
                                           a.frm().session().PeerHostName + "]"; }));
}

TEST(TrayMenu, LockFlagsGuardAutoConnectAndProperties)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    FrmMain& f = copy.frm();
    PasswordStore& lock = f.encryption().passwords();
    const struct {
        bool first, second, startFailed;
        bool open;
    } cases[] = {
        {false, false, false, true},
        {true, false, false, false},
        {false, true, false, false},
        {true, true, false, false},
        {false, false, true, false},
    };
    for (const auto& c : cases) {
        lock.hasFirstPassword = c.first;
        lock.hasSecondPassword = c.second;
        lock.startupLockFailed = c.startFailed;
        EXPECT_TRUE(f.trayRightButtonUp());
        EXPECT_EQ(f.model().controls.enabled(Control::mnuSysAutoConnect), c.open) << c.first << c.second;
        EXPECT_EQ(f.model().controls.enabled(Control::mnuSysProperties), c.open) << c.first << c.second;
        // The other entries are not the lock's to set.
        EXPECT_TRUE(f.model().controls.enabled(Control::mnuSysNetView));
    }
    lock.startupLockFailed = false;
    // While the unlock window is up, no menu opens.
    lock.hasSecondPassword = true;
    std::optional<bool> menuDuringUnlock;
    lock.unlockScreen = [&](FrmUnlock&) { menuDuringUnlock = f.trayRightButtonUp(); };
    lock.secondLevelUnlocked();
    ASSERT_TRUE(menuDuringUnlock.has_value());
    EXPECT_FALSE(*menuDuringUnlock);
    EXPECT_TRUE(f.trayRightButtonUp());
}

TEST(TrayMenu, WindowOpensTheMenuOnlyWhenTheRulesAllow)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    MainWindow w(copy.frm());
    QMenu* menu = w.trayMenu();
    ASSERT_NE(menu, nullptr);
    QStringList names;
    for (QAction* a : menu->actions())
        if (!a->isSeparator())
            names << a->objectName();
    EXPECT_EQ(names, QStringList({"mnuSysShow", "mnuSysNetResolve", "mnuSysNetView", "mnuSysAutoConnect",
                                  "mnuSysProperties", "mnuSysClose"}));
    copy.frm().encryption().passwords().hasSecondPassword = true;
    EXPECT_TRUE(w.trayMenuAt(QPoint(10, 10)));
    EXPECT_FALSE(w.action(Control::mnuSysProperties)->isEnabled());
    EXPECT_TRUE(w.action(Control::mnuSysShow)->isEnabled());
    menu->hide();
}

TEST(TrayFallBack, TrayOnlyWithoutATrayMinimisesAndTellsOnce)
{
    // The test platform has no system tray, as a bare X server has none.
    ASSERT_FALSE(QSystemTrayIcon::isSystemTrayAvailable());
    for (const char* trayOnly : {"1", "0"}) {
        Views headless;
        TestCopy copy(0, {{"System Tray Only", trayOnly}});
        std::unique_ptr<MainWindow> window;
        copy.beforeStart = [&window](FrmMain& f) {
            window = std::make_unique<MainWindow>(f);
            f.ctx().setViews(window.get());
        };
        ASSERT_TRUE(copy.start());
        MainWindow& w = *window;
        EXPECT_EQ(w.trayIcon(), nullptr);
        pump(50);
        w.showMinimized();
        pump(50);
        w.showNormal();
        w.showMinimized();
        pump(50);
        // Still there, minimised, never hidden into nothing.
        EXPECT_TRUE(w.QMainWindow::isVisible());
        EXPECT_TRUE(w.windowState() & Qt::WindowMinimized);
        const int told = copy.prompter().count("no system tray");
        EXPECT_EQ(told, QString(trayOnly) == "1" ? 1 : 0) << trayOnly;
        EXPECT_EQ(w.noTrayTold(), QString(trayOnly) == "1");
        copy.frm().ctx().setViews(&headless);  // the window goes first
    }
}

TEST(Transparency, BelowFiftyIsSolidAndWrittenBack)
{
    const struct {
        const char* key;
        int alpha;
        bool writeBack;
    } cases[] = {
        {"", 255, true},  {"0", 255, true},    {"-3", 255, true},   {"49", 255, true},
        {"50", 50, false}, {"128", 128, false}, {"254", 254, false}, {"255", 255, false},
        {"400", 255, false},
    };
    for (const auto& c : cases) {
        const Transparency t = transparencyOf(c.key);
        EXPECT_EQ(t.alpha, c.alpha) << c.key;
        EXPECT_EQ(t.writeBack, c.writeBack) << c.key;
    }

    TestCopy copy(0, {{"Settings-Transparent", "30"}});
    ASSERT_TRUE(copy.start());
    QWidget window;
    applyTransparency(&window, copy.frm().ctx());
    EXPECT_DOUBLE_EQ(window.windowOpacity(), 1.0);
    EXPECT_EQ(copy.get("Settings-Transparent"), "255");
    copy.set("Settings-Transparent", "153");
    applyTransparency(&window, copy.frm().ctx());
    EXPECT_NEAR(window.windowOpacity(), 153 / 255.0, 0.01);
    EXPECT_EQ(copy.get("Settings-Transparent"), "153");
}

TEST(Transparency, EachDialogTakesItWhenItLoads)
{
    TestCopy copy(0, {{"Settings-Transparent", "204"}});
    ASSERT_TRUE(copy.start());
    MainWindow w(copy.frm());
    auto* own = new QDialog(&w);
    own->show();
    EXPECT_NEAR(own->windowOpacity(), 0.8, 0.01);
    // A system box is not one of the program's windows.
    auto* box = new QMessageBox(&w);
    box->show();
    EXPECT_DOUBLE_EQ(box->windowOpacity(), 1.0);
    // The value is read at each load: a later change reaches the next one.
    copy.set("Settings-Transparent", "10");
    auto* later = new QDialog(&w);
    later->show();
    EXPECT_DOUBLE_EQ(later->windowOpacity(), 1.0);
    EXPECT_EQ(copy.get("Settings-Transparent"), "255");
    EXPECT_NEAR(own->windowOpacity(), 0.8, 0.01);
}

TEST(StayOnTopRule, FollowsTheMenuCheck)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    QDialog form;
    copy.frm().model().controls.setChecked(Control::mnuViewontop, true);
    StayOnTop(&form, copy.frm());
    EXPECT_TRUE(form.windowFlags() & Qt::WindowStaysOnTopHint);
    copy.frm().model().controls.setChecked(Control::mnuViewontop, false);
    StayOnTop(&form, copy.frm());
    EXPECT_FALSE(form.windowFlags() & Qt::WindowStaysOnTopHint);
    // A copy on its way out leaves its windows alone.
    copy.frm().model().controls.setChecked(Control::mnuViewontop, true);
    copy.frm().ctx().ProgramExiting = true;
    StayOnTop(&form, copy.frm());
    EXPECT_FALSE(form.windowFlags() & Qt::WindowStaysOnTopHint);
    copy.frm().ctx().ProgramExiting = false;
}

TEST(TipWindow, WrapsAndTheBoxWritesTheKey)
{
    TestCopy copy(0, {{"Show Tips at Startup", "1"}});
    ASSERT_TRUE(copy.start());
    QFile f(copy.file("TIPS.TXT"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write("first tip\r\nsecond tip\r\n\r\nthird tip\r\n");
    f.close();
    TipWindow tip(copy.frm(), "TIPS.TXT", 5);  // 5 mod 3: the third
    EXPECT_EQ(tip.windowTitle(), "Tips");
    EXPECT_EQ(tip.shownTip(), "third tip");
    tip.cmdNextTip()->click();
    EXPECT_EQ(tip.shownTip(), "first tip");
    tip.cmdNextTip()->click();
    tip.cmdNextTip()->click();
    EXPECT_EQ(tip.shownTip(), "third tip");

    EXPECT_TRUE(tip.chkLoadTipsAtStartup()->isChecked());
    tip.chkLoadTipsAtStartup()->click();
    EXPECT_EQ(copy.get("Show Tips at Startup"), "0");
    tip.chkLoadTipsAtStartup()->click();
    EXPECT_EQ(copy.get("Show Tips at Startup"), "1");
}

TEST(TipWindow, ShownAtStartOnlyWhenAskedAndNotTrayOnly)
{
    const struct {
        const char* show;
        const char* trayOnly;
        bool shown;
    } cases[] = {{"1", "0", true}, {"0", "0", false}, {"1", "1", false}};
    for (const auto& c : cases) {
        Views headless;
        TestCopy copy(0, {{"Show Tips at Startup", c.show}, {"System Tray Only", c.trayOnly}});
        QFile tips(copy.file("TIPS.TXT"));
        ASSERT_TRUE(tips.open(QIODevice::WriteOnly));
        tips.write("the only tip\r\n");
        tips.close();
        std::unique_ptr<MainWindow> window;
        copy.beforeStart = [&window](FrmMain& f) {
            window = std::make_unique<MainWindow>(f);
            f.ctx().setViews(window.get());
        };
        ASSERT_TRUE(copy.start());
        auto* tip = window->findChild<TipWindow*>("frmTip");
        EXPECT_EQ(tip != nullptr && tip->isVisible(), c.shown) << c.show << c.trayOnly;
        copy.frm().ctx().setViews(&headless);  // the window goes first
    }
}

TEST(AboutWindow, ShowsVersionUsageAndConnections)
{
    TestCopy copy(0, {{"Connection Count", "17"}});
    ASSERT_TRUE(copy.start());
    const QString usage = copy.get("Usage");
    AboutWindow about(copy.frm());
    EXPECT_EQ(about.objectName(), "frmAbout");
    const QStringList lines = about.lines();
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines[0], QString("Vonnel %1.%2.%3").arg(MainModel::kMajor).arg(MainModel::kMinor).arg(MainModel::kRevision));
    EXPECT_EQ(lines[1], "Usage: " + usage);
    EXPECT_EQ(lines[2], "Connection Count: 17");
}

TEST(DesktopNotices, OnlyWhileTheWindowIsAwayAndSwitchedOn)
{
    const struct {
        bool visible;
        int state;
        const char* key;
        bool due;
    } cases[] = {
        {false, MainModel::vbNormal, "1", true},     {true, MainModel::vbMinimized, "1", true},
        {true, MainModel::vbNormal, "1", false},     {true, MainModel::vbMaximized, "1", false},
        {false, MainModel::vbNormal, "0", false},    {true, MainModel::vbMinimized, "0", false},
        {false, MainModel::vbNormal, "", true},      {true, MainModel::vbMinimized, "2", true},
    };
    for (const auto& c : cases)
        EXPECT_EQ(DesktopNotice::due(c.visible, c.state, c.key), c.due) << c.visible << c.state << c.key;

    TestCopy copy;
    ASSERT_TRUE(copy.start());
    FrmMain& f = copy.frm();
    f.model().setVisible(true);
    f.model().setWindowState(MainModel::vbNormal);
    EXPECT_FALSE(f.notice().raise(NoticeKind::Ring, "From: 10.0.0.1"));
    f.model().setWindowState(MainModel::vbMinimized);
    EXPECT_TRUE(f.notice().raise(NoticeKind::Ring, "From: 10.0.0.1"));
    copy.set("Desktop Notification", "0");
    EXPECT_FALSE(f.notice().raise(NoticeKind::Call, "From: 10.0.0.1"));
    EXPECT_EQ(copy.notifier().shown, QStringList{"Ring - Vonnel: From: 10.0.0.1"});
}

TEST(DesktopNotices, CallerAndFileOfferReachTheDesktopWhenHidden)
{
    TestCopy a(freePort()), b(freePort(), {{"Auto Accept Connection", "1"}});
    ASSERT_TRUE(a.start());
    ASSERT_TRUE(b.start());
    b.frm().model().setVisible(false);
    ASSERT_TRUE(connectCopies(a, b));
    EXPECT_TRUE(waitUntil([&] { return !b.notifier().shown.isEmpty(); }));
    EXPECT_EQ(b.notifier().shown.value(0), "Connection Request - Vonnel: From: 127.0.0.1");
    // The caller's window is in sight: nothing on its desktop.
    EXPECT_TRUE(a.notifier().shown.isEmpty());

    b.notifier().shown.clear();
    b.frm().model().setWindowState(MainModel::vbMinimized);
    b.prompter().addAnswers({"No"});
    b.frm().transfer().getSaveFileName("C:\\docs\\notes.txt>1234");
    ASSERT_EQ(b.notifier().shown.size(), 1);
    EXPECT_TRUE(b.notifier().shown[0].startsWith("File Receiving Request - Vonnel: notes.txt"))
        << b.notifier().shown[0].toStdString();
}
