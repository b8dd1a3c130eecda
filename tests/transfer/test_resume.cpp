// A receive that a broken session left half way goes on from the end of
// its part when the same peer offers the same file again. Nothing of it is
// on the wire: a sender that only follows the frames and counts goes on
// from wherever the receiver's count puts it.

#include "core/Cp1252.h"
#include "transfer/RawPeer.h"

#include "connection/Session.h"
#include "platform/Winsock.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <cstdio>
#include <QTemporaryDir>
#include <list>

using namespace vonnel;
using namespace vonnel::test;

namespace {

bool listening(TestCopy& c)
{
    return c.frm().session().winsock(0).State() == Winsock::sckListening;
}

// --- two copies, the sender killed half way -------------------------------------------

// What happens to the sender's file between the break and the new offer.
enum class Source { Unchanged, HeadChanged, TailChanged };

class ResumeAfterKill : public ::testing::TestWithParam<Source> {
protected:
    void SetUp() override
    {
        b.set("Byte Per Send", "3200");
        b.set("Close Progress", "0");
        ASSERT_TRUE(b.start());
        // The sender's file lies outside its folder: the copy started after
        // the kill offers it under the same path.
        source = shared.filePath("out/source.bin");
        target = b.file("in/target.bin");
        QDir().mkpath(b.file("in"));
    }
    std::unique_ptr<TestCopy> newSender()
    {
        auto a = std::make_unique<TestCopy>();
        a->set("Byte Per Send", "3200");
        a->set("Close Progress", "0");
        EXPECT_TRUE(a->start());
        EXPECT_TRUE(connectCopies(*a, b));
        return a;
    }
    void offer(TestCopy& a, const QStringList& receiverAnswers)
    {
        a.prompter().addAnswers({"file:" + source});
        b.prompter().addAnswers(receiverAnswers);
        a.frm().transfer().mnuSendFile_Click();
    }
    // The sender's program ends at once: its socket is reset, nothing of
    // its own closing reaches the receiver, and the copy is gone.
    void kill(std::unique_ptr<TestCopy>& a)
    {
        Winsock& w = a->frm().session().winsock(0);
        resetOnClose(w.connectionDescriptor());
        w.Close();
        a.reset();
        ASSERT_TRUE(waitUntil([&] { return !b.frm().session().IsConnected() && listening(b); }, 8000));
    }
    bool finished(TestCopy& a, int ms)
    {
        return waitUntil([&] {
            return a.frm().transfer().progress().cmdCancel.tag == "Finish" &&
                   tb().progress().cmdCancel.tag == "Finish";
        }, ms);
    }
    Transfer& tb() { return b.frm().transfer(); }
    qint64 received() const { return QFileInfo(target).size(); }

