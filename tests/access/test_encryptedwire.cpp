// Enciphered frames as they stand on the wire: the sending loop byte for
// byte, the key frames, a peer with a PC1 of its own, and two copies with
// encryption on at one side only.

#include "core/Cp1252.h"
#include "access/AccessBench.h"
#include "access/Encryption.h"
#include "support/Session.h"
#include "support/TestCopy.h"
#include "wire/LiveTyping.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "core/Sender.h"

#include <QRegularExpression>
#include <QTcpServer>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

const QByteArray kKey = "03:25 PM";

QByteArray E(const QByteArray& plain)
{
    return PeerPc1::encrypt(kKey, plain);
}

// The inner texts of all enciphered kinds of frame in a byte stream, in order.
QList<QByteArray> eInners(const QByteArray& bytes)
{
    static const QRegularExpression frames(
        QStringLiteral("<Paste> (.*?)</Paste>|<KEY> (.*?) <:KEY>|<e#(.)#e>|&&<#> (.*?) <#>&&|"
                       "&&lbl(.*?)\\$|<URL> (.*?) </URL>|<SPK> (.*?) </SPK>|<MSG> (.*?) </MSG>"),
        QRegularExpression::DotMatchesEverythingOption);
    QList<QByteArray> out;
    auto it = frames.globalMatch(QString::fromLatin1(bytes));
    while (it.hasNext()) {
        const auto m = it.next();
        for (int g = 1; g <= 8; ++g)
            if (m.capturedStart(g) >= 0)
                out << m.captured(g).toLatin1();
    }
    return out;
}

bool onlyCipherLetters(const QByteArray& text)
{
    for (char c : text)
        if (c < 'a' || c > 'p')
            return false;
    return true;
}

// A copy taken on by a raw peer, with encryption on under the fixed key.
struct EncryptedSession {
    EncryptedSession()
    {
        EXPECT_TRUE(copy.start());
        acceptRawPeer(copy, peer);
        EXPECT_TRUE(copy.frm().session().IsConnected());
        copy.frm().encryption().encryptOn = true;
        copy.frm().encryption().sessionKey = QString::fromLatin1(kKey);
        // The key goes out before the first enciphered frame of the session.
        EXPECT_TRUE(copy.frm().encryption().announceKeyBeforeCipher());
        EXPECT_EQ(readAtLeast(peer, 16, 2000), "tt:=" + kKey + "=:tt");
    }
    QByteArray send(const QString& text, int expect)
    {
        copy.frm().sender().xSendData(text);
        return readAtLeast(peer, expect, 2000);
    }
    TestCopy copy;
    QTcpSocket peer;
};

// A relay between a caller and a callee that keeps what passes each way.
class Tap : public QObject {
public:
    explicit Tap(quint16 target) : m_target(target)
    {
        m_server.listen(QHostAddress::LocalHost, 0);
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            m_in = m_server.nextPendingConnection();
            connect(m_in, &QTcpSocket::readyRead, this, [this] {
                const QByteArray d = m_in->readAll();
                toCallee += d;
                m_out.write(d);
            });
            connect(&m_out, &QTcpSocket::readyRead, this, [this] {
                const QByteArray d = m_out.readAll();
                toCaller += d;
                m_in->write(d);
            });
            m_out.connectToHost(QHostAddress::LocalHost, m_target);
        });
    }
    quint16 port() const { return m_server.serverPort(); }

    QByteArray toCaller;
    QByteArray toCallee;

private:
    quint16 m_target;
    QTcpServer m_server;
    QTcpSocket* m_in = nullptr;
    QTcpSocket m_out;
};

}  // namespace

