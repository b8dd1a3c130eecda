// A copy against a raw peer: every byte of a transfer as it stands on the
// wire, in both directions, and the dispatcher's reactions to each message.

#include "core/Cp1252.h"
#include "transfer/RawPeer.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "wire/Receiver.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

TEST_F(RawPeer, ProgramSendsTheWorkedExampleByteForByte)
{
    const QString path = copy.file("docs/a.txt");
    const QByteArray data = randomBytes(4100, 1);
    ASSERT_TRUE(writeFile(path, data));
    // Not a number: the command takes 2000.
    copy.set("Byte Per Send", "many");
    copy.prompter().addAnswers({"file:" + path});
    t().mnuSendFile_Click();

    const QByteArray request = "%%File Sending Request%%" + toCp1252(wirePath(path)) + ">4100*fs*";
    EXPECT_EQ(expectBytes(request.size()), request);
    EXPECT_FALSE(f().model().controls.enabled(Control::mnuSendFile));
    EXPECT_FALSE(f().model().controls.enabled(Control::mnuDraw));

    send("%%FS Request OK%%" + toCp1252(wirePath(path)) + "*fs*");
    EXPECT_EQ(expectBytes(2009), frame(data.left(2000)));
    EXPECT_EQ(w().lblFilesize, "4 KB");
    EXPECT_EQ(w().lblFilename, shortenedPath(path));
    EXPECT_EQ(w().txtSendRec, "Sending File");
    EXPECT_TRUE(w().loaded);

    send("%%Data Received-2000%%");
    EXPECT_EQ(expectBytes(2009), frame(data.mid(2000, 2000)));
    send("%%Data Received-4000%%");
    EXPECT_EQ(expectBytes(109), frame(data.mid(4000)));
    EXPECT_EQ(w().lblProgress.text, "100%");
    send("%%Data Received-4100%%");
    ASSERT_TRUE(waitUntil([&] { return w().cmdCancel.tag == "Finish"; }));
    EXPECT_FALSE(w().cmdPause.enabled);
    EXPECT_EQ(rings, QStringList{"alert.wav"});
    EXPECT_FALSE(t().sendFileOpen());
    EXPECT_TRUE(readFor(peer, 200).isEmpty());
}

TEST_F(RawPeer, ProgramReceivesTheWorkedExampleByteForByte)
{
    const QByteArray data = randomBytes(4100, 2);
    const QString target = copy.file("in/a.txt");
    // An old file under the chosen name is gone before the first byte.
    ASSERT_TRUE(writeFile(target, QByteArray(9000, 'o')));

    EXPECT_EQ(offer("C:\\docs\\a.txt", 4100, target), "%%FS Request OK%%C:\\docs\\a.txt*fs*");
    const auto& asked = copy.prompter().records();
    ASSERT_EQ(asked.size(), 2);
    EXPECT_EQ(asked[0].title, "File Receiving Request");
    EXPECT_EQ(asked[0].text, "Would you like to accept it?\r\n\r\n  a.txt  4 KB");
    EXPECT_EQ(asked[1].title, "Save File As");
    EXPECT_EQ(asked[1].text, "a.txt");
    EXPECT_EQ(QFileInfo(target).size(), 0);
    EXPECT_EQ(w().lblProgress.text, "0%");
    EXPECT_EQ(w().caption, "Receiving File");
    EXPECT_FALSE(f().model().controls.enabled(Control::mnuSendFile));

    send(frame(data.left(2000)));
    EXPECT_EQ(expectBytes(22), "%%Data Received-2000%%");
    EXPECT_EQ(w().lblProgress.text, "48%");
    send(frame(data.mid(2000, 2000)));
    EXPECT_EQ(expectBytes(22), "%%Data Received-4000%%");
    send(frame(data.mid(4000)));
    EXPECT_EQ(expectBytes(22), "%%Data Received-4100%%");

    EXPECT_EQ(readFile(target), data);
    EXPECT_EQ(w().lblFinished, "<4100>");
    EXPECT_EQ(w().cmdCancel.tag, "Finish");
    EXPECT_EQ(w().cmdPause.tag, "Open");
    EXPECT_TRUE(w().cmdPause.enabled);
    EXPECT_FALSE(w().lblProgress.visible);
    EXPECT_EQ(rings, QStringList{"alert.wav"});
    EXPECT_FALSE(t().recvFileOpen());
    // Open hands the received file to the desktop.
    t().cmdPause_Click();
    EXPECT_EQ(copy.desktop().opened, QStringList{target});
}

