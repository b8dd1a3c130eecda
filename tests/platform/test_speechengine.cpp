// The system's speech engine on this machine: its voices in a stable order,
// a line that the engine takes up and finishes, and no engine held once it
// has been silent for a while. Skipped where no engine or no audio output
// is there.

#include "platform/AudioPlayer.h"
#include "platform/SpeechEngine.h"
#include "support/TestCopy.h"

#include <tuple>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

TEST(SystemSpeech, SpeaksALineAndLetsTheEngineGoAfterwards)
{
    SystemSpeechEngine engine;
    if (!engine.available())
        GTEST_SKIP() << "no speech engine installed";
    if (!audioDevicePresent())
        GTEST_SKIP() << "no audio output: the engine cannot speak";
    const QList<SpeechVoice> voices = engine.voices();
    ASSERT_FALSE(voices.isEmpty());
    EXPECT_FALSE(engine.holdsEngine()) << "listing the voices keeps no engine";
    for (qsizetype i = 1; i < voices.size(); ++i) {
        const SpeechVoice& a = voices[i - 1];
        const SpeechVoice& b = voices[i];
        EXPECT_TRUE(std::tie(a.engine, a.locale, a.name) < std::tie(b.engine, b.locale, b.name));
    }
    EXPECT_EQ(SystemSpeechEngine().voices(), voices) << "the same order every time";

    engine.setReleaseAfter(100);
    engine.say("Testing one two three.", 0.0, 0.0, 0.0, voices.first());
    ASSERT_TRUE(engine.holdsEngine());
    EXPECT_TRUE(engine.speaking());
    // The engine itself reports that it speaks, then falls silent and is
    // let go.
    ASSERT_TRUE(waitUntil([&] { return !engine.holdsEngine(); }, 30000));
    EXPECT_EQ(engine.startedSpeaking(), 1);
    EXPECT_FALSE(engine.speaking());
}

}  // namespace
}  // namespace vonnel::test

namespace vonnel::test {
namespace {

TEST(SystemSpeech, AnEngineGoneInMidLineLeavesTheNextOneSpeaking)
{
    if (!SystemSpeechEngine().available() || !audioDevicePresent())
        GTEST_SKIP() << "no speech engine or no audio output here";
    const QString line = QStringLiteral("This line is cut off long before it comes to its end.");
    {
        SystemSpeechEngine engine;
        engine.say(line, 0.0, 0.0, 1.0, SpeechVoice{});
        ASSERT_TRUE(waitUntil([&] { return engine.startedSpeaking() == 1; }, 20000));
        // The copy ends here, the engine with it.
    }
    SystemSpeechEngine next;
    next.say(line, 0.0, 0.0, 1.0, SpeechVoice{});
    EXPECT_TRUE(waitUntil([&] { return next.startedSpeaking() == 1; }, 20000));
    next.stop();
    EXPECT_TRUE(waitUntil([&] { return !next.speaking(); }, 20000));
}

}  // namespace
}  // namespace vonnel::test
