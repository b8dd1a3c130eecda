// The receive path: one arrival in, the remote pane and the bytes written
// back out. Arrivals go through handleArrival on a copy that holds a raw
// peer as its session, so whatever the copy answers can be read off it.

#include "core/Cp1252.h"
#include "access/CipherText.h"
#include "core/IniStore.h"
#include "support/Session.h"
#include "wire/LiveTyping.h"
#include "wire/Receiver.h"
#include "wire/RemotePane.h"
#include "wire/FrameText.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "access/Encryption.h"
#include "core/Sender.h"
#include "core/CopyContext.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include "wire/FrameText.h"

#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

// Records each emission of a signal as the list of its arguments.
struct Spy {
    QList<QVariantList> calls;
    template <typename Obj, typename... Args>
    Spy(Obj* obj, void (Obj::*sig)(Args...))
    {
        QObject::connect(obj, sig, [this](Args... args) {
            calls.append(QVariantList{QVariant::fromValue(std::decay_t<Args>(args))...});
        });
    }
    int count() const { return int(calls.size()); }
    const QVariantList& operator[](int i) const { return calls.at(i); }
};

class Receive : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(copy.start());
        acceptRawPeer(copy, peer);
        ASSERT_TRUE(f().session().IsConnected());
        f().receiver().selfRepair = false;
        f().receiver().acceptIncompatible = false;
        f().receiver().overflowLimit = 50;
        // The pane's look that the refresh answer sends has tests of its own.
        QObject::disconnect(&r(), &Receiver::refreshAnswerNeedsSettings, nullptr, nullptr);
        readFor(peer, 50);
    }
    FrmMain& f() { return copy.frm(); }
    Receiver& r() { return f().receiver(); }
    void arrive(const QString& text) { r().handleArrival(0, toCp1252(text)); }
    QString pane() { return f().model().txtClient(0).text(); }

    TestCopy copy;
    QTcpSocket peer;
};

struct PaneCase {
    const char* name;
    QString before;
    QString arrival;
    QString after;
    bool repair = false;
    bool acceptIncompatible = false;
    int overflow = 50;
};

