#include "shell/TypingBinder.h"
#include "wire/TypingPeer.h"
#include "wire/LiveTyping.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QThread>
#include <QPlainTextEdit>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

void press(QWidget* w, int key, const QString& text, bool repeat = false,
           Qt::KeyboardModifiers mods = Qt::NoModifier)
{
    QKeyEvent e(QEvent::KeyPress, key, mods, text, repeat);
    QCoreApplication::sendEvent(w, &e);
}

void release(QWidget* w, int key, bool repeat = false, Qt::KeyboardModifiers mods = Qt::NoModifier)
{
    QKeyEvent e(QEvent::KeyRelease, key, mods, QString(), repeat);
    QCoreApplication::sendEvent(w, &e);
}

void tap(QWidget* w, int key, const QString& text)
{
    press(w, key, text);
    release(w, key);
}

TEST(TypingBinder, KeyEventsDriveTheModelAndTheWidgetShowsIt)
{
    TypingPeer t;
    QPlainTextEdit server, client;
    new TypingBinder(t.frm(), &server, &client);
    tap(&server, Qt::Key_H, "h");
    tap(&server, Qt::Key_I, "i");
    EXPECT_EQ(t.frm().model().txtServer.text(), "hi");
    EXPECT_EQ(server.toPlainText(), "hi");
    tap(&server, Qt::Key_Return, "\r");
    EXPECT_EQ(t.frm().model().txtServer.text(), "hi\r\n");
    EXPECT_EQ(server.toPlainText(), "hi\n");
    tap(&server, Qt::Key_Backspace, "\b");
    EXPECT_EQ(server.toPlainText(), "hi");

    const QByteArray keyFrames = "<KEY> h <:KEY>1</KEY><KEY> i <:KEY>2</KEY>";
    const QByteArray got = t.wire();
    EXPECT_TRUE(got.startsWith(kPresetSettings + keyFrames)) << got.toStdString();
    EXPECT_TRUE(got.endsWith("^BK2#BK"));
}

TEST(TypingBinder, HeldKeyRepeatsPressesAndReleasesOnce)
{
    TypingPeer t;
    QPlainTextEdit server;
    new TypingBinder(t.frm(), &server);
    t.frm().model().txtServer.setText("ab");
    press(&server, Qt::Key_X, "x");
    release(&server, Qt::Key_X, true);
    press(&server, Qt::Key_X, "x", true);
    release(&server, Qt::Key_X, true);
    press(&server, Qt::Key_X, "x", true);
    release(&server, Qt::Key_X);
    EXPECT_EQ(t.frm().model().txtServer.text(), "abxxx");
    EXPECT_EQ(t.wire(), "<KEY> x <:KEY>5</KEY>");
}

// A key event as the X server gives it: the key's scan code and the time.
void xkey(QWidget* w, QEvent::Type type, int key, quint32 scan, const QString& text,
          quint64 time, bool repeat = false)
{
    QKeyEvent e(type, key, Qt::NoModifier, scan, 0, 0,
                type == QEvent::KeyPress ? text : QString(), repeat);
    e.setTimestamp(time);
    QCoreApplication::sendEvent(w, &e);
}

TEST(TypingBinder, AKeyThatWentDownElsewhereTypesNothingHere)
{
    TypingPeer t;
    QPlainTextEdit server;
    new TypingBinder(t.frm(), &server);
    const int ret = Qt::Key_Return;
    const quint32 retScan = 36, xScan = 53, qScan = 24;
    // The Return that answered the caller's question went down in the box,
    // which closed at once; held on, the key repeats into the pane as
    // release and press at one instant, told as repeats or, where the press
    // had not come in yet, not.
    for (quint64 time : {700, 740, 780}) {
        const bool told = time != 740;
        xkey(&server, QEvent::KeyRelease, ret, retScan, {}, time, told);
        xkey(&server, QEvent::KeyPress, ret, retScan, "\r", time, told);
    }
    xkey(&server, QEvent::KeyRelease, ret, retScan, {}, 830);
    EXPECT_EQ(t.frm().model().txtServer.text(), "");
    EXPECT_EQ(t.wire(), QByteArray()) << "neither its repeats nor its release go out";

    // Keys that go down here type, a Return included.
    xkey(&server, QEvent::KeyPress, Qt::Key_A, 38, "a", 900);
    xkey(&server, QEvent::KeyRelease, Qt::Key_A, 38, {}, 960);
    xkey(&server, QEvent::KeyPress, ret, retScan, "\r", 1000);
    xkey(&server, QEvent::KeyRelease, ret, retScan, {}, 1060);
    // A key held here repeats, also where the repeat was not told as one.
    xkey(&server, QEvent::KeyPress, Qt::Key_X, xScan, "x", 1100);
    xkey(&server, QEvent::KeyRelease, Qt::Key_X, xScan, {}, 1760);
    xkey(&server, QEvent::KeyPress, Qt::Key_X, xScan, "x", 1760);
    xkey(&server, QEvent::KeyRelease, Qt::Key_X, xScan, {}, 1800, true);
    xkey(&server, QEvent::KeyPress, Qt::Key_X, xScan, "x", 1800, true);
    xkey(&server, QEvent::KeyRelease, Qt::Key_X, xScan, {}, 1850);
    EXPECT_EQ(t.frm().model().txtServer.text(), "a\r\nxxx");

    // A key down when the focus left and came back went down elsewhere.
    xkey(&server, QEvent::KeyPress, Qt::Key_Q, qScan, "q", 2000);
    QFocusEvent in(QEvent::FocusIn);
    QCoreApplication::sendEvent(&server, &in);
    xkey(&server, QEvent::KeyRelease, Qt::Key_Q, qScan, {}, 2700);
    xkey(&server, QEvent::KeyPress, Qt::Key_Q, qScan, "q", 2700);
    xkey(&server, QEvent::KeyRelease, Qt::Key_Q, qScan, {}, 2760);
    EXPECT_EQ(t.frm().model().txtServer.text(), "a\r\nxxxq");

    // With a screen reader's bridge on, key events come as copies with no
    // key code and no time: a repeat of a key held elsewhere is known by
    // its press arriving together with the release.
    QCoreApplication::sendEvent(&server, &in);
    // First the press that answered the box, handed over late as the pane
    // takes the focus; then the repeats.
    xkey(&server, QEvent::KeyPress, ret, 0, "\r", 0);
    for (int i = 0; i < 3; ++i) {
        xkey(&server, QEvent::KeyRelease, ret, 0, {}, 0);
        xkey(&server, QEvent::KeyPress, ret, 0, "\r", 0);
    }
    xkey(&server, QEvent::KeyRelease, ret, 0, {}, 0);
    EXPECT_EQ(t.frm().model().txtServer.text(), "a\r\nxxxq") << "no stray line break";
    // A key pressed here afterwards types, copied or not.
    QThread::msleep(150);
    xkey(&server, QEvent::KeyPress, ret, 0, "\r", 0);
    xkey(&server, QEvent::KeyRelease, ret, 0, {}, 0);
    xkey(&server, QEvent::KeyPress, Qt::Key_Z, 0, "z", 0);
    xkey(&server, QEvent::KeyRelease, Qt::Key_Z, 0, {}, 0);
    EXPECT_EQ(t.frm().model().txtServer.text(), "a\r\nxxxq\r\nz");
}

