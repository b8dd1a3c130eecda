// Speech in one copy with a raw peer: the local configuration on the
// engine, what is spoken here and sent there, the peer's lines and voice on
// both receive paths, the length cap, the box for a broken voice, mute,
// volume and the selection entries. The engine is the recording one.

#include "../transfer/RawPeer.h"
#include "media/Speech.h"
#include "shell/CommandControl.h"
#include "core/Controls.h"

namespace vonnel::test {
namespace {

using Utterance = RecordingSpeechEngine::Utterance;

class SpeechCopy : public RawPeer {
protected:
    void SetUp() override
    {
        RawPeer::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        copy.prompter().clearRecords();
        engine().said.clear();
        engine().stops = 0;
    }
    Speech& s() { return f().speech(); }
    VoiceEngine& tts() { return s().dssTTS(); }
    RecordingSpeechEngine& engine() { return copy.speech(); }
    // The peer's bytes, taken in as one arrival.
    void arrive(const QString& text) { f().receiver().handleArrival(0, toCp1252(text)); }
    QStringList boxes()
    {
        QStringList out;
        for (const PromptRecord& p : copy.prompter().records())
            if (p.kind == QLatin1String("box"))
                out << p.text;
        return out;
    }
    const QString sltVoice = "<SPKSET> <L>1033</L><PN>flite</PN><E>flite</E><N>slt</N><S>275</S>"
                             "<P>60</P> </SPKSET>";
};

TEST_F(SpeechCopy, GetVoiceSettingsTakesTheKeysWithTheirOddRanges)
{
    struct Step {
        const char* key;
        const char* value;
        int mode, volume, speed, pitch;
    };
    // Four voices; speed 50..350, pitch 50..250, volume 0..100 (normal
    // speed 200, pitch 150).
    const Step steps[] = {
        {"Speaker", "", 1, 100, 200, 150},
        {"Speaker", "2", 3, 100, 200, 150},
        {"Speaker", "9", 1, 100, 200, 150},   // above the modes: mode 1
        {"Speaker", "-1", 1, 100, 200, 150},
        {"Speaker", "3", 4, 100, 200, 150},
        {"Speaker", "4", 4, 100, 200, 150},   // one past the last: the mode stays
        {"Voice Volume", "3", 4, 30, 200, 150},
        {"Voice Volume", "0", 4, 100, 200, 150},  // 0 reads as full
        {"Voice Volume", "11", 4, 100, 200, 150},
        {"Voice Speed", "300", 4, 100, 300, 150},
        {"Voice Speed", "20", 4, 100, 300, 150},  // out of range: kept
        {"Voice Speed", "351", 4, 100, 300, 150},
        {"Voice Pitch", "100", 4, 100, 300, 150}, // only the maximum is taken
        {"Voice Pitch", "250", 4, 100, 300, 250},
        {"Voice Pitch", "251", 4, 100, 300, 250},
        {"Voice Pitch", "50", 4, 100, 300, 250},
    };
    for (const Step& st : steps) {
        SCOPED_TRACE(std::string(st.key) + "=" + st.value);
        copy.set(st.key, st.value);
        s().GetVoiceSettings();
        EXPECT_EQ(tts().currentMode(), st.mode);
        EXPECT_EQ(tts().volume, st.volume);
        EXPECT_EQ(tts().volume2, st.volume);
        EXPECT_EQ(tts().speed, st.speed);
        EXPECT_EQ(tts().pitch, st.pitch);
    }
}

TEST_F(SpeechCopy, SpeakTextSpeaksHereAndSendsUnlessTold)
{
    copy.set("Speaker", "1");
    copy.set("Voice Volume", "5");
    s().SpeakText("", false);
    EXPECT_EQ(tts().volume, 50) << "the voice is applied even for nothing to say";
    EXPECT_TRUE(engine().said.isEmpty());

    s().SpeakText("hello", false);
    ASSERT_EQ(engine().said.size(), 1);
    EXPECT_EQ(engine().said[0].text, "hello");
    EXPECT_EQ(engine().said[0].voice, testVoices()[1]);
    EXPECT_DOUBLE_EQ(engine().said[0].volume, 0.5);
    EXPECT_EQ(expectBytes(18), "<SPK> hello </SPK>");

    s().SpeakText("quiet", true);
    copy.set("Disable Manual TTS Signal", "1");
    s().SpeakText("also quiet", false);
    EXPECT_EQ(engine().said.size(), 3);
    EXPECT_EQ(readFor(peer, 150), QByteArray());
    EXPECT_EQ(engine().stops, 0);

    copy.set("Audio Reset", "1");
    s().SpeakText("reset first", true);
    EXPECT_EQ(engine().stops, 1);
}

TEST_F(SpeechCopy, APeersLineIsSpokenInItsVoiceOnBothPaths)
{
    arrive(sltVoice + "<SPK> hi there </SPK>");
    ASSERT_EQ(engine().said.size(), 1);
    const Utterance& u = engine().said[0];
    EXPECT_EQ(u.text, "hi there");
    EXPECT_EQ(u.voice, testVoices()[2]);
    EXPECT_DOUBLE_EQ(u.rate, 0.5);
    EXPECT_DOUBLE_EQ(u.pitch, -0.9);
    EXPECT_EQ(engine().stops, 1) << "applying the voice resets the audio";

    // Audio Reset acts once more only on the path behind a control code.
    copy.set("Audio Reset", "1");
    arrive("<SPK> own stage </SPK>");
    EXPECT_EQ(engine().stops, 2);
    arrive("^Clr<SPK> behind a code </SPK>");
    EXPECT_EQ(engine().stops, 4);
    ASSERT_EQ(engine().said.size(), 3);
    EXPECT_EQ(engine().said[2].text, "behind a code");

    copy.set("Remote Speaker Off", "1");
    arrive("<SPK> not spoken </SPK>^Clr<SPK> nor this </SPK>");
    EXPECT_EQ(engine().said.size(), 3);
    EXPECT_EQ(readFor(peer, 100), QByteArray()) << "nothing goes back";
}

TEST_F(SpeechCopy, EmptyFieldsOfThePeersVoiceTakeOurOwn)
{
    copy.set("Speaker", "3");  // male1, speechd, de_DE
    s().GetVoiceSettings();
    tts().speed = 120;
    arrive("<SPKSET> <L>0</L><PN></PN><E></E><N></N><S>0</S><P>0</P> </SPKSET><SPK> x </SPK>");
    ASSERT_EQ(engine().said.size(), 1);
    EXPECT_EQ(engine().said[0].voice, testVoices()[3]);
    EXPECT_EQ(s().remoteVoice, (RemoteVoice{1031, "speechd", "speechd", "male1", 120, 150}));
}

TEST_F(SpeechCopy, WithOverrideThePeersLineIsReadInOurVoiceAndNotSentBack)
{
    f().model().controls.setChecked(Control::mnuOverride, true);
    arrive(sltVoice + "<SPK> mine now </SPK>");
    ASSERT_EQ(engine().said.size(), 1);
    EXPECT_EQ(engine().said[0].text, "mine now");
    EXPECT_EQ(engine().said[0].voice, testVoices()[0]);
    EXPECT_DOUBLE_EQ(engine().said[0].pitch, 0.0);
    EXPECT_EQ(readFor(peer, 150), QByteArray());
}

TEST_F(SpeechCopy, AHugeLineReachesTheEngineOnlyInPart)
{
    const QString huge(1024 * 1024, QLatin1Char('a'));
    arrive("<SPK> " + huge + " </SPK>");
    ASSERT_EQ(engine().said.size(), 1);
    EXPECT_EQ(engine().said[0].text, huge.left(VoiceEngine::kMaxSpokenLength));
    // Our own long text goes out whole; only the speech is cut.
    const QString ours(5000, QLatin1Char('b'));
    s().SpeakText(ours, false);
    EXPECT_EQ(engine().said[1].text.size(), VoiceEngine::kMaxSpokenLength);
    EXPECT_EQ(expectBytes(5013).size(), 5013);
}

TEST_F(SpeechCopy, ABrokenVoiceGivesOneBoxASessionAndKeepsTheOneBefore)
{
    arrive(sltVoice);
    const RemoteVoice before = s().remoteVoice;
    ASSERT_EQ(before.remoteMode, "slt");
    for (int i = 0; i < 5; ++i) {
        arrive("<SPKSET> <L>1</L><PN>x</PN><E>y</E><N>z</N><S>fast</S><P>1</P> </SPKSET>");
        arrive("<SPKSET> <L>1</L><PN>x</PN><E>y</E><N>z</N><S>1</S><P>1e12</P> </SPKSET>");
    }
    EXPECT_EQ(boxes(), QStringList{"SAVESPKSET 13 Type mismatch"});
    EXPECT_EQ(s().remoteVoice, before);
    EXPECT_TRUE(readFile(copy.file("error.log")).contains("SAVESPKSET 13 Type mismatch"));

    Q_EMIT f().session().sessionOpened();
    arrive("<SPKSET> <L>1</L><PN>x</PN><E>y</E><N>z</N><S>1</S><P>1e12</P> </SPKSET>");
    EXPECT_EQ(boxes(), (QStringList{"SAVESPKSET 13 Type mismatch", "SAVESPKSET 6 Overflow"}));
}

TEST_F(SpeechCopy, OurVoiceGoesOutAsTheEngineHasIt)
{
    copy.set("Speaker", "2");
    copy.set("Voice Speed", "90");
    copy.set("Voice Pitch", "250");
    s().SendSpeakerSetting();
    const QByteArray want = "<SPKSET> <L>1033</L><PN>flite</PN><E>flite</E><N>slt</N><S>90</S>"
                            "<P>250</P> </SPKSET>";
    EXPECT_EQ(expectBytes(want.size()), want);
    copy.set("Disable Auto TTS Signal", "1");
    s().SendSpeakerSetting();
    EXPECT_EQ(readFor(peer, 150), QByteArray());
}

TEST_F(SpeechCopy, SelectionsAreSpokenFromTheirPanes)
{
    TextPane& server = f().model().txtServer;
    TextPane& client = f().model().txtClient(0);
    server.setText("hello world");
    server.setSelection(6, 5);
    client.setText("from the peer");
    client.setSelection(0, 4);
    s().mnuSpeak_Click();
    ASSERT_EQ(engine().said.size(), 2);
    EXPECT_EQ(engine().said[0].text, "world");
    EXPECT_EQ(engine().said[1].text, "from");
    EXPECT_EQ(expectBytes(35), "<SPK> world </SPK><SPK> from </SPK>");

    copy.set("Server Selected Remote Speaker Off", "1");
    copy.set("Client Selected Remote Speaker Off", "1");
    s().popsSpeak_Click();
    s().popcSpeak_Click();
    EXPECT_EQ(engine().said.size(), 4);
    EXPECT_EQ(readFor(peer, 150), QByteArray());

    client.caretToEnd();
    s().popcSpeak_Click();
    EXPECT_EQ(engine().said.size(), 4) << "no selection, nothing spoken";
}

TEST(SpeechMenus, MuteFollowsTheKeysAndTogglesThem)
{
    TestCopy copy(0, {{"Local Speaker Off", "1"}, {"Remote Speaker Off", "1"}});
    ASSERT_TRUE(copy.start());
    Controls& c = copy.frm().model().controls;
    Speech& s = copy.frm().speech();
    EXPECT_TRUE(c.checked(Control::mnuMute)) << "Init reads the two keys";
    EXPECT_TRUE(c.checked(Control::Toolbar1_16));

    s.mnuMute_Click();
    EXPECT_FALSE(c.checked(Control::mnuMute));
    EXPECT_FALSE(c.checked(Control::Toolbar1_16));
    EXPECT_EQ(copy.get("Local Speaker Off"), "0");
    EXPECT_EQ(copy.get("Remote Speaker Off"), "0");
    EXPECT_EQ(copy.speech().stops, 0);

    copy.frm().commands().runCommand("Cmd Mute");
    EXPECT_TRUE(c.checked(Control::mnuMute));
    EXPECT_TRUE(c.checked(Control::Toolbar1_16));
    EXPECT_EQ(copy.get("Local Speaker Off"), "1");
    EXPECT_EQ(copy.get("Remote Speaker Off"), "1");
    EXPECT_EQ(copy.speech().stops, 1) << "muting cuts off what is spoken";

    // The Voice menu opens: entries follow the panes and the mute state.
    copy.frm().model().txtClient(0).setText("x");
    s.mnuVoice_Click();
    EXPECT_FALSE(c.enabled(Control::mnuSpeak));
    EXPECT_FALSE(c.enabled(Control::popsSpeak));
    EXPECT_TRUE(c.enabled(Control::popcSpeak));
    EXPECT_FALSE(c.enabled(Control::mnuVolUp));
    EXPECT_FALSE(c.enabled(Control::mnuVolDown));
    copy.set("Local Speaker Off", "0");
    copy.frm().model().txtServer.setText("y");
    s.mnuVoice_Click();
    EXPECT_FALSE(c.checked(Control::mnuMute)) << "muted only while both keys are set";
    EXPECT_TRUE(c.enabled(Control::mnuSpeak));
    EXPECT_TRUE(c.enabled(Control::mnuVolUp));
}

TEST(SpeechMenus, TheCopysEndCutsOffWhatIsSpoken)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    copy.frm().speech().SpeakText("a long story", true);
    EXPECT_EQ(copy.speech().stops, 0);
    EXPECT_TRUE(copy.frm().requestClose(false));
    EXPECT_EQ(copy.speech().stops, 1);
}

TEST(SpeechMenus, VolumeDownAddsAndUpTakesOffWithinTheRange)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    Speech& s = copy.frm().speech();
    VoiceEngine& tts = s.dssTTS();
    tts.volume = 50;
    s.mnuVolumeDown_Click();
    EXPECT_EQ(tts.volume, 60);
    EXPECT_EQ(tts.volume2, 60);
    s.mnuVolumeUp_Click();
    s.mnuVolumeUp_Click();
    EXPECT_EQ(tts.volume, 40);
    tts.volume = 95;
    s.mnuVolumeDown_Click();
    EXPECT_EQ(tts.volume, 100);
    tts.volume = 5;
    s.mnuVolumeUp_Click();
    EXPECT_EQ(tts.volume, 0);
    EXPECT_EQ(tts.volume2, 0);
}

