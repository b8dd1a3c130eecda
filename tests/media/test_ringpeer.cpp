// Rings from a raw peer: the names it sends are only ever bare file names
// in the application folder. Anything else is neither fetched, written nor
// opened; the local ring plays instead.

#include "../transfer/RawPeer.h"
#include "media/RingExchange.h"
#include "core/Controls.h"

namespace vonnel::test {
namespace {

class RingPeer : public RawPeer {
protected:
    void SetUp() override
    {
        copy.set("Same Remote Ring", "1");
        copy.set("Ring", "local.wav");
        RawPeer::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        copy.audio().played.clear();
    }
    RecordingAudioPlayer& audio() { return copy.audio(); }
    Receiver& r() { return f().receiver(); }
};

TEST_F(RingPeer, NamesWithAFolderAreRefused)
{
    // A file of that name outside the application folder exists: still refused.
    ASSERT_TRUE(writeFile(copy.file("../outside.wav"), "x"));
    const char* names[] = {"../outside.wav", "..outside.wav", "/etc/passwd", "sub/x.wav",
                           "sub\\x.wav", "..\\x.wav", "C:x.wav", "c:\\x.wav", ".."};
    for (const char* name : names) {
        SCOPED_TRACE(name);
        audio().finish();
        audio().played.clear();
        send(QByteArray("^g") + name + "^G^");
        ASSERT_TRUE(waitUntil([&] { return !audio().played.isEmpty(); }));
        EXPECT_EQ(audio().played, QStringList{copy.file("local.wav")});
        EXPECT_EQ(readFor(peer, 100), QByteArray()) << "no request for the file";
        EXPECT_EQ(r().ringWanted, "n/a");
        EXPECT_FALSE(f().rings().ringFetchPending);
    }
    QFile::remove(copy.file("../outside.wav"));
}

TEST_F(RingPeer, AnnouncementNobodyAskedForWritesNothing)
{
    // The stray frames are logged; no other file comes.
    auto files = [this] {
        QStringList names = QDir(copy.appPath()).entryList(QDir::Files);
        names.removeIf([](const QString& n) { return n.endsWith(".log"); });
        return names;
    };
    const QStringList before = files();
    const QByteArray announcements[] = {"^s>10/etc/x", "^s>5n/a", "^s>5../x.wav"};
    for (const QByteArray& a : announcements) {
        SCOPED_TRACE(a.constData());
        send(a + frame("hello"));
        pump(300);
        EXPECT_FALSE(t().fileReceiving());
        EXPECT_TRUE(f().model().controls.enabled(Control::mnuSendFile)) << "Send File is usable again";
        EXPECT_TRUE(audio().played.isEmpty());
    }
    EXPECT_EQ(files(), before);
    EXPECT_FALSE(QFile::exists(copy.file("../x.wav")));
}

TEST_F(RingPeer, BareNameIsFetchedIntoTheApplicationFolder)
{
    send("^gpeer.wav^G^");
    EXPECT_EQ(expectBytes(3), "^rW");
    EXPECT_EQ(r().ringWanted, "peer.wav");
    EXPECT_TRUE(audio().played.isEmpty()) << "nothing plays before the file is here";

    // The file is written under the name asked for, whatever the peer puts
    // before it: that text is only the size.
    send("^s>5../../peer.wav" + frame("hello"));
    ASSERT_TRUE(waitUntil([&] { return !audio().played.isEmpty(); }));
    EXPECT_EQ(readFile(copy.file("peer.wav")), "hello");
    EXPECT_EQ(audio().played, QStringList{copy.file("peer.wav")});
    EXPECT_EQ(r().ringWanted, "n/a");
    EXPECT_TRUE(rings.contains(copy.file("peer.wav")));
}

TEST_F(RingPeer, RequestDuringATransferIsNotAnswered)
{
    // A file of ours is being sent: a ring request must not take its place.
    const QByteArray first = sendAccepted(copy.file("out/user.bin"), randomBytes(5000, 3), 2000);
    ASSERT_TRUE(first.startsWith("<*> "));
    ASSERT_TRUE(t().fileSending());
    // The ring file is there, where the request looks for it.
    ASSERT_TRUE(writeFile(copy.file("local.wav"), "ring"));
    const QString folder = QDir::currentPath();
    QDir::setCurrent(copy.appPath());
    const QString before = t().sendFilePath;
    send("^rW");
    pump(300);
    EXPECT_EQ(t().sendFilePath, before);
    EXPECT_EQ(t().ringSent, "n/a");
    EXPECT_FALSE(readFor(peer, 100).contains("^s>"));
    QDir::setCurrent(folder);
}

// A fetched ring may hold no more than a chosen sound may: the options'
// sound size limit. Past it the fetch is cancelled, its file removed, and
// one line says so in the failure record, however long the peer pushes.
TEST_F(RingPeer, RingFetchIsBoundBySoundSizeLimit)
{
    copy.set("SndMaxSize", "10000");
    auto refusals = [this] {
        return QString::fromLatin1(readFile(copy.file("error.log"))).count("Ring Fetch Refused");
    };
    auto errorLines = [this] {
        return QString::fromLatin1(readFile(copy.file("error.log"))).count("\r\n");
    };
    const QByteArray cancel = "%%Sending Cancel%%";
    struct Case {
        const char* name;
        QByteArray announce;  // what follows "^s>"
        QList<int> frames;    // payload sizes the peer pushes
    };
    const Case cases[] = {
        // A size far past the limit: refused at once, before any byte is written.
        {"announced", "99999999999999", QList<int>(200, 2000)},
        // A size under the limit and a frame that takes the file past it.
        {"grown", "9000", {2000, 2000, 2000, 2000, 5000, 2000, 2000}},
    };
    int expectedRefusals = 0;
    // A ring within the limit still comes and plays.
    send("^gsmall.wav^G^");
    ASSERT_EQ(expectBytes(3), "^rW");
    // As a copy sends it: a frame, then the acknowledgement.
    send("^s>10000small.wav");
    for (int i = 0; i < 5; ++i) {
        send(frame(QByteArray(2000, char('v' + i))));
        ASSERT_TRUE(expectBytes(20).startsWith("%%Data Received-"));
    }
    ASSERT_TRUE(waitUntil([&] { return !audio().played.isEmpty(); }));
    EXPECT_EQ(QFileInfo(copy.file("small.wav")).size(), 10000);
    audio().played.clear();
    readFor(peer, 300);  // its acknowledgements
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const int linesBefore = errorLines();
        const QString name = QStringLiteral("fill%1.wav").arg(expectedRefusals);
        send("^g" + name.toLatin1() + "^G^");
        ASSERT_EQ(expectBytes(3), "^rW");
        QByteArray push = "^s>" + c.announce + name.toLatin1();
        for (int i = 0; i < c.frames.size(); ++i)
            push += frame(QByteArray(c.frames[i], char('a' + i % 26)));
        send(push);
        const QByteArray answer = [&] {
            QByteArray got;
            waitUntil([&] {
                got += peer.readAll();
                return got.contains(cancel);
            });
            return got + readFor(peer, 300);
        }();
        EXPECT_TRUE(answer.contains(cancel)) << answer.left(200).constData();
        ++expectedRefusals;
        EXPECT_EQ(refusals(), expectedRefusals);
        EXPECT_EQ(errorLines() - linesBefore, linesBefore == 0 ? 2 : 1)
            << "one line, not one per frame pushed";
        EXPECT_FALSE(QFile::exists(copy.file(name))) << "the partial file is removed";
        EXPECT_FALSE(t().fileReceiving());
        EXPECT_TRUE(f().model().controls.enabled(Control::mnuSendFile));
        EXPECT_TRUE(audio().played.isEmpty());
    }

    EXPECT_EQ(refusals(), expectedRefusals);
}

}  // namespace
}  // namespace vonnel::test
