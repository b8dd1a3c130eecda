// Edits the typing frames cannot carry go out as the frames the rules make
// of their keys, then, once the edits pause, as the whole text: "^Clr", the
// format and one "<Paste> " frame, the same as the answer to "^reFresh".

#include "core/Cp1252.h"
#include "core/IniStore.h"
#include "wire/Receiver.h"
#include "wire/TypingPeer.h"
#include "wire/LiveTyping.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

QByteArray wholeText(const QByteArray& text)
{
    return "^Clr" + kPresetSettings + "<Paste> " + text + "</Paste>";
}

struct EditCase {
    const char* name;
    std::function<void(TypingPeer&)> edit;
    QByteArray frames;  // what the rules send for the key itself
    QString pane;
};

TEST(FollowUp, EditsBeforeTheEndAreFollowedByTheWholeText)
{
    const QList<EditCase> cases = {
        {"Backspace in the middle",
         [](TypingPeer& p) {
             p.frm().model().txtServer.setSelStart(5);
             p.typing().typeText("\b");
         },
         "^BK10#BK", "hell world"},
        {"Delete at the caret",
         [](TypingPeer& p) {
             p.frm().model().txtServer.setSelStart(0);
             p.typing().typeText("\x7f");
         },
         "^BK10#BK", "ello world"},
        {"Delete on a selection",
         [](TypingPeer& p) {
             p.frm().model().txtServer.setSelection(5, 3);
             p.typing().typeText("\x7f");
         },
         "^BK8#BK", "hellorld"},
        {"a selection typed over",
         [](TypingPeer& p) {
             p.frm().model().txtServer.setSelection(6, 5);
             p.typing().typeText("X");
         },
         "<KEY> X <:KEY>7</KEY>", "hello X"},
        {"a paste over a selection",
         [](TypingPeer& p) {
             p.frm().model().txtServer.setSelection(0, 5);
             p.copy.clipboard().setText("bye");
             p.typing().mnuEditPaste_Click();
         },
         "<Paste> bye</Paste>", "bye world"},
        {"a paste over a selection of the same text",
         [](TypingPeer& p) {
             p.frm().model().txtServer.setSelection(6, 5);
             p.copy.clipboard().setText("world");
             p.typing().mnuEditPaste_Click();
         },
         "<Paste> world</Paste>", "hello world"},
        {"a burst with a deletion between letters",
         [](TypingPeer& p) {
             LiveTyping& t = p.typing();
             t.keyboardPress('A', 0, "a");
             t.keyboardPress(8, 0, "\b");
             t.keyboardPress('B', 0, "b");
             t.keyboardRelease('B', 0);
         },
         "<Paste> a</Paste>^BK9#BK<Paste> b</Paste>", "hello worldb"},
    };
    for (const EditCase& c : cases) {
        SCOPED_TRACE(c.name);
        TypingPeer p;
        p.typing().followUpDelayMs = 20;
        p.typing().typeText("hello world");
        p.wire();
        c.edit(p);
        EXPECT_EQ(p.frm().model().txtServer.text(), c.pane);
        const QByteArray expected = c.frames + wholeText(toCp1252(c.pane));
        EXPECT_EQ(p.wire(expected.size()), expected);
        EXPECT_EQ(p.typing().followUpsSent, 1);
        // Typing at the end is told by its own frame as before.
        p.frm().model().txtServer.caretToEnd();
        p.typing().typeText("!");
        EXPECT_EQ(p.wire(), "<KEY> ! <:KEY>" + QByteArray::number(c.pane.size() + 1) + "</KEY>");
    }
}

TEST(FollowUp, ARunOfEditsSendsOneResendWhenTheyPause)
{
    TypingPeer p;
    ASSERT_EQ(p.typing().followUpDelayMs, 150);
    p.typing().typeText("one two three four");
    p.wire();
    QElapsedTimer t;
    t.start();
    qint64 lastEdit = 0;
    for (int i = 0; i < 5; ++i) {
        p.frm().model().txtServer.setSelStart(3);
        p.typing().typeText("\b");
        lastEdit = t.elapsed();
        if (i < 4)
            pump(40);  // a user's pace: each edit comes before the wait is over
    }
    EXPECT_EQ(p.frm().model().txtServer.text(), "on three four");
    QByteArray got = readAtLeast(p.peer, 5 * 7 + 4, 3000);
    while (!got.endsWith("</Paste>") && t.elapsed() < 3000) {
        pump(5);
        got += p.peer.readAll();
    }
    const qint64 arrived = t.elapsed();
    got += readFor(p.peer, 300);
    EXPECT_EQ(got.count("^Clr"), 1) << got.constData();
    EXPECT_TRUE(got.endsWith(wholeText("on three four"))) << got.constData();
    // A coarse timer may fire up to 5 % early.
    EXPECT_GE(arrived - lastEdit, 140) << "the resend waits for the pause";
    EXPECT_EQ(p.typing().followUpsSent, 1);
}

TEST(FollowUp, AnAnswerToRefreshTakesThePlaceOfThePlannedResend)
{
    TypingPeer p;
    p.typing().followUpDelayMs = 100;
    p.typing().typeText("abc");
    p.wire();
    p.frm().model().txtServer.setSelStart(1);
    p.typing().typeText("\b");
    EXPECT_TRUE(p.typing().followUpPending());
    p.peer.write("^reFresh");
    const QByteArray got = p.wire(7 + 60);
    EXPECT_EQ(got, "^BK2#BK" + wholeText("bc"));
    pump(200);
    EXPECT_TRUE(p.peer.readAll().isEmpty());
    EXPECT_EQ(p.typing().followUpsSent, 0);
}

TEST(FollowUp, NothingFollowsWithoutASession)
{
    TypingPeer p({}, false);
    p.typing().typeText("abc");
    p.frm().model().txtServer.setSelStart(1);
    p.typing().typeText("\b");
    EXPECT_EQ(p.frm().model().txtServer.text(), "bc");
    EXPECT_FALSE(p.typing().followUpPending());
}

}  // namespace
