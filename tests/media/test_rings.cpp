// The ring between two copies in one process: played from the file both
// have, fetched from the sender when only it has the file, or replaced by
// the local ring.

#include "media/RingExchange.h"
#include "support/Session.h"
#include "transfer/Transfer.h"
#include "wire/Receiver.h"
#include "core/Controls.h"
#include "core/CopyContext.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

bool writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
}

// The sender's ring file is looked for in the current folder; a test that
// fetches one stands in the sender's folder for its length.
class CurrentFolder {
public:
    explicit CurrentFolder(const QString& path) : m_before(QDir::currentPath()) { QDir::setCurrent(path); }
    ~CurrentFolder() { QDir::setCurrent(m_before); }

private:
    QString m_before;
};

class Rings : public ::testing::Test {
protected:
    void SetUp() override
    {
        ringBytes = randomBytes(7000, 15);
        ASSERT_TRUE(writeBytes(a.file("ring.wav"), ringBytes));
        for (TestCopy* c : {&a, &b}) {
            c->set("Byte Per Send", "1500");
            c->set("Close Progress", "0");
        }
        ASSERT_TRUE(a.start());
        ASSERT_TRUE(b.start());
        ASSERT_TRUE(connectCopies(a, b));
        // The sounds of the session's start have ended.
        quiet();
    }
    // Every sound has ended and none is on record.
    void quiet()
    {
        for (TestCopy* c : {&a, &b}) {
            c->audio().finish();
            c->audio().played.clear();
        }
    }
    void ring()
    {
        a.frm().rings().mnuBeep_Click();
        ASSERT_EQ(a.audio().played, QStringList{a.file("ring.wav")}) << "the sender hears its own ring";
    }
    QByteArray ringBytes;
    TestCopy a;
    TestCopy b;
};

TEST_F(Rings, BothHaveTheFile)
{
    ASSERT_TRUE(writeBytes(b.file("ring.wav"), "b's own"));
    b.set("Same Remote Ring", "1");
    ring();
    ASSERT_TRUE(waitUntil([&] { return !b.audio().played.isEmpty(); }));
    EXPECT_EQ(b.audio().played, QStringList{b.file("ring.wav")});
    pump(200);
    EXPECT_EQ(b.frm().receiver().ringWanted, "n/a");
    EXPECT_FALSE(a.frm().transfer().fileSending()) << "nothing is fetched";
    EXPECT_EQ(readFile(b.file("ring.wav")), "b's own");
}

TEST_F(Rings, MissingFileIsFetchedAndPlayed)
{
    CurrentFolder here(a.appPath());
    b.set("Same Remote Ring", "1");
    ring();
    ASSERT_TRUE(waitUntil([&] { return !b.audio().played.isEmpty(); }, 15000));
    EXPECT_EQ(b.audio().played, QStringList{b.file("ring.wav")});
    EXPECT_EQ(readFile(b.file("ring.wav")), ringBytes);
    EXPECT_EQ(b.frm().receiver().ringWanted, "n/a");
    EXPECT_TRUE(b.frm().rings().ringFetchPending) << "set by the request, cleared only by a direct play";
    EXPECT_EQ(b.frm().rings().ringSize, ringBytes.size());
    ASSERT_TRUE(waitUntil([&] { return !a.frm().transfer().fileSending(); }));
    EXPECT_EQ(a.audio().played, QStringList{a.file("ring.wav")}) << "no bell for a ring sent";
    EXPECT_EQ(a.frm().transfer().ringSent, "n/a");
    EXPECT_FALSE(b.frm().transfer().progress().cmdPause.visible);

    // The next ring finds the file there and plays it at once.
    quiet();
    ring();
    ASSERT_TRUE(waitUntil([&] { return !b.audio().played.isEmpty(); }));
    EXPECT_FALSE(b.frm().rings().ringFetchPending);
}

// The local ring plays instead, and nothing is fetched, when the user did
// not ask for the sender's, or when the transfer channel is taken.
TEST_F(Rings, LocalRingWhenNotFetched)
{
    b.set("Ring", "own.wav");
    struct Case {
        const char* name;
        const char* same;
        bool sendFileOff;
    } cases[] = {{"Same Remote Ring 0", "0", false}, {"Send File unavailable", "1", true}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        b.set("Same Remote Ring", c.same);
        b.frm().model().controls.setEnabled(Control::mnuSendFile, !c.sendFileOff);
        quiet();
        ring();
        ASSERT_TRUE(waitUntil([&] { return !b.audio().played.isEmpty(); }));
        EXPECT_EQ(b.audio().played, QStringList{b.file("own.wav")});
        pump(200);
        EXPECT_FALSE(QFile::exists(b.file("ring.wav")));
        EXPECT_EQ(b.frm().receiver().ringWanted, "n/a");
        EXPECT_FALSE(a.frm().transfer().fileSending());
    }
}

TEST_F(Rings, NothingGoesOutWhenTheRingOnlyStopped)
{
    b.set("Ring", "own.wav");
    ring();
    ASSERT_TRUE(waitUntil([&] { return b.audio().played.size() == 1; }));
    // The second press finds the ring still playing: it stops, sends nothing.
    a.frm().rings().mnuBeep_Click();
    EXPECT_EQ(a.audio().commands.mid(a.audio().commands.size() - 2), (QStringList{"Stop", "Close"}));
    pump(300);
    EXPECT_EQ(b.audio().played.size(), 1);

    // With sound disabled on the sender, nothing plays and nothing goes out.
    a.set("Disable Sound", "1");
    a.frm().rings().mnuBeep_Click();
    pump(300);
    EXPECT_EQ(b.audio().played.size(), 1);
    EXPECT_TRUE(a.frm().model().controls.enabled(RingExchange::ringButton()));
}

// A ring while a file is on its way: the receiver lacks the sender's ring
// and would fetch it, but the transfer channel is taken, so its own ring
// plays, nothing is fetched and the file arrives whole.
TEST_F(Rings, DuringAFileTransferTheLocalRingPlaysAndTheFileArrivesWhole)
{
    b.set("Same Remote Ring", "1");
    b.set("Ring", "own.wav");
    const QByteArray data = randomBytes(3'000'000, 41);
    const QString source = a.file("source.bin");
    const QString target = b.file("target.bin");
    ASSERT_TRUE(writeBytes(source, data));
    a.prompter().addAnswers({"file:" + source});
    b.prompter().addAnswers({"yes", "file:" + target});
    a.frm().transfer().mnuSendFile_Click();
    ASSERT_TRUE(waitUntil([&] { return QFileInfo(target).size() > 0; }));
    ASSERT_TRUE(b.frm().transfer().fileReceiving());

    quiet();
    ring();
    ASSERT_TRUE(waitUntil([&] { return !b.audio().played.isEmpty(); }));
    EXPECT_EQ(b.audio().played.first(), b.file("own.wav"));
    EXPECT_EQ(b.frm().receiver().ringWanted, "n/a");

    ASSERT_TRUE(waitUntil([&] { return !a.frm().transfer().fileSending() && !b.frm().transfer().fileReceiving(); },
                          30000));
    EXPECT_EQ(readFile(target), data);
    EXPECT_FALSE(QFile::exists(b.file("ring.wav"))) << "the sender's ring was not fetched";
}

}  // namespace
}  // namespace vonnel::test
