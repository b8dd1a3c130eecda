// A raw peer against a copy's board: messages torn by read boundaries,
// messages never finished, one large picture shown again and again, font
// names with no end. The copy must keep reading what follows, answer at
// once, and keep no more than it needs.

#include "board/BoardCodec.h"
#include "board/PictureCheck.h"
#include "board/Scrivet.h"
#include "core/CopyContext.h"
#include "core/MainModel.h"
#include "support/Session.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QImageWriter>
#include <QTimer>
#include <QTcpSocket>
#include <gtest/gtest.h>

#include <cstdio>

namespace vonnel::test {
namespace {

// A line of /proc/self/status in KB ("VmRSS", "VmHWM").
qint64 statusKb(const char* key)
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith(QByteArray(key) + ':'))
            return line.mid(qstrlen(key) + 1).trimmed().split(' ').value(0).toLongLong();
    return -1;
}

// Starts the peak resident size afresh from the present one.
void resetPeak()
{
    QFile f(QStringLiteral("/proc/self/clear_refs"));
    if (f.open(QIODevice::WriteOnly))
        f.write("5");
}

class BoardHostile : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(copy.start());
        acceptRawPeer(copy, peer);
        send("&& Scrivet Request &&");
        ASSERT_TRUE(waitUntil([&] { return s().isOpen(); }));
        readFor(peer, 100);
    }
    Scrivet& s() { return copy.frm().scrivet(); }
    MainModel& model() { return copy.frm().model(); }
    void send(const QByteArray& bytes)
    {
        peer.write(bytes);
        peer.flush();
    }
    // Sends a read that ends inside a board message and waits until the
    // copy has taken it (and holds the part).
    void sendCut(const QByteArray& bytes)
    {
        send(bytes);
        ASSERT_TRUE(waitUntil([&] { return s().check().hasPending(); }, 3000))
            << "nothing held after " << bytes.constData();
    }
    // "^reFresh" and the copy's answer ("^Clr" and the rest of it): the
    // milliseconds it took, or -1 when none came within the time.
    qint64 refreshAnswered(int timeoutMs)
    {
        readFor(peer, 0);
        QElapsedTimer t;
        t.start();
        send("^reFresh");
        QByteArray got;
        const bool answered = waitUntil([&] {
            got += peer.readAll();
            return got.contains("^Clr");
        }, timeoutMs);
        return answered ? t.elapsed() : -1;
    }
    bool recorded(const QString& line)
    {
        return waitUntil([&] { return model().txtTextMsg.text().contains(line); }, 3000);
    }
    TestCopy copy;
    QTcpSocket peer;
};

