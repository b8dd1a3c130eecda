// The traffic cipher: reference vectors both ways, round trips, the letter
// form and the key rules.

#include "access/CipherText.h"
#include "access/Pc1Cipher.h"

#include <gtest/gtest.h>

#include <QFile>

#include <random>
#include <vector>

using namespace vonnel;

namespace {

// The vectors travel with the tests, so a clone alone runs them.
QString vectorFilePath()
{
    return QStringLiteral(VONNEL_SOURCE_DIR "/tests/data/cipher-vectors.txt");
}

struct Vector {
    QByteArray key;
    QByteArray plain;
    QByteArray cipher;
};

// Records of key='..', plain=.. (or plain=hex:..), cipher=..; '#' lines are
// comments, blank lines separate records.
std::vector<Vector> loadVectors(QFile& f)
{
    std::vector<Vector> out;
    Vector v;
    bool haveKey = false, havePlain = false;
    while (!f.atEnd()) {
        QByteArray line = f.readLine();
        while (line.endsWith('\n') || line.endsWith('\r'))
            line.chop(1);
        if (line.startsWith('#') || line.isEmpty())
            continue;
        if (line.startsWith("key=")) {
            QByteArray k = line.mid(4);
            if (k.size() >= 2 && k.startsWith('\'') && k.endsWith('\''))
                k = k.mid(1, k.size() - 2);
            v = Vector{k, {}, {}};
            haveKey = true;
            havePlain = false;
        } else if (line.startsWith("plain=")) {
            const QByteArray p = line.mid(6);
            v.plain = p.startsWith("hex:") ? QByteArray::fromHex(p.mid(4)) : p;
            havePlain = true;
        } else if (line.startsWith("cipher=")) {
            v.cipher = line.mid(7);
            if (haveKey && havePlain)
                out.push_back(v);
            else
                ADD_FAILURE() << "cipher line without key and plain: " << line.constData();
            haveKey = havePlain = false;
        } else {
            ADD_FAILURE() << "unreadable vector line: " << line.constData();
        }
    }
    return out;
}

QByteArray randomBytes(std::mt19937& rng, int n)
{
    std::uniform_int_distribution<int> byte(0, 255);
    QByteArray b(n, Qt::Uninitialized);
    for (auto& c : b)
        c = char(byte(rng));
    return b;
}

QByteArray allByteValues()
{
    QByteArray b(256, Qt::Uninitialized);
    for (int i = 0; i < 256; ++i)
        b[i] = char(i);
    return b;
}

}  // namespace

TEST(Pc1Vectors, ReproducedExactlyBothWays)
{
    QFile f(vectorFilePath());
    ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << f.fileName().toStdString();
    const auto vectors = loadVectors(f);
    ASSERT_FALSE(vectors.empty());

    for (const auto& v : vectors) {
        SCOPED_TRACE("key '" + v.key.toStdString() + "', plain " + v.plain.toHex().toStdString());
        EXPECT_EQ(genEPass(v.plain, v.key), v.cipher);
        QString error;
        EXPECT_EQ(getEPass(v.cipher, v.key, &error), v.plain);
        EXPECT_TRUE(error.isEmpty());
    }
}

TEST(Pc1RoundTrip, RandomTextsAndKeys)
{
    std::mt19937 rng(20240501);
    std::uniform_int_distribution<int> len(0, 300);
    std::uniform_int_distribution<int> keyLen(0, 24);  // short, exact and over-long keys
    for (int round = 0; round < 500; ++round) {
        const QByteArray key = randomBytes(rng, keyLen(rng));
        const QByteArray plain = randomBytes(rng, len(rng));
        const Pc1Cipher cipher(key);
        const QByteArray raw = cipher.encrypt(plain);
        ASSERT_EQ(raw.size(), plain.size());
        ASSERT_EQ(cipher.decrypt(raw), plain) << "round " << round;
        ASSERT_EQ(getEPass(genEPass(plain, key), key), plain) << "round " << round;
    }
}

TEST(Pc1RoundTrip, AllByteValuesAndEmptyInput)
{
    const QByteArray all = allByteValues();
    for (const QByteArray& key : {QByteArray(), QByteArray("03:25 PM"), QByteArray(16, '\xff')}) {
        const QByteArray text = genEPass(all, key);
        EXPECT_EQ(text.size(), 512);
        EXPECT_EQ(getEPass(text, key), all);
    }
    EXPECT_TRUE(genEPass(QByteArray(), "03:25 PM").isEmpty());
    EXPECT_TRUE(getEPass(QByteArray(), "03:25 PM").isEmpty());
    EXPECT_TRUE(Pc1Cipher("k").encrypt({}).isEmpty());
}

