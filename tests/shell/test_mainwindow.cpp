// The main window's entries do what they name: Copy, Copy All, Save, the
// colour buttons, Security and Encryption reach their routines; keys typed
// in the remote pane land in the local one; the encryption entry hides on
// its switch.

#include "access/PasswordStore.h"
#include "connection/AddressServices.h"
#include "connection/Connection.h"
#include "shell/MainWindow.h"
#include "support/TestCopy.h"
#include "transfer/Transfer.h"
#include "wire/LiveTyping.h"
#include "connection/Session.h"
#include "platform/Prompter.h"

#include <QAction>
#include <QApplication>
#include <QColorDialog>
#include <QFile>
#include <QKeyEvent>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSet>
#include <QTextCursor>
#include <QTimer>
#include <QLabel>
#include <QStatusTipEvent>
#include <QStatusBar>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

struct Window {
    explicit Window(const QList<QPair<QString, QString>>& settings = {}) : copy(0, settings)
    {
        started = copy.start();
        // A window bound late shows the state the entries already have.
        window = std::make_unique<MainWindow>(copy.frm());
    }
    void trigger(Control c) { window->action(c)->trigger(); }
    void focus(QPlainTextEdit* pane)
    {
        QFocusEvent in(QEvent::FocusIn, Qt::MouseFocusReason);
        QCoreApplication::sendEvent(pane, &in);
    }
    TestCopy copy;
    std::unique_ptr<MainWindow> window;
    bool started = false;
};

TEST(MainWindowEntries, CopyAndCopyAllFillTheClipboard)
{
    Window w;
    ASSERT_TRUE(w.started);
    FrmMain& f = w.copy.frm();
    f.model().txtServer.setText("typed here");
    f.model().txtClient(f.session().sIdx).setText("first line\r\nsecond line");
    QPlainTextEdit* remote = w.window->clientPane();

    // Nothing selected: Copy leaves the clipboard alone.
    w.copy.clipboard().setText("before");
    w.trigger(Control::mnuCopy);
    EXPECT_EQ(w.copy.clipboard().text(), "before");

    // A selection in the remote pane: menu entry and toolbar button alike.
    const struct {
        Control entry;
        int from, to;
        const char* expected;
    } copies[] = {
        {Control::mnuCopy, 0, 5, "first"},
        {Control::Toolbar1_5, 6, 15, "line\r\nseco"},
    };
    for (const auto& c : copies) {
        QTextCursor cursor(remote->document());
        cursor.setPosition(c.from);
        cursor.setPosition(c.to, QTextCursor::KeepAnchor);
        remote->setTextCursor(cursor);
        w.focus(remote);
        w.copy.clipboard().setText(QString());
        w.trigger(c.entry);
        EXPECT_EQ(w.copy.clipboard().text(), c.expected) << qPrintable(controlName(c.entry));
    }

    // Copy All takes the whole text of the pane last worked in.
    w.trigger(Control::mnuCopyAll);
    EXPECT_EQ(w.copy.clipboard().text(), "first line\r\nsecond line");
    w.focus(w.window->serverPane());
    w.trigger(Control::mnuCopyAll);
    EXPECT_EQ(w.copy.clipboard().text(), "typed here");
}

TEST(MainWindowEntries, SaveWritesTheChatRecord)
{
    Window w;
    ASSERT_TRUE(w.started);
    w.copy.frm().model().txtServer.setText("my words");
    w.copy.frm().model().txtClient(w.copy.frm().session().sIdx).setText("their words");
    const QString path = w.copy.file("record.txt");
    w.copy.prompter().addAnswers({"file3:" + path});
    w.trigger(Control::mnuSave);
    const QByteArray saved = readFile(path);
    EXPECT_TRUE(saved.contains("my words")) << saved.constData();
    EXPECT_TRUE(saved.contains("their words"));
}

