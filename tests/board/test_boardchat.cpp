// Two copies on one board: a line of the chat strip is read aloud on both
// sides and its "<SPK>" goes out before it; the peer leaving the board
// rings the internal bell; the font chosen in the dialog outlives the Text
// tool's selection, reaches the peer's labels and is kept for the next
// board. And what goes on the wire for a chat line, read off a raw peer.

#include "BoardRawPeer.h"
#include "board/Scrivet.h"
#include "core/CopyContext.h"
#include "shell/CommandControl.h"
#include "support/Session.h"
#include "transfer/Transfer.h"

#include <QFile>
#include <QTcpSocket>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

class BoardChat : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (TestCopy* c : {&a, &b}) {
            c->set("Ring", "plain.wav");
            c->set("Ring5", "bell5.wav");
            ASSERT_TRUE(writeFile(c->file("plain.wav"), "RIFF"));
            ASSERT_TRUE(writeFile(c->file("bell5.wav"), "RIFF"));
        }
        ASSERT_TRUE(a.start());
        ASSERT_TRUE(b.start());
        ASSERT_TRUE(connectCopies(a, b));
        a.frm().commands().runCommand("Cmd Scrivet");
        ASSERT_TRUE(waitUntil([&] { return sb().isOpen(); }));
        a.speech().said.clear();
        b.speech().said.clear();
    }
    Scrivet& sa() { return a.frm().scrivet(); }
    Scrivet& sb() { return b.frm().scrivet(); }
    static QStringList texts(const RecordingSpeechEngine& e)
    {
        QStringList out;
        for (const auto& u : e.said)
            out << u.text;
        return out;
    }
    TestCopy a, b;
};

TEST_F(BoardChat, ALineIsSpokenOnBothSidesAsTheSettingsSay)
{
    sa().cmdSendText_Click("hello board");
    ASSERT_TRUE(waitUntil([&] { return sb().txtClient == "hello board"; }));
    // The "<SPK>" frame goes ahead of the line: when the line is there, so
    // is the speech.
    EXPECT_EQ(texts(b.speech()), QStringList{"hello board"});
    EXPECT_EQ(texts(a.speech()), QStringList{"hello board"});

    // Not read here, still read there.
    a.set("Local Speaker Off", "1");
    sa().cmdSendText_Click("quietly");
    ASSERT_TRUE(waitUntil([&] { return sb().txtClient == "quietly"; }));
    EXPECT_EQ(texts(b.speech()), (QStringList{"hello board", "quietly"}));
    EXPECT_EQ(texts(a.speech()), QStringList{"hello board"});

    // Read here, not sent for speech there.
    a.set("Local Speaker Off", "0");
    a.set("Disable Auto TTS Signal", "1");
    sa().cmdSendText_Click("only mine");
    ASSERT_TRUE(waitUntil([&] { return sb().txtClient == "only mine"; }));
    EXPECT_EQ(texts(b.speech()), (QStringList{"hello board", "quietly"}));
    EXPECT_EQ(texts(a.speech()), (QStringList{"hello board", "only mine"}));

    // The strip's own commands are neither chat nor speech.
    sa().cmdSendText_Click("set transparent on");
    pump(200);
    EXPECT_EQ(a.speech().said.size(), 2);
    EXPECT_EQ(sb().txtClient, "only mine");
}

TEST_F(BoardChat, ThePeerLeavingRingsTheInternalBell)
{
    // The request's bell has ended (a second sound would stop it instead).
    EXPECT_EQ(b.audio().played.last(), b.file("bell5.wav")) << "the request rings it too";
    b.audio().finish();
    b.audio().played.clear();
    sa().cmdCloseDraw_Click();
    ASSERT_TRUE(waitUntil([&] { return !sb().isOpen(); }));
    ASSERT_TRUE(waitUntil([&] { return !b.audio().played.isEmpty(); }));
    EXPECT_EQ(b.audio().played, QStringList{b.file("bell5.wav")});
    EXPECT_EQ(sb().txtClient, "<Close>");
}

