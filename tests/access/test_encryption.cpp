// Session keys, the peer's key frame, deciphering and the cipher failure
// boxes, on a copy that is not connected.

#include "access/Encryption.h"
#include "access/LockForms.h"
#include "access/AccessBench.h"

#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

TEST(PeerPc1, MatchesTheReferenceVectors)
{
    // The outside implementation must agree with the shared vectors before
    // the wire tests may trust it.
    EXPECT_EQ(PeerPc1::encrypt("03:25 PM", "a"), "if");
    EXPECT_EQ(PeerPc1::encrypt("03:25 PM", "hello"), "imkcidhaoe");
    EXPECT_EQ(PeerPc1::encrypt("46348", "secret"), "gphjljiomgin");
    EXPECT_EQ(PeerPc1::encrypt("", "empty key"), "abmelboiflibbogmbj");
    EXPECT_EQ(PeerPc1::encrypt("0123456789ABCDEFGHIJ", "key longer than sixteen"),
              "iileemnjalgibecbcmcaofpmfodgcjmeibahecojidkppl");
    EXPECT_EQ(PeerPc1::decrypt("11:59 AM",
                               "gmncpecgnmjcedfifghlamadnobadlcogcnbjkpedpdmialhkcamllibilbbhdlnjpgl"
                               "maaapemimnnghpmodf"),
              "The quick brown fox jumps over the lazy dog");
}

TEST(SessionKey, IsTheClockTimeInTwelveHourForm)
{
    const struct {
        QTime time;
        const char* key;
    } cases[] = {
        {QTime(15, 25, 59), "03:25 PM"},
        {QTime(0, 5), "12:05 AM"},
        {QTime(12, 0), "12:00 PM"},
        {QTime(9, 7), "09:07 AM"},
        {QTime(23, 59), "11:59 PM"},
    };
    AccessBench b;
    Encryption& enc = b.frm->encryption();
    for (const auto& c : cases) {
        b.clock.set(QDateTime(QDate(2024, 5, 1), c.time));
        EXPECT_EQ(enc.keyNow(), c.key);
        enc.startSessionKey();
        EXPECT_EQ(b.frm->encryption().sessionKey, c.key);
        EXPECT_EQ(enc.keyFrame(), QStringLiteral("tt:=") + c.key + "=:tt");
    }
}

TEST(SessionKey, AcceptingSideKeepsItsKeyCallingSideTakesANewOne)
{
    AccessBench b;
    Encryption& enc = b.frm->encryption();
    enc.ensureSessionKey();
    EXPECT_EQ(b.frm->encryption().sessionKey, "03:25 PM");
    b.clock.set(QDateTime(QDate(2024, 5, 1), QTime(8, 1)));
    enc.ensureSessionKey();
    EXPECT_EQ(b.frm->encryption().sessionKey, "03:25 PM");
    enc.startSessionKey();
    EXPECT_EQ(b.frm->encryption().sessionKey, "08:01 AM");
}

TEST(SessionKey, NothingGoesOutWhileNotConnected)
{
    AccessBench b;
    Encryption& enc = b.frm->encryption();
    b.frm->encryption().encryptOn = true;
    b.frm->encryption().sessionKey = "03:25 PM";
    bool keySent = false;
    EXPECT_FALSE(enc.sendFirstKey(keySent));
    EXPECT_FALSE(keySent);
    EXPECT_FALSE(enc.sendKeyForRefresh(false));
}

TEST(RemoteKey, TakenOnceAndCutOutOfTheText)
{
    AccessBench b;
    FrmMain& f = *b.frm;
    Encryption& enc = f.encryption();
    enc.beginSession();
    ASSERT_TRUE(f.model().stStatusbar.text(9).isEmpty());

    QString data = "tt:=03:25 PM=:tt<Paste> if</Paste>";
    EXPECT_TRUE(enc.takeRemoteKey(data));
    EXPECT_EQ(data, "<Paste> if</Paste>");
    EXPECT_EQ(f.encryption().remoteKey, "03:25 PM");
    EXPECT_TRUE(f.encryption().remoteEncrypted);
    EXPECT_EQ(f.model().stStatusbar.text(9), "E");
    EXPECT_EQ(f.model().stStatusbar.panel(9).toolTip, "Remote session: Encryption On");
    EXPECT_EQ(f.model().stStatusbar.panel(8).toolTip, "Local session: Encryption Off");

    // The peer repeats its frame at its first typing and with each resend:
    // a whole frame is cut out and never stalls the text behind it.
    QString again = "tt:=03:25 PM=:tt<KEY> x <:KEY>1</KEY>";
    EXPECT_TRUE(enc.takeRemoteKey(again));
    EXPECT_EQ(again, "<KEY> x <:KEY>1</KEY>");
    EXPECT_EQ(f.encryption().remoteKey, "03:25 PM");
    // A key that changed is taken; one without its end stays and stalls.
    QString second = "tt:=09:00 AM=:tt<KEY> x <:KEY>1</KEY>";
    EXPECT_TRUE(enc.takeRemoteKey(second));
    EXPECT_EQ(f.encryption().remoteKey, "09:00 AM");
    QString torn = "tt:=10:00 AM<KEY> x <:KEY>1</KEY>";
    EXPECT_FALSE(enc.takeRemoteKey(torn));
    EXPECT_EQ(torn, "tt:=10:00 AM<KEY> x <:KEY>1</KEY>");
    EXPECT_EQ(f.encryption().remoteKey, "09:00 AM");

    // Only at the start of the text.
    enc.beginSession();
    QString inside = "<Paste> a</Paste>tt:=03:25 PM=:tt";
    EXPECT_FALSE(enc.takeRemoteKey(inside));
    EXPECT_FALSE(f.encryption().remoteEncrypted);
    EXPECT_TRUE(f.encryption().remoteKey.isEmpty());
}

