#include "core/Cp1252.h"
#include "core/IniStore.h"
#include "wire/TypingPeer.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "access/Encryption.h"
#include "wire/LiveTyping.h"

#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

struct Look {
    QString font;
    double size;
    bool bold, italic;
    qint64 fore, back;
};

void apply(PaneFormat& p, const Look& l)
{
    p.setFontName(l.font);
    p.setSize(l.size);
    p.setBold(l.bold);
    p.setItalic(l.italic);
    p.setForeColor(l.fore);
    p.setBackColor(l.back);
}

void expectLook(const PaneFormat& p, const Look& l)
{
    EXPECT_EQ(p.fontName(), l.font);
    EXPECT_EQ(p.size(), l.size);
    EXPECT_EQ(p.bold(), l.bold);
    EXPECT_EQ(p.italic(), l.italic);
    EXPECT_EQ(p.foreColor(), l.fore);
    EXPECT_EQ(p.backColor(), l.back);
}

const QList<Look> kLooks = {
    {"Arial", 10, false, false, 0, 16777215},
    {"Times New Roman", 10.5, true, false, 255, 0},
    {"DejaVu Sans Mono", 12.25, false, true, 16711680, 65280},
    {"Lucida Grand\u00e9", 8, true, true, 0, 0},
    {"Courier", 72, false, false, 8421504, 12632256},
};

TEST(FormatExchange, MessageReadsBackToTheSameLook)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    LiveTyping& t = copy.frm().typing();
    EXPECT_EQ(t.formatMessage(), QString::fromLatin1(kPresetFormat));
    for (const Look& l : kLooks) {
        SCOPED_TRACE(l.font.toStdString());
        apply(t.serverFormat, l);
        t.clientFormat.setFontName("Other");
        t.clientFormat.setSize(30);
        t.clientFormat.setForeColor(123);
        t.receiveFormat(t.formatMessage());
        expectLook(t.clientFormat, l);
    }
    apply(t.serverFormat, kLooks[1]);
    EXPECT_EQ(t.formatMessage(), "^ffTimes New Roman^fbTrue^fiFalse^fs10.5^fc255^bc0^>");
}

TEST(FormatExchange, BetweenTwoCopiesOverTheWire)
{
    TestCopy a, b;
    ASSERT_TRUE(a.start());
    ASSERT_TRUE(b.start());
    ASSERT_TRUE(connectCopies(a, b));
    const Look look = kLooks[3];
    apply(a.frm().typing().serverFormat, look);
    b.frm().session().winsock(0).GetData();
    a.frm().typing().sentSetting();
    // Where the receive path takes the message itself the pane changes on
    // its own; otherwise the bytes wait on the socket.
    QByteArray bytes;
    waitUntil([&] {
        bytes += b.frm().session().winsock(0).GetData();
        return bytes.contains("^>") || b.frm().typing().clientFormat.fontName() == look.font;
    }, 3000);
    if (!bytes.isEmpty()) {
        const QString text = fromCp1252(bytes);
        const qsizetype from = text.indexOf("^ff");
        ASSERT_GE(from, 0);
        b.frm().typing().receiveFormat(text.mid(from, text.indexOf("^>", from) + 2 - from));
    }
    expectLook(b.frm().typing().clientFormat, look);
}

TEST(FormatExchange, ASizeWrittenDifferentlyLosesTheColours)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    LiveTyping& t = copy.frm().typing();
    apply(t.clientFormat, kLooks[0]);
    t.receiveFormat("^ffArial^fbTrue^fiFalse^fs10.0^fc255^bc0^>");
    EXPECT_TRUE(t.clientFormat.bold());
    EXPECT_EQ(t.clientFormat.size(), 10);
    EXPECT_EQ(t.clientFormat.foreColor(), 0);
    EXPECT_EQ(t.clientFormat.backColor(), 16777215);
}

TEST(FormatExchange, OverrideKeepsOwnLookAndAsksForTheOtherWhenReleased)
{
    TypingPeer t;
    LiveTyping& typing = t.typing();
    apply(typing.serverFormat, kLooks[2]);
    typing.mnuOverride_Click();
    EXPECT_TRUE(t.frm().model().controls.checked(Control::mnuOverride));
    EXPECT_TRUE(t.frm().model().controls.checked(Control::Toolbar1_13));
    expectLook(typing.clientFormat, kLooks[2]);
    typing.receiveFormat("^ffArial^fbFalse^fiFalse^fs10^fc0^bc16777215^>");
    expectLook(typing.clientFormat, kLooks[2]);
    EXPECT_EQ(t.wire(), "");
    typing.mnuOverride_Click();
    EXPECT_FALSE(t.frm().model().controls.checked(Control::mnuOverride));
    EXPECT_EQ(t.wire(), "^reFresh");
}