TEST_F(RawPeer, TornFramesAreJoinedAndTypingBehindAFrameReachesThePane)
{
    const QByteArray data = randomBytes(4100, 3);
    const QString target = copy.file("in/b.bin");
    offer("C:\\b.bin", 4100, target);

    // One frame in two reads: one acknowledgement, nothing in the pane.
    send("<*> " + data.left(700));
    pump(40);
    send(data.mid(700, 1300) + " </*>");
    EXPECT_EQ(expectBytes(22), "%%Data Received-2000%%");
    EXPECT_TRUE(readFor(peer, 100).isEmpty());
    EXPECT_EQ(f().model().txtClient(0).text(), "");

    // The sender's typing right behind a frame, in the same read.
    send(frame(data.mid(2000, 2000)) + "<KEY> x <:KEY>1</KEY>");
    EXPECT_EQ(expectBytes(22), "%%Data Received-4000%%");
    EXPECT_TRUE(waitUntil([&] { return f().model().txtClient(0).text() == "x"; }));

    // Torn, and typing behind the end in the second part.
    send("<*> " + data.mid(4000, 50));
    pump(40);
    send(data.mid(4050) + " </*><KEY> y <:KEY>2</KEY>");
    EXPECT_EQ(expectBytes(22), "%%Data Received-4100%%");
    EXPECT_TRUE(waitUntil([&] { return f().model().txtClient(0).text() == "xy"; }));
    EXPECT_EQ(readFile(target), data);
    EXPECT_EQ(w().cmdCancel.tag, "Finish");
}

TEST_F(RawPeer, AFrameIsNeverHeldBeyondItsBound)
{
    const QString target = copy.file("in/big.bin");
    offer("C:\\big.bin", 10000000, target);
    // A frame with no end marker: the copy holds it up to its bound, then
    // takes what it has by the literal rule (the last five bytes dropped).
    const QByteArray chunk(64 * 1024, 'q');
    send("<*> ");
    qsizetype sent = 0;
    while (sent < Transfer::kMaxHeldFrame + 8 * chunk.size()) {
        send(chunk);
        sent += chunk.size();
        pump(1);
    }
    const QByteArray ack = readAtLeast(peer, 25, 5000);
    ASSERT_TRUE(ack.startsWith("%%Data Received-")) << ack.left(60).toStdString();
    const qint64 held = QFileInfo(target).size();
    EXPECT_GT(held, Transfer::kMaxHeldFrame - 9);
    EXPECT_LE(held, Transfer::kMaxHeldFrame + 8 * chunk.size());
    EXPECT_EQ(ack, "%%Data Received-" + toCp1252(singleText(held)) + "%%");
    EXPECT_FALSE(t().holdingFrame());
}

TEST_F(RawPeer, PartialCountsPastTenMillionTravelInSinglePrecision)
{
    // Receiving: the copy's file reaches 10000384 bytes with a frame of 1024.
    // The count's text carries 10000380: the file is cut back to that
    // before it is acknowledged, so the sender goes on from its true length.
    const qint64 size = 10001000;
    const QString target = copy.file("in/c.bin");
    offer("C:\\c.bin", size, target);
    {
        QFile fill(target);
        ASSERT_TRUE(fill.open(QIODevice::WriteOnly | QIODevice::Append));
        ASSERT_EQ(fill.write(QByteArray(10000384 - 1024, 'f')), 10000384 - 1024);
    }
    send(frame(QByteArray(1024, 'g')));
    EXPECT_EQ(expectBytes(30), "%%Data Received-1.000038E+07%%");
    EXPECT_EQ(QFileInfo(target).size(), 10000380);
    // The sender believes the count and sends the last 620 bytes from there.
    send(frame(QByteArray(int(size - 10000380), 'h')));
    EXPECT_EQ(expectBytes(26), "%%Data Received-10001000%%");
    EXPECT_EQ(w().cmdCancel.tag, "Finish");
    const QByteArray got = readFile(target);
    ASSERT_EQ(got.size(), size);
    EXPECT_EQ(got.mid(10000384 - 1024, 1020), QByteArray(1020, 'g'));
    EXPECT_EQ(got.mid(10000380), QByteArray(620, 'h'));
    EXPECT_FALSE(t().recvFileOpen());
}

