// Transfers belong to the session that started them. Whichever way a
// session ends, a later caller can neither read a file that was sent nor
// write into one that was being received, and messages that belong to no
// transfer of this session change nothing.

#include "core/Cp1252.h"
#include "transfer/RawPeer.h"
#include "transfer/TwoCopies.h"

#include "connection/Connection.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "core/Sender.h"
#include "platform/Winsock.h"

#include <QRandomGenerator>
#include <QTimer>

using namespace vonnel;
using namespace vonnel::test;

namespace {

// How a session with a raw peer ends.
enum class End { PeerCloses, PeerResets, PeerShutsDown, CopyDisconnects };

const char* endName(End e)
{
    switch (e) {
    case End::PeerCloses: return "PeerCloses";
    case End::PeerResets: return "PeerResets";
    case End::PeerShutsDown: return "PeerShutsDown";
    case End::CopyDisconnects: return "CopyDisconnects";
    }
    return "";
}

class SessionEnd : public RawPeer, public ::testing::WithParamInterface<End> {
protected:
    void endSession()
    {
        switch (GetParam()) {
        case End::PeerCloses:
            peer.disconnectFromHost();
            break;
        case End::PeerResets:
            resetOnClose(peer.socketDescriptor());
            peer.abort();
            break;
        case End::PeerShutsDown:
            send("^SD");
            peer.disconnectFromHost();
            break;
        case End::CopyDisconnects:
            f().connection().mnuDisconnect_Click();
            break;
        }
        ASSERT_TRUE(waitUntil([&] { return !f().session().IsConnected(); }));
        ASSERT_TRUE(waitUntil(
            [&] { return f().session().winsock(0).State() == Winsock::sckListening; }, 8000));
    }
    // A new caller, taken on as the copy's session.
    void callAgain()
    {
        copy.prompter().addAnswers({"ok", "ok", "ok"});  // a recovery box, if any
        acceptRawPeer(copy, later);
        ASSERT_TRUE(f().session().IsConnected());
        readFor(later, 50);
    }
    QTcpSocket later;
};

TEST_P(SessionEnd, AnInterruptedSendCannotBeReadByALaterCaller)
{
    const QByteArray data = randomBytes(12000, 21);
    const QString path = copy.file("out/secret.bin");
    EXPECT_EQ(sendAccepted(path, data, 2000), frame(data.left(2000)));
    ASSERT_TRUE(t().fileSending());

    endSession();
    EXPECT_FALSE(t().fileSending());
    EXPECT_FALSE(t().sendFileOpen());
    EXPECT_TRUE(t().sendFilePath.isEmpty());
    EXPECT_EQ(w().lblProgress.text, "Connection closed: the file was not sent whole");
    EXPECT_TRUE(f().model().controls.enabled(Control::mnuSendFile));

    callAgain();
    later.write("%%Data Received-5000%%%%Data Received-%%Data Received-0%%");
    later.write("%%Continue Sending File%%%%Open Pause Window%%");
    later.write("%%FS Request OK%%" + toCp1252(wirePath(path)) + "*fs*");
    later.flush();
    EXPECT_TRUE(readFor(later, 300).isEmpty());
    EXPECT_FALSE(t().sendFileOpen());
}

TEST_P(SessionEnd, AnInterruptedDownloadTakesNothingFromALaterCaller)
{
    const QByteArray data = randomBytes(9000, 22);
    const QString target = copy.file("in/partial.bin");
    offer("C:\\partial.bin", 9000, target);
    send(frame(data.left(2000)));
    EXPECT_EQ(expectBytes(22), "%%Data Received-2000%%");
    send(frame(data.mid(2000, 2000)));
    EXPECT_EQ(expectBytes(22), "%%Data Received-4000%%");

    endSession();
    EXPECT_FALSE(t().fileReceiving());
    EXPECT_FALSE(t().recvFileOpen());
    EXPECT_EQ(w().lblProgress.text, "Connection closed: the partial file is kept");

    callAgain();
    later.write(frame("INJECTED"));
    later.flush();
    EXPECT_TRUE(readFor(later, 300).isEmpty());
    // The partial file stays as the first session left it.
    EXPECT_EQ(readFile(target), data.left(4000));
}

INSTANTIATE_TEST_SUITE_P(Transfer, SessionEnd,
                         ::testing::Values(End::PeerCloses, End::PeerResets, End::PeerShutsDown,
                                           End::CopyDisconnects),
                         [](const auto& info) { return endName(info.param); });

// The same with two copies: a sends to b, and the session ends while the
// file is half way; then strangers call both.
enum class CopiesEnd { SenderDisconnects, ReceiverDisconnects, SenderShutsDown, Reset };

const char* copiesEndName(CopiesEnd e)
{
    static const char* const names[] = {"SenderDisconnects", "ReceiverDisconnects",
                                        "SenderShutsDown", "Reset"};
    return names[int(e)];
}

class TwoCopiesEnd : public TwoCopies, public ::testing::WithParamInterface<CopiesEnd> {};

TEST_P(TwoCopiesEnd, NoLaterCallerReadsOrWritesTheFilesOfTheSession)
{
    startTransfer(16 << 20, 24);
    ASSERT_TRUE(waitUntil([&] { return received() > (1 << 20); }));
    switch (GetParam()) {
    case CopiesEnd::SenderDisconnects:
        a.frm().connection().mnuDisconnect_Click();
        break;
    case CopiesEnd::ReceiverDisconnects:
        b.frm().connection().mnuDisconnect_Click();
        break;
    case CopiesEnd::SenderShutsDown:
        a.frm().sender().xSendData("^SD");
        a.frm().connection().mnuDisconnect_Click();
        break;
    case CopiesEnd::Reset:
        // a's socket is dropped with a RST; b learns of it from the wire.
        resetOnClose(a.frm().session().winsock(0).connectionDescriptor());
        a.frm().session().winsock(0).Close();
        a.frm().connection().ListenOnLocalPort();
        break;
    }
    auto listening = [](TestCopy& c) { return c.frm().session().winsock(0).State() == Winsock::sckListening; };
    ASSERT_TRUE(waitUntil([&] { return listening(a) && listening(b); }, 8000));
    pump(100);
    const QByteArray partial = readFile(target);
    EXPECT_EQ(partial, data.left(partial.size()));
    EXPECT_LT(partial.size(), data.size());
    EXPECT_FALSE(ta().fileSending() || ta().sendFileOpen());
    EXPECT_FALSE(tb().fileReceiving() || tb().recvFileOpen());
    EXPECT_EQ(tb().progress().lblProgress.text, "Connection closed: the partial file is kept");

    // A stranger calls the sender and asks for bytes; another calls the
    // receiver and sends some.
    QTcpSocket reader, writer;
    acceptRawPeer(a, reader);
    acceptRawPeer(b, writer);
    ASSERT_TRUE(a.frm().session().IsConnected() && b.frm().session().IsConnected());
    reader.write("%%Data Received-4000%%%%Data Received-%%Continue Sending File%%");
    writer.write(frame("INJECTED") + "%%Continue Receiving File%%" + frame("MORE"));
    reader.flush();
    writer.flush();
    EXPECT_TRUE(readFor(reader, 300).isEmpty());
    EXPECT_TRUE(readFor(writer, 100).isEmpty());
    EXPECT_EQ(readFile(target), partial);
}

INSTANTIATE_TEST_SUITE_P(Transfer, TwoCopiesEnd,
                         ::testing::Values(CopiesEnd::SenderDisconnects,
                                           CopiesEnd::ReceiverDisconnects,
                                           CopiesEnd::SenderShutsDown, CopiesEnd::Reset),
                         [](const auto& info) { return copiesEndName(info.param); });

TEST_P(SessionEnd, AnOfferLeftUnansweredIsForgottenAndSendFileComesBack)
{
    const QString path = copy.file("out/offer.bin");
    ASSERT_TRUE(writeFile(path, randomBytes(3000, 25)));
    copy.prompter().addAnswers({"file:" + path});
    t().mnuSendFile_Click();
    ASSERT_TRUE(t().fileOffered());
    EXPECT_FALSE(f().model().controls.enabled(Control::mnuSendFile));
    endSession();
    EXPECT_FALSE(t().fileOffered());
    EXPECT_TRUE(f().model().controls.enabled(Control::mnuSendFile));
    // A later caller's acceptance of that offer sends nothing.
    callAgain();
    later.write("%%FS Request OK%%" + toCp1252(wirePath(path)) + "*fs*");
    later.flush();
    EXPECT_TRUE(readFor(later, 300).isEmpty());
}

TEST_F(RawPeer, AFinishedSendIsNeverOpenedAgain)
{
    const QByteArray data = randomBytes(5000, 23);
    const QString path = copy.file("out/done.bin");
    EXPECT_EQ(sendAccepted(path, data, 2000), frame(data.left(2000)));
    send("%%Data Received-2000%%");
    expectBytes(2009);
    send("%%Data Received-4000%%");
    expectBytes(1009);
    send("%%Data Received-5000%%");
    ASSERT_TRUE(waitUntil([&] { return w().cmdCancel.tag == "Finish"; }));

    // The same session asks for any part of it again: nothing comes.
    send("%%Data Received-1000%%%%Data Received-%%Continue Sending File%%");
    send("%%FS Request OK%%" + toCp1252(wirePath(path)) + "*fs*");
    EXPECT_TRUE(readFor(peer, 300).isEmpty());
    EXPECT_FALSE(t().sendFileOpen());
}

TEST_F(RawPeer, OffersWithABadSizeAreAnsweredWithARefusal)
{
    for (const char* size : {"1E+99", "-5", "12abc", "", "9007199254740992", "4e3"}) {
        copy.prompter().clearRecords();
        send("%%File Sending Request%%C:\\x.bin>" + QByteArray(size) + "*fs*");
        EXPECT_EQ(expectBytes(23), "%%FS Request Rejected%%") << size;
        ASSERT_EQ(copy.prompter().records().size(), 1) << size;
        EXPECT_TRUE(copy.prompter().records()[0].text.endsWith("Type mismatch")) << size;
        EXPECT_FALSE(t().fileReceiving()) << size;
    }
    // A large but readable size is a question like any other.
    copy.prompter().clearRecords();
    copy.prompter().addAnswers({"no"});
    send("%%File Sending Request%%C:\\big.iso>99999999999*fs*");
    EXPECT_EQ(expectBytes(23), "%%FS Request Rejected%%");
    EXPECT_TRUE(copy.prompter().asked("97,656,250 KB"));
}

TEST_F(RawPeer, APictureOfferTouchesNothingBeforeTheBoardTakesIt)
{
    const QString picture = copy.file("captscr.jpg");
    ASSERT_TRUE(writeFile(picture, "my own capture"));
    send("%%File Sending Request%%picC:\\captscr.jpg>100*fs*");
    pump(200);
    EXPECT_EQ(readFile(picture), "my own capture");
    EXPECT_TRUE(copy.prompter().records().isEmpty());
}

TEST_F(RawPeer, FilesTheCountCannotCarryAreRefusedBeforeTheOffer)
{
    // A sparse file one byte past the largest count.
    const QString huge = copy.file("out/huge.bin");
    {
        QDir().mkpath(copy.file("out"));
        QFile f(huge);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly) && f.resize(kMaxSendSize + 1));
    }
    copy.prompter().addAnswers({"file:" + huge});
    t().mnuSendFile_Click();
    EXPECT_TRUE(copy.prompter().asked("2,147,483,647 bytes"));
    // Past a thousand million the count moves in steps of a thousand:
    // frames of 500 bytes could never be acknowledged.
    const QString big = copy.file("out/big.bin");
    {
        QFile f(big);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly) && f.resize(1000000100));
    }
    copy.set("Byte Per Send", "500");
    copy.prompter().addAnswers({"file:" + big});
    t().mnuSendFile_Click();
    EXPECT_TRUE(copy.prompter().asked("at least 1,000 bytes per send"));
    EXPECT_TRUE(readFor(peer, 200).isEmpty());
    EXPECT_FALSE(t().fileOffered());
}