TEST_F(Receive, OneArrivalChangesThePaneAsTheFramesSay)
{
    const QList<PaneCase> cases = {
        {"two keys in one arrival", "", "<KEY> a <:KEY>1</KEY><KEY> b <:KEY>2</KEY>", "ab"},
        {"key fits an empty pane", "", "<KEY> a <:KEY>1</KEY>", "a"},
        {"key at the wrong place is dropped", "abc", "<KEY> x <:KEY>3</KEY>", "abc"},
        {"key with no number keeps the last one", "", "<KEY> a <:KEY>1</KEY><KEY> b <:KEY></KEY>", "a"},
        {"deletion cuts back", "abc", "^BK1#BK", "a"},
        {"deletion to a longer length, repair off", "abc", "^BK3#BK", "abc"},
        {"deletion on an empty pane", "", "^BK0#BK", "", true},
        {"space fills up with blanks", "ab", "^SPC5#SPC", "ab   "},
        {"return fills up two at a time", "ab", "^RETURN5#RETURN", "ab\r\n\r\n"},
        {"return counted before its break adds the break", "ab", "^RETURN2#RETURN", "ab\r\n"},
        {"return, then the release with nothing pending, then a key", "ab",
         QString("^RETURN2#RETURN<KEY> ") + QChar(0) + " <:KEY>4</KEY><KEY> c <:KEY>5</KEY>", "ab\r\nc"},
        {"a release with nothing pending never adds its code 0", "ab\r\n",
         QString("<KEY> ") + QChar(0) + " <:KEY>5</KEY>", "ab\r\n"},
        {"return behind the pane's length", "abc", "^RETURN2#RETURN", "abc"},
        {"space at one below adds the blank", "ab", "^SPC3#SPC", "ab "},
        {"space at the pane's length", "ab ", "^SPC3#SPC", "ab "},
        {"a held key is one frame with the count of all presses", "ab", "<KEY> x <:KEY>5</KEY>", "abxxx"},
        {"a held key is not guessed once a frame was dropped", "abc",
         "<KEY> x <:KEY>3</KEY><KEY> y <:KEY>6</KEY>", "abc"},
        {"after a fill-up the pane is in step again", "abc",
         "<KEY> x <:KEY>3</KEY>^SPC5#SPC<KEY> y <:KEY>8</KEY>", "abc  yyy"},
        {"delete at the end with nothing to delete", "abc", "^BK3#BK", "abc", true},
        {"a deletion inside a burst carries no length", "abc", "^BK-2#BK<Paste> d</Paste>", "abcd"},
        {"a long pane is not cut by a space", "0123456789", "^SPC3#SPC", "0123456789"},
        {"clear then fill in one run", "xyz", "^Clr^RETURN5#RETURN", "\r\n\r\n\r\n"},
        {"old line break code", "a", "^Cr", "a\r\n"},
        {"a run of tabs", "", "^TAB^TAB^TAB", "\t\t\t"},
        {"paste has no position", "abc", "<Paste> hi</Paste>", "abchi"},
        {"escaped percent", "", "%%%", "%%"},
        {"escaped percent, lone rest shown", "", "%%%", "%%%", false, true},
        {"escaped ampersand", "", "&&&", "&&"},
        {"escaped caret", "", "^^", "^"},
        {"one character, not accepted", "", "x", ""},
        {"one character, accepted", "", "x", "x", false, true},
        {"a lone caret, accepted", "", "^", "^", false, true},
        {"unknown code stalls the rest", "", "^Q<Paste> a</Paste>", ""},
        {"unknown text is dropped", "", "hello there", ""},
        {"shut-down followed by text is not one", "", "^SD<Paste> a</Paste>", ""},
        {"control code then paste", "", "^TAB<Paste> x</Paste>", "\tx"},
        {"overflow of 1 gives two passes",
         "", "<KEY> a <:KEY>1</KEY><KEY> b <:KEY>2</KEY><KEY> c <:KEY>3</KEY>", "ab", false, false, 1},
        {"paste with its end lost", "", "<Paste> abc", ""},
        {"file message is consumed", "", "%%Pause Sending%%<Paste> a</Paste>", "a"},
        {"acknowledgement is consumed", "", "%%Data Received-2000%%<Paste> b</Paste>", "b"},
        {"board messages are consumed", "", "&&fc255$&&lt3$<Paste> d</Paste>", "d"},
        {"board strokes are consumed", "", "&&st1,2$3,4$%&&et5,6$%<Paste> e</Paste>", "e"},
        {"ring is consumed", "", "^gbell.wav^G^<Paste> f</Paste>", "f"},
    };
    for (const PaneCase& c : cases) {
        SCOPED_TRACE(c.name);
        r().remotePane().beginSession();
        f().model().txtClient(0).setText(c.before);
        f().receiver().selfRepair = c.repair;
        f().receiver().acceptIncompatible = c.acceptIncompatible;
        f().receiver().overflowLimit = c.overflow;
        arrive(c.arrival);
        EXPECT_EQ(pane(), c.after);
        EXPECT_TRUE(f().session().IsConnected());
        EXPECT_FALSE(r().remotePane().repairPending());
    }
    EXPECT_TRUE(readFor(peer, 100).isEmpty()) << "none of these asks the peer for anything";
    EXPECT_FALSE(copy.prompter().asked("ControlCheck Protocol Error"));
}

// A read of "&" alone: the first character of a board message the read cut
// off goes in front of its rest; as a bare character it keeps the
// lone-character rule, only shown a moment later.
TEST_F(Receive, ALoneAmpersandWaitsForTheRestOfItsMessage)
{
    f().receiver().acceptIncompatible = true;
    arrive("&");
    EXPECT_EQ(pane(), "") << "held, not shown yet";
    arrive("&&&");  // "&" then the doubled "&&" and a rest of one "&"
    EXPECT_EQ(pane(), "&&&&") << "only a read of \"&\" alone waits";

    arrive("&");
    arrive("x");  // a bare character behind it: both shown, in order
    EXPECT_EQ(pane(), "&&&&&x");

    arrive("&");
    ASSERT_TRUE(waitUntil([&] { return pane() == "&&&&&x&"; }, 2000)) << "let go in time";

    // Joined: the board takes its message and hands the paste behind it on.
    f().model().txtClient(0).setText("");
    arrive("&");
    arrive("&fc255$<Paste> p</Paste>");
    EXPECT_EQ(pane(), "p");

    f().receiver().acceptIncompatible = false;
    f().model().txtClient(0).setText("");
    arrive("&");
    arrive("y");
    pump(300);
    EXPECT_EQ(pane(), "") << "not accepted: neither is shown";
}

