// The main window's entries and buttons say what they do: each has a
// picture that draws, a tip, and the standard key where one fits, bound
// once; the toolbar stands in the order of use; our drawings stay sharp at
// 2x and take the palette's ink.

#include "core/Controls.h"
#include "core/MainModel.h"
#include "shell/ActionLook.h"
#include "shell/MainWindow.h"
#include "shell/MenuTable.h"
#include "support/TestCopy.h"

#include <QAction>
#include <QApplication>
#include <QImage>
#include <QMap>
#include <QToolBar>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

struct LookWindow {
    LookWindow()
    {
        started = copy.start();
        window = std::make_unique<MainWindow>(copy.frm());
    }
    TestCopy copy;
    std::unique_ptr<MainWindow> window;
    bool started = false;
};

// Pixels a picture really covers: a missing file or a drawing that failed
// leaves none.
int drawnPixels(const QIcon& icon, int side, qreal scale = 1.0)
{
    const QImage img = icon.pixmap(QSize(side, side), scale).toImage();
    int n = 0;
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x)
            n += qAlpha(img.pixel(x, y)) > 0 ? 1 : 0;
    return n;
}

// The average lightness of the ink lines: the pixels a drawing covers.
int inkLightness(const QIcon& icon)
{
    const QImage img = icon.pixmap(QSize(48, 48)).toImage();
    qint64 sum = 0, n = 0;
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x)
            if (qAlpha(img.pixel(x, y)) == 255) {
                sum += QColor(img.pixel(x, y)).lightness();
                ++n;
            }
    return n ? int(sum / n) : -1;
}

std::vector<Control> menuEntries()
{
    std::vector<Control> all;
    for (const MenuHead& h : mainMenus())
        for (const MenuEntry& e : h.entries)
            if (!e.separator())
                all.push_back(e.c);
    for (const MenuEntry& e : trayMenu())
        if (!e.separator())
            all.push_back(e.c);
    return all;
}

TEST(ActionLook, EveryEntryAndButtonHasAPictureThatDrawsAndATip)
{
    LookWindow w;
    ASSERT_TRUE(w.started);
    std::vector<Control> all = menuEntries();
    for (const ToolbarTip& t : toolbarTips())
        all.push_back(t.c);
    for (Control c : all) {
        const QString name = controlName(c);
        QAction* a = w.window->action(c);
        ASSERT_TRUE(a) << qPrintable(name);
        EXPECT_FALSE(a->icon().isNull()) << qPrintable(name);
        EXPECT_GT(drawnPixels(a->icon(), 24), 24) << qPrintable(name);
        EXPECT_FALSE(a->toolTip().trimmed().isEmpty()) << qPrintable(name);
        // Our own drawing stands behind every theme name.
        const ActionPicture p = actionPicture(c);
        ASSERT_TRUE(p.drawing) << qPrintable(name);
        EXPECT_GT(drawnPixels(drawnIcon(QLatin1String(p.drawing)), 24), 24) << p.drawing;
    }
    EXPECT_TRUE(drawnIcon(QStringLiteral("no-such-drawing")).isNull());
}

TEST(ActionLook, ButtonsShareTheirMenuTwinsPictureAndKey)
{
    LookWindow w;
    ASSERT_TRUE(w.started);
    const struct {
        Control button, entry;
    } twins[] = {
        {Control::Toolbar1_1, Control::mnuConnect},     {Control::Toolbar1_2, Control::mnuDisconnect},
        {Control::Toolbar1_SendFile, Control::mnuSendFile}, {Control::Toolbar1_Scrivet, Control::mnuDraw},
        {Control::Toolbar1_16, Control::mnuMute},        {Control::Toolbar1_17, Control::mnuHelpContents},
        {Control::mnuSysClose, Control::mnuFileExit},
    };
    for (const auto& t : twins) {
        EXPECT_STREQ(actionPicture(t.button).drawing, actionPicture(t.entry).drawing)
            << qPrintable(controlName(t.button));
        EXPECT_EQ(actionKey(t.button), actionKey(t.entry)) << qPrintable(controlName(t.button));
    }
    // A button's tip names the key its entry answers to.
    const QString open = QKeySequence(QKeySequence::Open).toString(QKeySequence::NativeText);
    ASSERT_FALSE(open.isEmpty());
    EXPECT_TRUE(w.window->action(Control::Toolbar1_SendFile)->toolTip().endsWith("(" + open + ")"))
        << qPrintable(w.window->action(Control::Toolbar1_SendFile)->toolTip());
    EXPECT_FALSE(w.window->action(Control::Toolbar1_7)->toolTip().contains('('));
    // A new language's tips keep the key.
    w.copy.frm().TransMenu();
    EXPECT_TRUE(w.window->action(Control::Toolbar1_SendFile)->toolTip().endsWith("(" + open + ")"));
}