TEST_F(BoardHostile, AMessageTornAnywhereByAReadIsJoined)
{
    // The read boundary just behind the second message's "&&".
    sendCut("&&sp1,1$&&");
    send("ep500,500$&&rec$");
    ASSERT_TRUE(waitUntil([&] { return s().board().shapeCount == 1; }));
    const BoardItem& rect = s().board().items().last();
    EXPECT_EQ(QRect(rect.x1, rect.y1, rect.x2, rect.y2), QRect(1, 1, 499, 499));
    EXPECT_FALSE(copy.prompter().asked("DrawCheck")) << "no Out of stack space";

    // Every cut inside the board's part of a read, a frame of the loop's
    // before it and a record line after it: all of it arrives.
    const QByteArray before = "<MSG> first </MSG>";
    const QList<QByteArray> messages = {"&&sp30,60$", "&&ep3000,1500$", "&&rec$",
                                        "&&<#> torn & line <#>&&", "&&lblsplit label$"};
    QByteArray boardPart;
    QList<qsizetype> between;  // cuts that fall between two messages
    for (const QByteArray& m : messages) {
        between << before.size() + boardPart.size();
        boardPart += m;
    }
    for (qsizetype cut = before.size() + 1; cut < before.size() + boardPart.size(); ++cut) {
        const QByteArray all = before + boardPart + "<MSG> after " + QByteArray::number(cut) +
                               " </MSG>";
        const int shapes = s().board().shapeCount;
        const int labels = s().board().labelCount;
        if (between.contains(cut)) {
            send(all.left(cut));
            pump(30);
        } else {
            sendCut(all.left(cut));
        }
        send(all.mid(cut));
        ASSERT_TRUE(recorded("after " + QString::number(cut))) << cut;
        EXPECT_EQ(s().board().shapeCount, shapes + 1) << cut;
        EXPECT_EQ(s().board().labelCount, labels + 1) << cut;
        EXPECT_EQ(s().txtClient, "torn & line") << cut;
        const BoardItem* label = s().board().label(labels + 1);
        ASSERT_NE(label, nullptr) << cut;
        EXPECT_EQ(s().board().labelText(*label).text, "split label") << cut;
        s().txtClient.clear();
    }
    EXPECT_FALSE(copy.prompter().asked("DrawCheck"));
    EXPECT_FALSE(s().check().hasPending());

    // The cut right behind a message's first "&", with that "&" a read of
    // its own: it waits in the receiver for the rest.
    for (const QByteArray& m : messages) {
        const int shapes = s().board().shapeCount;
        const int labels = s().board().labelCount;
        send(before);
        pump(30);
        send("&");
        pump(30);
        send(m.mid(1) + "<MSG> after lone " + m + " </MSG>");
        ASSERT_TRUE(recorded("after lone " + QString::fromLatin1(m))) << m.constData();
        const bool shape = m.startsWith("&&rec");  // the rectangle is made here
        const bool label = m.startsWith("&&lbl");
        EXPECT_EQ(s().board().shapeCount, shapes + (shape ? 1 : 0)) << m.constData();
        EXPECT_EQ(s().board().labelCount, labels + (label ? 1 : 0)) << m.constData();
        if (m.startsWith("&&<#>"))
            EXPECT_EQ(s().txtClient, "torn & line");
        s().txtClient.clear();
    }
    EXPECT_FALSE(copy.prompter().asked("DrawCheck"));
}

TEST_F(BoardHostile, AnUnfinishedMessageCostsOnlyItself)
{
    int n = 0;
    for (const QByteArray& unfinished : {QByteArray("&&lblno dollar"), QByteArray("&&<#> no end")}) {
        ++n;
        sendCut(unfinished);
        EXPECT_GE(refreshAnswered(3000), 0) << unfinished.constData() << ": no answer";
        send("<MSG> line " + QByteArray::number(n) + " </MSG>");
        EXPECT_TRUE(recorded("line " + QString::number(n))) << unfinished.constData();
        // Typing and drawing go on too.
        sendCut(unfinished);
        send("<Paste> typed " + QByteArray::number(n) + "</Paste>");
        EXPECT_TRUE(waitUntil([&] {
            return model().txtClient(0).text().endsWith("typed " + QString::number(n));
        }, 3000)) << unfinished.constData();
        sendCut(unfinished);
        const int shapes = s().board().shapeCount;
        send("&&sp1,1$&&ep9,9$&&rec$");
        EXPECT_TRUE(waitUntil([&] { return s().board().shapeCount == shapes + 1; }, 3000))
            << unfinished.constData();
    }
    EXPECT_EQ(s().board().labelCount, 0) << "the unfinished label never became one";
    EXPECT_FALSE(s().check().hasPending());
    EXPECT_FALSE(copy.prompter().asked("DrawCheck"));
}

// A JPEG of the given size, made and encoded without keeping its pixels.
// The longest the event loop went without turning, while it is watched: a
// timer asks to run every 2 ms and each run notes the gap since the last.
class LoopWatch {
public:
    LoopWatch()
    {
        m_clock.start();
        m_timer.setInterval(2);
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            const qint64 now = m_clock.elapsed();
            m_longest = std::max(m_longest, now - m_last);
            m_last = now;
        });
        m_timer.start();
    }
    qint64 longestMs() const { return m_longest; }

private:
    QElapsedTimer m_clock;
    QTimer m_timer;
    qint64 m_last = 0;
    qint64 m_longest = 0;
};