TEST_F(RawPeer, BytePerSendThatIsNoPositiveNumberIsTwoThousand)
{
    for (const char* value : {"0", "many", "-5", "", "3200"}) {
        copy.set("Byte Per Send", value);
        copy.prompter().addAnswers({"cancel"});
        t().mnuSendFile_Click();
        EXPECT_EQ(t().bytesPerSend, QByteArray(value) == "3200" ? 3200 : 2000) << value;
    }
}

// --- files that cross a thousand million bytes -------------------------------------------

// A file of zeros up to kWindow, then noise: sparse on the disk, and only
// the part from the window on has to travel.
constexpr qint64 kWindow = 999950000;
constexpr qint64 kBigSize = 1000000000 + 60000 + 777;

QByteArray bigTail() { return randomBytes(kBigSize - kWindow, 31); }

bool makeBigFile(const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || !f.resize(kWindow))
        return false;
    f.seek(kWindow);
    return f.write(bigTail()) == kBigSize - kWindow;
}

// Compares two files byte for byte, in blocks.
bool sameFiles(const QString& one, const QString& two)
{
    QFile a(one), b(two);
    if (!a.open(QIODevice::ReadOnly) || !b.open(QIODevice::ReadOnly) || a.size() != b.size())
        return false;
    constexpr qint64 block = 8 << 20;
    while (!a.atEnd()) {
        if (a.read(block) != b.read(block))
            return false;
    }
    return true;
}