TEST(ActionLook, StandardKeysAreBoundOnceAndLeaveThePanesTheirs)
{
    LookWindow w;
    ASSERT_TRUE(w.started);
    const struct {
        Control c;
        QKeySequence::StandardKey key;
    } bound[] = {
        {Control::mnuFileExit, QKeySequence::Quit},
        {Control::mnuSendFile, QKeySequence::Open},
        {Control::mnuHelpContents, QKeySequence::HelpContents},
        {Control::mnuSave, QKeySequence::Save},
    };
    for (const auto& b : bound) {
        QAction* a = w.window->action(b.c);
        EXPECT_EQ(actionKey(b.c), b.key) << qPrintable(controlName(b.c));
        ASSERT_FALSE(a->shortcuts().isEmpty()) << qPrintable(controlName(b.c));
        if (!QKeySequence::keyBindings(b.key).isEmpty())
            EXPECT_EQ(a->shortcuts(), QKeySequence::keyBindings(b.key)) << qPrintable(controlName(b.c));
        EXPECT_EQ(a->shortcutContext(), Qt::WindowShortcut);
    }
    // Quit is Ctrl+Q on every platform, its scheme's or not.
    EXPECT_TRUE(w.window->action(Control::mnuFileExit)->shortcuts().contains(QKeySequence("Ctrl+Q")));
    EXPECT_EQ(w.window->action(Control::mnuHelpContents)->shortcut(), QKeySequence(Qt::Key_F1));

    // No key runs two actions, and none takes a key the typing needs.
    QMap<QString, QString> owner;
    QList<QKeySequence> typing;
    for (auto k : {QKeySequence::Copy, QKeySequence::Paste, QKeySequence::Cut, QKeySequence::SelectAll,
                   QKeySequence::Undo, QKeySequence::Redo, QKeySequence::Delete, QKeySequence::Backspace})
        typing << QKeySequence::keyBindings(k);
    int keys = 0;
    for (QAction* a : w.window->findChildren<QAction*>()) {
        for (const QKeySequence& k : a->shortcuts()) {
            ++keys;
            const QString text = k.toString();
            EXPECT_FALSE(owner.contains(text)) << qPrintable(text) << " on " << qPrintable(owner.value(text))
                                               << " and " << qPrintable(a->objectName());
            owner.insert(text, a->objectName());
            EXPECT_FALSE(typing.contains(k)) << qPrintable(text) << " on " << qPrintable(a->objectName());
        }
    }
    EXPECT_GE(keys, 4);
    // The tray's entries carry no key: their twins in the menu bar do.
    for (const MenuEntry& e : trayMenu())
        if (!e.separator())
            EXPECT_TRUE(w.window->action(e.c)->shortcuts().isEmpty()) << e.key;
}

