// The wire codec: bytes in, frame out, and the builders' exact bytes.

#include "core/Cp1252.h"
#include "core/WireCodec.h"

#include <gtest/gtest.h>

using namespace vonnel::wire;

namespace {

struct CutCase {
    const char* name;
    QByteArray data;
    QByteArrayView open, close;
    QByteArray inner;
    qsizetype consumed;
    bool closed;
};

class CutFrame : public ::testing::TestWithParam<CutCase> {};

TEST_P(CutFrame, TakesTheFrameAsThePeersCutIt)
{
    const CutCase& c = GetParam();
    const Cut cut = cutFrame(c.data, c.open, c.close);
    EXPECT_EQ(cut.inner.toByteArray(), c.inner);
    EXPECT_EQ(cut.consumed, c.consumed);
    EXPECT_EQ(cut.closed, c.closed);
}

INSTANTIATE_TEST_SUITE_P(
    Wire, CutFrame,
    ::testing::Values(
        CutCase{"Whole", "<Paste> hi</Paste>rest", kPasteOpen, kPasteClose, "hi", 18, true},
        CutCase{"Empty", "<Paste> </Paste>", kPasteOpen, kPasteClose, "", 16, true},
        // No end yet: nothing inside, and as many bytes go as the end is long.
        CutCase{"Unclosed", "<Paste> half a text", kPasteOpen, kPasteClose, "", 8, false},
        CutCase{"ShorterThanItsEnd", "<URL> x", kUrlOpen, kUrlClose, "", 7, false},
        // The end is searched from the start of the text, the inner text
        // behind the opening: an end that overlaps the opening cuts there.
        CutCase{"EndOverlapsOpening", "<URL> </URL>tail", kUrlOpen, kUrlClose, "", 12, true},
        CutCase{"SecondFrameBehind", "<MSG> a </MSG><MSG> b </MSG>", kMessageOpen, kMessageClose,
                "a", 14, true},
        CutCase{"Version", "!ver.Vonnel 3.0.0ver!tt:=", kVersionOpen, kVersionClose,
                "Vonnel 3.0.0", 21, true},
        CutCase{"HighBytesKept", "<SPK> \x80\x9f\xff </SPK>", kSpeakOpen, kSpeakClose,
                "\x80\x9f\xff", 16, true}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(WireCodec, KeyStrokeGivesCharacterPositionAndLength)
{
    const QByteArray frame = keyStroke("a", 12);
    EXPECT_EQ(frame, "<KEY> a <:KEY>12</KEY>");
    // The stroke's parts are views into the input: it must outlive them.
    const QByteArray input = frame + "^SPC13#SPC";
    const KeyStroke k = cutKeyStroke(input);
    EXPECT_EQ(k.character.toByteArray(), "a");
    EXPECT_EQ(k.position.toByteArray(), "12");
    EXPECT_EQ(k.consumed, frame.size());

    // Cut by the read after the character: no position, and the text
    // behind the character's end is what is left to take apart.
    const KeyStroke cut = cutKeyStroke("<KEY> b <:KEY>");
    EXPECT_EQ(cut.character.toByteArray(), "b");
    EXPECT_TRUE(cut.position.isEmpty());
}

TEST(WireCodec, BuildersRoundTripThroughTheCutter)
{
    for (const QByteArray& inner : {QByteArray("x"), QByteArray("two words"), QByteArray("\x01\xfe")}) {
        for (const Family f : kReceiveOrder) {
            const std::optional<Wrapping> w = wrapping(f);
            if (!w)
                continue;
            const QByteArray bytes = wrap(w->open, inner, w->close);
            EXPECT_TRUE(bytes.startsWith(head(f)));
            const Cut cut = cutFrame(bytes, w->open, w->close);
            EXPECT_EQ(cut.inner.toByteArray(), inner) << head(f).data();
            EXPECT_EQ(cut.consumed, bytes.size());
        }
    }
    EXPECT_EQ(versionFrame("Vonnel 3.0.0"), "!ver.Vonnel 3.0.0ver!");
    EXPECT_EQ(keyFrame("03:25 PM"), "tt:=03:25 PM=:tt");
    EXPECT_EQ(numbered(Numbered::Deletion, 4), "^BK4#BK");
    EXPECT_EQ(numbered(Numbered::Space, 0), "^SPC0#SPC");
    EXPECT_EQ(numbered(Numbered::LineBreak, 17), "^RETURN17#RETURN");
    EXPECT_EQ(dataReceived("5000"), "%%Data Received-5000%%");
}

TEST(WireCodec, EveryFamilyHasItsOwnHeadInTheReceiveOrder)
{
    // Each stage of a pass recognises its family by its own head.
    for (size_t i = 0; i < kReceiveOrder.size(); ++i) {
        EXPECT_FALSE(head(kReceiveOrder[i]).isEmpty());
        for (size_t j = i + 1; j < kReceiveOrder.size(); ++j)
            EXPECT_NE(head(kReceiveOrder[i]), head(kReceiveOrder[j]));
    }
}

struct FileCase {
    const char* name;
    QByteArray data;
    std::optional<FileMessage> message;
    std::optional<qsizetype> length;
};

class FileMessages : public ::testing::TestWithParam<FileCase> {};

TEST_P(FileMessages, AreKnownAndConsumedMessageByMessage)
{
    const FileCase& c = GetParam();
    EXPECT_EQ(fileMessageAt(c.data), c.message);
    EXPECT_EQ(fileMessageLength(c.data), c.length);
    // Read off the text, without the bytes, the same message is known.
    EXPECT_EQ(fileMessageAt(QStringView(vonnel::fromCp1252(c.data))), c.message);
}

TEST(WireCodec, AFileWordIsKnownOnTextOnlyWhereItsBytesAre)
{
    // A character the code page lacks goes out as '?': in place of any
    // character of a word, neither the text nor its bytes make that word.
    const QString word = QStringLiteral("%%Data Received-");
    for (qsizetype i = 0; i < word.size(); ++i) {
        QString text = word + QStringLiteral("12%%");
        text[i] = QChar(0x4E2D);
        EXPECT_EQ(fileMessageAt(QStringView(text)), fileMessageAt(vonnel::toCp1252(text))) << i;
        EXPECT_NE(fileMessageAt(QStringView(text)), FileMessage::DataReceived) << i;
    }
    // The code page's own characters above 127 are not ASCII either.
    EXPECT_EQ(fileMessageAt(QStringView(QStringLiteral("\u20AC%Error%%"))), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Wire, FileMessages,
    ::testing::Values(
        FileCase{"Request", "%%File Sending Request%%a.txt>12*fs*^SPC1#SPC",
                 FileMessage::SendingRequest, 36},
        FileCase{"RequestWithoutEnd", "%%File Sending Request%%a.txt>12", FileMessage::SendingRequest, 3},
        FileCase{"Accepted", "%%FS Request OK%%b.txt*fs*", FileMessage::RequestOk, 26},
        FileCase{"Rejected", "%%FS Request Rejected%%more", FileMessage::RequestRejected, 23},
        FileCase{"CancelTakesTheRest", "%%Sending Cancel%%anything", FileMessage::SendingCancel, 26},
        FileCase{"Pause", "%%Pause Sending%%", FileMessage::PauseSending, 17},
        FileCase{"ContinueSending", "%%Continue Sending File%%x", FileMessage::ContinueSending, 25},
        FileCase{"ContinueReceiving", "%%Continue Receiving File%%", FileMessage::ContinueReceiving, 27},
        FileCase{"DataTakesTheRest", "<*> payload", FileMessage::Data, 11},
        FileCase{"Acknowledged", "%%Data Received-2000%%<KEY> ", FileMessage::DataReceived, 22},
        FileCase{"AcknowledgedCut", "%%Data Received-20", FileMessage::DataReceived, 16},
        FileCase{"PauseWindow", "%%Open Pause Window%%", FileMessage::OpenPauseWindow, 21},
        FileCase{"Unload", "%%Unload%%tail", FileMessage::Unload, 10},
        FileCase{"Error", "%%Error%%", FileMessage::Error, 9},
        FileCase{"NotAFileMessage", "%%Something%%", std::nullopt, std::nullopt}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
