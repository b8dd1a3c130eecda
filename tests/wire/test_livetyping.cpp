#include "core/Cp1252.h"
#include "core/IniStore.h"
#include "wire/TypingPeer.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "access/Encryption.h"
#include "wire/Receiver.h"
#include "wire/LiveTyping.h"
#include "platform/Winsock.h"

#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

QByteArray key(char c, int n)
{
    return QByteArray("<KEY> ") + c + " <:KEY>" + QByteArray::number(n) + "</KEY>";
}

// A release with nothing pending: a character of code 0 and the length.
QByteArray emptyKey(int n)
{
    return QByteArray("<KEY> ") + '\0' + " <:KEY>" + QByteArray::number(n) + "</KEY>";
}

TEST(LiveTypingWire, SessionOfTypingReturnBackspacePasteAndClear)
{
    TypingPeer t;
    ASSERT_EQ(t.frm().session().winsock(0).State(), Winsock::sckConnected);
    FrmMain& f = t.frm();

    t.typing().typeText("hello world");
    QByteArray expected = kPresetSettings;
    int n = 0;
    for (char c : QByteArray("hello world")) {
        ++n;
        expected += c == ' ' ? QByteArray("^SPC6#SPC") : key(c, n);
    }
    EXPECT_EQ(t.wire(expected.size()), expected);

    // Return is handled at its press, before the break is in the pane; the
    // release then has nothing pending.
    t.typing().typeText("\r");
    expected = "^RETURN11#RETURN<SPK> hello world </SPK><MSG> hello world </MSG>" + emptyKey(13);
    EXPECT_EQ(t.wire(expected.size()), expected);
    EXPECT_EQ(f.model().txtServer.text(), "hello world\r\n");
    EXPECT_TRUE(f.model().txtTextMsg.text().endsWith(": hello world\r\n"));
    EXPECT_TRUE(f.model().txtTextMsg.text().startsWith(f.session().winsock(0).LocalHostName().toUpper() + ' '));

    // Backspace takes the whole line break.
    t.typing().typeText("\b");
    EXPECT_EQ(t.wire(7), "^BK11#BK");
    EXPECT_EQ(f.model().txtServer.text(), "hello world");

    t.copy.clipboard().setText("pasted");
    t.typing().mnuEditPaste_Click();
    EXPECT_EQ(t.wire(22), "<Paste> pasted</Paste>");
    EXPECT_EQ(f.model().txtServer.text(), "hello worldpasted");
    EXPECT_TRUE(f.session().PasteInProgress);

    t.typing().mnuClrScr_Click();
    EXPECT_EQ(t.wire(4), "^Clr");
    EXPECT_EQ(f.model().txtServer.text(), "");
    EXPECT_EQ(t.typing().localHistory, "hello worldpasted\r\n");
    EXPECT_EQ(t.typing().urlScanned, 0);
    EXPECT_EQ(t.typing().lineMark, 0);
}

TEST(LiveTypingWire, SpeechLineIsLeftOutWhenDisabled)
{
    TypingPeer t(Settings{{"Disable Auto TTS Signal", "1"}});
    t.typing().typeText("ab\r");
    // The voice stays at home too.
    const QByteArray expected =
        kPresetFormat + key('a', 1) + key('b', 2) + "^RETURN2#RETURN<MSG> ab </MSG>" + emptyKey(4);
    EXPECT_EQ(t.wire(expected.size()), expected);
}

TEST(LiveTypingWire, FirstKeyUnderEncryptionSendsTheKeyFrameOnce)
{
    TypingPeer t(Settings{{"Encrypted", "1"}});
    FrmMain& f = t.frm();
    f.encryption().encryptOn = true;
    f.encryption().sessionKey = "10:15 AM";
    t.typing().typeText("h");
    const QByteArray expected = "tt:=10:15 AM=:tt" + kPresetSettings + "<KEY> " +
                                toCp1252(f.encryption().encipher("h")) + " <:KEY>1</KEY>";
    EXPECT_EQ(t.wire(expected.size()), expected);
    EXPECT_TRUE(t.typing().keySent);

    // Emptied again, the pane does not bring the key frame or the format.
    t.typing().typeText("\b");
    t.wire(7);
    t.typing().typeText("x");
    EXPECT_EQ(t.wire(), "<KEY> " + toCp1252(f.encryption().encipher("x")) + " <:KEY>1</KEY>");
}

TEST(LiveTypingWire, FormatGoesOutAgainWheneverThePaneIsEmptyWithoutKeyFrame)
{
    TypingPeer t;
    t.typing().typeText("a\b");
    t.wire();
    t.typing().typeText("b");
    EXPECT_EQ(t.wire(), kPresetSettings + key('b', 1));
}