TEST(Pc1Stream, EachCallStartsFromTheKey)
{
    // One object serves every typed character, so no state may carry over.
    const Pc1Cipher c("03:25 PM");
    const QByteArray first = c.encrypt("same text");
    c.encrypt("something else in between");
    EXPECT_EQ(c.encrypt("same text"), first);

    // Each plain byte feeds the key: a change reaches every later byte but
    // none before it.
    const QByteArray a = c.encrypt("abcdefgh");
    const QByteArray b = c.encrypt("abcXefgh");
    EXPECT_EQ(a.left(3), b.left(3));
    for (int i = 4; i < 8; ++i)
        EXPECT_NE(a[i], b[i]) << "byte " << i;
}

TEST(Pc1Key, CutAndPaddedToSixteenBytes)
{
    const QByteArray plain = "key handling";
    const QByteArray sixteen = "0123456789ABCDEF";
    EXPECT_EQ(genEPass(plain, sixteen + "GHIJ"), genEPass(plain, sixteen));
    EXPECT_EQ(genEPass(plain, "abc"), genEPass(plain, QByteArray("abc\0\0\0", 6)));
    EXPECT_EQ(genEPass(plain, ""), genEPass(plain, QByteArray(16, '\0')));

    // Every one of the sixteen bytes counts, the last as much as the first.
    EXPECT_NE(genEPass(plain, sixteen), genEPass(plain, "0123456789ABCDEx"));
    EXPECT_NE(genEPass(plain, sixteen), genEPass(plain, "x123456789ABCDEF"));
    EXPECT_NE(genEPass(plain, "03:25 PM"), genEPass(plain, "03:26 PM"));

    // Key bytes above 127 are taken as unsigned, as written in cp1252.
    Pc1Cipher high(QByteArray("\xe9\x80", 2));
    EXPECT_EQ(high.key()[0], 0xe9);
    EXPECT_EQ(high.key()[1], 0x80);
    EXPECT_EQ(high.key()[2], 0);
}

TEST(LetterForm, OnlyLettersAToP)
{
    EXPECT_EQ(toLetterForm(QByteArray("\x00\x0f\xf0\xff\x5a", 5)), "aaappappfk");
    const QByteArray text = toLetterForm(allByteValues());
    for (const char c : text)
        ASSERT_TRUE(c >= 'a' && c <= 'p') << int(c);
    bool complete = false;
    EXPECT_EQ(fromLetterForm(text, &complete), allByteValues());
    EXPECT_TRUE(complete);
}

TEST(LetterForm, ReadingSkipsForeignCharactersAndReportsALoneLetter)
{
    const QByteArray key = "11:59 AM";
    const QByteArray plain = "line one\r\nline two";
    const QByteArray clean = genEPass(plain, key);

    // Line breaks, blanks, capitals and letters past 'p' are not cipher text.
    QByteArray noisy;
    for (int i = 0; i < clean.size(); ++i) {
        noisy += clean[i];
        if (i % 5 == 0)
            noisy += "\r\n Qz";
    }
    QString error = QStringLiteral("stale");
    EXPECT_EQ(getEPass(noisy, key, &error), plain);
    EXPECT_TRUE(error.isEmpty());

    // A cut-off text gives back what came before the lone letter.
    const QByteArray cut = clean.left(clean.size() - 1);
    EXPECT_EQ(getEPass(cut, key, &error), plain.left(plain.size() - 1));
    EXPECT_FALSE(error.isEmpty());
    bool complete = true;
    EXPECT_EQ(fromLetterForm("abc", &complete), QByteArray("\x01", 1));
    EXPECT_FALSE(complete);
}

TEST(Genpass, KeyedByTheDayNumberAsDecimalText)
{
    EXPECT_EQ(dayNumber(QDate(1899, 12, 30)), 0);
    EXPECT_EQ(dayNumber(QDate(1900, 1, 1)), 2);
    EXPECT_EQ(dayNumber(QDate(2000, 1, 1)), 36526);
    EXPECT_EQ(dayNumber(QDate(1899, 12, 29)), -1);
    EXPECT_EQ(numericKey(36526), "36526");
    EXPECT_EQ(numericKey(-1), "-1");

    const QDate saved(2026, 11, 22);
    const QByteArray cipher = genpass("secret", saved);
    EXPECT_EQ(cipher, genEPass("secret", "46348"));
    EXPECT_EQ(getEPass(cipher, numericKey(dayNumber(saved))), "secret");
    // Read back on another day, the password comes out wrong.
    EXPECT_NE(getEPass(cipher, numericKey(dayNumber(saved.addDays(1)))), "secret");
}
