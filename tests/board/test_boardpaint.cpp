// What the board's objects look like: pixels where the twips say, the kept
// raster against a fresh one, saving to a file, and the picture checks.

#include "board/Board.h"
#include "board/BoardPaint.h"
#include "board/BoardSave.h"
#include "board/PictureCheck.h"
#include "support/TestCopy.h"

#include <QFile>
#include <QImageReader>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vonnel {
namespace {

constexpr qint32 kRed = 0x0000FF;
constexpr qint32 kBlue = 0xFF0000;

TEST(BoardPaint, ObjectsLandWhereTheirTwipsSay)
{
    Board b;
    b.drawPoint(150, 300, kRed, 1);          // 10,20 px, 3 px wide
    b.drawRect(1500, 1500, 1, kBlue, 750, 750);  // 50..100 px
    b.drawLine(3000, 1500, 1, kRed, 3000, 750);  // x = 200 px, 3 px wide
    const QImage img = BoardPaint::render(b);
    EXPECT_EQ(img.size(), QSize(800, 600));
    EXPECT_EQ(img.pixel(11, 21), qRgb(255, 0, 0));
    EXPECT_EQ(img.pixel(8, 21), qRgb(255, 255, 255));
    EXPECT_EQ(img.pixel(50, 75), qRgb(0, 0, 255)) << "the rectangle's left edge";
    EXPECT_EQ(img.pixel(75, 75), qRgb(255, 255, 255)) << "a rectangle is not filled";
    EXPECT_EQ(img.pixel(200, 80), qRgb(255, 0, 0));
    EXPECT_EQ(img.pixel(206, 80), qRgb(255, 255, 255));
}

TEST(BoardPaint, EraseDotsPaintOverAndFollowTheBackground)
{
    Board b;
    b.drawPoint(1500, 1500, kRed, 4);  // 100..113 px
    b.erasePoint(1500, 1500, 0xFFFFFF);
    QImage img = BoardPaint::render(b);
    EXPECT_EQ(img.pixel(102, 102), qRgb(255, 255, 255));
    EXPECT_EQ(img.pixel(110, 110), qRgb(255, 0, 0)) << "outside the patch";
    b.eraseBkCol(0x00FF00);
    img = BoardPaint::render(b);
    EXPECT_EQ(img.pixel(102, 102), qRgb(0, 255, 0));
    EXPECT_EQ(img.pixel(300, 300), qRgb(0, 255, 0));
}

TEST(BoardPaint, TheKeptRasterMatchesAFreshOne)
{
    Board b;
    BoardPaint raster;
    b.drawPoint(15, 15, kRed, 1);
    raster.image(b);
    EXPECT_EQ(raster.lastPainted(), 1);
    b.drawRect(900, 900, 2, kBlue, 300, 300);
    b.remoteLabel(1500, 1500, "label", {}, kBlue);
    EXPECT_EQ(raster.image(b), BoardPaint::render(b));
    EXPECT_EQ(raster.lastPainted(), 2) << "only what was added";

    b.eraseLabel(1);
    EXPECT_EQ(raster.image(b), BoardPaint::render(b));
    EXPECT_EQ(raster.lastPainted(), 3) << "an erase paints everything again";
    b.eraseAll();
    EXPECT_EQ(raster.image(b), BoardPaint::render(b));
}

TEST(BoardSave, WritesWhatWasDrawnAsBitmapOrJpeg)
{
    QTemporaryDir dir;
    Board b;
    b.drawPoint(1500, 1500, kRed, 10);  // 100..133 px
    b.drawPoint(4500, 3000, kBlue, 10);  // 300..333, 200..233 px
    const QString bmp = dir.filePath("board.bmp");
    ASSERT_EQ(saveBoardImage(b, bmp), "");
    const QImage back(bmp);
    ASSERT_FALSE(back.isNull());
    EXPECT_EQ(back.size(), QSize(800, 600));
    EXPECT_EQ(back.pixel(116, 116), qRgb(255, 0, 0));
    EXPECT_EQ(back.pixel(316, 216), qRgb(0, 0, 255));
    EXPECT_EQ(back.pixel(90, 90), qRgb(255, 255, 255));

    const QString jpg = dir.filePath("board.jpg");
    ASSERT_EQ(saveBoardImage(b, jpg, QSize(900, 700)), "");
    QFile f(jpg);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_TRUE(f.read(3) == QByteArray("\xFF\xD8\xFF"));
    const QImage j(jpg);
    EXPECT_EQ(j.size(), QSize(900, 700));
    const QColor c = j.pixelColor(116, 116);
    EXPECT_GT(c.red(), 200);
    EXPECT_LT(c.green(), 60);
}

// --- the picture checks ---------------------------------------------------------

class Pictures : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(copy.start()); }
    QString write(const QString& name, const QByteArray& bytes)
    {
        const QString path = copy.file(name);
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
        return path;
    }
    bool valid(const QString& path) { return PictureCheck(copy.frm().ctx()).pictureIsValid(path); }
    test::TestCopy copy;
};

QByteArray jpegWithTail(int trailing)
{
    return QByteArray("\xFF\xD8\xFF\xE0", 4) + QByteArray(40, 'j') + QByteArray("\xFF\xD9", 2) +
           QByteArray(trailing, 'z');
}