TEST(FormatExchange, ToolbarChangesLookWritesItBackAndSendsIt)
{
    TypingPeer t(Settings{{"Permanent Toolbar Settings", "1"}});
    LiveTyping& typing = t.typing();
    typing.controlTriggered(Control::Toolbar1_7);
    EXPECT_EQ(t.copy.get("Font Bold"), "True");
    EXPECT_EQ(t.wire(), "^ffDejaVu Sans^fbTrue^fiFalse^fs11^fc0^bc16777215^>");

    typing.serverFormat.setSize(LiveTyping::kMaxFontSize);
    typing.controlTriggered(Control::Toolbar1_9);
    EXPECT_EQ(typing.serverFormat.size(), LiveTyping::kMaxFontSize);
    typing.serverFormat.setSize(6.5);
    typing.controlTriggered(Control::Toolbar1_10);
    typing.controlTriggered(Control::Toolbar1_10);
    EXPECT_EQ(typing.serverFormat.size(), LiveTyping::kMinFontSize);
    EXPECT_EQ(t.copy.get("Font Size"), "6");

    typing.chooseColour = [](qint64, const QString&) { return std::optional<qint64>(255); };
    typing.controlTriggered(Control::Toolbar1_11);
    EXPECT_EQ(typing.serverFormat.foreColor(), 255);
    EXPECT_EQ(t.copy.get("Font Colour"), "255");
    typing.chooseColour = [](qint64, const QString&) { return std::optional<qint64>(); };
    typing.controlTriggered(Control::Toolbar1_12);
    EXPECT_EQ(typing.serverFormat.backColor(), 16777215);
    EXPECT_TRUE(t.wire().endsWith("^fc255^bc16777215^>"));

    // A new copy starts with the look that was written.
    TestCopy again(0, {{"Font Bold", "True"}, {"Font Size", "6"}, {"Font Colour", "255"}});
    ASSERT_TRUE(again.start());
    EXPECT_TRUE(again.frm().typing().serverFormat.bold());
    EXPECT_EQ(again.frm().typing().serverFormat.size(), 6);
    EXPECT_EQ(again.frm().typing().formatMessage(), "^ffDejaVu Sans^fbTrue^fiFalse^fs6^fc255^bc16777215^>");
}

// "Keep the toolbar's font changes" unticked: every button still changes
// the look and sends it, and the settings keep what they held.
TEST(FormatExchange, ToolbarChangesAreNotKeptUnlessAsked)
{
    TypingPeer t(Settings{{"Permanent Toolbar Settings", "0"}, {"Font Size", "11"}});
    LiveTyping& typing = t.typing();
    EXPECT_FALSE(typing.permanentToolbar());
    const QStringList keys = {"Font", "Font Size", "Font Bold", "Font Italic", "Font Colour",
                              "Background Colour"};
    QStringList before;
    for (const QString& k : keys)
        before << t.copy.get(k);
    typing.chooseColour = [](qint64, const QString&) { return std::optional<qint64>(255); };
    for (Control c : {Control::Toolbar1_7, Control::Toolbar1_8, Control::Toolbar1_9,
                      Control::Toolbar1_11, Control::Toolbar1_12})
        typing.controlTriggered(c);
    EXPECT_TRUE(typing.serverFormat.bold());
    EXPECT_TRUE(typing.serverFormat.italic());
    EXPECT_EQ(typing.serverFormat.size(), 12);
    EXPECT_TRUE(t.wire().endsWith("^ffDejaVu Sans^fbTrue^fiTrue^fs12^fc255^bc255^>"));
    QStringList after;
    for (const QString& k : keys)
        after << t.copy.get(k);
    EXPECT_EQ(after, before);

    // Ticked on the options page and applied: the next click is kept.
    t.copy.set("Permanent Toolbar Settings", "1");
    t.frm().afterOptionsApplied();
    typing.controlTriggered(Control::Toolbar1_10);
    EXPECT_EQ(t.copy.get("Font Size"), "11");
    EXPECT_EQ(t.copy.get("Font Bold"), "True");
}