TEST_F(RawPeer, TheSenderGoesOnFromTheCountItIsGiven)
{
    const QByteArray data = randomBytes(10001000, 4);
    const QString path = copy.file("out/d.bin");
    ASSERT_TRUE(writeFile(path, data));
    copy.set("Byte Per Send", "1024");
    copy.prompter().addAnswers({"file:" + path});
    t().mnuSendFile_Click();
    readFor(peer, 100);
    send("%%FS Request OK%%" + toCp1252(wirePath(path)) + "*fs*");
    EXPECT_EQ(expectBytes(1033), frame(data.left(1024)));
    send("%%Data Received-1.000038E+07%%");
    EXPECT_EQ(expectBytes(629), frame(data.mid(10000380)));
    send("%%Data Received-10001000%%");
    EXPECT_TRUE(waitUntil([&] { return w().cmdCancel.tag == "Finish"; }));
}

TEST_F(RawPeer, PausedAndCancelledSendersDropAcknowledgements)
{
    const QByteArray data = randomBytes(8000, 5);
    const QString path = copy.file("out/e.bin");
    EXPECT_EQ(sendAccepted(path, data, 2000), frame(data.left(2000)));

    t().cmdPause_Click();
    EXPECT_EQ(expectBytes(17), "%%Pause Sending%%");
    EXPECT_EQ(w().cmdPause.tag, "Continue");
    EXPECT_EQ(w().cmdCancel.tag, "Unload");
    EXPECT_EQ(w().caption, "Pause - Sending File");
    send("%%Data Received-2000%%");
    EXPECT_TRUE(readFor(peer, 200).isEmpty());
    EXPECT_EQ(t().sendFileSent, 2000);

    // Continue on the sending side asks the receiver; its bare
    // acknowledgement brings the next frame from the stored position.
    t().cmdPause_Click();
    EXPECT_EQ(expectBytes(27), "%%Continue Receiving File%%");
    EXPECT_EQ(w().cmdPause.tag, "Pause");
    EXPECT_EQ(w().cmdCancel.tag, "Cancel");
    send("%%Data Received-");
    EXPECT_EQ(expectBytes(2009), frame(data.mid(2000, 2000)));

    send("%%Sending Cancel%%");
    ASSERT_TRUE(waitUntil([&] { return t().transferCancelled; }));
    EXPECT_EQ(w().lblProgress.text, "File sending/receiving cancelled");
    EXPECT_EQ(w().caption, "Sending File (Cancelled)");
    EXPECT_FALSE(w().cmdPause.enabled);
    EXPECT_EQ(beeps, 1);
    EXPECT_TRUE(f().model().controls.enabled(Control::mnuSendFile));
    send("%%Data Received-4000%%");
    EXPECT_TRUE(readFor(peer, 200).isEmpty());
}

TEST_F(RawPeer, AboveThirtyTwoHundredBytesPerFrameThisSideCannotPause)
{
    const QByteArray data = randomBytes(10000, 6);
    const QString path = copy.file("out/g.bin");
    ASSERT_TRUE(writeFile(path, data));
    copy.set("Byte Per Send", "3201");
    copy.prompter().addAnswers({"file:" + path});
    t().mnuSendFile_Click();
    readFor(peer, 100);
    send("%%FS Request OK%%" + toCp1252(wirePath(path)) + "*fs*");
    EXPECT_EQ(expectBytes(3210), frame(data.left(3201)));
    EXPECT_FALSE(w().cmdPause.enabled);
    t().cmdPause_Click();
    EXPECT_FALSE(t().transferPaused);
    EXPECT_TRUE(readFor(peer, 150).isEmpty());
    // The peer still can.
    send("%%Pause Sending%%");
    ASSERT_TRUE(waitUntil([&] { return t().transferPaused; }));
    EXPECT_EQ(w().cmdPause.tag, "Continue");
}