    QTemporaryDir shared;
    TestCopy b;
    QString source, target;
};

// The size for the test suite; VONNEL_RESUME_MB gives another for a run by hand.
qsizetype resumeSize()
{
    const int mb = qEnvironmentVariableIntValue("VONNEL_RESUME_MB");
    return qsizetype(mb > 0 ? mb : 20) * 1000 * 1000 + 1234;
}

TEST_P(ResumeAfterKill, TheFileIsWholeAndOnlyTheRestIsSentOrTheChangeIsSaid)
{
    const qsizetype size = resumeSize();
    QByteArray data = randomBytes(size, 41);
    ASSERT_TRUE(writeFile(source, data));
    // Anywhere between a twentieth and the last twentieth of the file.
    const quint32 seed = QRandomGenerator::global()->generate();
    const qint64 point = size / 20 + QRandomGenerator(seed).bounded(qint64(size) * 9 / 10);
    SCOPED_TRACE("seed " + std::to_string(seed) + ", break after " + std::to_string(point));
    const int waitMs = int(qMax<qint64>(60000, size / 1000));

    std::unique_ptr<TestCopy> a = newSender();
    offer(*a, {"yes", "file:" + target});
    ASSERT_TRUE(waitUntil([&] { return received() > point; }, waitMs)) << received();
    kill(a);
    const QByteArray part = readFile(target);
    const qint64 kept = part.size();
    ASSERT_GT(kept, point);
    ASSERT_LT(kept, size);
    EXPECT_EQ(part, data.left(kept));
    EXPECT_EQ(tb().progress().lblProgress.text, "Connection closed: the partial file is kept");
    EXPECT_EQ(tb().partialFiles().count(), 1);

    if (GetParam() == Source::HeadChanged)
        data[10] = char(data[10] ^ 0x5a);
    if (GetParam() == Source::TailChanged)
        data[kept - 100] = char(data[kept - 100] ^ 0x5a);
    if (GetParam() != Source::Unchanged)
        ASSERT_TRUE(writeFile(source, data));

    a = newSender();
    b.prompter().clearRecords();
    QElapsedTimer second;
    second.start();
    offer(*a, {"yes", "yes"});
    ASSERT_TRUE(finished(*a, waitMs)) << received();
    const qint64 secondMs = second.elapsed();
    EXPECT_EQ(readFile(target), data);
    EXPECT_TRUE(b.prompter().asked("Resume source.bin from " + groupedNumber(kept) + " bytes?"));
    EXPECT_FALSE(b.prompter().asked("Save File As"));
    EXPECT_EQ(tb().partialFiles().count(), 0);

    const Transfer::ResumeReport& r = tb().lastResume();
    const qint64 sent = a->frm().transfer().payloadSent();
    EXPECT_EQ(r.keptLength, kept);
    // The figures of the run, for a run by hand at another size.
    std::printf("resume: size %lld, kept %lld, asked from %lld, payload sent after the new offer %lld, %lld ms\n",
                qint64(size), kept, r.askedFrom, sent, secondMs);
    if (GetParam() == Source::Unchanged) {
        // The first frame and the half frame before the part's end are
        // compared; everything after that is new.
        EXPECT_FALSE(r.peerChanged);
        EXPECT_EQ(r.headCompared, 3200);
        EXPECT_LT(r.askedFrom, kept);
        EXPECT_GE(r.askedFrom, kept - 1600 - ackStep(kept));
        EXPECT_EQ(r.tailCompared, kept - r.askedFrom);
        EXPECT_EQ(sent, 3200 + (size - r.askedFrom));
        EXPECT_FALSE(b.prompter().asked("is not the one the part kept here came from"));
    } else {
        // Told, and taken again from the start: the head from the first
        // frame, the rest from the end of it.
        EXPECT_TRUE(r.peerChanged);
        EXPECT_TRUE(waitUntil([&] { return b.prompter().asked("is not the one the part kept here came from"); }));
        const qint64 overlapFrame = GetParam() == Source::TailChanged ? 3200 : 0;
        EXPECT_EQ(sent, size + overlapFrame);
    }
}

std::string sourceName(const ::testing::TestParamInfo<Source>& info)
{
    static const char* const names[] = {"Unchanged", "HeadChanged", "TailChanged"};
    return names[int(info.param)];
}

INSTANTIATE_TEST_SUITE_P(Transfer, ResumeAfterKill,
                         ::testing::Values(Source::Unchanged, Source::HeadChanged, Source::TailChanged),
                         sourceName);

// --- a peer that follows the frames and counts to the letter ------------------------------

class ResumeRaw : public RawPeer {
protected:
    void SetUp() override
    {
        RawPeer::SetUp();
        caller = &peer;
    }
    void write(const QByteArray& bytes)
    {
        caller->write(bytes);
        caller->flush();
    }
    void offerFrom(const QString& wireName, qint64 size, const QStringList& answers)
    {
        copy.prompter().addAnswers(answers);
        write("%%File Sending Request%%" + toCp1252(wireName) + '>' + QByteArray::number(size) + "*fs*");
    }
    // The caller offers the file, sends frames up to the given length and
    // then drops the line; a new caller takes its place.
    void breakAfter(const QString& wireName, const QByteArray& data, qint64 upTo)
    {
        offerFrom(wireName, data.size(), {"yes", "file:" + target});
        ASSERT_TRUE(readAtLeast(*caller, 17).startsWith("%%FS Request OK%%"));
        readFor(*caller, 20);
        for (qint64 p = 0; p < upTo; p += 2000) {
            write(frame(data.mid(p, 2000)));
            ASSERT_EQ(readAtLeast(*caller, 22), "%%Data Received-" + QByteArray::number(p + 2000) + "%%");
        }
        resetOnClose(caller->socketDescriptor());
        caller->abort();
        ASSERT_TRUE(waitUntil([&] { return !f().session().IsConnected() && listening(copy); }, 8000));
        callers.push_back(std::make_unique<QTcpSocket>());
        caller = callers.back().get();
        acceptRawPeer(copy, *caller);
        ASSERT_TRUE(f().session().IsConnected());
        readFor(*caller, 50);
        copy.prompter().clearRecords();
    }
    // The next count from the copy, or nothing within the time.
    std::optional<qint64> nextCount(QByteArray& buffer)
    {
        waitUntil([&] {
            buffer += caller->readAll();
            const qsizetype h = buffer.indexOf("%%Data Received-");
            return h >= 0 && buffer.indexOf("%%", h + 16) > 0;
        }, 3000);
        const qsizetype h = buffer.indexOf("%%Data Received-");
        const qsizetype e = h < 0 ? -1 : buffer.indexOf("%%", h + 16);
        if (e < 0)
            return std::nullopt;
        const QString text = QString::fromLatin1(buffer.mid(h + 16, e - h - 16));
        buffer.remove(0, e + 2);
        return parseAckCount(text);
    }
    // The first frame from the head of the file, then a frame from every
    // count, until the count is the file's size. Returns the counts.
    QList<qint64> sendLiterally(const QByteArray& data, qint64& payload)
    {
        QList<qint64> counts;
        QByteArray buffer;
        qint64 p = 0;
        payload = 0;
        for (int frames = 0; frames < 100000; ++frames) {
            const QByteArray chunk = data.mid(p, 2000);
            write(frame(chunk));
            payload += chunk.size();
            const std::optional<qint64> count = nextCount(buffer);
            if (!count)
                break;
            counts << *count;
            if (*count == data.size())
                break;
            p = *count;  // the receiver's length is the only authority
        }
        return counts;
    }

