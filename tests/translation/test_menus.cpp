// miniMenu and TransMenu on a whole copy and its window: every "Menu Off"
// switch hides its entry and the entry's twin in the tray menu and no
// other; separators stand only between shown entries; a head whose
// entries are all off stays; captions and tips come from the lookup in the
// routine's order and are set again on the window's existing actions.

#include "shell/MainWindow.h"
#include "shell/MenuRoutines.h"
#include "shell/MenuTable.h"
#include "core/Translator.h"
#include "support/TestCopy.h"

#include <QAction>
#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

QList<QPair<QString, QString>> allSwitches(const QString& value)
{
    QList<QPair<QString, QString>> s;
    for (const MenuSwitch& m : menuSwitches())
        s << qMakePair(QString::fromLatin1(m.key), value);
    return s;
}

// The separators of a menu as the window shows them.
QList<bool> separatorsOf(QMenu* menu)
{
    QList<bool> shown;
    for (QAction* a : menu->actions())
        if (a->isSeparator())
            shown << a->isVisible();
    return shown;
}

QMenu* head(MainWindow& w, Control c) { return w.menuBar()->findChild<QMenu*>(controlName(c)); }

TEST(Separators, StandOnlyBetweenShownEntries)
{
    // a | b c | d, with the entries hidden as given.
    static const MenuEntry kMenu[] = {
        {Control::mnuConnect, "a", "a"},    {Control::mnuFile, nullptr, nullptr},
        {Control::mnuSave, "b", "b"},       {Control::mnuFileProperties, "c", "c"},
        {Control::mnuFile, nullptr, nullptr}, {Control::mnuFileExit, "d", "d"},
    };
    const struct {
        QSet<Control> hidden;
        std::vector<bool> expected;
    } cases[] = {
        {{}, {true, true}},
        {{Control::mnuSave}, {true, true}},
        {{Control::mnuSave, Control::mnuFileProperties}, {true, false}},  // never two in a row
        {{Control::mnuConnect}, {false, true}},                          // none at the top
        {{Control::mnuFileExit}, {true, false}},                         // none at the bottom
        {{Control::mnuConnect, Control::mnuSave, Control::mnuFileProperties}, {false, false}},
        {{Control::mnuConnect, Control::mnuSave, Control::mnuFileProperties, Control::mnuFileExit},
         {false, false}},
    };
    for (const auto& c : cases) {
        const auto shown = separatorsShown(kMenu, [&c](Control e) { return !c.hidden.contains(e); });
        EXPECT_EQ(shown, c.expected) << c.hidden.size();
    }
}

// Each switch alone: its entry and tray twin go, every other entry stays.
TEST(MiniMenu, EachSwitchHidesItsEntryAndTrayTwinOnly)
{
    QSet<Control> entries;
    for (const MenuHead& h : mainMenus()) {
        entries << h.c;
        for (const MenuEntry& e : h.entries)
            if (!e.separator())
                entries << e.c;
    }
    for (const MenuEntry& e : trayMenu())
        if (!e.separator())
            entries << e.c;
    // The presets show only with a caption; give them all one.
    QList<QPair<QString, QString>> presets;
    for (int n = 1; n <= 6; ++n)
        presets << qMakePair(QStringLiteral("Menu%1").arg(n), QStringLiteral("Preset %1").arg(n));

    for (const MenuSwitch& s : menuSwitches()) {
        auto settings = allSwitches("0") + presets;
        settings << qMakePair(QString::fromLatin1(s.key), QStringLiteral("1"));
        TestCopy copy(0, settings);
        ASSERT_TRUE(copy.start()) << s.key;
        MainWindow window(copy.frm());
        const Controls& controls = copy.frm().model().controls;
        QSet<Control> off;
        if (s.entry)
            off << *s.entry;
        if (s.trayTwin)
            off << *s.trayTwin;
        for (Control c : entries) {
            EXPECT_EQ(controls.visible(c), !off.contains(c)) << s.key << " " << qPrintable(controlName(c));
            EXPECT_EQ(window.action(c)->isVisible(), !off.contains(c)) << s.key << " " << qPrintable(controlName(c));
        }
        // Switched on again, the options' Apply runs miniMenu once more.
        copy.set(QString::fromLatin1(s.key), "0");
        copy.frm().miniMenu();
        for (Control c : entries)
            EXPECT_TRUE(window.action(c)->isVisible()) << s.key << " " << qPrintable(controlName(c));
    }
}

