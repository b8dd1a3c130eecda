// The bytes our copy writes for ordinary typing at the end of the pane are
// fixed: peers that follow the sending rules rely on every one of them.
// A fixed typing script is played against a raw peer and what arrives is
// compared with the recorded stream in tests/wire/data/. The recording was
// made before the live text was reworked, and recorded again only when the
// speaker's voice came to follow the format message; it must not change
// otherwise.
//
// To record again (only when the sending rules themselves change), run with
// VONNEL_RECORD_WIRE=1 and review the diff by hand.

#include "core/IniStore.h"
#include "wire/TypingPeer.h"
#include "connection/Session.h"
#include "access/Encryption.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

QString dataPath(const char* name)
{
    return QStringLiteral(VONNEL_SOURCE_DIR "/tests/wire/data/") + QLatin1String(name);
}

// Readable form of a byte stream: one frame a line, bytes outside the
// printable range and the backslash as \xNN.
QByteArray escapeStream(const QByteArray& bytes)
{
    static const QList<QByteArray> heads = {"<KEY> ", "^", "<Paste> ", "<MSG> ", "<SPK> ",
                                           "<SPKSET> ", "tt:="};
    QByteArray out;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (i > 0 && !out.endsWith('\n')) {
            for (const QByteArray& h : heads)
                if (bytes.mid(i).startsWith(h) && !(h == "^" && bytes.at(i - 1) == '^')) {
                    // A new frame starts here unless we are inside a format message.
                    const qsizetype lineStart = out.lastIndexOf('\n') + 1;
                    const QByteArray line = out.mid(lineStart);
                    if (!(line.startsWith("^ff") && !line.endsWith("^>")))
                        out += '\n';
                    break;
                }
        }
        const uchar c = uchar(bytes.at(i));
        if (c < 32 || c > 126 || c == '\\')
            out += "\\x" + QByteArray::number(c, 16).rightJustified(2, '0');
        else
            out += char(c);
    }
    return out + '\n';
}

QByteArray unescapeStream(const QByteArray& text)
{
    QByteArray out;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char c = text.at(i);
        if (c == '\n')
            continue;
        if (c == '\\' && i + 3 < text.size() && text.at(i + 1) == 'x') {
            out += char(text.mid(i + 2, 2).toInt(nullptr, 16));
            i += 3;
            continue;
        }
        out += c;
    }
    return out;
}

void press(LiveTyping& t, int code, const QString& text) { t.keyboardPress(code, 0, text); }
void release(LiveTyping& t, int code) { t.keyboardRelease(code, 0); }

// Everything a user does at the end of the pane, in one script.
void plainScript(TypingPeer& p)
{
    LiveTyping& t = p.typing();
    t.typeText("Hello world 123");
    t.typeText("\r");
    t.typeText("second lime\b\b\bne");
    t.typeText("\x7f");  // Delete at the end: nothing to delete
    // A held key: many presses, one release.
    for (int i = 0; i < 5; ++i)
        press(t, 'E', "e");
    release(t, 'E');
    for (int i = 0; i < 3; ++i)
        press(t, 32, " ");
    release(t, 32);
    for (int i = 0; i < 2; ++i)
        press(t, 8, "\b");
    release(t, 8);
    // Rolled keys: the second goes down before the first comes up.
    press(t, 'A', "a");
    press(t, 'B', "b");
    release(t, 'A');
    release(t, 'B');
    press(t, 'C', "c");
    press(t, 13, "\r");
    release(t, 'C');
    release(t, 13);
    press(t, 'D', "d");
    press(t, 'F', "f");
    press(t, 8, "\b");
    release(t, 'D');
    release(t, 'F');
    release(t, 8);
    // A key without a character: its release has nothing pending.
    press(t, 16, "");
    release(t, 16);
    t.typeText("\tx\x1by");
    p.copy.clipboard().setText("pasted words");
    t.mnuEditPaste_Click();
    t.typeText("\r\r");
    t.typeText("last line 42");
    t.mnuClrScr_Click();
    t.typeText("again");
}

void encryptedScript(TypingPeer& p)
{
    p.frm().encryption().encryptOn = true;
    p.frm().encryption().sessionKey = QStringLiteral("10:15 AM");
    LiveTyping& t = p.typing();
    t.typeText("Hi there");
    t.typeText("\r");
    t.typeText("ok\b!");
    p.copy.clipboard().setText("secret");
    t.mnuEditPaste_Click();
}

struct Recorded {
    const char* file;
    Settings settings;
    void (*script)(TypingPeer&);
};

TEST(WireBytes, TypingAtTheEndSendsExactlyTheRecordedFrames)
{
    const QList<Recorded> scripts = {
        {"typing_plain.txt", {}, plainScript},
        {"typing_encrypted.txt", {{"Encrypted", "1"}}, encryptedScript},
    };
    for (const Recorded& r : scripts) {
        SCOPED_TRACE(r.file);
        TypingPeer p(r.settings);
        ASSERT_TRUE(p.frm().session().IsConnected());
        r.script(p);
        // Long enough for anything that would follow the typing late.
        const QByteArray got = readFor(p.peer, 600);
        QFile file(dataPath(r.file));
        if (qEnvironmentVariableIsSet("VONNEL_RECORD_WIRE")) {
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(escapeStream(got));
            continue;
        }
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << "recording missing";
        const QByteArray expected = unescapeStream(file.readAll());
        EXPECT_EQ(escapeStream(got).toStdString(), escapeStream(expected).toStdString());
    }
}

TEST(WireBytes, TheReadableFormRoundTrips)
{
    const QByteArray raw = QByteArray("<KEY> \0 <:KEY>4</KEY>^SPC3#SPC\\^ffA^fb^>^^x\r\n", 46);
    EXPECT_EQ(unescapeStream(escapeStream(raw)), raw);
}

}  // namespace