TEST_F(RawPeer, AcceptanceMustNameTheOfferedPath)
{
    const QString path = copy.file("out/f.txt");
    ASSERT_TRUE(writeFile(path, "hello"));
    // An acceptance with nothing offered starts nothing.
    send("%%FS Request OK%%" + toCp1252(wirePath(path)) + "*fs*");
    EXPECT_TRUE(readFor(peer, 150).isEmpty());

    copy.prompter().addAnswers({"file:" + path});
    t().mnuSendFile_Click();
    readFor(peer, 100);
    // Another path: nothing, and no word.
    send("%%FS Request OK%%C:\\other.txt*fs*");
    EXPECT_TRUE(readFor(peer, 150).isEmpty());
    // No terminator: said, and taken as if it stood behind the text less
    // its last character.
    send("%%FS Request OK%%" + toCp1252(wirePath(path)) + "!");
    EXPECT_EQ(expectBytes(14), frame("hello"));
    EXPECT_TRUE(copy.prompter().asked("Protocol Error: %%FS Request OK%%\r\nData: " +
                                      wirePath(path) + "!"));
}

TEST_F(RawPeer, ARequestWithoutTerminatorIsTakenLessItsLastCharacter)
{
    copy.prompter().addAnswers({"ok", "yes", "file:" + copy.file("in/a.txt")});
    send("%%File Sending Request%%C:\\docs\\a.txt>4100");
    EXPECT_EQ(expectBytes(34), "%%FS Request OK%%C:\\docs\\a.txt*fs*");
    EXPECT_TRUE(copy.prompter().asked(
        "Protocol Error: %%File Sending Request%%\r\nData: C:\\docs\\a.txt>4100"));
    EXPECT_TRUE(copy.prompter().asked("  a.txt  410 B"));
    EXPECT_EQ(t().recvFileSize, 410);
}

TEST_F(RawPeer, RefusingAnOfferAnswersRejected)
{
    const struct {
        QStringList answers;
    } cases[] = {{{"no"}}, {{"yes", "cancel"}}};
    for (const auto& c : cases) {
        copy.prompter().addAnswers(c.answers);
        send("%%File Sending Request%%C:\\x.txt>10*fs*");
        EXPECT_EQ(expectBytes(23), "%%FS Request Rejected%%") << c.answers.join(',').toStdString();
        EXPECT_FALSE(t().recvFileOpen());
    }
}

TEST_F(RawPeer, NamesFromThePeerNeverLeadOutOfTheChosenFolder)
{
    const QString folder = copy.file("downloads");
    QDir().mkpath(folder);
    const struct {
        const char* offer;
        const char* proposed;
    } cases[] = {
        {"C:/x/../../evil.txt", "evil.txt"},
        {"..\\..\\..\\evil2.txt", "evil2.txt"},
        {"a\\..", ""},
        {"/etc/passwd", "passwd"},
    };
    for (const auto& c : cases) {
        copy.prompter().clearRecords();
        // The user saves under the proposed name in the chosen folder.
        const QString name = QLatin1String(c.proposed);
        const QString target = folder + '/' + (name.isEmpty() ? QStringLiteral("unnamed") : name);
        offer(QLatin1String(c.offer), 5, target);
        ASSERT_GE(copy.prompter().records().size(), 2) << c.offer;
        EXPECT_EQ(copy.prompter().records()[1].text, name) << c.offer;
        send(frame("12345"));
        expectBytes(19);
        EXPECT_EQ(readFile(target), "12345") << c.offer;
    }
    EXPECT_FALSE(QFileInfo::exists(copy.file("evil.txt")));
    EXPECT_FALSE(QFileInfo::exists(QFileInfo(copy.appPath()).dir().absolutePath() + "/evil.txt"));
    // A ring sound is written by the program itself: a bare name only.
    EXPECT_FALSE(t().receiveRingFile("../ring.wav", 5, 50000));
    EXPECT_FALSE(t().receiveRingFile("sub/ring.wav", 5, 50000));
    EXPECT_TRUE(t().receiveRingFile("ring.wav", 5, 50000));
    EXPECT_EQ(t().recvFilePath, copy.file("ring.wav"));
}