TEST(ActionLook, ToolbarStandsInTheOrderOfUse)
{
    LookWindow w;
    ASSERT_TRUE(w.started);
    auto* bar = w.window->findChild<QToolBar*>(controlName(Control::Toolbar1));
    ASSERT_TRUE(bar);
    QStringList names;
    QList<int> separators;
    for (QAction* a : bar->actions()) {
        if (a->isSeparator())
            separators << int(names.size());
        else
            names << a->objectName();
    }
    const QStringList first = {"Toolbar1:1", "Toolbar1:2", "Toolbar1:SendFile", "Toolbar1:Scrivet",
                               "Toolbar1:14", "Toolbar1:15"};
    EXPECT_EQ(names.mid(0, first.size()), first);
    // The look of the text follows at once, its six buttons together.
    const int bold = int(names.indexOf("Toolbar1:7"));
    ASSERT_GE(bold, int(first.size()));
    EXPECT_LE(bold, int(first.size()) + 1);
    EXPECT_EQ(names.mid(bold, 6), QStringList({"Toolbar1:7", "Toolbar1:8", "Toolbar1:9", "Toolbar1:10",
                                               "Toolbar1:11", "Toolbar1:12"}));
    // Every button once, help the last.
    EXPECT_EQ(names.size(), 19);
    EXPECT_EQ(QSet<QString>(names.begin(), names.end()).size(), names.size());
    for (int n = 1; n <= 17; ++n)
        EXPECT_TRUE(names.contains(controlName(toolbarButton(n)))) << n;
    EXPECT_EQ(names.last(), "Toolbar1:17");
    // Separators stand between groups only: none first or last, never two
    // together, one before the format group.
    ASSERT_FALSE(separators.isEmpty());
    EXPECT_GT(separators.first(), 0);
    EXPECT_LT(separators.last(), names.size());
    for (qsizetype i = 1; i < separators.size(); ++i)
        EXPECT_NE(separators[i], separators[i - 1]);
    EXPECT_TRUE(separators.contains(bold));
    EXPECT_TRUE(separators.contains(2)) << "connecting stands apart";
}

TEST(ActionLook, BoardButtonFollowsTheBoardEntry)
{
    LookWindow w;
    ASSERT_TRUE(w.started);
    Controls& controls = w.copy.frm().model().controls;
    QAction* button = w.window->action(Control::Toolbar1_Scrivet);
    ASSERT_TRUE(button);
    controls.setEnabled(Control::mnuDraw, false);
    EXPECT_FALSE(button->isEnabled());
    controls.setEnabled(Control::mnuDraw, true);
    EXPECT_TRUE(button->isEnabled());
}

TEST(ActionLook, DrawingsStaySharpAtTwiceTheScale)
{
    const QIcon icon = drawnIcon(QStringLiteral("send-file"));
    const QPixmap once = icon.pixmap(QSize(24, 24), 1.0);
    const QPixmap twice = icon.pixmap(QSize(24, 24), 2.0);
    EXPECT_EQ(once.size(), QSize(24, 24));
    EXPECT_EQ(twice.size(), QSize(48, 48));
    EXPECT_EQ(twice.devicePixelRatio(), 2.0);
    // At 1.5x the drawing is made at 36 device pixels, not stretched.
    EXPECT_EQ(icon.pixmap(QSize(24, 24), 1.5).size(), QSize(36, 36));
    EXPECT_GT(drawnPixels(icon, 24, 1.5), drawnPixels(icon, 24, 1.0));
}

TEST(ActionLook, DrawingsTakeThePalettesInk)
{
    // A point on the upper sheet of Copy, clear of its lines.
    const auto sheet = [] { return QColor(drawnIcon(QStringLiteral("copy")).pixmap(48, 48).toImage().pixel(24, 9)); };
    const QPalette before = QApplication::palette();
    QPalette light = before;
    light.setColor(QPalette::WindowText, QColor(0x10, 0x10, 0x10));
    light.setColor(QPalette::Base, QColor(0xff, 0xff, 0xff));
    QApplication::setPalette(light);
    const int onLight = inkLightness(drawnIcon(QStringLiteral("bold")));
    const QColor lightSheet = sheet();
    QPalette dark = before;
    dark.setColor(QPalette::WindowText, QColor(0xf0, 0xf0, 0xf0));
    dark.setColor(QPalette::Base, QColor(0x20, 0x20, 0x20));
    QApplication::setPalette(dark);
    const int onDark = inkLightness(drawnIcon(QStringLiteral("bold")));
    const QColor darkSheet = sheet();
    QApplication::setPalette(before);
    EXPECT_LT(onLight, 60);
    EXPECT_GT(onDark, 190);
    // The sheets take the ground colour, so the light lines stay seen.
    EXPECT_GT(lightSheet.lightness(), 230);
    EXPECT_LT(darkSheet.lightness(), 60);
    EXPECT_EQ(darkSheet.alpha(), 255);
}

}  // namespace
}  // namespace vonnel::test
