// Addresses in a session: the typing path hands its text to the scan, the
// scan sends each address once, and the other copy's URL History takes it.

#include "links/UrlHistory.h"
#include "shell/MainWindow.h"
#include "shell/TypingBinder.h"
#include "support/Session.h"
#include "wire/TypingPeer.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QListWidget>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

TEST(LinksInASession, TypedAddressGoesOutOnceAndPastedAddressesEach)
{
    TypingPeer t(Settings{{"Show URL History", "0"}});
    ASSERT_TRUE(t.started);
    t.typing().typeText("see www.example.org ");
    const QByteArray typed = t.wire(20);
    EXPECT_EQ(typed.count("<URL> www.example.org </URL>"), 1) << typed.constData();
    EXPECT_EQ(t.frm().urlHistory().lstURL(), QStringList{"www.example.org"});

    // Typing on does not send the address again: the scan starts behind it.
    t.typing().typeText("and more ");
    EXPECT_FALSE(t.wire().contains("<URL>"));

    t.copy.clipboard().setText("a http://one.example/x b ftp://two.example c mailto:me@three.example ");
    t.typing().mnuEditPaste_Click();
    const QByteArray pasted = t.wire(60);
    EXPECT_EQ(pasted.count("<URL> "), 3) << pasted.constData();
    EXPECT_TRUE(pasted.contains("<URL> http://one.example/x </URL>"));
    EXPECT_TRUE(pasted.contains("<URL> ftp://two.example </URL>"));
    EXPECT_TRUE(pasted.contains("<URL> mailto:me@three.example </URL>"));
}

TEST(LinksInASession, TheOtherCopysHistoryHoldsTheAddressAndNothingOpensUnasked)
{
    TestCopy callee(0, {{"Auto Accept Connection", "1"}, {"Show URL History", "0"}});
    TestCopy caller(0, {{"Show URL History", "0"}});
    ASSERT_TRUE(callee.start() && caller.start());
    ASSERT_TRUE(connectCopies(caller, callee));
    // The question to open the address is answered No.
    callee.prompter().addAnswers({"no"});
    caller.frm().typing().typeText("look at www.example.org now");
    ASSERT_TRUE(waitUntil([&] { return callee.frm().urlHistory().count() == 1; }, 3000));
    EXPECT_EQ(callee.frm().urlHistory().lstURL(), QStringList{"www.example.org"});
    EXPECT_TRUE(callee.desktop().opened.isEmpty());
}

TEST(LinksInASession, HistoryWindowShowsTheListsAndItsCount)
{
    TypingPeer t(Settings{{"Show URL History", "0"}}, false);
    ASSERT_TRUE(t.started);
    UrlHistory& h = t.frm().urlHistory();
    h.appendLoaded("www.example.org", "an example");
    h.appendLoaded("http://two.example", "second");
    MainWindow main(t.frm());
    main.showModeless(Form::frmURLHistory);
    UrlHistoryWindow* w = main.urlHistoryWindow();
    ASSERT_NE(w, nullptr);
    EXPECT_TRUE(main.isVisible(Form::frmURLHistory));
    ASSERT_EQ(w->lstURL()->count(), 2);
    EXPECT_EQ(w->lstDescript()->item(1)->text(), "second");
    h.appendRemote("www.third.example");
    EXPECT_EQ(w->lstURL()->count(), 3);
    w->lstURL()->setCurrentRow(0);
    EXPECT_EQ(h.selectedIndex(), 0);
    EXPECT_EQ(w->txtDescript()->text(), "an example");
}

}  // namespace

namespace {

// Types the text into the pane as a keyboard does: Shift held around the
// shifted characters, an event-loop turn after each key as between real
// key strokes.
void typeAsKeyboard(QWidget* pane, const QString& text)
{
    for (QChar ch : text) {
        int key = ch.toUpper().unicode();
        bool shifted = false;
        switch (ch.unicode()) {
        case ':': key = Qt::Key_Colon; shifted = true; break;
        case '@': key = Qt::Key_At; shifted = true; break;
        case '.': key = Qt::Key_Period; break;
        case '/': key = Qt::Key_Slash; break;
        case ' ': key = Qt::Key_Space; break;
        default: break;
        }
        const Qt::KeyboardModifiers mods = shifted ? Qt::ShiftModifier : Qt::NoModifier;
        auto send = [pane](QEvent::Type type, int k, Qt::KeyboardModifiers m, const QString& t) {
            QKeyEvent e(type, k, m, t);
            QCoreApplication::sendEvent(pane, &e);
        };
        if (shifted)
            send(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier, QString());
        send(QEvent::KeyPress, key, mods, QString(ch));
        send(QEvent::KeyRelease, key, mods, QString());
        if (shifted)
            send(QEvent::KeyRelease, Qt::Key_Shift, Qt::NoModifier, QString());
        pump(2);
    }
}

// A point's key is no Delete: typing on behind an address neither sends a
// deletion nor scans the address again.
TEST(LinksInASession, EachTypedAddressReachesTheOtherHistoryOnce)
{
    TestCopy callee(0, {{"Auto Accept Connection", "1"}, {"Show URL History", "0"}, {"Web Check", "0"}});
    TestCopy caller(0, {{"Show URL History", "0"}});
    ASSERT_TRUE(callee.start() && caller.start());
    ASSERT_TRUE(connectCopies(caller, callee));
    QPlainTextEdit pane;
    new TypingBinder(caller.frm(), &pane);
    typeAsKeyboard(&pane, "news at www.example.org and https://qt.io/docs then ftp://ftp.debian.org/debian or "
                          "mailto:ann@example.com end. ");
    const QStringList sent{"www.example.org", "https://qt.io/docs", "ftp://ftp.debian.org/debian",
                           "mailto:ann@example.com"};
    ASSERT_TRUE(waitUntil([&] { return callee.frm().urlHistory().count() >= sent.size(); }, 3000));
    pump(300);
    EXPECT_EQ(callee.frm().urlHistory().lstURL(), sent);
    EXPECT_EQ(caller.frm().urlHistory().lstURL(), sent);
    EXPECT_EQ(callee.frm().model().txtClient(0).text(), caller.frm().model().txtServer.text());
}

}  // namespace