TEST(MiniMenu, SeparatorsFollowTheEntriesAndHeadsStay)
{
    TestCopy copy(0, allSwitches("0"));
    ASSERT_TRUE(copy.start());
    MainWindow window(copy.frm());
    QMenu* file = head(window, Control::mnuFile);
    QMenu* extras = head(window, Control::mnuSpecial);
    ASSERT_TRUE(file && extras && window.findChild<QMenu*>("mnuTray"));
    EXPECT_EQ(separatorsOf(file), QList<bool>({true, true}));
    // No presets set: the Messages menu has nothing above its separator.
    EXPECT_EQ(separatorsOf(head(window, Control::mnuMessage)), QList<bool>({false}));

    // Save, AutoConnect and Properties off: one separator between the two
    // groups left. The tray loses AutoConnect and Properties too.
    for (const char* key : {"Save Menu Off", "AutoConnect Menu Off", "Properties Menu Off"})
        copy.set(key, "1");
    copy.frm().miniMenu();
    EXPECT_EQ(separatorsOf(file), QList<bool>({true, false}));
    EXPECT_EQ(separatorsOf(window.findChild<QMenu*>("mnuTray")), QList<bool>({true, true}));
    // And Exit: the tray's last group is Exit alone, so its separator goes.
    copy.set("Exit Menu Off", "1");
    copy.frm().miniMenu();
    EXPECT_EQ(separatorsOf(window.findChild<QMenu*>("mnuTray")), QList<bool>({true, false}));

    // Every entry of Extras off: the head stays, with nothing shown under it.
    for (const char* key : {"Net View Menu Off", "Net Resolve Menu Off", "AutoNotify Menu Off",
                            "Encryption Menu Off", "URL History Menu Off"})
        copy.set(key, "1");
    copy.frm().miniMenu();
    EXPECT_TRUE(window.action(Control::mnuSpecial)->isVisible());
    EXPECT_TRUE(extras->menuAction()->isVisible());
    for (QAction* a : extras->actions())
        EXPECT_FALSE(a->isVisible()) << qPrintable(a->objectName());
    // The whole head goes only by its own switch.
    copy.set("Extra Menu Off", "1");
    copy.frm().miniMenu();
    EXPECT_FALSE(extras->menuAction()->isVisible());
}

TEST(TransMenu, WalksHeadsThenEntriesInItsOrder)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    QStringList asked;
    copy.frm().ctx().translator().setLookupRecorder([&asked](const QString& key) {
        if (asked.isEmpty() || asked.back() != key)
            asked << key;
    });
    TransMenu(copy.frm().ctx(), copy.frm().model().controls);
    copy.frm().ctx().translator().setLookupRecorder({});
    const QStringList start = {"File", "Edit", "Messages", "Voice", "Tools", "Window", "Extras", "Help",
                               "Connect", "Disconnect", "Save", "AutoConnect", "Properties", "Close",
                               "Exit", "Copy All", "Copy", "Paste", "Clear Screen", "Override",
                               "Refresh", "Speak", "Mute", "Volume Up", "Volume Down", "Alert Ring",
                               "Ring", "Send File", "Scrivet", "Security", "Options", "Net View"};
    EXPECT_EQ(asked.mid(0, start.size()), start);
    // Every entry of the table is asked for, but the presets' own captions.
    for (const MenuHead& h : mainMenus())
        for (const MenuEntry& e : h.entries)
            if (!e.separator())
                EXPECT_EQ(asked.contains(QLatin1String(e.key)), e.c < Control::mnuMsg1 || e.c > Control::mnuMsg6)
                    << e.key;
    for (const ToolbarTip& t : toolbarTips())
        EXPECT_TRUE(asked.contains(QLatin1String(t.key))) << t.key;
}

TEST(TransMenu, PresetsKeepTheUserCaptionsAndShowOnlyWithOne)
{
    TestCopy copy(0, {{"Menu2", "Lunch?"}, {"Message2", "Shall we have lunch?"}});
    ASSERT_TRUE(copy.start());
    MainWindow window(copy.frm());
    EXPECT_EQ(window.action(Control::mnuMsg2)->text(), "Lunch?");
    EXPECT_TRUE(window.action(Control::mnuMsg2)->isVisible());
    for (Control c : {Control::mnuMsg1, Control::mnuMsg3, Control::mnuMsg4, Control::mnuMsg5, Control::mnuMsg6})
        EXPECT_FALSE(window.action(c)->isVisible()) << qPrintable(controlName(c));
    EXPECT_EQ(separatorsOf(head(window, Control::mnuMessage)), QList<bool>({true}));
    copy.frm().TransMenu();
    EXPECT_EQ(window.action(Control::mnuMsg2)->text(), "Lunch?");
    // The options change the captions: SetMsgMnu takes them again.
    copy.set("Menu2", "");
    copy.set("Menu5", "Back soon");
    copy.frm().SetMsgMnu();
    EXPECT_FALSE(window.action(Control::mnuMsg2)->isVisible());
    EXPECT_TRUE(window.action(Control::mnuMsg5)->isVisible());
    EXPECT_EQ(window.action(Control::mnuMsg5)->text(), "Back soon");
}

}  // namespace
