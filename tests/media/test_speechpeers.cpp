// Speech between two copies in one process: the caller's voice reaches the
// callee when the session opens, a finished line is spoken on both sides in
// the caller's voice, and with Override the callee reads in its own voice
// and sends nothing back.

#include "media/Speech.h"
#include "shell/CommandControl.h"
#include "support/Session.h"
#include "core/Controls.h"
#include "core/MainModel.h"
#include "core/Sender.h"

#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

class SpeechPeers : public ::testing::Test {
protected:
    void SetUp() override
    {
        a.set("Speaker", "2");  // slt
        a.set("Voice Speed", "300");
        a.set("Voice Pitch", "250");
        b.set("Speaker", "0");  // awb
        ASSERT_TRUE(a.start());
        ASSERT_TRUE(b.start());
        ASSERT_TRUE(connectCopies(a, b));
        ASSERT_TRUE(waitUntil([this] { return b.frm().speech().remoteVoice.remoteMode == "slt"; }))
            << "the caller's voice comes with the session";
        a.speech().said.clear();
        b.speech().said.clear();
    }
    // a finishes a line in its pane with Enter.
    void finishLine(const QString& line)
    {
        TextPane& pane = a.frm().model().txtServer;
        pane.setText(pane.text() + line);
        a.frm().commands().runCommand("Key Enter");
    }
    TestCopy a, b;
};

TEST_F(SpeechPeers, AFinishedLineIsSpokenOnBothSidesInTheCallersVoice)
{
    EXPECT_EQ(b.frm().speech().remoteVoice, (RemoteVoice{1033, "flite", "flite", "slt", 300, 250}));
    finishLine("good morning");
    ASSERT_TRUE(waitUntil([this] { return !b.speech().said.isEmpty(); }));
    for (TestCopy* c : {&a, &b}) {
        ASSERT_EQ(c->speech().said.size(), 1);
        const RecordingSpeechEngine::Utterance& u = c->speech().said[0];
        EXPECT_EQ(u.text, "good morning");
        EXPECT_EQ(u.voice, testVoices()[2]);
        EXPECT_DOUBLE_EQ(u.rate, 100.0 / 150.0);
        EXPECT_DOUBLE_EQ(u.pitch, 1.0);
    }

    // Not spoken here, still spoken there.
    a.set("Local Speaker Off", "1");
    finishLine("quietly");
    ASSERT_TRUE(waitUntil([this] { return b.speech().said.size() == 2; }));
    EXPECT_EQ(b.speech().said[1].text, "quietly");
    EXPECT_EQ(a.speech().said.size(), 1);

    // Spoken here, not sent for speech there.
    a.set("Local Speaker Off", "0");
    a.set("Disable Auto TTS Signal", "1");
    finishLine("only mine");
    ASSERT_TRUE(waitUntil([this] {
        return b.frm().model().txtTextMsg.text().contains("only mine");
    }));
    EXPECT_EQ(a.speech().said.size(), 2);
    EXPECT_EQ(b.speech().said.size(), 2);
}

TEST_F(SpeechPeers, WithOverrideTheCalleeReadsInItsOwnVoiceAndEchoesNothing)
{
    b.frm().model().controls.setChecked(Control::mnuOverride, true);
    a.frm().speech().SpeakText("over to you", false);
    ASSERT_TRUE(waitUntil([this] { return !b.speech().said.isEmpty(); }));
    const RecordingSpeechEngine::Utterance& u = b.speech().said[0];
    EXPECT_EQ(u.text, "over to you");
    EXPECT_EQ(u.voice, testVoices()[0]);
    EXPECT_DOUBLE_EQ(u.rate, 0.0);
    EXPECT_DOUBLE_EQ(u.pitch, 0.0);
    // A line back would make the caller speak it again; a record line
    // sent behind it marks that everything before it has arrived.
    b.frm().sender().xSendData("<MSG> done </MSG>");
    ASSERT_TRUE(waitUntil([this] { return a.frm().model().txtTextMsg.text().contains("done"); }));
    EXPECT_EQ(a.speech().said.size(), 1);
}

}  // namespace
}  // namespace vonnel::test