// Key events in the order of a keyboard where releases lag behind presses.
struct KeyStep {
    enum Kind { Press, Release } kind;
    int code;
    QString text;
};

struct BatchCase {
    const char* name;
    QList<KeyStep> steps;
    QByteArray wire;
    QString pane;
};

TEST(LiveTypingWire, KeysBeforeOneReleaseGoOutInOrder)
{
    using K = KeyStep;
    const QList<BatchCase> cases = {
        {"two letters, one block", {{K::Press, 'A', "a"}, {K::Press, 'B', "b"}, {K::Release, 'A', ""}, {K::Release, 'B', ""}},
         "<Paste> ab</Paste>", "ab"},
        {"held key, one frame with the full count", {{K::Press, 'X', "x"}, {K::Press, 'X', "x"}, {K::Press, 'X', "x"}, {K::Release, 'X', ""}},
         key('x', 3), "xxx"},
        {"letter then Return, handled at the Return's press",
         {{K::Press, 'A', "a"}, {K::Press, 13, "\r"}, {K::Release, 'A', ""}, {K::Release, 13, ""}},
         "<Paste> a</Paste>^RETURN1#RETURN", "a\r\n"},
        {"letter, Backspace, letter",
         {{K::Press, 'A', "a"}, {K::Press, 8, "\b"}, {K::Press, 'B', "b"}, {K::Release, 'B', ""}},
         "<Paste> a</Paste>^BK-2#BK<Paste> b</Paste>", "b"},
        {"space travels inside the block", {{K::Press, 'A', "a"}, {K::Press, 32, " "}, {K::Press, 'B', "b"}, {K::Release, 'B', ""}},
         "<Paste> a b</Paste>", "a b"},
        {"Esc is not gathered", {{K::Press, 'A', "a"}, {K::Press, 27, "\x1b"}, {K::Press, 'B', "b"}, {K::Release, 'B', ""}},
         "<Paste> ab</Paste>", "ab"},
    };
    for (const BatchCase& c : cases) {
        SCOPED_TRACE(c.name);
        TypingPeer t;
        t.typing().typeText("q\b");  // the format is out of the way
        t.wire(kPresetSettings.size() + 20);
        t.frm().model().txtServer.clear();
        for (const KeyStep& s : c.steps) {
            if (s.kind == KeyStep::Press)
                t.typing().keyboardPress(s.code, 0, s.text);
            else
                t.typing().keyboardRelease(s.code, 0);
        }
        // A key on the empty pane brings the format again.
        const QByteArray got = t.wire(c.wire.size()).replace(kPresetSettings, "");
        EXPECT_EQ(got, c.wire);
        EXPECT_EQ(t.frm().model().txtServer.text(), c.pane);
        EXPECT_EQ(t.typing().PressCount, 0);
        EXPECT_FALSE(t.typing().keyTyping);
    }
}

TEST(LiveTypingWire, SingleKeysDeleteTabAndEsc)
{
    TypingPeer t;
    FrmMain& f = t.frm();
    t.typing().typeText("\b");  // Backspace on the empty pane
    EXPECT_EQ(t.wire(), kPresetSettings + "^BK0#BK");

    t.typing().typeText("ab\r\ncd");
    t.wire(60);
    EXPECT_EQ(f.model().txtServer.text(), "ab\r\n\r\ncd");
    // Delete with the caret at the end removes nothing but still reports.
    t.typing().typeText("\x7f");
    EXPECT_EQ(t.wire(), "^BK8#BK");
    EXPECT_EQ(t.typing().lineMark, 5);  // 1-based position of the last CR LF
    EXPECT_EQ(t.typing().urlScanned, 5);

    t.typing().typeText("\t");
    EXPECT_EQ(t.wire(), key('\t', 9));

    // Esc enters nothing and nothing of it travels.
    int esc = 27;
    t.typing().txtServer_KeyPress(esc);
    EXPECT_EQ(t.typing().PressCount, 0);
    t.typing().controlKey(esc);
    EXPECT_EQ(f.model().txtServer.length(), 9);
    t.typing().txtServer_KeyUp(27, 0);
    EXPECT_FALSE(t.wire().contains('\x1b'));
}

TEST(LiveTypingWire, TypingInTheMiddleGoesInThereAndTheWholeTextFollows)
{
    TypingPeer t;
    FrmMain& f = t.frm();
    t.typing().followUpDelayMs = 10;
    t.typing().typeText("abc");
    t.wire();
    f.model().txtServer.setSelStart(1);
    t.typing().typeText("d");
    EXPECT_EQ(f.model().txtServer.text(), "adbc");
    EXPECT_EQ(f.model().txtServer.selStart(), 2);
    EXPECT_EQ(t.wire(), key('d', 4) + "^Clr" + kPresetSettings + "<Paste> adbc</Paste>");
}

