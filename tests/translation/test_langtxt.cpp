// Lang.txt holds every key the program asks its lookup for: a copy with a
// recording lookup opens its main window, every menu and pop-up, and every
// window and dialog there is, and each key it asked must have its line in
// the Lang.txt the build made. Lang.txt itself is an ini file a user can
// fill in: [Vonnel], then "key=" lines in order, each once, CR LF.

#include "access/Encryption.h"
#include "access/LockForms.h"
#include "access/PasswordStore.h"
#include "board/Scrivet.h"
#include "core/Cp1252.h"
#include "core/Translator.h"
#include "nettools/NetViewModel.h"
#include "shell/MainWindow.h"
#include "shell/NetTools.h"
#include "shell/dialogs/LockDialogs.h"
#include "shell/dialogs/NetRangeDialog.h"
#include "shell/dialogs/PictureBrowser.h"
#include "shell/dialogs/PreviewWindow.h"
#include "shell/dialogs/OptionsDialog.h"
#include "support/TestCopy.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QMenu>
#include <QPlainTextEdit>
#include <QSet>
#include <QTabWidget>
#include <QTimer>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

const QString kLangTxt = QStringLiteral(VONNEL_BINARY_DIR "/Lang.txt");

QByteArray langTxt()
{
    QFile f(kLangTxt);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The names of Lang.txt's lines, as the lookup compares them.
QSet<QString> langTxtKeys()
{
    QSet<QString> keys;
    for (const QString& line : fromCp1252(langTxt()).split(QStringLiteral("\r\n"))) {
        const qsizetype eq = line.indexOf(QLatin1Char('='));
        if (eq > 0)
            keys.insert(line.left(eq).trimmed().toLower());
    }
    return keys;
}

// A key an ini line cannot carry: it would read as a section, a comment,
// or split at its '='. Such texts are shown as they are.
bool fitsALine(const QString& key)
{
    const QString k = key.trimmed();
    return !k.isEmpty() && !k.contains(QLatin1Char('=')) && !k.startsWith(QLatin1Char('[')) &&
           !k.startsWith(QLatin1Char(';')) && !k.contains(QLatin1Char('\r')) && !k.contains(QLatin1Char('\n'));
}

// Closes every modal dialog and pop-up menu as soon as it is up.
class Closer {
public:
    Closer()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [] {
            if (QWidget* popup = QApplication::activePopupWidget())
                popup->close();
            if (QWidget* modal = QApplication::activeModalWidget())
                modal->close();
        });
        m_timer.start(20);
    }

private:
    QTimer m_timer;
};

TEST(LangTxt, IsAnIniFileOfSortedUniqueKeys)
{
    const QByteArray data = langTxt();
    ASSERT_FALSE(data.isEmpty()) << qPrintable(kLangTxt);
    ASSERT_TRUE(data.startsWith("[Vonnel]\r\n"));
    ASSERT_TRUE(data.endsWith("=\r\n"));
    // Every line ends in CR LF: no lone CR or LF is left once they are cut.
    QStringList lines = fromCp1252(data).split(QStringLiteral("\r\n"));
    lines.removeLast();
    QStringList keys;
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const QString& line = lines[i];
        ASSERT_TRUE(line.endsWith(QLatin1Char('=')) && line.count(QLatin1Char('=')) == 1 &&
                    !line.contains(QLatin1Char('\r')) && !line.contains(QLatin1Char('\n')))
            << qPrintable(line);
        keys << line.chopped(1);
    }
    EXPECT_GT(keys.size(), 250);
    for (qsizetype i = 1; i < keys.size(); ++i)
        EXPECT_LT(keys[i - 1].toLower(), keys[i].toLower()) << qPrintable(keys[i]);
    // The menus' keys, the tables' and those only known at run time.
    for (const char* key : {"File", "Net View", "Increase Font Size", "Select a language:", "Rectangle",
                            "Caps Lock", "Away password", "Sending File", "Do you want to open?"})
        EXPECT_TRUE(keys.contains(QLatin1String(key))) << key;
}