TEST(EncryptedSend, FramesAreEncipheredByteForByte)
{
    EncryptedSession s;
    const QByteArray allEight = "<e#q#e><Paste> p</Paste>&&<#> c <#>&&&&lblL$<KEY> k <:KEY>1</KEY>"
                                "<URL> u </URL><SPK> s </SPK><MSG> m </MSG>";
    const QByteArray allEightOut = "<e#" + E("q") + "#e><Paste> " + E("p") + "</Paste>&&<#> " +
                                   E("c") + " <#>&&&&lbl" + E("L") + "$<KEY> " + E("k") +
                                   " <:KEY>1</KEY><URL> " + E("u") + " </URL><SPK> " + E("s") +
                                   " </SPK><MSG> " + E("m") + " </MSG>";
    const struct {
        QByteArray in;
        QByteArray out;
    } cases[] = {
        {"<KEY> a <:KEY>3</KEY>", "<KEY> if <:KEY>3</KEY>"},
        {"^BK3#BK", "^BK3#BK"},
        {"<Paste> hello</Paste>", "<Paste> imkcidhaoe</Paste>"},
        {"<KEY> a <:KEY>1</KEY><KEY> b <:KEY>2</KEY>",
         "<KEY> " + E("a") + " <:KEY>1</KEY><KEY> " + E("b") + " <:KEY>2</KEY>"},
        {"<e#z#e>", "<e#" + E("z") + "#e>"},
        {"&&<#> hi there <#>&&", "&&<#> " + E("hi there") + " <#>&&"},
        {"&&lblLabel$12$", "&&lbl" + E("Label") + "$12$"},
        {"<URL> www.tollwood.org </URL>", "<URL> " + E("www.tollwood.org") + " </URL>"},
        {"<SPK> say it </SPK>", "<SPK> " + E("say it") + " </SPK>"},
        {"<MSG> ab </MSG>", "<MSG> " + E("ab") + " </MSG>"},
        // Never enciphered kinds.
        {"<SPKSET> 1$2$3 </SPKSET>", "<SPKSET> 1$2$3 </SPKSET>"},
        {"tt:=03:25 PM=:tt", "tt:=03:25 PM=:tt"},
        {"^gbell.wav^G^", "^gbell.wav^G^"},
        {"%%FS Request OK%%", "%%FS Request OK%%"},
        // Unwrapped text is cut at a marker only when all eight are present
        // further on; otherwise everything goes out in clear, frames included.
        {"^RETURN2#RETURN<MSG> ab </MSG>", "^RETURN2#RETURN<MSG> ab </MSG>"},
        {"^Z" + allEight, "^Z" + allEightOut},
        {"^Z" + allEight.mid(7), "^Z" + allEight.mid(7)},
    };
    for (const auto& c : cases) {
        const QByteArray got = s.send(QString::fromLatin1(c.in), int(c.out.size()));
        EXPECT_EQ(got, c.out) << "sent " << c.in.constData();
    }
    EXPECT_TRUE(readFor(s.peer, 100).isEmpty());
    // Typed characters leave their cipher text in error.log.
    EXPECT_EQ(ReadIni(kSection, "eData 1", s.copy.file("error.log")), "if");
}

TEST(EncryptedSend, MissingClosingMarkerSendsNothing)
{
    EncryptedSession s;
    s.copy.frm().sender().xSendData("<Paste> a");
    EXPECT_TRUE(readFor(s.peer, 200).isEmpty());
    EXPECT_TRUE(s.copy.prompter().asked("xSendData Error: "));
    EXPECT_TRUE(s.copy.prompter().asked(" caused by data <<Paste> a>"));
}

TEST(EncryptedSend, KeyFramesOnTheWire)
{
    EncryptedSession s;
    FrmMain& f = s.copy.frm();
    Encryption& enc = f.encryption();
    static const QRegularExpression keyForm("^\\d\\d:\\d\\d [AP]M$");

    // Accepting side with encryption off: no key, nothing sent.
    enc.beginSession();
    EXPECT_FALSE(f.encryption().encryptOn);
    f.encryption().sessionKey.clear();
    EXPECT_FALSE(enc.sendKeyOnAccept());
    EXPECT_TRUE(f.encryption().sessionKey.isEmpty());
    // One that later switched it on has no key: the first typing sends
    // nothing, but the first enciphered frame goes out behind a key of the
    // clock, so the peer never shows cipher letters.
    f.encryption().encryptOn = true;
    f.typing().keySent = false;
    bool keySent = false;
    EXPECT_FALSE(enc.sendFirstKey(keySent));
    const QByteArray first = s.send("<KEY> a <:KEY>1</KEY>", 16 + 21);
    ASSERT_TRUE(keyForm.match(f.encryption().sessionKey).hasMatch()) << f.encryption().sessionKey.toStdString();
    const QByteArray late = "tt:=" + f.encryption().sessionKey.toLatin1() + "=:tt";
    EXPECT_EQ(first, late + "<KEY> " + PeerPc1::encrypt(f.encryption().sessionKey.toLatin1(), "a") + " <:KEY>1</KEY>");
    EXPECT_TRUE(f.typing().keySent);
    // Once per session: later frames, and frames with nothing to encipher,
    // go alone.
    EXPECT_EQ(s.send("<KEY> b <:KEY>2</KEY>", 21),
              "<KEY> " + PeerPc1::encrypt(f.encryption().sessionKey.toLatin1(), "b") + " <:KEY>2</KEY>");
    EXPECT_FALSE(enc.announceKeyBeforeCipher());

    // Accepting side with encryption on: a key of the clock, through xSendData.
    EXPECT_TRUE(enc.sendKeyOnAccept());
    ASSERT_TRUE(keyForm.match(f.encryption().sessionKey).hasMatch()) << f.encryption().sessionKey.toStdString();
    const QByteArray frame = "tt:=" + f.encryption().sessionKey.toLatin1() + "=:tt";
    EXPECT_EQ(readAtLeast(s.peer, 16), frame);
    EXPECT_EQ(f.model().stStatusbar.text(8), "E");
    EXPECT_EQ(f.model().stStatusbar.panel(8).toolTip, "Local session: Encryption On");

    // First typing: once per session.
    EXPECT_TRUE(enc.sendFirstKey(keySent));
    EXPECT_TRUE(keySent);
    EXPECT_EQ(readAtLeast(s.peer, 16), frame);
    EXPECT_FALSE(enc.sendFirstKey(keySent));
    // The refresh answer repeats it while the typing path has not sent it.
    EXPECT_TRUE(enc.sendKeyForRefresh(false));
    EXPECT_EQ(readAtLeast(s.peer, 16), frame);
    EXPECT_FALSE(enc.sendKeyForRefresh(true));
    // Calling side: always a new key, and the frame raw under encryption.
    f.encryption().sessionKey = "xx";
    EXPECT_TRUE(enc.sendKeyOnConnect());
    EXPECT_TRUE(keyForm.match(f.encryption().sessionKey).hasMatch());
    EXPECT_EQ(readAtLeast(s.peer, 16), "tt:=" + f.encryption().sessionKey.toLatin1() + "=:tt");
    f.encryption().encryptOn = false;
    f.encryption().sessionKey = "xx";
    EXPECT_FALSE(enc.sendKeyOnConnect());
    EXPECT_NE(f.encryption().sessionKey, "xx");
    EXPECT_TRUE(readFor(s.peer, 100).isEmpty());
}