TEST(LiveTypingWire, HeldKeyAtTheBoundWarnsAndSendsNothing)
{
    TypingPeer t;
    t.typing().typeText("q\b");
    t.wire(kPresetSettings.size() + 20);
    t.frm().model().txtServer.clear();
    for (int i = 0; i < LiveTyping::kPressedKeysBound; ++i)
        t.typing().keyboardPress('Z', 0, "z");
    t.typing().keyboardRelease('Z', 0);
    EXPECT_EQ(t.copy.prompter().count("limit of sending the same character: 4900"), 1);
    EXPECT_EQ(t.frm().model().txtServer.length(), LiveTyping::kPressedKeysBound);
    EXPECT_EQ(t.wire().replace(kPresetSettings, ""), "");
}

TEST(LiveTypingWire, DoubleByteRules)
{
    const QString han(QChar(0x4E2D));
    {
        SCOPED_TRACE("input method text, encryption off: sent as a block");
        TypingPeer t;
        t.typing().typeText("a");
        t.wire();
        t.typing().controlInput(han);
        EXPECT_EQ(t.wire(), "<Paste> ?</Paste>");  // the code page has no such character
        EXPECT_TRUE(LiveTyping::isDoubleByte(han[0]));
        EXPECT_FALSE(LiveTyping::isDoubleByte(QChar(0x20AC)));  // the euro sign is one byte
        EXPECT_FALSE(LiveTyping::isDoubleByte(QChar(0xE9)));
    }
    {
        SCOPED_TRACE("typed, encryption on: refused once and cut off");
        TypingPeer t(Settings{{"Encrypted", "1"}});
        t.frm().encryption().sessionKey = "9:00 PM";
        t.typing().typeText("a");
        t.typing().typeText(han);
        EXPECT_EQ(t.frm().model().txtServer.text(), "a");
        EXPECT_EQ(t.copy.prompter().count("Double bytes characters sets"), 1);
        t.typing().typeText(han);
        // The refusal is shown once; what still reaches the cipher is its own failure.
        EXPECT_EQ(t.copy.prompter().count("Encryption Error: generated by"), 1);
        EXPECT_EQ(t.frm().model().txtServer.text(), "a");
    }
    {
        SCOPED_TRACE("typed before the end, encryption on: refused, nothing else is cut");
        TypingPeer t(Settings{{"Encrypted", "1"}});
        t.frm().encryption().sessionKey = "9:00 PM";
        t.typing().typeText("abc");
        t.frm().model().txtServer.setSelStart(1);
        t.typing().controlInput(han);
        EXPECT_EQ(t.frm().model().txtServer.text(), "abc");
        EXPECT_EQ(t.copy.prompter().count("Double bytes characters"), 1);
    }
    {
        SCOPED_TRACE("pasted, encryption on: the paste stops");
        TypingPeer t(Settings{{"Encrypted", "1"}});
        t.frm().encryption().encryptOn = true;
        t.copy.clipboard().setText("ab" + han);
        t.typing().mnuEditPaste_Click();
        t.typing().mnuEditPaste_Click();
        EXPECT_EQ(t.copy.prompter().count("Please disconnect, turn off encryption and reconnect again!"), 1);
        EXPECT_EQ(t.frm().model().txtServer.text(), "");
        EXPECT_EQ(t.wire(), "");
    }
}

TEST(LiveTypingWire, TextLimitQuestion)
{
    for (const char* answer : {"no", "yes"}) {
        SCOPED_TRACE(answer);
        TypingPeer t;
        t.frm().receiver().textLimit = 11;
        t.typing().typeText("abcdefghij");
        t.wire();
        t.copy.clipboard().setText("kept");
        t.copy.prompter().addAnswers({answer});
        t.typing().typeText("k");
        EXPECT_TRUE(t.copy.prompter().asked("You are approaching the limit of this area."));
        if (QByteArray(answer) == "no") {
            EXPECT_EQ(t.frm().model().txtServer.text(), "abcdefghijk");
            EXPECT_EQ(t.wire(), key('k', 11));
        } else {
            // The tail comes back through a paste, the key follows it.
            EXPECT_EQ(t.frm().model().txtServer.text(), "abcdefghij...k");
            EXPECT_EQ(t.wire(), "^Clr<Paste> abcdefghij...</Paste>" + key('k', 14));
            EXPECT_EQ(t.copy.clipboard().text(), "kept");
        }
    }
}

}  // namespace