TEST_F(Receive, ClearKeepsTheOldTextInTheHistory)
{
    f().model().txtClient(0).setText("first");
    arrive("^Clr");
    f().model().txtClient(0).setText("second");
    arrive("^Clr");
    EXPECT_EQ(pane(), "");
    EXPECT_EQ(r().remoteHistory, "\r\nfirst\r\nsecond");
}

// Each repair clears the pane and sends it whole again: the cleared text
// kept for the record stays bounded however long the session runs.
TEST_F(Receive, ClearedTextKeptIsBoundedToTheNewest)
{
    const QString page(100'000, QLatin1Char('x'));
    for (int i = 0; i < 20; ++i) {
        f().model().txtClient(0).setText(page + QString::number(i));
        arrive("^Clr");
    }
    EXPECT_EQ(r().remoteHistory.size(), kClearedKept);
    EXPECT_TRUE(r().remoteHistory.endsWith(page + "19"));
}

TEST_F(Receive, AKnownDifferenceAsksOnceForTheWholeText)
{
    RemotePane& rp = r().remotePane();
    f().receiver().selfRepair = true;
    f().receiver().repairCountLimit = 50;
    rp.repairDelayMs = 30;
    f().model().txtClient(0).setText("abc");
    // A key behind the pane is dropped: the pane is known to differ.
    arrive("<KEY> x <:KEY>2</KEY>");
    EXPECT_FALSE(rp.inStep());
    EXPECT_TRUE(rp.repairPending());
    EXPECT_EQ(readAtLeast(peer, 8), "^reFresh");
    EXPECT_EQ(rp.repairCount, 1);

    // While the answer is awaited, a further difference asks nothing more.
    arrive("^SPC9#SPC");
    EXPECT_TRUE(readFor(peer, 120).isEmpty());
    arrive("^Clr^ffArial^fbFalse^fiFalse^fs10^fc0^bc16777215^><Paste> ab </Paste>");
    EXPECT_EQ(pane(), "ab ");
    EXPECT_TRUE(rp.inStep());

    // The sender's own resend inside the wait makes the repair needless.
    arrive("<KEY> y <:KEY>1</KEY>");
    EXPECT_TRUE(rp.repairPending());
    arrive("^Clr<Paste> abc</Paste>");
    EXPECT_FALSE(rp.repairPending());
    EXPECT_TRUE(readFor(peer, 120).isEmpty());
    EXPECT_EQ(rp.repairCount, 1);
}

TEST_F(Receive, AfterRefreshNothingIsGuessedUntilTheAnswerComes)
{
    f().receiver().selfRepair = true;
    f().model().txtClient(0).setText("abcd");
    f().typing().mnuRefresh_Click();
    EXPECT_EQ(readAtLeast(peer, 8), "^reFresh");
    // Typed before the answer left: its position runs ahead of the emptied
    // pane, and it is no held key.
    arrive("<KEY> x <:KEY>5</KEY>");
    EXPECT_EQ(pane(), "");
    EXPECT_FALSE(r().remotePane().repairPending());
    arrive("^Clr<Paste> abcdx</Paste>");
    EXPECT_EQ(pane(), "abcdx");
    EXPECT_TRUE(r().remotePane().inStep());
}

TEST_F(Receive, RepairsAreCountedPerSession)
{
    RemotePane& rp = r().remotePane();
    f().receiver().selfRepair = true;
    f().receiver().repairCountLimit = 1;
    rp.repairDelayMs = 10;
    rp.repairCount = 2;  // above the limit: as if repair were off
    f().model().txtClient(0).setText("ab");
    arrive("<KEY> q <:KEY>1</KEY>^SPC5#SPC");
    EXPECT_EQ(pane(), "ab   ");
    EXPECT_FALSE(rp.repairPending());
    EXPECT_TRUE(readFor(peer, 60).isEmpty());

    // A new session starts with no repairs used.
    rp.beginSession();
    EXPECT_EQ(rp.repairCount, 0);
    arrive("<KEY> q <:KEY>1</KEY>");
    EXPECT_EQ(readAtLeast(peer, 8), "^reFresh");
    arrive("^Clr");
    rp.repairCount = 1;  // at the limit it may still run
    arrive("<KEY> q <:KEY>1</KEY><KEY> r <:KEY>1</KEY>");
    EXPECT_EQ(readAtLeast(peer, 8), "^reFresh");
    arrive("^Clr");
    EXPECT_EQ(rp.repairCount, 2);
    arrive("<KEY> q <:KEY>9</KEY><KEY> q <:KEY>1</KEY>");
    EXPECT_FALSE(rp.repairPending()) << "the ceiling is reached";
}

TEST(ReceiveWithTyping, RefreshAnswerSendsThePanesLookAndVoiceBetweenClearAndText)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    QTcpSocket peer;
    acceptRawPeer(copy, peer);
    readFor(peer, 50);
    copy.frm().model().txtServer.setText("hi");
    copy.frm().receiver().handleArrival(0, "^reFresh");
    QByteArray got;
    waitUntil([&] { got += peer.readAll(); return got.endsWith("</Paste>"); });
    EXPECT_TRUE(got.startsWith("^Clr^ff")) << got.constData();
    // The voice follows the look, before the text.
    EXPECT_TRUE(got.contains("^><SPKSET> <L>")) << got.constData();
    EXPECT_TRUE(got.endsWith(" </SPKSET><Paste> hi</Paste>")) << got.constData();
}

