// The small texts of a transfer: acknowledgement counts, the name and reply
// derived from an offer, the labels, and where a frame ends inside a read.

#include "transfer/Transfer.h"
#include "transfer/TransferText.h"

#include <QLocale>
#include <QRandomGenerator>
#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>

using namespace vonnel;

namespace {

struct CountCase {
    qint64 count;
    const char* text;
};

TEST(AckCount, SinglePrecisionTextForm)
{
    const CountCase cases[] = {
        {0, "0"},
        {2000, "2000"},
        {4100, "4100"},
        {9999999, "9999999"},
        {10000000, "1E+07"},
        {10000384, "1.000038E+07"},
        {10002000, "1.0002E+07"},
        {16777217, "1.677722E+07"},  // beyond a float's exact integers
        {99999999, "1E+08"},         // rounds up into the next power
        {123456789, "1.234568E+08"},
        {2000000000, "2E+09"},
        {2147483647, "2.147484E+09"},
    };
    for (const CountCase& c : cases)
        EXPECT_EQ(singleText(c.count), QLatin1String(c.text)) << c.count;
}

TEST(AckCount, ParserTakesBothFormsAndRounds)
{
    const struct {
        const char* text;
        std::optional<qint64> count;
    } cases[] = {
        {"4100", 4100},
        {"1.000038E+07", 10000380},
        {"1E+07", 10000000},
        {"2.5", 3},
        {" 2000 ", 2000},
        {"2.147483E+09", 2147483000},
        {"2.147484E+09", std::nullopt},  // beyond 32 bits
        {"", std::nullopt},
        {"12ab", std::nullopt},
        {"E+07", std::nullopt},
    };
    for (const auto& c : cases)
        EXPECT_EQ(parseAckCount(QString::fromLatin1(c.text)), c.count) << c.text;
}

// The texts as printf and the locale's parser make them: the integer
// forms above must agree with them everywhere.
QString printfSingleText(qint64 count)
{
    const float f = float(count);
    if (std::fabs(f) < 1e7f)
        return QString::number(qint64(f));
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.6E", double(f));
    QString s = QString::fromLatin1(buf);
    const qsizetype e = s.indexOf(QLatin1Char('E'));
    QString mantissa = s.left(e);
    while (mantissa.endsWith(QLatin1Char('0')))
        mantissa.chop(1);
    if (mantissa.endsWith(QLatin1Char('.')))
        mantissa.chop(1);
    return mantissa + s.mid(e);
}

std::optional<qint64> localeCount(const QString& text)
{
    bool ok = false;
    const double v = QLocale::c().toDouble(text.trimmed(), &ok);
    if (!ok || !std::isfinite(v))
        return std::nullopt;
    const double r = std::round(v);
    if (r < -2147483648.0 || r > 2147483647.0)
        return std::nullopt;
    return qint64(r);
}

TEST(AckCount, TextAndReadingAgreeWithPrintfAndTheLocaleEverywhere)
{
    QRandomGenerator rng(11);
    QList<qint64> counts = {-123456789, -10000000, 16777216, 16777217, 33554431, 99999995,
                            999999950, 1000000000000LL, (1LL << 53), (1LL << 62)};
    for (qint64 p = 10; p <= 1000000000000000LL; p *= 10)
        for (qint64 d : {-3, -2, -1, 0, 1, 2, 3})
            counts << p + d << p / 2 + d;  // decade edges and ties at the seventh digit
    for (int i = 0; i < 20000; ++i)
        counts << (qint64(rng.bounded(9007199254740992.0)) >> rng.bounded(40));
    for (qint64 n : counts) {
        const QString text = singleText(n);
        ASSERT_EQ(text, printfSingleText(n)) << n;
        ASSERT_EQ(parseAckCount(text), localeCount(text)) << text.toStdString();
    }

    // What a peer may send besides: other spellings of the same forms,
    // fractions, leading zeros, signs, blanks and broken exponents.
    QStringList texts = {"0", "00", "007", "0.5", "1.5", "2.5", "-4", "+4", "1e7", "1E7",
                         "1.5e+07", "1.000038E+07", "1.000038E+007", "1.0000385E+07",
                         "1.E+07", ".5E+07", "1E-2", "1E+", "1E", "1.2.3", "12 34",
                         " 99 ", "\t5", "9999999999999999", "123456789012345",
                         "2147483647", "2147483648", "2.147483647E+09", "1E+99", "1E+999",
                         "5E+0", "E+07", ""};
    for (int i = 0; i < 5000; ++i) {
        const char* alphabet = "0123456789.E+-e";
        QString t;
        for (int k = int(rng.bounded(1, 14)); k > 0; --k)
            t += QLatin1Char(alphabet[rng.bounded(15)]);
        texts << t;
    }
    for (const QString& t : texts)
        ASSERT_EQ(parseAckCount(t), localeCount(t)) << t.toStdString();
}

TEST(AckCount, MultiplesOfAThousandSurviveTheTripButFramesOf1024DoNot)
{
    for (qint64 n : {2000LL, 3200000LL, 10002000LL, 123456000LL, 2000000000LL, 2147483000LL})
        EXPECT_EQ(parseAckCount(singleText(n)), n) << n;
    // 9766 frames of 1024 bytes: the sender is sent back four bytes.
    EXPECT_EQ(parseAckCount(singleText(9766LL * 1024)), 10000380);
    // Below ten million every count is exact.
    EXPECT_EQ(parseAckCount(singleText(9765LL * 1024)), 9765LL * 1024);
}

TEST(AckCount, TheReceiverCutsBackToALengthTheCountCarriesExactly)
{
    const struct {
        qint64 n, exact, step;
    } cases[] = {
        {0, 0, 1},
        {9999999, 9999999, 1},
        {10000384, 10000380, 10},
        {99999999, 99999990, 10},
        {1000003200, 1000003000, 1000},
        {1000002000, 1000002000, 1000},
        {2147483647, 2147483000, 1000},
        {12345678901, 12345670000, 10000},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(exactAckLength(c.n), c.exact) << c.n;
        EXPECT_EQ(ackStep(c.n), c.step) << c.n;
    }
    // Over the whole range a sender reads back exactly the cut length,
    // and never loses more than one step.
    QRandomGenerator rng(7);
    for (int i = 0; i < 20000; ++i) {
        const qint64 n = qint64(rng.bounded(2147483647.0));
        const qint64 m = exactAckLength(n);
        ASSERT_EQ(parseAckCount(singleText(m)), m) << n;
        ASSERT_LE(m, n);
        ASSERT_LT(n - m, ackStep(n)) << n;
    }
}

TEST(Handles, NumbersStayInTheSixteenBitRangeHoweverManyTransfersRun)
{
    int send = 0, recv = 0;
    for (int i = 0; i < 200; ++i) {
        send = nextHandle(send, recv, 0);
        recv = nextHandle(recv, send, send + 1);
        ASSERT_GE(send, 0);
        ASSERT_LT(send, 32768);
        ASSERT_GE(recv, 0);
        ASSERT_LT(recv, 32768);
    }
    EXPECT_EQ(nextHandle(3, 4, 0), 8);
}

struct OfferCase {
    const char* offer;
    const char* bare;
    const char* sizeText;
    const char* name;
    const char* okPath;
};

TEST(OfferName, NameSizeAndReplyAreDerivedAsTheProtocolHasThem)
{
    const OfferCase cases[] = {
        {"C:\\docs\\a.txt>4100", "a.txt>4100", "4100", "a.txt", "C:\\docs\\a.txt"},
        // Every copy of the size string goes, from the name and the reply.
        {"C:\\x\\report2000.txt>2000", "report2000.txt>2000", "2000", "report.txt",
         "C:\\x\\report2000"},
        {"C:\\x\\a2000b2000.txt>2000", "a2000b2000.txt>2000", "2000", "ab.txt", "C:\\x\\a2000b"},
        // No backslash: the first character is lost.
        {"name.txt>10", "ame.txt>10", "10", "ame.txt", "name.txt"},
        // A path in this platform's own form, as a receiver gets it.
        {"\\home\\u\\b.bin>7", "b.bin>7", "7", "b.bin", "\\home\\u\\b.bin"},
        // A backslash in first place only is never looked at.
        {"\\c.txt>5", "c.txt>5", "5", "c.txt", "\\c.txt"},
    };
    for (const OfferCase& c : cases) {
        const OfferName o = deriveOfferName(QLatin1String(c.offer));
        EXPECT_EQ(o.bare, QLatin1String(c.bare)) << c.offer;
        EXPECT_EQ(o.sizeText, QLatin1String(c.sizeText)) << c.offer;
        EXPECT_EQ(o.name, QLatin1String(c.name)) << c.offer;
        EXPECT_EQ(o.okPath, QLatin1String(c.okPath)) << c.offer;
    }
    EXPECT_FALSE(deriveOfferName(QStringLiteral("C:\\a.txt>big")).size.has_value());
    EXPECT_EQ(deriveOfferName(QStringLiteral("C:\\a.txt>4100")).size, 4100);
}

TEST(OfferName, ProposedNamesStayInsideTheChosenFolder)
{
    const struct {
        const char* derived;
        const char* proposed;
    } cases[] = {
        {"a.txt", "a.txt"},
        {":/x/../../etc/passwd", "passwd"},
        {"../../evil", "evil"},
        {"dir/", ""},
        {"..", ""},
        {".", ""},
        {"a/..", ""},
        {"..hidden", "..hidden"},  // a name that only begins with dots is a name
    };
    for (const auto& c : cases)
        EXPECT_EQ(proposedSaveName(QLatin1String(c.derived)), QLatin1String(c.proposed)) << c.derived;
    for (const char* name : {"ring.wav", "a b.wav"})
        EXPECT_TRUE(isBareFileName(QLatin1String(name))) << name;
    for (const char* name : {"", ".", "..", "../ring.wav", "a/b.wav", "a\\b.wav", "C:ring.wav",
                             "/etc/passwd", "x..y"})
        EXPECT_FALSE(isBareFileName(QLatin1String(name))) << name;
}

TEST(Labels, SizesAndShortenedPaths)
{
    // The question counts 1000 bytes as a kilobyte, the window does not.
    EXPECT_EQ(questionSizeText(1000), "1 KB");
    EXPECT_EQ(labelSizeText(1000), "1,000 B");
    EXPECT_EQ(labelSizeText(1001), "1 KB");
    EXPECT_EQ(questionSizeText(999), "999 B");
    EXPECT_EQ(questionSizeText(4100), "4 KB");
    EXPECT_EQ(labelSizeText(10485760), "10,240 KB");
    EXPECT_EQ(questionSizeText(1536000), "1,500 KB");

    const QString forty = QStringLiteral("C:\\abcdefghij\\abcdefghij\\abcdefghijk.txt");
    ASSERT_EQ(forty.size(), 40);
    EXPECT_EQ(shortenedPath(forty), forty);
    const QString fortyOne = forty + QLatin1Char('x');
    EXPECT_EQ(shortenedPath(fortyOne), "C:\\...\\abcdefghijk.txtx");
    const QString oneSeparator = QStringLiteral("C:\\") + QString(50, QLatin1Char('n'));
    EXPECT_EQ(shortenedPath(oneSeparator), oneSeparator);
    EXPECT_EQ(shortenedPath(QStringLiteral("/home/someone/Documents/reports/2024/summary.pdf")),
              "/ho.../summary.pdf");
    EXPECT_EQ(wirePath(QStringLiteral("/home/u/a.txt")), "\\home\\u\\a.txt");
}

TEST(FrameEnd, AnEndMarkerCountsOnlyWithAMessageBehindIt)
{
    const struct {
        const char* name;
        QByteArray bytes;
        qsizetype end;
        qsizetype undecided;
    } cases[] = {
        {"typing behind the frame", "<*> abc </*><KEY> x <:KEY>1</KEY>", 7, -1},
        {"acknowledgement behind", "<*> abc </*>%%Data Received-3%%", 7, -1},
        {"marker inside the payload", "<*> a </*>zz b </*>^SPC3#SPC", 14, -1},
        {"marker at the very end only", "<*> abc </*>", -1, -1},
        {"rest too short to tell", "<*> abc </*><KE", -1, 7},
        {"rest that is no message", "<*> abc </*>garbage", -1, -1},
    };
    for (const auto& c : cases) {
        qsizetype undecided = -2;
        EXPECT_EQ(findInnerFrameEnd(c.bytes, 4, &undecided), c.end) << c.name;
        EXPECT_EQ(undecided, c.undecided) << c.name;
    }
}

}  // namespace