TEST_F(BoardChat, TheFontChoiceSurvivesTheTextToolAndIsKept)
{
    sa().selectTool(BoardTool::Text);
    const BoardLabel chosen{QString(), "DejaVu Serif", 14, true, true, true, false};
    sa().cmdFontSetting_Click(chosen);
    EXPECT_EQ(a.get("DrawingBoard - Font"), "DejaVu Serif");
    EXPECT_EQ(a.get("DrawingBoard - FontSize"), "14");
    EXPECT_EQ(a.get("DrawingBoard - FontBold"), "1");
    EXPECT_EQ(a.get("DrawingBoard - FontItalic"), "1");
    EXPECT_EQ(a.get("DrawingBoard - FontUnderline"), "1");
    EXPECT_FALSE(a.get("DrawingBoard - FontForeColor").isEmpty());
    EXPECT_FALSE(a.get("DrawingBoard - FontBackColor").isEmpty());

    // Another tool and the Text tool again: the choice stands, here and in
    // the peer's labels.
    sa().selectTool(BoardTool::Draw);
    sa().selectTool(BoardTool::Text);
    EXPECT_EQ(sa().labelFont.fontName, "DejaVu Serif");
    EXPECT_EQ(sa().labelFont.fontSize, 14);
    EXPECT_TRUE(sa().labelFont.bold);
    EXPECT_TRUE(sa().labelFont.italic);
    EXPECT_TRUE(sa().labelFont.underline);
    a.prompter().addAnswers({"text:styled"});
    sa().mouseMove(1200, 900, false);
    sa().mouseDown(1200, 900);
    sa().mouseUp(1200, 900);
    ASSERT_TRUE(waitUntil([&] { return sb().board().label(1) != nullptr; }));
    const BoardLabel& there = sb().board().labelText(*sb().board().label(1));
    EXPECT_EQ(there.text, "styled");
    EXPECT_EQ(there.fontName, "DejaVu Serif");
    EXPECT_EQ(there.fontSize, 14);
    EXPECT_TRUE(there.bold);
    EXPECT_TRUE(there.italic);
    EXPECT_TRUE(there.underline);

    // The next board starts with the font of the last choice.
    sa().cmdCloseDraw_Click();
    ASSERT_TRUE(waitUntil([&] { return !sb().isOpen(); }));
    sa().labelFont = BoardLabel{};
    a.frm().commands().runCommand("Cmd Scrivet");
    ASSERT_TRUE(waitUntil([&] { return sb().isOpen(); }));
    sa().selectTool(BoardTool::Text);
    EXPECT_EQ(sa().labelFont.fontName, "DejaVu Serif");
    EXPECT_TRUE(sa().labelFont.bold && sa().labelFont.italic && sa().labelFont.underline);
}

// A Text selection loads the kept font and tells the peer only the colour;
// the font goes out from the font dialog alone.
TEST(BoardChatWire, ATextSelectionSendsTheColourAndNoFont)
{
    TestCopy copy;
    QTcpSocket peer;
    ASSERT_TRUE(boardOpenedByRawPeer(copy, peer));
    copy.set("DrawingBoard - Font", "DejaVu Serif");
    copy.set("DrawingBoard - FontBold", "1");
    Scrivet& s = copy.frm().scrivet();
    readFor(peer, 200);

    s.selectTool(BoardTool::Text);
    EXPECT_EQ(s.labelFont.fontName, "DejaVu Serif");
    EXPECT_TRUE(s.labelFont.bold);
    EXPECT_EQ(readFor(peer, 300), "&&fc" + QByteArray::number(s.board().lblForeColour) + "$");

    s.cmdFontSetting_Click({QString(), "DejaVu Sans", 12, false, true, false, false});
    EXPECT_EQ(readFor(peer, 300), "&&fontDejaVu Sans$12$False$True$False$False$");
}

// The bytes of a chat line: the speech, then the line.
TEST(BoardChatWire, TheLineGoesOutBehindItsSpeech)
{
    TestCopy copy;
    QTcpSocket peer;
    ASSERT_TRUE(boardOpenedByRawPeer(copy, peer));
    Scrivet& s = copy.frm().scrivet();
    readFor(peer, 200);

    s.cmdSendText_Click("see you");
    const QByteArray sent = readFor(peer, 300);
    const qsizetype speech = sent.indexOf("<SPK> see you </SPK>");
    const qsizetype line = sent.indexOf("&&<#> see you <#>&&");
    ASSERT_GE(speech, 0) << sent.constData();
    ASSERT_GE(line, 0) << sent.constData();
    EXPECT_LT(speech, line);

    copy.set("Disable Auto TTS Signal", "1");
    s.cmdSendText_Click("no speech");
    const QByteArray quiet = readFor(peer, 300);
    EXPECT_TRUE(quiet.contains("&&<#> no speech <#>&&")) << quiet.constData();
    EXPECT_FALSE(quiet.contains("<SPK>")) << quiet.constData();
}

}  // namespace
}  // namespace vonnel::test