TEST(MainWindowEntries, KeysTypedInTheRemotePaneGoToTheLocalPane)
{
    Window w;
    ASSERT_TRUE(w.started);
    for (const char* ch : {"h", "i"}) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_A + (ch[0] - 'a'), Qt::NoModifier, ch);
        QCoreApplication::sendEvent(w.window->clientPane(), &press);
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_A + (ch[0] - 'a'), Qt::NoModifier, ch);
        QCoreApplication::sendEvent(w.window->serverPane(), &release);
    }
    EXPECT_EQ(w.copy.frm().model().txtServer.text(), "hi");
    EXPECT_TRUE(w.copy.frm().model().txtClient(w.copy.frm().session().sIdx).text().isEmpty());
    // Ctrl+C stays with the remote pane: it copies, it types nothing.
    QKeyEvent copy(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier, QString());
    QCoreApplication::sendEvent(w.window->clientPane(), &copy);
    EXPECT_EQ(w.copy.frm().model().txtServer.text(), "hi");
}

TEST(MainWindowEntries, ColourButtonsAskAndSetTheLocalLook)
{
    Window w;
    ASSERT_TRUE(w.started);
    const struct {
        Control button;
        QColor chosen;
        qint64 (PaneFormat::*read)() const;
        qint64 expected;
    } cases[] = {
        {Control::Toolbar1_11, QColor(0, 0, 255), &PaneFormat::foreColor, 16711680},
        {Control::Toolbar1_12, QColor(255, 255, 0), &PaneFormat::backColor, 65535},
    };
    for (const auto& c : cases) {
        bool asked = false;
        QTimer::singleShot(100, [&] {
            if (auto* d = qobject_cast<QColorDialog*>(QApplication::activeModalWidget())) {
                asked = true;
                d->setCurrentColor(c.chosen);
                d->accept();
            }
        });
        QTimer::singleShot(3000, [] {
            if (QWidget* d = QApplication::activeModalWidget())
                d->close();
        });
        w.trigger(c.button);
        EXPECT_TRUE(asked) << qPrintable(controlName(c.button));
        EXPECT_EQ((w.copy.frm().typing().serverFormat.*c.read)(), c.expected) << qPrintable(controlName(c.button));
    }
}

TEST(MainWindowEntries, SecurityOpensItsWindowAndKeepsTheCheckTrue)
{
    Window w;
    ASSERT_TRUE(w.started);
    QString seen;
    QTimer::singleShot(100, [&] {
        if (QWidget* d = QApplication::activeModalWidget()) {
            seen = d->objectName();
            if (auto* ok = d->findChild<QPushButton*>("OKButton"))
                ok->click();
        }
    });
    QTimer::singleShot(3000, [] {
        if (QWidget* d = QApplication::activeModalWidget())
            d->close();
    });
    w.trigger(Control::mnuSecurity);
    EXPECT_EQ(seen, "frmSecurity");
    // The check mark says whether a password applies; a click doesn't set it.
    EXPECT_FALSE(w.window->action(Control::mnuSecurity)->isChecked());
}

TEST(MainWindowEntries, EncryptionEntryOpensTheToolUnlessSwitchedOff)
{
    for (const bool off : {false, true}) {
        Window w(QList<QPair<QString, QString>>{{"Encryption Menu Off", off ? "1" : "0"}});
        ASSERT_TRUE(w.started);
        EXPECT_EQ(w.window->action(Control::mnuEncryption)->isVisible(), !off);
        if (off)
            continue;
        w.trigger(Control::mnuEncryption);
        ASSERT_TRUE(w.window->encryptWindow());
        EXPECT_TRUE(w.window->encryptWindow()->isVisible());
        w.window->encryptWindow()->close();
    }
}