TEST(LangTxt, HoldsEveryKeyTheWindowsAskFor)
{
    TestCopy copy(0, {{"Menu1", "Hello"}, {"Message1", "Hello there"}});
    ASSERT_TRUE(copy.start());
    FrmMain& frm = copy.frm();
    QSet<QString> asked;
    frm.ctx().translator().setLookupRecorder([&asked](const QString& key) { asked.insert(key); });

    // The main window: menus, toolbar, status bar, tray; the form load's
    // three routines; every menu opened.
    MainWindow w(frm);
    w.show();
    frm.SetMsgMnu();
    frm.TransMenu();
    frm.miniMenu();
    {
        Closer closer;
        for (QMenu* menu : w.findChildren<QMenu*>())
            menu->exec(QPoint(10, 10));
        w.showPopsFormat(w.serverPane(), QPoint(10, 10));
        w.showPopsFormat(w.clientPane(), QPoint(10, 10));

        // Every window and dialog.
        for (Form f : {Form::frmDraw, Form::frmURLHistory, Form::frmNetView, Form::frmNetResolve,
                       Form::frmAutoConnect, Form::frmAutoIP})
            w.showModeless(f);
        for (Form f : {Form::frmLogin, Form::frmProperty, Form::frmIPBlocking, Form::frmIPPermit,
                       Form::frmPopMsg})
            w.runModal(f);
        w.mnuSecurity_Click();
        w.mnuEncrypt_Click();
        w.action(Control::mnuAbout)->trigger();
    }
    PasswordStore& passwords = frm.encryption().passwords();
    FrmUnlock unlock(frm.ctx(), passwords);
    UnlockDialog unlockDialog(frm, unlock);
    for (const char* level : {"1st", "2nd"}) {
        passwords.passLevel = QLatin1String(level);
        FrmPassLock passLock(frm.ctx(), passwords);
        PassLockDialog passLockDialog(frm, passLock);
    }
    NetRangeDialog range(frm.ctx(), {"127.0.0.1"});
    {
        // Every tab shown, so the texts of the late-filled ones are asked too.
        OptionsDialog options(frm, &w);
        for (int i = 0; i < options.tabs()->count(); ++i)
            options.tabs()->setCurrentIndex(i);
    }
    PreviewWindow preview(frm.scrivet());
    {
        // Net View's status texts: a sweep by name, its count and time,
        // and a single ping without a reply.
        NetViewModel& view = frm.netTools().netView();
        copy.pinger().liveOnly = {"127.0.0.2"};
        view.viewRange(QStringLiteral("localhost"), 1, 3);
        EXPECT_TRUE(waitUntil([&] { return !view.sweeping(); }, 5000));
        view.setTxtPing(QStringLiteral("127.0.0.9"));
        view.cmdPing_Click();
        EXPECT_TRUE(waitUntil([&] { return !view.txtPing().endsWith(QLatin1String("...")); }, 3000));
        for (const char* key : {"Please wait....", "Resolving ", ": Online", "Updated: ", "No reply: "})
            EXPECT_TRUE(asked.contains(QLatin1String(key))) << key;
    }
    PictureBrowser browser(frm.ctx());
    browser.selectFile(QStringLiteral("vonnel.ini"));
    // The board's hints, one for each tool that has one.
    int x = 300;
    for (BoardTool t : {BoardTool::Draw, BoardTool::Erase, BoardTool::Capture, BoardTool::Image}) {
        frm.scrivet().selectTool(t);
        frm.scrivet().mouseMove(x += 15, 300, false);
    }
    for (Form f : {Form::frmDraw, Form::frmURLHistory, Form::frmNetView, Form::frmNetResolve,
                   Form::frmAutoConnect, Form::frmAutoIP})
        w.unload(f);
    frm.ctx().translator().setLookupRecorder({});

    EXPECT_GT(asked.size(), 150);
    const QSet<QString> listed = langTxtKeys();
    QStringList missing;
    for (const QString& key : asked)
        if (fitsALine(key) && !listed.contains(key.trimmed().toLower()))
            missing << key;
    missing.sort();
    EXPECT_TRUE(missing.isEmpty()) << "not in Lang.txt: " << qPrintable(missing.join(QStringLiteral(" | ")));
}

}  // namespace