TEST_F(Receive, RefreshIsAnsweredWithClearAndTheWholeText)
{
    Spy settings(&r(), &Receiver::refreshAnswerNeedsSettings);
    f().model().txtServer.setText("hello world");
    arrive("^reFresh");
    EXPECT_EQ(readAtLeast(peer, 31), "^Clr<Paste> hello world</Paste>");
    EXPECT_EQ(settings.count(), 1);
    EXPECT_TRUE(r().refreshAnswered);

    // Under encryption the key goes first, and the text is enciphered.
    f().encryption().encryptOn = true;
    f().encryption().sessionKey = "03:25 PM";
    arrive("^reFresh");
    const QByteArray cipher = genEPass("hello world", "03:25 PM");
    EXPECT_EQ(readAtLeast(peer, 16 + 4 + 16 + cipher.size()),
              "tt:=03:25 PM=:tt^Clr<Paste> " + cipher + "</Paste>");
    // Once the typing side sent its key, it is not sent again.
    r().keySent = [] { return true; };
    arrive("^reFresh");
    EXPECT_EQ(readAtLeast(peer, 20 + cipher.size()), "^Clr<Paste> " + cipher + "</Paste>");
}

TEST_F(Receive, KeyFramesAreTakenOutAndNeverStallTheTextBehindThem)
{
    const QString key = "03:25 PM";
    const QString hi = fromCp1252(genEPass("hi", toCp1252(key)));
    arrive("tt:=" + key + "=:tt<Paste> " + hi + "</Paste>");
    EXPECT_TRUE(f().encryption().remoteEncrypted);
    EXPECT_EQ(f().encryption().remoteKey, key);
    EXPECT_EQ(f().model().stStatusbar.text(9), "E");
    EXPECT_EQ(pane(), "hi");

    // The peer repeats its key at its first typing and with each resend:
    // what stands behind the frame is not lost.
    const QString c = fromCp1252(genEPass("!", toCp1252(key)));
    arrive("tt:=" + key + "=:tt<KEY> " + c + " <:KEY>3</KEY>");
    EXPECT_EQ(pane(), "hi!");
    EXPECT_EQ(f().encryption().remoteKey, key);

    // A key that changed is the one the text comes under from then on.
    const QString other = "01:00 AM";
    const QString ok = fromCp1252(genEPass("ok", toCp1252(other)));
    arrive("tt:=" + other + "=:tt<Paste> " + ok + "</Paste>");
    EXPECT_EQ(f().encryption().remoteKey, other);
    EXPECT_EQ(pane(), "hi!ok");

    // Only a frame without its end still stalls what follows it.
    arrive("tt:=02:00 AM<Paste> x</Paste>");
    EXPECT_EQ(pane(), "hi!ok");
    EXPECT_EQ(f().encryption().remoteKey, other);
}

TEST_F(Receive, RecordLinesCarryNameAndTime)
{
    f().session().PeerHostName = "buddy";
    arrive("<MSG> hello there </MSG>");
    arrive("<MSG> no end");
    const QStringList lines = f().model().txtTextMsg.text().split("\r\n");
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].startsWith("BUDDY ")) << lines[0].toStdString();
    EXPECT_TRUE(lines[0].endsWith(": hello there"));
    EXPECT_TRUE(lines[1].startsWith("BUDDY "));
    EXPECT_TRUE(lines[1].endsWith(": ")) << "the line is empty, the record line is still there";
}