// Every control has its own name, and the window's actions carry the name
// of the control they are bound to: tests and help pages find them by it.
TEST(MainWindowEntries, ActionsCarryTheirControlsNames)
{
    Window w;
    ASSERT_TRUE(w.started);
    QSet<QString> names;
    for (int i = 0; i < kControlCount; ++i) {
        const Control c = Control(i);
        const QString name = controlName(c);
        EXPECT_FALSE(name.isEmpty()) << i;
        EXPECT_FALSE(names.contains(name)) << qPrintable(name);
        names.insert(name);
        if (QAction* a = w.window->action(c))
            EXPECT_EQ(a->objectName(), name);
    }
    // What the window draws, by the names a reader of the menus knows.
    const struct {
        Control c;
        const char* name;
    } bound[] = {
        {Control::mnuConnect, "mnuConnect"},
        {Control::mnuFileExit, "mnuFileExit"},
        {Control::mnuEditPaste, "mnuEditPaste"},
        {Control::mnuMsg6, "mnuMsg6"},
        {Control::mnuVolDown, "mnuVolDown"},
        {Control::mnuSendFile, "mnuSendFile"},
        {Control::mnuViewontop, "mnuViewontop"},
        {Control::mnuURLHistory, "mnuURLHistory"},
        {Control::mnuAbout, "mnuAbout"},
        {Control::Toolbar1_1, "Toolbar1:1"},
        {Control::Toolbar1_13, "Toolbar1:13"},
        {Control::Toolbar1_17, "Toolbar1:17"},
        {Control::Toolbar1_SendFile, "Toolbar1:SendFile"},
    };
    for (const auto& b : bound) {
        QAction* a = w.window->action(b.c);
        ASSERT_TRUE(a) << b.name;
        EXPECT_EQ(a->objectName(), b.name);
        EXPECT_EQ(w.window->findChild<QAction*>(b.name), a) << b.name;
    }
    // Every menu entry and toolbar button has an action, and every named
    // action of the window is one of the controls.
    for (int i = int(Control::mnuConnect); i <= int(Control::mnuAbout); ++i)
        EXPECT_TRUE(w.window->action(Control(i))) << qPrintable(controlName(Control(i)));
    for (int n = 1; n <= 17; ++n)
        EXPECT_TRUE(w.window->action(toolbarButton(n))) << n;
    for (QAction* a : w.window->findChildren<QAction*>())
        if (a->objectName().startsWith("mnu") || a->objectName().startsWith("Toolbar1:"))
            EXPECT_TRUE(names.contains(a->objectName())) << qPrintable(a->objectName());
    // The menu heads carry theirs too.
    for (int i = int(Control::mnuFile); i <= int(Control::mnuHelp); ++i)
        EXPECT_TRUE(w.window->findChild<QMenu*>(controlName(Control(i)))) << qPrintable(controlName(Control(i)));
}

// Every form has its own name; the windows that exist carry theirs.
TEST(MainWindowEntries, FormsCarryTheirNames)
{
    QSet<QString> names;
    for (int i = 0; i < kFormCount; ++i) {
        const QString name = formName(Form(i));
        EXPECT_TRUE(name.startsWith("frm")) << i;
        EXPECT_FALSE(names.contains(name)) << qPrintable(name);
        names.insert(name);
    }
    Window w;
    ASSERT_TRUE(w.started);
    EXPECT_EQ(w.window->objectName(), formName(Form::frmMain));
    EXPECT_TRUE(w.window->findChild<QWidget*>(formName(Form::frmProgress)));
}

// Each pop-up entry runs a menu entry or button that the window has.
TEST(MainWindowEntries, EveryPopUpEntryRunsAnEntryOfTheWindow)
{
    Window w;
    ASSERT_TRUE(w.started);
    for (int i = int(Control::popCopy); i <= int(Control::popClrScr); ++i) {
        const Control twin = popupTwin(Control(i));
        EXPECT_NE(twin, Control(i)) << qPrintable(controlName(Control(i)));
        EXPECT_TRUE(w.window->action(twin)) << qPrintable(controlName(Control(i)));
    }
}

}  // namespace