TEST(EncryptedSend, PeerWithItsOwnCipherReadsAndIsRead)
{
    TestCopy copy(0, {{"Encrypted", "1"}});
    ASSERT_TRUE(copy.start());
    QTcpSocket peer;
    acceptRawPeer(copy, peer);
    FrmMain& f = copy.frm();
    ASSERT_TRUE(f.session().IsConnected());
    Encryption& enc = f.encryption();
    enc.beginSession();
    ASSERT_TRUE(f.encryption().encryptOn);
    ASSERT_TRUE(enc.sendKeyOnAccept());

    // The peer learns the key from the frame, then reads the program's text.
    QByteArray got = readAtLeast(peer, 16);
    static const QRegularExpression keyFrame("tt:=(.*)=:tt");
    const auto m = keyFrame.match(QString::fromLatin1(got));
    ASSERT_TRUE(m.hasMatch()) << got.constData();
    const QByteArray key = m.captured(1).toLatin1();
    const QString text = QStringLiteral("Hello, peer! Grüße, 5 € <b>");
    f.sender().xSendData("<Paste> " + text + "</Paste>");
    f.sender().xSendData("<KEY> x <:KEY>5</KEY>");
    got = readFor(peer, 300);
    static const QRegularExpression paste("^<Paste> ([a-p]+)</Paste><KEY> ([a-p]+) <:KEY>5</KEY>$");
    const auto p = paste.match(QString::fromLatin1(got));
    ASSERT_TRUE(p.hasMatch()) << got.constData();
    EXPECT_EQ(PeerPc1::decrypt(key, p.captured(1).toLatin1()), toCp1252(text));
    EXPECT_EQ(PeerPc1::decrypt(key, p.captured(2).toLatin1()), "x");

    // What the peer writes the program's routines read: the key frame is
    // taken in, and the inner text deciphered with it.
    const QByteArray peerBytes = "tt:=10:42 AM=:tt<Paste> " +
                                 PeerPc1::encrypt("10:42 AM", toCp1252(QStringLiteral("from the peer, ü"))) + "</Paste>";
    QString arrival = fromCp1252(peerBytes);
    ASSERT_TRUE(enc.takeRemoteKey(arrival));
    EXPECT_EQ(f.encryption().remoteKey, "10:42 AM");
    ASSERT_TRUE(arrival.startsWith("<Paste> ") && arrival.endsWith("</Paste>"));
    EXPECT_EQ(enc.decipher(arrival.mid(8, arrival.size() - 16)), QStringLiteral("from the peer, ü"));
}