TEST(FormatExchange, TextHelpers)
{
    struct Case { QString text, token, removed, left; };
    const QList<Case> cases = {
        {"abcabc", "b", "acabc", "a"},
        {"abc", "abc", "", ""},
        {"abc", "", "abc", "abc"},
        {"ab", "abc", "ab", "ab"},
        {"abc", "x", "abc", "abc"},
        {"", "x", "", ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(LiveTyping::removeFirst(c.text, c.token), c.removed) << c.text.toStdString();
        EXPECT_EQ(LiveTyping::leftOf(c.text, c.token), c.left) << c.text.toStdString();
    }
}

TEST(Paste, LimitsAreCorrectedAndWrittenBack)
{
    TypingPeer t(Settings{{"Paste Text Limit", "100"}, {"Paste Encrypted Text Limit", "20000"}});
    t.copy.clipboard().setText("x");
    t.typing().mnuEditPaste_Click();
    EXPECT_EQ(t.copy.get("Paste Text Limit"), "2000");
    EXPECT_EQ(t.copy.get("Paste Encrypted Text Limit"), "10000");
    t.copy.set("Paste Encrypted Text Limit", "10");
    t.copy.set("Paste Text Limit", "90000");
    t.typing().mnuEditPaste_Click();
    EXPECT_EQ(t.copy.get("Paste Encrypted Text Limit"), "500");
    EXPECT_EQ(t.copy.get("Paste Text Limit"), "64000");  // not above the text limit
}

TEST(Paste, ExactlyTheLimitGoesOutOneMoreIsRefused)
{
    TypingPeer t(Settings{{"Paste Text Limit", "2000"}});
    const QString atLimit(2000, 'a');
    t.copy.clipboard().setText(atLimit);
    t.typing().mnuEditPaste_Click();
    EXPECT_EQ(t.wire(2017), "<Paste> " + atLimit.toLatin1() + "</Paste>");
    EXPECT_EQ(t.frm().model().txtServer.text(), atLimit);

    t.copy.clipboard().setText(QString(2001, 'b'));
    t.typing().mnuEditPaste_Click();
    EXPECT_TRUE(t.copy.prompter().asked("You are senting data over the limit of this program. [Encryption Off]"));
    EXPECT_TRUE(t.copy.prompter().asked("Data: 2001\tMax.: 2000"));
    EXPECT_EQ(t.frm().model().txtServer.text(), atLimit);
    EXPECT_EQ(t.wire(), "");
}

TEST(Paste, UnconnectedPasteOfAnyLengthOnlyEntersThePane)
{
    TypingPeer t({}, false);
    QStringList scanned;
    t.typing().scanLocalText = [&](const QString& s) { scanned << s; };
    const QString big(9000, 'z');
    t.copy.clipboard().setText(big);
    t.typing().mnuEditPaste_Click();
    EXPECT_EQ(t.frm().model().txtServer.text(), big);
    EXPECT_EQ(scanned, QStringList{big});
    EXPECT_FALSE(t.copy.prompter().asked("over the limit"));
    EXPECT_FALSE(t.frm().session().PasteInProgress);
}

TEST(Paste, EncryptedLimitCountsFullForPasteAndAtMost2500ForRefresh)
{
    TypingPeer t(Settings{{"Paste Encrypted Text Limit", "5000"}, {"Encrypted", "1"}});
    FrmMain& f = t.frm();
    f.encryption().encryptOn = true;
    f.encryption().sessionKey = "1:00 PM";
    const QString text(4000, 'e');
    t.copy.clipboard().setText(text);
    t.typing().mnuEditPaste_Click();
    const QByteArray expected = "<Paste> " + toCp1252(f.encryption().encipher(text)) + "</Paste>";
    EXPECT_EQ(t.wire(expected.size()), expected);
    EXPECT_FALSE(t.copy.prompter().asked("over the limit"));

    f.encryption().remoteEncrypted = true;
    f.model().txtClient(f.session().sIdx).setText(QString(3000, 'r'));
    t.typing().mnuRefresh_Click();
    EXPECT_EQ(f.model().txtClient(f.session().sIdx).length(), 3000);
    EXPECT_EQ(t.wire(), "");
    EXPECT_FALSE(f.model().controls.enabled(Control::mnuRefresh));  // until the next arrival

    f.model().txtClient(f.session().sIdx).setText(QString(2400, 'r'));
    t.typing().mnuRefresh_Click();
    EXPECT_EQ(f.model().txtClient(f.session().sIdx).length(), 0);
    EXPECT_EQ(t.wire(), "^reFresh");
    EXPECT_TRUE(t.typing().refreshAwaited);
}

TEST(Paste, RefreshAndClearWithoutConnection)
{
    TypingPeer t({}, false);
    FrmMain& f = t.frm();
    int updates = 0;
    t.typing().localAddressUpdate = [&] { ++updates; };
    f.model().txtClient(0).setText("remote");
    f.model().txtServer.setText("local");
    t.typing().mnuRefresh_Click();
    EXPECT_EQ(updates, 1);
    EXPECT_TRUE(f.model().controls.enabled(Control::mnuRefresh));
    EXPECT_TRUE(f.model().controls.enabled(Control::Toolbar1_3));
    EXPECT_EQ(f.model().txtClient(0).text(), "remote");
    t.typing().mnuClrScr_Click();
    EXPECT_EQ(f.model().txtClient(0).text(), "");
    EXPECT_EQ(f.model().txtServer.text(), "");
    EXPECT_EQ(t.typing().localHistory, "local\r\n");
}

TEST(Paste, ShiftInsertSendsAndTheControlInsertsOnce)
{
    TypingPeer t;
    t.copy.clipboard().setText("ins");
    t.typing().keyboardPress(LiveTyping::vbKeyInsert, LiveTyping::vbShiftMask, "");
    EXPECT_EQ(t.frm().model().txtServer.text(), "ins");
    EXPECT_EQ(t.wire(), "<Paste> ins</Paste>");
}

}  // namespace