namespace {

// However narrow the window, no status panel is drawn over another or
// beyond the window's edge.
TEST(MainWindowLayout, StatusPanelsNeverOverlap)
{
    Window w;
    ASSERT_TRUE(w.started);
    w.copy.frm().model().stStatusbar.setText(10, "1234");
    w.copy.frm().model().stStatusbar.setText(11, "5678");
    w.window->show();
    for (const int width : {900, 600, 480, 400, 340}) {
        w.window->resize(width, 300);
        pump(50);
        QList<QRect> shown;
        for (int n = 1; n <= 11; ++n) {
            auto* label = w.window->findChild<QWidget*>(QStringLiteral("panel%1").arg(n));
            ASSERT_TRUE(label);
            if (!label->isVisible())
                continue;
            const QRect r(label->mapTo(w.window.get(), QPoint(0, 0)), label->size());
            EXPECT_LE(r.right(), w.window->width()) << "panel " << n << " at width " << width;
            for (const QRect& other : shown)
                EXPECT_FALSE(r.intersects(other)) << "panel " << n << " at width " << width;
            shown << r;
        }
        EXPECT_GE(shown.size(), 4) << width;
    }
}

// A passing text (a long status, a menu entry's status tip, the notice of
// a transfer on hold) takes its room from panel 2: the fixed panels keep
// their place and size, and nothing shows under the strip.
TEST(MainWindowLayout, PassingTextsLeaveTheFixedPanelsInPlace)
{
    Window w;
    ASSERT_TRUE(w.started);
    FrmMain& f = w.copy.frm();
    f.model().stStatusbar.setText(10, "1,234 KB");
    f.model().stStatusbar.setText(11, "5,151 KB");
    w.window->resize(900, 400);
    w.window->show();
    pump(100);
    auto geometries = [&] {
        QList<QRect> out;
        for (int n = 3; n <= 11; ++n) {
            auto* label = w.window->findChild<QWidget*>(QStringLiteral("panel%1").arg(n));
            out << (label && label->isVisible()
                        ? QRect(label->mapTo(w.window.get(), QPoint(0, 0)), label->size())
                        : QRect());
        }
        return out;
    };
    const QList<QRect> before = geometries();
    for (const QRect& r : before)
        ASSERT_TRUE(r.isValid()) << "every panel is shown at 900 pixels";

    f.model().stStatusbar.setText(2, QString("Connected: 127.0.0.1 and a long, long status text ").repeated(4));
    QStatusTipEvent tip(QString("A menu entry's status tip, long enough to fill a bar ").repeated(3));
    QCoreApplication::sendEvent(w.window.get(), &tip);
    f.transfer().holdFileName = "/home/user/" + QString(120, 'n') + ".bin";
    f.transfer().holdDirection = "Sending File";
    f.transfer().holdProgressText = "87%";
    f.session().TransferOnHold = true;
    f.transfer().progress().caption = "poke";  // the window hears of the hold
    pump(100);
    EXPECT_FALSE(w.window->transferNotice()->isHidden());
    EXPECT_EQ(geometries(), before);
    auto* caps = w.window->findChild<QLabel*>("panel5");
    EXPECT_TRUE(caps->isVisible());
    EXPECT_EQ(caps->text(), "CAPS");
    EXPECT_TRUE(w.window->findChild<QLabel*>("panel6")->isVisible());

    // The status bar ends where the strip of panels ends.
    QStatusBar* bar = w.window->statusBar();
    auto* strip = bar->findChild<QWidget*>("stStatusbarStrip");
    ASSERT_TRUE(strip);
    const int stripBottom = strip->mapTo(w.window.get(), QPoint(0, strip->height())).y();
    EXPECT_LE(w.window->height() - stripBottom, 3) << "no empty strip under the panels";
    f.session().TransferOnHold = false;
}

}  // namespace

namespace {

// Refresh without a session reads the local addresses again.
TEST(MainWindowEntries, RefreshWithoutASessionReadsTheLocalAddresses)
{
    Window w;
    ASSERT_TRUE(w.started);
    AddressServices& a = w.copy.frm().connection().address();
    for (const Control entry : {Control::mnuRefresh, Control::Toolbar1_3}) {
        a.localAddresses.clear();
        a.localHostName.clear();
        w.trigger(entry);
        EXPECT_FALSE(a.localAddresses.isEmpty()) << qPrintable(controlName(entry));
        EXPECT_FALSE(a.localHostName.isEmpty()) << qPrintable(controlName(entry));
    }
}

}  // namespace