QByteArray largeJpeg(int width, int height)
{
    QByteArray bytes;
    {
        QImage image(width, height, QImage::Format_Grayscale8);
        for (int y = 0; y < height; ++y) {
            uchar* row = image.scanLine(y);
            for (int x = 0; x < width; ++x)
                row[x] = uchar((x / 40 + y / 40) * 7);
        }
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QImageWriter writer(&buffer, "jpg");
        writer.setQuality(50);
        EXPECT_TRUE(writer.write(image));
    }
    return bytes;
}

// The width and height in a baseline JPEG's frame header, set to others:
// the header then claims what the data never holds.
QByteArray withHeaderSize(QByteArray jpeg, int width, int height)
{
    // The segments after the start marker, each a marker and its length.
    qsizetype sof = 2;
    while (sof + 4 < jpeg.size() && uchar(jpeg[sof]) == 0xFF && uchar(jpeg[sof + 1]) != 0xC0)
        sof += 2 + (uchar(jpeg[sof + 2]) << 8 | uchar(jpeg[sof + 3]));
    if (sof + 9 >= jpeg.size() || uchar(jpeg[sof + 1]) != 0xC0)
        return QByteArray();
    jpeg[sof + 5] = char(height >> 8);
    jpeg[sof + 6] = char(height & 0xFF);
    jpeg[sof + 7] = char(width >> 8);
    jpeg[sof + 8] = char(width & 0xFF);
    return jpeg;
}