// Makes the receiving copy's first write land the file at the window: the
// sender's first chunk is zeros, as is everything before the window, so
// the file is what a transfer from the start would have made by then.
void jumpToTheWindow(Transfer& receiver, const QString& target)
{
    auto once = std::make_shared<QMetaObject::Connection>();
    *once = QObject::connect(&receiver, &Transfer::copyingFrame, [once, target](qint64 bytes) {
        QObject::disconnect(*once);
        QFile f(target);
        if (f.open(QIODevice::ReadWrite))
            f.resize(kWindow - bytes);
    });
}

class PastAThousandMillion : public TwoCopies, public ::testing::WithParamInterface<int> {};

TEST_P(PastAThousandMillion, TwoCopiesDeliverTheFileWhole)
{
    for (TestCopy* c : {&a, &b})
        c->set("Byte Per Send", QString::number(GetParam()));
    source = a.file("out/big.bin");
    target = b.file("in/big.bin");
    ASSERT_TRUE(makeBigFile(source));
    QDir().mkpath(b.file("in"));
    jumpToTheWindow(tb(), target);
    a.prompter().addAnswers({"file:" + source});
    b.prompter().addAnswers({"yes", "file:" + target});
    ta().mnuSendFile_Click();
    ASSERT_TRUE(finished(60000)) << received();
    EXPECT_EQ(received(), kBigSize);
    EXPECT_TRUE(sameFiles(source, target));
}