TEST(RemoteKey, FrameWithoutClosingMarkerGivesAnEmptyKeyAndStalls)
{
    AccessBench b;
    Encryption& enc = b.frm->encryption();
    QString data = "tt:=03:25 PM<Paste> x</Paste>";
    EXPECT_TRUE(enc.takeRemoteKey(data));
    EXPECT_TRUE(b.frm->encryption().remoteEncrypted);
    EXPECT_EQ(b.frm->encryption().remoteKey, "");
    EXPECT_EQ(data, "tt:=03:25 PM<Paste> x</Paste>");
    EXPECT_FALSE(enc.takeRemoteKey(data));  // the next pass finds it stuck
}

TEST(RemoteKey, NewSessionForgetsThePeersKeyAndRereadsEncrypted)
{
    AccessBench b;
    FrmMain& f = *b.frm;
    f.encryption().remoteEncrypted = true;
    f.encryption().remoteKey = "old";
    f.model().stStatusbar.setText(8, "E");
    f.model().stStatusbar.setText(9, "E");
    b.set("Encrypted", "1");
    f.encryption().beginSession();
    EXPECT_FALSE(f.encryption().remoteEncrypted);
    EXPECT_TRUE(f.encryption().remoteKey.isEmpty());
    EXPECT_TRUE(f.model().stStatusbar.text(8).isEmpty());
    EXPECT_TRUE(f.model().stStatusbar.text(9).isEmpty());
    EXPECT_TRUE(f.encryption().encryptOn);
    b.set("Encrypted", "0");
    f.encryption().readEncryptedSetting();
    EXPECT_FALSE(f.encryption().encryptOn);
}

TEST(Decipher, OnlyWithThePeersKeyKnown)
{
    AccessBench b;
    FrmMain& f = *b.frm;
    Encryption& enc = f.encryption();
    const QString cipher = QString::fromLatin1(PeerPc1::encrypt("03:25 PM", "Hello, world!"));
    // Without the key frame the text shows as it came.
    EXPECT_EQ(enc.decipher(cipher), cipher);
    QString frame = "tt:=03:25 PM=:tt";
    ASSERT_TRUE(enc.takeRemoteKey(frame));
    EXPECT_EQ(enc.decipher(cipher), "Hello, world!");
    // The old one-character frame deciphers with the peer's key whatever the flag.
    f.encryption().remoteEncrypted = false;
    EXPECT_EQ(enc.decipherOld(QString::fromLatin1(PeerPc1::encrypt("03:25 PM", "q"))), "q");
    // Characters of the upper code page half travel too.
    f.encryption().remoteEncrypted = true;
    const QString accented = QStringLiteral("Grüße €");
    EXPECT_EQ(enc.decipher(enc.genEPass(accented, "03:25 PM")), accented);
    EXPECT_TRUE(b.prompter.records().isEmpty());
}

TEST(Decipher, FailuresShowTheirBoxUnlessWarningsAreOff)
{
    const struct {
        const char* warningOff;
        int boxes;
    } cases[] = {{"0", 2}, {"1", 0}};
    for (const auto& c : cases) {
        AccessBench b;
        b.set("No Encryption Error Warning", c.warningOff);
        Encryption& enc = b.frm->encryption();
        b.frm->encryption().remoteEncrypted = true;
        b.frm->encryption().remoteKey = "03:25 PM";
        // One letter short: what could be read comes back.
        EXPECT_EQ(enc.decipher("imkcidhao"), "hell");
        // A character the code page has no byte for can't be enciphered.
        EXPECT_EQ(enc.genEPass(QStringLiteral("ab\u4e2d"), "03:25 PM"), "");
        ASSERT_EQ(b.prompter.records().size(), c.boxes) << "warning off " << c.warningOff;
        if (c.boxes) {
            const QString note = "\r\nPlease note: Double bytes characters such as Chinese, "
                                 "Japenese, Korean are not supported for encryption.";
            EXPECT_TRUE(b.prompter.records()[0].text.startsWith("Encryption Error: "));
            EXPECT_TRUE(b.prompter.records()[0].text.endsWith(" generated by imkcidhao" + note));
            EXPECT_TRUE(b.prompter.records()[1].text.startsWith("Encryption Error (genepass): "));
            EXPECT_TRUE(b.prompter.records()[1].text.endsWith(QStringLiteral(" generated by ab\u4e2d") + note));
        }
    }
}

TEST(FrmEncrypt, EmptyKeyIsRefusedAndChangesNothing)
{
    AccessBench b;
    FrmEncrypt form(b.frm->ctx(), b.frm->encryption());
    form.Form_Load();
    EXPECT_EQ(form.lblKey, "Key:");
    EXPECT_EQ(FrmEncrypt::title(), "128 Bit Encryption");
    form.txtText = "hello";
    form.txtResult = "before";
    form.cmdEncrypt_Click();
    form.cmdDecrypt_Click();
    EXPECT_EQ(form.txtResult, "before");
    EXPECT_EQ(b.prompter.count("Key should not be empty"), 2);

    form.txtKey = "03:25 PM";
    form.cmdEncrypt_Click();
    EXPECT_EQ(form.txtResult, "imkcidhaoe");
    // Decrypt works on the result box in place.
    form.cmdDecrypt_Click();
    EXPECT_EQ(form.txtResult, "hello");
    form.cmdHelp_Click();
    EXPECT_EQ(b.desktop.opened.value(0), "/help/encryption.htm");
}