TEST_F(Pictures, JpegAndGifByTheirBytes)
{
    EXPECT_TRUE(valid(write("a.jpg", jpegWithTail(0))));
    EXPECT_TRUE(valid(write("b.JPG", jpegWithTail(14))));
    EXPECT_FALSE(valid(write("c.jpg", jpegWithTail(15)))) << "the end mark left the last 16 bytes";
    EXPECT_TRUE(copy.prompter().asked("Invalid JPG format"));
    EXPECT_FALSE(valid(write("d.jpg", QByteArray("\xFF\xD9\xFF", 3) + jpegWithTail(0))));

    const QByteArray gifTail = QByteArray(30, 'g') + QByteArray("\0;", 2);
    EXPECT_TRUE(valid(write("e.gif", "GIF" + gifTail)));
    EXPECT_TRUE(valid(write("f.gif", "xxF" + gifTail))) << "a head ending in F passes";
    EXPECT_TRUE(valid(write("g.gif", "GIx" + gifTail)));
    EXPECT_FALSE(valid(write("h.gif", "GAx" + gifTail)));
    EXPECT_FALSE(valid(write("i.gif", "GIF" + QByteArray(30, 'g'))));
    EXPECT_TRUE(copy.prompter().asked("Invalid GIF format"));

    copy.prompter().clearRecords();
    EXPECT_FALSE(valid(write("j.jpeg", jpegWithTail(0))));
    EXPECT_TRUE(copy.prompter().asked("File Corrupted: "));
    EXPECT_FALSE(valid(write("k.jpg", QByteArray("\xFF\xD8\xFF\xFF\xD9", 5))));
    EXPECT_TRUE(copy.prompter().asked("Picture Error: (63)"));
}

TEST_F(Pictures, SwitchesForTheCheckAndItsMessages)
{
    const QString bad = write("bad.jpg", QByteArray(40, 'x'));
    copy.set("No Pic Error Message", "1");
    copy.prompter().clearRecords();
    EXPECT_FALSE(valid(bad));
    EXPECT_TRUE(copy.prompter().records().isEmpty());
    copy.set("No Pic Error Check", "1");
    EXPECT_TRUE(valid(bad));
}

TEST_F(Pictures, MemoryByLoadAndFreeBytes)
{
    copy.set("Memory Limit", "90");
    PictureCheck check(copy.frm().ctx());
    MemoryStatus status{50, 1000, true};
    check.memoryStatus = [&] { return status; };
    EXPECT_TRUE(check.memoryIsEnough(500));
    EXPECT_FALSE(check.memoryIsEnough(501)) << "free memory below twice the size";
    EXPECT_TRUE(copy.prompter().asked("Not enough memory: 50% used"));

    copy.set("Memory Limit", "50");
    EXPECT_FALSE(check.memoryIsEnough(1)) << "a load at the limit fails";
    copy.set("Memory Limit", "100");
    status.loadPercent = 89;
    EXPECT_TRUE(check.memoryIsEnough(1));
    status.loadPercent = 90;
    EXPECT_FALSE(check.memoryIsEnough(1)) << "100 counts as 90";

    status = {1, qint64(4) << 30, true};
    EXPECT_FALSE(check.memoryIsEnough(PictureCheck::kSizeLimit + 1));
    EXPECT_TRUE(check.memoryIsEnough(PictureCheck::kSizeLimit));
    status.known = false;
    EXPECT_FALSE(check.memoryIsEnough(1));
}

TEST(MemoryStatus, ReadsTheSystemsFigures)
{
    const MemoryStatus s = memoryStatusFromMeminfo(
        "MemTotal:       1000 kB\nMemFree:          100 kB\nMemAvailable:     250 kB\n");
    EXPECT_TRUE(s.known);
    EXPECT_EQ(s.availableBytes, 250 * 1024);
    EXPECT_EQ(s.loadPercent, 75);
    EXPECT_FALSE(memoryStatusFromMeminfo("MemTotal: 10 kB\n").known);
    EXPECT_TRUE(readMemoryStatus().known) << "this machine tells its memory";
}

TEST(PictureLoad, AHeaderClaimingGigabytesIsNotDecoded)
{
    QTemporaryDir dir;
    // A bitmap header of 30000 x 30000 pixels at 32 bits: 3.6 GB claimed.
    QByteArray bmp("BM", 2);
    auto le = [&](quint32 v, int n) {
        for (int i = 0; i < n; ++i)
            bmp.append(char((v >> (8 * i)) & 0xFF));
    };
    le(54 + 16, 4), le(0, 4), le(54, 4), le(40, 4), le(30000, 4), le(30000, 4), le(1, 2),
        le(32, 2), le(0, 4), le(16, 4), le(2835, 4), le(2835, 4), le(0, 4), le(0, 4);
    bmp.append(QByteArray(16, '\0'));
    const QString path = dir.filePath("huge.bmp");
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bmp);
    f.close();
    EXPECT_TRUE(PictureCheck::load(path).isNull());
}

}  // namespace
}  // namespace vonnel