// A data frame with nothing being received is written nowhere; the write
// fails and the peer is told to cancel. What follows its end marker goes
// back to the receive loop when it is a message, else the frame takes the
// whole read; a torn one is not waited for.
TEST_F(RawPeer, StrayFramesAreDroppedAndWhatFollowsThemIsRead)
{
    const struct {
        const char* arrival;
        const char* pane;
    } cases[] = {
        {"<*> xx </*><Paste> c</Paste>", "c"},
        {"<*> xx </*>zz<Paste> c</Paste>", ""},
        {"<*> xx", ""},
    };
    for (const auto& c : cases) {
        f().model().txtClient(0).clear();
        f().receiver().handleArrival(0, QByteArray(c.arrival));
        EXPECT_EQ(f().model().txtClient(0).text(), QLatin1String(c.pane)) << c.arrival;
        // Nothing is being received: no answer, nothing held.
        EXPECT_TRUE(readFor(peer, 100).isEmpty()) << c.arrival;
        EXPECT_FALSE(t().holdingFrame()) << c.arrival;
    }
    // The next arrival is read as it stands.
    f().receiver().handleArrival(0, QByteArray("<Paste> d</Paste>"));
    EXPECT_EQ(f().model().txtClient(0).text(), "d");
}

// Every file message followed by a typed character in the same read: what
// the dispatcher leaves goes round the receive loop again, or nothing does.
// Each message acts only on a transfer of this session: with one under way
// it has its effect, with none it changes nothing at all.
TEST_F(RawPeer, EachMessageLeavesTheRestItShould)
{
    const QString key = QStringLiteral("<KEY> z <:KEY>1</KEY>");
    const QString source = copy.file("out/m.bin");
    ASSERT_TRUE(writeFile(source, randomBytes(9000, 8)));
    enum Setup { Offering, Receiving };
    // The copy offers a file, or takes one from the peer.
    auto setUp = [&](Setup how) {
        t().endSession();
        readFor(peer, 30);
        if (how == Offering) {
            copy.prompter().addAnswers({"file:" + source});
            t().mnuSendFile_Click();
        } else {
            offer("C:\\m.bin", 9000, copy.file("in/m.bin"));
        }
        readFor(peer, 30);
    };
    const struct {
        const char* message;
        Setup setup;
        bool restShown;
        std::function<bool(RawPeer&)> effect;
    } cases[] = {
        {"%%FS Request Rejected%%", Offering, true,
         [](RawPeer& p) { return p.copy.prompter().asked("File sending request Rejected"); }},
        {"%%Pause Sending%%", Receiving, true, [](RawPeer& p) { return p.t().transferPaused; }},
        {"%%Continue Sending File%%", Receiving, true,
         [](RawPeer& p) { return !p.t().transferPaused; }},
        {"%%Continue Receiving File%%", Receiving, true,
         [](RawPeer& p) { return p.expectBytes(16) == "%%Data Received-"; }},
        {"%%Unload%%", Receiving, true,
         [](RawPeer& p) { return !p.w().loaded && p.f().session().TransferOnHold; }},
        {"%%Data Received-", Offering, true, [](RawPeer&) { return true; }},
        {"%%Sending Cancel%%", Receiving, false, [](RawPeer& p) { return p.t().transferCancelled; }},
        {"%%Error%%", Receiving, false,
         [](RawPeer& p) { return p.beeps > 0 && !p.w().cmdPause.enabled; }},
        {"%%Something Else%%", Receiving, false, [](RawPeer&) { return true; }},
    };
    for (const auto& c : cases) {
        setUp(c.setup);
        f().model().txtClient(0).clear();
        beeps = 0;
        f().receiver().handleArrival(0, toCp1252(QLatin1String(c.message) + key));
        EXPECT_EQ(f().model().txtClient(0).text(), c.restShown ? "z" : "") << c.message;
        EXPECT_TRUE(c.effect(*this)) << c.message;
    }

    // With nothing under way the same messages leave the same rest and do
    // nothing: no box, no pause, no window, no hold, no answer.
    for (const auto& c : cases) {
        t().endSession();
        t().unloadProgress();
        readFor(peer, 30);
        copy.prompter().clearRecords();
        f().model().txtClient(0).clear();
        beeps = 0;
        f().receiver().handleArrival(0, toCp1252(QLatin1String(c.message) + key));
        EXPECT_EQ(f().model().txtClient(0).text(), c.restShown ? "z" : "") << c.message;
        EXPECT_TRUE(copy.prompter().records().isEmpty()) << c.message;
        EXPECT_FALSE(t().transferPaused) << c.message;
        EXPECT_FALSE(t().transferCancelled) << c.message;
        EXPECT_FALSE(w().loaded) << c.message;
        EXPECT_FALSE(f().session().TransferOnHold) << c.message;
        EXPECT_EQ(beeps, 0) << c.message;
        EXPECT_TRUE(readFor(peer, 50).isEmpty()) << c.message;
    }
}

}  // namespace