TEST(SpeechMenus, OptionsTestSpeaksWithTheSlidersAndTheModeAsItIs)
{
    TestCopy copy(0, {{"Speaker", "1"}, {"Voice Volume", "4"}});
    ASSERT_TRUE(copy.start());
    Speech& s = copy.frm().speech();
    const Speech::OptionsPage page = s.optionsPage();
    EXPECT_EQ(page.modeNames, (QStringList{"awb", "kal", "slt", "male1"}));
    EXPECT_EQ(page.selected, 1);
    EXPECT_EQ(page.volume, 4);
    EXPECT_EQ(page.maxPitch, VoiceEngine::kMaxPitch);

    s.cmdSpeak_Click("testing", {7, 10, 350, 50});
    ASSERT_EQ(copy.speech().said.size(), 1);
    const Utterance& u = copy.speech().said[0];
    EXPECT_EQ(u.text, "testing");
    EXPECT_EQ(u.voice, testVoices()[1]);
    EXPECT_DOUBLE_EQ(u.volume, 0.7);
    EXPECT_DOUBLE_EQ(u.rate, 1.0);
    EXPECT_DOUBLE_EQ(u.pitch, -1.0);
    EXPECT_EQ(copy.speech().stops, 1);
}

}  // namespace
}  // namespace vonnel::test
