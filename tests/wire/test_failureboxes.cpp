// The failure boxes of the receive path: which broken frame gives which
// box, that the handlers go on behind it, and that a peer repeating the
// same broken frame gets one box of a kind per session and no more.

#include "core/Cp1252.h"
#include "core/IniStore.h"
#include "support/Session.h"
#include "wire/Receiver.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "access/Encryption.h"

#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

class FailureBoxes : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(copy.start());
        acceptRawPeer(copy, peer);
        ASSERT_TRUE(f().session().IsConnected());
        f().receiver().selfRepair = false;
        readFor(peer, 50);
        copy.prompter().clearRecords();
    }
    FrmMain& f() { return copy.frm(); }
    Receiver& r() { return f().receiver(); }
    void arrive(const QString& text) { r().handleArrival(0, toCp1252(text)); }
    QString pane() { return f().model().txtClient(0).text(); }
    QList<PromptRecord> boxes()
    {
        QList<PromptRecord> out;
        for (const PromptRecord& p : copy.prompter().records())
            if (p.kind == QLatin1String("box"))
                out << p;
        return out;
    }
    // The peer's text is enciphered: its "<SPK> " and "<MSG> " lines are
    // deciphered with this key.
    void peerEnciphers()
    {
        f().encryption().remoteEncrypted = true;
        f().encryption().remoteKey = QStringLiteral("03:25 PM");
    }

    TestCopy copy;
    QTcpSocket peer;
};

struct BoxCase {
    const char* name;
    bool enciphered;
    QString frame;
    QString box;  // the whole text of the one box
};

// "abc" is three letters: a cipher text lacks its last letter.
const QString kCut = QStringLiteral("Incomplete cipher text: a letter is missing at the end");

class StageBox : public FailureBoxes, public ::testing::WithParamInterface<BoxCase> {};

TEST_P(StageBox, TheBrokenFrameGivesItsStagesBoxAndTheTextBehindItStillShows)
{
    const BoxCase& c = GetParam();
    if (c.enciphered)
        peerEnciphers();
    // "%%%" behind the frame shows as "%%" whatever the encryption.
    arrive(c.frame + QStringLiteral("%%%"));
    const QList<PromptRecord> shown = boxes();
    ASSERT_EQ(shown.size(), 1);
    EXPECT_EQ(shown[0].text, c.box);
    EXPECT_EQ(shown[0].style & 0x70, MsgStyle::Exclamation);
    EXPECT_TRUE(pane().endsWith(QLatin1String("%%"))) << pane().toStdString();
    // The failure is in the record too.
    EXPECT_TRUE(readFile(copy.file("error.log")).contains(toCp1252(c.box.section('\r', 0, 0))));
}

INSTANTIATE_TEST_SUITE_P(
    Receive, StageBox,
    ::testing::Values(
        // The voice's own conversion says these, not the receive stage.
        BoxCase{"SpeedIsNoNumber", false,
                "<SPKSET> <L>1033</L><PN>x</PN><E>e</E><N>m</N><S>fast</S><P>0</P> </SPKSET>",
                "SAVESPKSET 13 Type mismatch"},
        BoxCase{"SettingsLackAField", false, "<SPKSET> <L>1033</L> </SPKSET>",
                "SAVESPKSET 13 Type mismatch"},
        BoxCase{"PitchBeyond32Bits", false,
                "<SPKSET> <L>1033</L><PN>x</PN><E>e</E><N>m</N><S>0</S><P>99999999999</P> </SPKSET>",
                "SAVESPKSET 6 Overflow"},
        BoxCase{"SpokenLineCut", true, "<SPK> abc </SPK>", "SPK 5 " + kCut},
        BoxCase{"RecordLineCut", true, "<MSG> abc </MSG>", "MSG 5 " + kCut},
        BoxCase{"SpokenLineBehindControlCode", true, "^Clr<SPK> abc </SPK>",
                "NEW SPK 5 " + kCut},
        BoxCase{"RecordLineBehindControlCode", true, "^Clr<MSG> abc </MSG>",
                "NEW MSG 5 " + kCut},
        BoxCase{"PositionIsNoNumber", false, "<KEY> a <:KEY>1x</KEY>",
                "DataArrival Error\rType mismatch\rData: \r"}),
    [](const ::testing::TestParamInfo<BoxCase>& info) { return std::string(info.param.name); });

TEST_F(FailureBoxes, FramesAWellBehavedPeerSendsGiveNoBox)
{
    const char* const frames[] = {
        // A frame split by the read: no position, no closing marker.
        "<KEY> a <:KEY>1",
        "<SPKSET> <L>1033</L><PN>x",
        "<MSG> half a line",
        // Whole and well-formed.
        "<KEY> b <:KEY>2</KEY>",
        "<SPKSET> <L>1033</L><PN>x</PN><E>e</E><N>m</N><S>0</S><P>-2</P> </SPKSET>",
        "<MSG> a line </MSG>",
        "<SPK> a line </SPK>",
    };
    for (const char* frame : frames)
        arrive(QString::fromLatin1(frame));
    EXPECT_TRUE(boxes().isEmpty()) << boxes().value(0).text.toStdString();
}

TEST_F(FailureBoxes, APeerRepeatingBrokenFramesGetsOneBoxOfEachKindPerSession)
{
    peerEnciphers();
    for (int i = 0; i < 50; ++i) {
        arrive(QStringLiteral("<MSG> abc </MSG><KEY> ab <:KEY>x</KEY>"));
        arrive(QStringLiteral("<SPK> abc </SPK>%%%"));
    }
    QStringList firstWords;
    for (const PromptRecord& p : boxes())
        firstWords << p.text.section(' ', 0, 0).section('\r', 0, 0);
    firstWords.sort();
    EXPECT_EQ(firstWords, (QStringList{"DataArrival", "MSG", "SPK"}));
    // Every arrival was still handled to its end.
    EXPECT_EQ(pane().count(QLatin1Char('%')), 100) << pane().toStdString();
    EXPECT_EQ(f().model().txtTextMsg.text().count(QLatin1String("\r\n")), 50);

    // A new session may show each kind once more.
    Q_EMIT f().session().sessionOpened();
    peerEnciphers();
    arrive(QStringLiteral("<MSG> abc </MSG>"));
    arrive(QStringLiteral("<MSG> abc </MSG>"));
    EXPECT_EQ(boxes().size(), 4);
}

}  // namespace