    QString target = copy.file("in/big.bin");
    QTcpSocket* caller = nullptr;
    std::list<std::unique_ptr<QTcpSocket>> callers;
};

struct LiteralCase {
    const char* name;
    qint64 breakAt;     // the part's length
    qsizetype changed;  // a byte of the sender's file changed after the break; -1 none
    qint64 firstCount;  // the copy's answer to the first frame
    qint64 payload;     // what the peer sent after the new offer
};

TEST_F(ResumeRaw, ALiteralSenderGoesOnFromTheCountAndAChangedFileStartsAgain)
{
    const qint64 size = 9000;
    const QList<LiteralCase> cases = {
        // Half a frame before the part's end, then the rest.
        {"unchanged", 6000, -1, 5000, 2000 + 4000},
        // A part shorter than the first frame: that frame holds all of it.
        {"part within the first frame", 2000, -1, 2000, 2000 + 7000},
        {"head changed", 6000, 7, 2000, 2000 + 7000},
        // Found in the half frame before the part's end: the frame after it
        // starts the file again.
        {"byte before the break changed", 6000, 5500, 5000, 2000 + 2000 + 7000},
    };
    int round = 0;
    for (const LiteralCase& c : cases) {
        SCOPED_TRACE(c.name);
        QByteArray data = randomBytes(size, 50 + round);
        const QString wireName = QStringLiteral("C:\\docs\\big%1.bin").arg(round++);
        breakAfter(wireName, data, c.breakAt);
        ASSERT_EQ(readFile(target), data.left(c.breakAt));
        if (c.changed >= 0)
            data[c.changed] = char(data[c.changed] ^ 1);

        offerFrom(wireName, size, {"yes", "yes"});
        const QByteArray ok = readAtLeast(*caller, 17);
        EXPECT_TRUE(ok.startsWith("%%FS Request OK%%")) << ok.constData();
        EXPECT_TRUE(copy.prompter().asked("Resume big"));
        qint64 payload = 0;
        const QList<qint64> counts = sendLiterally(data, payload);
        ASSERT_FALSE(counts.isEmpty());
        EXPECT_EQ(counts.first(), c.firstCount);
        EXPECT_EQ(counts.last(), size);
        EXPECT_EQ(payload, c.payload);
        EXPECT_EQ(readFile(target), data);
        EXPECT_EQ(t().lastResume().peerChanged, c.changed >= 0);
        EXPECT_EQ(w().cmdCancel.tag, "Finish");
        QFile::remove(target);
    }
}

// What differs between the broken receive and the new offer.
struct NoResumeCase {
    const char* name;
    std::function<void(const QString& part)> touch;
    qint64 size;
    QString wireName;
    QString question;  // the first box of the new offer
};

TEST_F(ResumeRaw, APartThatChangedOrAnotherOfferGetsNoResumeQuestion)
{
    const QString name = QStringLiteral("C:\\docs\\big.bin");
    const QList<NoResumeCase> cases = {
        {"the part was written to",
         [](const QString& p) { QFile f(p); f.open(QIODevice::Append); f.write("x"); }, 9000, name,
         "Would you like to accept it?"},
        {"the part was touched",
         [](const QString& p) {
             QFile f(p);
             f.open(QIODevice::ReadWrite);
             f.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime);
         },
         9000, name, "Would you like to accept it?"},
        {"the part is gone", [](const QString& p) { QFile::remove(p); }, 9000, name,
         "Would you like to accept it?"},
        {"another size", {}, 9001, name, "Would you like to accept it?"},
        {"another file", {}, 9000, "C:\\docs\\other.bin", "Would you like to accept it?"},
        // The same offer as a check that the question comes when it should.
        {"the same offer", {}, 9000, name, "Resume big.bin from 4,000 bytes?"},
    };
    for (const NoResumeCase& c : cases) {
        SCOPED_TRACE(c.name);
        const QByteArray data = randomBytes(9000, 60);
        breakAfter(name, data, 4000);
        if (c.touch)
            c.touch(target);
        // Yes to accept, then cancel whatever comes next: the resume
        // question, or the Save dialog.
        offerFrom(c.wireName, c.size, {"yes", "cancel"});
        EXPECT_EQ(readAtLeast(*caller, 23), "%%FS Request Rejected%%");
        QStringList boxes;
        for (const PromptRecord& r : copy.prompter().records())
            boxes << r.kind + ": " + r.text;
        ASSERT_EQ(boxes.size(), 2) << boxes.join('|').toStdString();
        EXPECT_TRUE(boxes[0].startsWith("box: Would you like to accept it?"));
        const bool resumeAsked = QString(c.question).startsWith("Resume");
        EXPECT_EQ(boxes[1].startsWith("box: " + c.question), resumeAsked) << boxes[1].toStdString();
        EXPECT_EQ(boxes[1].startsWith("file: "), !resumeAsked) << boxes[1].toStdString();
        QFile::remove(target);
        t().partialFiles().forget(target);
    }
}

}  // namespace