TEST_F(BoardHostile, AShowOfTheSamePictureAgainOnlyDrawsIt)
{
    const QByteArray jpeg = largeJpeg(8000, 8000);
    ASSERT_FALSE(jpeg.isEmpty());
    QFile file(copy.file("captscr.jpg"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(jpeg);
    file.close();

    pump(50);
    resetPeak();
    const qint64 residentBefore = statusKb("VmRSS");
    QElapsedTimer t;
    t.start();
    LoopWatch loop;
    send("&&sp1500,1500$&&ep4500,3750$&&showPic$");
    ASSERT_TRUE(waitUntil([&] { return s().board().imageCount == 1; }, 10000));
    // The number is taken at once, so that later erase numbers match; the
    // pixels are decoded elsewhere and come after.
    EXPECT_FALSE(s().receivedPictures().idle()) << "the decoding runs off the window's thread";
    const qint64 firstMs = t.elapsed();

    QByteArray shows;
    for (int i = 0; i < 300; ++i)
        shows += "&&showPic$";
    t.restart();
    send(shows);
    const qint64 answerMs = refreshAnswered(1000);
    const qint64 allMs = t.elapsed();
    EXPECT_GE(answerMs, 0) << "no answer within 1 s of 300 shows";
    ASSERT_TRUE(waitUntil([&] { return s().board().imageCount == 301; }, 60000));
    ASSERT_TRUE(waitUntil([&] { return s().receivedPictures().idle(); }, 10000));
    const qint64 decodedMs = t.elapsed();
    pump(20);

    const qint64 peak = statusKb("VmHWM");
    std::printf("[ figures  ] JPEG %lld bytes of 8000 x 8000; first show %lld ms; 300 more "
                "and the answer %lld ms; all decoded and placed at %lld ms; the window's "
                "thread held at most %lld ms; resident %lld KB before, peak %lld KB\n",
                qlonglong(jpeg.size()), qlonglong(firstMs), qlonglong(allMs),
                qlonglong(decodedMs), qlonglong(loop.longestMs()), qlonglong(residentBefore),
                qlonglong(peak));
    RecordProperty("longest_hold_ms", QString::number(loop.longestMs()).toStdString());
    EXPECT_LT(loop.longestMs(), 50) << "a message from the peer held the window's thread";
    RecordProperty("peak_resident_kb", QString::number(peak).toStdString());
    EXPECT_LT(peak - residentBefore, 100 * 1024) << "the picture was decoded at a bounded size";

    // Each object shows the one decoding of the file.
    const QImage& first = s().board().picture(*s().board().pictureItem(1));
    EXPECT_LE(qint64(first.width()) * first.height(), PictureCheck::kDecodePixels);
    EXPECT_EQ(first.size(), QSize(2000, 2000));
    for (int n = 2; n <= 301; ++n) {
        const BoardItem* item = s().board().pictureItem(n);
        ASSERT_NE(item, nullptr);
        ASSERT_TRUE(item->visible) << n;
        EXPECT_EQ(s().board().picture(*item).cacheKey(), first.cacheKey()) << n;
    }
    EXPECT_FALSE(copy.prompter().asked("Load Picture Error")) << "a good picture tells nothing";
}

TEST_F(BoardHostile, APictureThatCannotBeShownIsToldOnceWithNoCheckOfItsOwn)
{
    QByteArray shows;
    for (int i = 0; i < 50; ++i)
        shows += "&&showPic$";

    // Bytes that are no picture: the load's error once, not the byte check's
    // boxes of the image tool.
    QFile file(copy.file("captscr.jpg"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(3000, 'x'));
    file.close();
    send(shows);
    ASSERT_TRUE(waitUntil([&] { return s().board().imageCount == 50; }));
    EXPECT_EQ(copy.prompter().count("Load Picture Error: Invalid picture"), 1);
    EXPECT_FALSE(copy.prompter().asked("Loading Picture Error")) << "no picture check here";
    EXPECT_FALSE(copy.prompter().asked("Invalid JPG format"));
    EXPECT_FALSE(s().board().pictureItem(50)->visible);

    // A header that claims 30000 x 30000: refused from the header, without
    // a decoding, once for the file.
    QFile::remove(copy.file("captscr.jpg"));
    const QByteArray claim = withHeaderSize(largeJpeg(64, 64), 30000, 30000);
    ASSERT_FALSE(claim.isEmpty());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(claim);
    file.close();
    QElapsedTimer t;
    t.start();
    send(shows);
    ASSERT_TRUE(waitUntil([&] { return s().board().imageCount == 100; }));
    EXPECT_LT(t.elapsed(), 1000);
    EXPECT_EQ(copy.prompter().count("Load Picture Error: Out of memory"), 1);
    EXPECT_FALSE(s().board().pictureItem(100)->visible);

    // No file: the message of its own, and the number is taken.
    QFile::remove(copy.file("captscr.jpg"));
    send("&&showPic$");
    ASSERT_TRUE(waitUntil([&] { return s().board().imageCount == 101; }));
    EXPECT_TRUE(copy.prompter().asked("Cannot find captscr.jpg for display"));
}

TEST_F(BoardHostile, AFontNameKeepsNoMoreThanAFamilyCouldHave)
{
    const int labels = 300;
    const QByteArray name(60000, 'N');
    QByteArray all;
    for (int i = 0; i < labels; ++i)
        all += "&&font" + name + QByteArray::number(i) + "$10$False$True$False$False$&&ep" +
               QByteArray::number(15 * i) + ",300$&&lbllabel " + QByteArray::number(i) + "$";
    pump(50);
    const qint64 residentBefore = statusKb("VmRSS");
    send(all);
    all = QByteArray();
    ASSERT_TRUE(waitUntil([&] { return s().board().labelCount == labels; }, 60000));
    ASSERT_TRUE(waitUntil([&] { return peer.bytesToWrite() == 0; }));
    EXPECT_GE(refreshAnswered(3000), 0);
    const qint64 residentAfter = statusKb("VmRSS");
    std::printf("[ figures  ] %d labels behind %lld-character font names: resident %lld KB "
                "before, %lld KB after\n",
                labels, qlonglong(name.size()), qlonglong(residentBefore),
                qlonglong(residentAfter));

    qsizetype kept = 0;
    for (int n = 1; n <= labels; ++n) {
        const BoardItem* item = s().board().label(n);
        ASSERT_NE(item, nullptr) << n;
        const BoardLabel& l = s().board().labelText(*item);
        EXPECT_EQ(l.fontName, QString(board::kFontNameLimit, 'N')) << n;
        EXPECT_TRUE(l.italic);
        kept += l.fontName.capacity();
    }
    EXPECT_LE(kept, qsizetype(labels) * 2 * board::kFontNameLimit);
}

}  // namespace
}  // namespace vonnel::test