TEST(TypingBinder, DeleteTakesTheWidgetsSelectionFromThePane)
{
    TypingPeer t({}, false);
    QPlainTextEdit server;
    new TypingBinder(t.frm(), &server);
    t.frm().model().txtServer.setText("ab\r\ncd\r\nef");
    QTextCursor c = server.textCursor();
    c.setPosition(3);  // "c" in the widget's "ab\ncd\nef"
    c.setPosition(7, QTextCursor::KeepAnchor);
    server.setTextCursor(c);
    tap(&server, Qt::Key_Delete, "\x7f");
    EXPECT_EQ(t.frm().model().txtServer.text(), "ab\r\nf");
    EXPECT_EQ(server.toPlainText(), "ab\nf");
}

TEST(TypingBinder, TheWidgetsCaretIsWhereKeysWorkAndStaysThere)
{
    TypingPeer t({}, false);
    QPlainTextEdit server;
    new TypingBinder(t.frm(), &server);
    t.frm().model().txtServer.setText("ab\r\ncd");
    EXPECT_EQ(server.textCursor().position(), 5) << "the caret shows at the end";
    auto caretAt = [&](int at, int to = -1) {
        QTextCursor c = server.textCursor();
        c.setPosition(at);
        if (to >= 0)
            c.setPosition(to, QTextCursor::KeepAnchor);
        server.setTextCursor(c);
    };
    caretAt(1);  // between a and b
    tap(&server, Qt::Key_X, "x");
    EXPECT_EQ(t.frm().model().txtServer.text(), "axb\r\ncd");
    EXPECT_EQ(server.textCursor().position(), 2);
    caretAt(4);  // the line break counts as one in the widget
    tap(&server, Qt::Key_Backspace, "\b");
    EXPECT_EQ(t.frm().model().txtServer.text(), "axbcd");
    EXPECT_EQ(server.toPlainText(), "axbcd");
    EXPECT_EQ(server.textCursor().position(), 3);
    caretAt(0);
    tap(&server, Qt::Key_Delete, QString());
    EXPECT_EQ(t.frm().model().txtServer.text(), "xbcd");
    caretAt(1, 3);  // "bc" typed over
    tap(&server, Qt::Key_Z, "z");
    EXPECT_EQ(t.frm().model().txtServer.text(), "xzd");
    EXPECT_EQ(TypingBinder::widgetPosition("ab\r\ncd", 6), 5);
}

TEST(TypingBinder, LookOfBothPanesFollowsTheModel)
{
    TypingPeer t({}, false);
    QPlainTextEdit server, client;
    new TypingBinder(t.frm(), &server, &client);
    EXPECT_EQ(server.font().family(), t.frm().typing().serverFormat.fontName());
    t.frm().typing().serverFormat.setBold(true);
    t.frm().typing().serverFormat.setBackColor(255);  // red
    EXPECT_TRUE(server.font().bold());
    EXPECT_EQ(server.palette().color(QPalette::Base), QColor(255, 0, 0));
    t.frm().typing().receiveFormat("^ffSerif^fbFalse^fiTrue^fs14^fc65280^bc0^>");
    EXPECT_TRUE(client.font().italic());
    EXPECT_EQ(client.font().pointSizeF(), 14);
    EXPECT_EQ(client.palette().color(QPalette::Text), QColor(0, 255, 0));
}

TEST(TypingBinder, PanePositionCountsLineBreaksAsTwo)
{
    const QString text = "ab\r\ncd";
    const QList<QPair<int, int>> cases = {{0, 0}, {2, 2}, {3, 4}, {5, 6}, {9, 6}};
    for (const auto& c : cases)
        EXPECT_EQ(TypingBinder::panePosition(text, c.first), c.second) << c.first;
}

}  // namespace