// Encryption on at the accepting side only. What that side sends carries
// cipher letters in every enciphered frame and control codes unchanged, and
// reads back in clear with its key frame; the other direction stays plain.
TEST(EncryptedSend, TwoCopiesEncryptionOnOneSideOnly)
{
    const quint16 calleePort = freePort();
    Tap tap(calleePort);
    TestCopy caller;
    // The old wire between two copies: the callee does not go private.
    TestCopy callee(tap.port(),
                    {{"LocalPort", QString::number(calleePort)}, {"Encrypted", "1"}, {"Private Sessions", "0"}});
    ASSERT_TRUE(caller.start());
    ASSERT_TRUE(callee.start());
    ASSERT_TRUE(connectCopies(caller, callee));

    FrmMain& a = callee.frm();
    a.encryption().beginSession();
    ASSERT_TRUE(a.encryption().encryptOn);
    ASSERT_TRUE(a.encryption().sendKeyOnAccept());
    const QStringList sent = {"<KEY> H <:KEY>1</KEY>", "^SPC2#SPC", "<KEY> i <:KEY>3</KEY>",
                              "^BK3#BK", "<Paste> hello there</Paste>", "<MSG> Hi line </MSG>"};
    for (const QString& frame : sent)
        a.sender().xSendData(frame);
    caller.frm().sender().xSendData("<Paste> plain from the caller</Paste>");
    ASSERT_TRUE(waitUntil([&] {
        return tap.toCaller.contains(" </MSG>") && tap.toCallee.contains("caller</Paste>");
    }, 3000));

    const QByteArray wire = tap.toCaller;
    EXPECT_TRUE(wire.contains("^SPC2#SPC")) << wire.constData();
    EXPECT_TRUE(wire.contains("^BK3#BK")) << wire.constData();
    EXPECT_FALSE(wire.contains("hello there"));
    EXPECT_FALSE(wire.contains("Hi line"));
    const QList<QByteArray> inners = eInners(wire);
    ASSERT_EQ(inners.size(), 4) << wire.constData();
    for (const QByteArray& inner : inners)
        EXPECT_TRUE(onlyCipherLetters(inner)) << inner.constData();

    // Read back the way a receiver does: the key frame first, then each frame.
    AccessBench reader;
    QString rest = fromCp1252(wire.mid(wire.indexOf("tt:=")));
    ASSERT_TRUE(reader.frm->encryption().takeRemoteKey(rest));
    EXPECT_EQ(reader.frm->encryption().remoteKey, a.encryption().sessionKey);
    QStringList clear;
    for (const QByteArray& inner : eInners(toCp1252(rest)))
        clear << reader.frm->encryption().decipher(QString::fromLatin1(inner));
    EXPECT_EQ(clear, QStringList({"H", "i", "hello there", "Hi line"}));

    // The caller has encryption off: its text crosses in clear.
    EXPECT_TRUE(tap.toCallee.contains("<Paste> plain from the caller</Paste>"));
    EXPECT_FALSE(tap.toCallee.contains("tt:="));
}

// Encryption switched on in the middle of a session, after the first typing,
// on either side: the peer gets the key before the first enciphered
// character and its pane reads what was typed, never cipher letters.
TEST(EncryptedSend, SwitchedOnMidSessionThePeerReadsClearText)
{
    for (const bool callerSwitches : {true, false}) {
        SCOPED_TRACE(callerSwitches ? "caller switches" : "callee switches");
        TestCopy caller;
        TestCopy callee;
        ASSERT_TRUE(caller.start());
        ASSERT_TRUE(callee.start());
        ASSERT_TRUE(connectCopies(caller, callee));
        TestCopy& typist = callerSwitches ? caller : callee;
        TestCopy& reader = callerSwitches ? callee : caller;
        auto type = [&typist](const QString& text) {
            for (const QChar c : text) {
                typist.frm().typing().keyboardPress(c.toUpper().unicode(), 0, QString(c));
                typist.frm().typing().keyboardRelease(c.toUpper().unicode(), 0);
                pump(5);
            }
        };
        type("ab");
        ASSERT_TRUE(waitUntil([&] { return reader.frm().model().txtClient(reader.frm().session().sIdx).text() == "ab"; }, 3000))
            << reader.frm().model().txtClient(reader.frm().session().sIdx).text().toStdString();
        EXPECT_FALSE(reader.frm().encryption().remoteEncrypted);

        typist.set("Encrypted", "1");
        type("cd");
        EXPECT_TRUE(waitUntil([&] { return reader.frm().model().txtClient(reader.frm().session().sIdx).text() == "abcd"; }, 3000))
            << reader.frm().model().txtClient(reader.frm().session().sIdx).text().toStdString();
        EXPECT_TRUE(typist.frm().encryption().encryptOn);
        EXPECT_TRUE(reader.frm().encryption().remoteEncrypted);
        EXPECT_EQ(reader.frm().encryption().remoteKey, typist.frm().encryption().sessionKey);
    }
}
