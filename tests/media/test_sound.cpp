// The player's three routines and the event bells of one copy, with the
// recording player in place of the sound card.

#include "media/RingExchange.h"
#include "media/Sound.h"
#include "support/TestCopy.h"
#include "wire/Receiver.h"
#include "core/Controls.h"
#include "core/CopyContext.h"

#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

class SoundTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(copy.start()); audio().commands.clear(); }
    Sound& sound() { return copy.frm().sound(); }
    RecordingAudioPlayer& audio() { return copy.audio(); }
    QString app(const QString& name) { return copy.file(name); }
    TestCopy copy;
};

TEST_F(SoundTest, FormLoadPresetsThePlayer)
{
    // The start ran PresetMMC: the modes are off and the player is closed.
    EXPECT_EQ(audio().lastCommand(), "Close");
    audio().Wait = audio().Notify = audio().Shareable = true;
    sound().PresetMMC();
    EXPECT_FALSE(audio().Wait || audio().Notify || audio().Shareable);
    EXPECT_EQ(audio().commands, QStringList{"Close"});
}

// One play, given the three settings and whether a sound is playing.
struct PlayCase {
    const char* name;
    const char* disable;
    const char* together;
    const char* noStop;
    bool playing;
    bool result;
    QStringList commands;
};

TEST_F(SoundTest, PlayFollowsTheThreeSettings)
{
    const QString p = "/snd/b.wav";
    const PlayCase cases[] = {
        {"sound disabled", "1", "0", "0", false, false, {}},
        {"sound disabled while playing", "1", "0", "0", true, false, {}},
        {"idle", "0", "0", "0", false, true, {"Close", "Open " + p, "Play"}},
        {"second press stops", "0", "0", "0", true, false, {"Stop", "Close"}},
        {"second press stops, together", "0", "1", "0", true, false, {"Stop", "Close"}},
        {"no stop: closed, then the new one", "0", "0", "1", true, true, {"Close", "Open " + p, "Play"}},
        {"no stop, together: over the first", "0", "1", "1", true, true, {"Open " + p, "Play"}},
    };
    for (const PlayCase& c : cases) {
        SCOPED_TRACE(c.name);
        copy.set("Disable Sound", c.disable);
        copy.set("Play Together", c.together);
        copy.set("No Play n Stop", c.noStop);
        sound().stopAudio();
        if (c.playing) {
            audio().setFileName("/snd/a.wav");
            audio().command("Open");
            audio().command("Play");
        }
        audio().commands.clear();
        EXPECT_EQ(sound().PlayMMCFile(p), c.result);
        EXPECT_EQ(audio().commands, c.commands);
    }
    // Both sounds are heard when the second one opened over the first.
    EXPECT_EQ(audio().playing, (QStringList{"/snd/a.wav", p}));
}

TEST_F(SoundTest, TheEndOfASoundClosesThePlayer)
{
    ASSERT_TRUE(sound().PlayMMCFile(app("ring.wav")));
    EXPECT_EQ(audio().lastCommand(), "Play");
    audio().finish();
    EXPECT_EQ(audio().lastCommand(), "Close");
    // Once closed, the next press plays instead of stopping.
    audio().commands.clear();
    EXPECT_TRUE(sound().PlayMMCFile(app("ring.wav")));
    EXPECT_EQ(audio().commands.last(), "Play");
}

TEST_F(SoundTest, EventBellsPlayFromTheApplicationFolder)
{
    CopyContext& ctx = copy.frm().ctx();
    Q_EMIT ctx.ringRequested(ctx.rings.Ring1);
    audio().finish();
    Q_EMIT ctx.ringRequested(app("fetched.wav"));
    audio().finish();
    copy.set("Ring2", "bye.wav");
    Q_EMIT copy.frm().receiver().playRing("Ring2");
    EXPECT_EQ(audio().played, (QStringList{app("connect.wav"), app("fetched.wav"), app("bye.wav")}));
    EXPECT_TRUE(sound().lastPlayResult);

    // The end of the copy stops what plays.
    audio().commands.clear();
    Q_EMIT ctx.stopAudio();
    EXPECT_EQ(audio().commands, (QStringList{"Stop", "Close"}));

    // With sound disabled no bell is heard.
    copy.set("Disable Sound", "1");
    Q_EMIT ctx.ringRequested(ctx.rings.Ring4);
    EXPECT_EQ(audio().played.size(), 3);
    EXPECT_FALSE(sound().lastPlayResult);
}

TEST_F(SoundTest, RingPressWithoutARingLeavesTheButtonOff)
{
    Controls& controls = copy.frm().model().controls;
    copy.set("Ring", "");
    copy.frm().rings().mnuBeep_Click();
    EXPECT_FALSE(controls.enabled(RingExchange::ringButton()));
    EXPECT_TRUE(audio().commands.isEmpty());

    copy.set("Ring", "mine.wav");
    copy.frm().rings().mnuBeep_Click();
    EXPECT_TRUE(controls.enabled(RingExchange::ringButton()));
    EXPECT_EQ(audio().played, QStringList{app("mine.wav")});
    EXPECT_EQ(copy.frm().ctx().rings.Ring, "mine.wav");
}

}  // namespace
}  // namespace vonnel::test