TEST_F(Receive, FeatureMessagesReachTheirSignals)
{
    Spy rings(&r(), &Receiver::ringReceived);
    Spy format(&r(), &Receiver::formatReceived);
    Spy urls(&r(), &Receiver::webCheck);
    Spy speak(&r(), &Receiver::speakReceived);
    Spy spkset(&r(), &Receiver::speakerSettingReceived);
    Spy fetch(&r(), &Receiver::ringFileRequested);

    arrive("^gbell.wav^G^^rW");
    ASSERT_EQ(rings.count(), 1);
    EXPECT_EQ(rings[0][0].toString(), "bell.wav");
    EXPECT_EQ(fetch.count(), 1);

    const QString fmt = "^ffArial^fbFalse^fiFalse^fs10^fc0^bc16777215^>";
    f().model().txtClient(0).setText("ab");
    arrive(fmt + "^SPC3#SPC");
    ASSERT_EQ(format.count(), 1);
    EXPECT_EQ(format[0][0].toString(), fmt);
    EXPECT_EQ(pane(), "ab ");

    const QString voice = "<L>1033</L><PN>Engine</PN><E>e1</E><N>Mode</N><S>0</S><P>-1</P>";
    arrive("<URL> www.example.com </URL><SPKSET> " + voice + " </SPKSET><SPK> say this </SPK>");
    ASSERT_EQ(urls.count(), 1);
    EXPECT_EQ(urls[0][0].toString(), "www.example.com");
    ASSERT_EQ(spkset.count(), 1);
    EXPECT_EQ(spkset[0][0].toString(), voice);
    ASSERT_EQ(speak.count(), 1);
    EXPECT_EQ(speak[0][0].toString(), "say this");
    EXPECT_FALSE(speak[0][1].toBool()) << "taken by its own stage";
    arrive("^Clr<SPK> and this </SPK>");
    ASSERT_EQ(speak.count(), 2);
    EXPECT_EQ(speak[1][0].toString(), "and this");
    EXPECT_TRUE(speak[1][1].toBool()) << "taken behind a control code";
}

TEST_F(Receive, FileMessagesGoToTheInstalledDispatcher)
{
    QStringList seen;
    QByteArray seenBytes;
    r().cSendFileCheck = [&](QString& data, QByteArray& bytes) {
        seen << data;
        seenBytes = bytes;
        return Receiver::consumeFileMessage(data);
    };
    arrive("<Paste> a</Paste>%%FS Request Rejected%%<*> \x01\x02 </*>");
    ASSERT_EQ(seen.size(), 2);
    EXPECT_EQ(seen[0], QString("%%FS Request Rejected%%<*> \x01\x02 </*>"));
    EXPECT_EQ(seen[1], QString("<*> \x01\x02 </*>"));
    EXPECT_EQ(seenBytes.size(), 51) << "the bytes of the whole read go along";
    EXPECT_EQ(pane(), "a");
}

