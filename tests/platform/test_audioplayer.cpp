// The sound player behind the four commands: the recorder the tests use,
// and the system's player, which must never block nor hang on to a sound
// that cannot play.

#include "platform/AudioPlayer.h"
#include "support/TestCopy.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

// Counts the player's completion events.
struct DoneCount {
    explicit DoneCount(AudioPlayer& p) { QObject::connect(&p, &AudioPlayer::done, [this] { ++n; }); }
    int count() const { return n; }
    int n = 0;
};

// A short mono 16-bit PCM WAV of silence.
QByteArray silentWav(int ms)
{
    const quint32 rate = 8000;
    const quint32 dataBytes = rate * 2 * quint32(ms) / 1000;
    QByteArray w;
    auto u32 = [&w](quint32 v) { char b[4]; qToLittleEndian(v, b); w.append(b, 4); };
    auto u16 = [&w](quint16 v) { char b[2]; qToLittleEndian(v, b); w.append(b, 2); };
    w += "RIFF";
    u32(36 + dataBytes);
    w += "WAVEfmt ";
    u32(16);
    u16(1);
    u16(1);
    u32(rate);
    u32(rate * 2);
    u16(2);
    u16(16);
    w += "data";
    u32(dataBytes);
    w += QByteArray(int(dataBytes), '\0');
    return w;
}

TEST(AudioPlayer, CommandsAreReadBack)
{
    RecordingAudioPlayer p;
    p.setFileName("/a.wav");
    p.command("Open");
    p.command("Play");
    p.command("Rewind");  // not one of the four: ignored
    EXPECT_EQ(p.lastCommand(), "Play");
    EXPECT_EQ(p.commands, (QStringList{"Open /a.wav", "Play"}));
    DoneCount done(p);
    p.finish();
    EXPECT_EQ(done.count(), 1);
    p.command("Close");
    EXPECT_EQ(p.lastCommand(), "Close");
    EXPECT_TRUE(p.playing.isEmpty());
    EXPECT_EQ(p.played, QStringList{"/a.wav"});
}

// Every sound the system player starts comes to an end by itself: played
// through, or not playable (missing, not a sound, no device). Nothing blocks.
TEST(AudioPlayer, SystemPlayerEndsEverySound)
{
    QTemporaryDir dir;
    const QString wav = dir.filePath("short.wav");
    QFile f(wav);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(silentWav(200));
    f.close();
    const QString notSound = dir.filePath("text.mp3");
    QFile t(notSound);
    ASSERT_TRUE(t.open(QIODevice::WriteOnly));
    t.write("not a sound at all");
    t.close();

    for (const QString& path : {wav, dir.filePath("missing.wav"), dir.filePath("missing.mp3"), notSound}) {
        SCOPED_TRACE(path.toStdString());
        SystemAudioPlayer p;
        DoneCount done(p);
        QElapsedTimer clock;
        clock.start();
        p.setFileName(path);
        p.command("Open");
        p.command("Play");
        EXPECT_LT(clock.elapsed(), 1000) << "the commands return at once";
        EXPECT_EQ(p.lastCommand(), "Play");
        EXPECT_TRUE(waitUntil([&] { return done.count() > 0; }, 8000));
        EXPECT_EQ(p.openSounds(), 0);
        p.command("Close");
    }
}

TEST(AudioPlayer, ClosedSoundsAreNoCompletion)
{
    QTemporaryDir dir;
    const QString wav = dir.filePath("long.wav");
    QFile f(wav);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(silentWav(3000));
    f.close();
    SystemAudioPlayer p;
    DoneCount done(p);
    p.setFileName(wav);
    p.command("Open");
    p.command("Play");
    p.command("Stop");
    p.command("Close");
    EXPECT_EQ(p.openSounds(), 0);
    pump(300);
    EXPECT_EQ(done.count(), 0);
}

}  // namespace
}  // namespace vonnel::test