INSTANTIATE_TEST_SUITE_P(Transfer, PastAThousandMillion, ::testing::Values(2000, 3200, 8000));

// A sender written from the protocol's rules alone: it reads each count as
// a number, rounds it, and sends the next frame from there.
TEST_F(RawPeer, ALiteralSenderPastAThousandMillionDeliversTheFileWhole)
{
    const QString target = copy.file("in/big.bin");
    const QByteArray tail = bigTail();
    auto chunkAt = [&](qint64 at, qint64 n) {
        QByteArray out(n, '\0');
        for (qint64 i = 0; i < n; ++i)
            if (at + i >= kWindow)
                out[i] = tail[at + i - kWindow];
        return out;
    };
    jumpToTheWindow(t(), target);
    offer("C:\\big.bin", kBigSize, target);
    qint64 position = 0;
    QByteArray pending;
    int frames = 0;
    for (; frames < 1000; ++frames) {
        send(frame(chunkAt(position, qMin<qint64>(3200, kBigSize - position))));
        pending += readAtLeast(peer, 1);
        const qsizetype close = pending.indexOf("%%", 16);
        ASSERT_TRUE(pending.startsWith("%%Data Received-") && close > 0) << pending.constData();
        position = qint64(std::llround(pending.mid(16, close - 16).toDouble()));
        pending = pending.mid(close + 2);
        if (position >= kBigSize)
            break;
    }
    EXPECT_EQ(position, kBigSize);
    EXPECT_EQ(w().cmdCancel.tag, "Finish");
    EXPECT_EQ(QFileInfo(target).size(), kBigSize);
    QFile got(target);
    ASSERT_TRUE(got.open(QIODevice::ReadOnly));
    got.seek(kWindow - 4096);
    EXPECT_EQ(got.readAll(), QByteArray(4096, '\0') + tail);
}

// --- pauses with a frame in flight ---------------------------------------------------------

TEST_F(TwoCopies, AThousandReceiverPausesWithFramesInFlightLeaveTheFileWhole)
{
    for (TestCopy* c : {&a, &b})
        c->set("Byte Per Send", "2000");
    QRandomGenerator rng(41);
    int pauses = 0;
    bool pausing = false;
    ProgressModel& wb = tb().progress();
    auto c = QObject::connect(&tb(), &Transfer::copyingFrame, [&] {
        if (pausing || pauses >= 1000 || rng.bounded(2) != 0)
            return;
        pausing = true;
        // Pressed just after this frame's acknowledgement left, or a moment
        // later: the sender's next frame is then on its way.
        QTimer::singleShot(int(rng.bounded(2)), [&] {
            if (wb.cmdPause.tag == "Pause" && wb.cmdPause.enabled) {
                tb().cmdPause_Click();
                ++pauses;
            }
            QTimer::singleShot(int(rng.bounded(3)), [&] {
                if (wb.cmdPause.tag == "Continue")
                    tb().cmdPause_Click();
                pausing = false;
            });
        });
    });
    // A busy machine may let more frames through between pauses: further
    // files follow until the thousand pauses are made, each compared.
    for (int round = 0; pauses < 1000 && round < 5; ++round) {
        startTransfer(20000 * 2000, 42 + round);
        ASSERT_TRUE(finished(120000)) << received() << " after " << pauses << " pauses";
        EXPECT_EQ(readFile(target), data) << "file " << round;
        ta().unloadProgress();
        tb().unloadProgress();
    }
    QObject::disconnect(c);
    EXPECT_EQ(pauses, 1000);
}

}  // namespace