TEST_F(Receive, DefaultFileConsumption)
{
    const QList<QPair<QString, QString>> cases = {
        {"%%File Sending Request%%C:\\a.txt>4100*fs*rest", "rest"},
        {"%%File Sending Request%%no end", "ile Sending Request%%no end"},
        {"%%FS Request OK%%C:\\a.txt*fs*rest", "rest"},
        {"%%FS Request Rejected%%rest", "rest"},
        {"%%Sending Cancel%%rest", ""},
        {"%%Continue Sending File%%rest", "rest"},
        {"%%Continue Receiving File%%rest", "rest"},
        {"%%Data Received-1.000038E+07%%rest", "rest"},
        {"%%Data Received-", ""},
        {"%%Open Pause Window%%rest", "rest"},
        {"%%Unload%%rest", "rest"},
        {"%%Error%%rest", ""},
        {"%%Unknown%%rest", "%%Unknown%%rest"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Receiver::consumeFileMessage(c.first), c.second) << c.first.toStdString();
}

TEST_F(Receive, NoArrivalGrowsThePaneWithoutBound)
{
    f().model().txtClient(0).setText("ab");
    arrive("^SPC2147483647#SPC");
    EXPECT_LE(pane().size(), 1 << 20);
    EXPECT_GT(pane().size(), 2);
    f().model().txtClient(0).clear();
    arrive("^RETURN99999999999#RETURN");  // beyond 32 bits: not a number
    EXPECT_EQ(pane(), "");
    arrive("^RETURN2147483647#RETURN");
    EXPECT_LE(pane().size(), (1 << 20) + 1);
}

TEST_F(Receive, HostileArrivalsLeaveTheCopyAnswering)
{
    // 20,000 space frames in one arrival: the passes are bounded.
    QString spaces;
    for (int i = 0; i < 20000; ++i)
        spaces += "^SPC1#SPC";
    QElapsedTimer t;
    t.start();
    arrive(spaces);
    EXPECT_LT(t.elapsed(), 3000);
    EXPECT_EQ(pane(), " ");

    // A megabyte of noise, through the socket.
    QByteArray noise(1 << 20, '\0');
    QRandomGenerator gen(42);
    for (char& c : noise)
        c = char(gen.bounded(256));
    copy.prompter().clearRecords();
    t.restart();
    peer.write(noise);
    peer.flush();
    pump(1500);
    EXPECT_LT(t.elapsed(), 20000);
    ASSERT_TRUE(f().session().IsConnected());
    EXPECT_LE(f().model().txtClient(0).length(), 1 << 21);

    // Still answering.
    readFor(peer, 50);
    f().model().txtServer.setText("alive");
    f().encryption().encryptOn = false;
    peer.write("^reFresh");
    EXPECT_TRUE(readAtLeast(peer, 25).endsWith("^Clr<Paste> alive</Paste>"));
}

TEST_F(Receive, ArrivalsThroughTheSocketReachThePane)
{
    f().session().RemoteResponded = false;
    peer.write("<KEY> a <:KEY>1</KEY>");
    ASSERT_TRUE(waitUntil([&] { return pane() == "a"; }));
    EXPECT_TRUE(f().session().RemoteResponded);
    EXPECT_EQ(f().model().stStatusbar.text(3), "0 - 1");
    EXPECT_EQ(f().model().stStatusbar.panel(1).picture, StatePicture::picReady);
    EXPECT_EQ(f().session().arrivedLength, 21);
}

// A frame lost on the way is healed: the receiver asks for a resend and
// the answer rebuilds its pane.
TEST_F(Receive, ADroppedFrameIsHealedByTheRepair)
{
    f().receiver().selfRepair = true;
    f().receiver().repairCountLimit = 50;
    r().remotePane().repairDelayMs = 20;
    peer.write("<KEY> a <:KEY>1</KEY>");
    ASSERT_TRUE(waitUntil([&] { return pane() == "a"; }));
    // The next frame lost its end on the way: the pane may have missed it.
    peer.write("<KEY> b <:KEY>");
    EXPECT_EQ(readAtLeast(peer, 8), "^reFresh");
    peer.write("^Clr<Paste> ab </Paste>");
    ASSERT_TRUE(waitUntil([&] { return pane() == "ab "; }));
    EXPECT_EQ(r().remoteHistory, "\r\na");
}

TEST(ReceiveTwoCopies, RepairBetweenTwoCopiesRestoresThePane)
{
    TestCopy a, b;
    ASSERT_TRUE(a.start());
    ASSERT_TRUE(b.start());
    ASSERT_TRUE(connectCopies(a, b));
    b.frm().receiver().selfRepair = true;
    b.frm().receiver().repairCountLimit = 50;
    b.frm().receiver().remotePane().repairDelayMs = 20;
    a.frm().model().txtServer.setText("hello world");
    b.frm().model().txtClient(0).setText("hel");
    // The rest of the word got lost in a frame that lost its end.
    b.frm().receiver().handleArrival(0, "<KEY> l <:KEY>");
    a.frm().sender().xSendData("^SPC6#SPC");
    EXPECT_TRUE(waitUntil([&] { return b.frm().model().txtClient(0).text() == "hello world"; }))
        << b.frm().model().txtClient(0).text().toStdString();
}

}  // namespace

namespace {

TEST_F(Receive, VersionFrameIsCheckedOnlyWhenAskedFor)
{
    copy.set("Version Check", "0");
    arrive("!ver. Vonnel 2.0.0 ver!<Paste> a</Paste>");
    EXPECT_EQ(pane(), "a");
    EXPECT_FALSE(copy.prompter().asked("Version Conflict"));

    copy.set("Version Check", "1");
    arrive("!ver. " + f().ctx().VersionString + " ver!<Paste> b</Paste>");
    EXPECT_EQ(pane(), "ab");
    EXPECT_FALSE(copy.prompter().asked("Version Conflict"));
    EXPECT_TRUE(f().session().IsConnected());

    arrive("!ver. Vonnel 2.0.0 ver!");
    EXPECT_TRUE(copy.prompter().asked("Version Conflict"));
    EXPECT_TRUE(copy.prompter().asked("Remote user's version - Vonnel 2.0.0"));
    EXPECT_FALSE(f().session().IsConnected()) << "a conflicting version ends the session";
}

}  // namespace
