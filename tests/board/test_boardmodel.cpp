// The board's objects: numbers, counters, limits, erasing, and the shapes'
// geometry in twips.

#include "board/Board.h"
#include "board/BoardTools.h"

#include <gtest/gtest.h>

namespace vonnel {
namespace {

TEST(BoardModel, EachRoutineCountsInItsOwnCollection)
{
    Board b;
    EXPECT_TRUE(b.drawPoint(10, 20, 255, 1));
    EXPECT_TRUE(b.drawRect(100, 100, 2, 0, 10, 10));
    EXPECT_TRUE(b.drawCircle(100, 100, 2, 0, 10, 10));
    EXPECT_TRUE(b.drawLine(100, 100, 2, std::nullopt, 10, 10));
    EXPECT_TRUE(b.erasePoint(5, 5, 0));
    EXPECT_EQ(b.remoteLabel(1, 2, "a", {}, std::nullopt), 1);
    EXPECT_EQ(b.remoteLabel(1, 2, "b", {}, std::nullopt), 2);
    EXPECT_EQ(b.addPicture(QRect(0, 0, 300, 300), QImage(2, 2, QImage::Format_RGB32)), 1);
    EXPECT_EQ(b.shapeCount, 3);
    EXPECT_EQ(b.lineCount, 1);
    EXPECT_EQ(b.eraseCount, 1);
    EXPECT_EQ(b.labelCount, 2);
    EXPECT_EQ(b.imageCount, 1);
    ASSERT_EQ(b.items().size(), 8);
    EXPECT_EQ(b.items()[2].kind, ItemKind::Oval);
    EXPECT_EQ(b.items()[2].number, 3);
    EXPECT_EQ(b.labelText(*b.label(2)).text, "b");
}

TEST(BoardModel, ShapesTakeTheirPlaceAndSizeFromStartAndEnd)
{
    Board b;
    b.txtThick = 4;
    b.startX = 500;
    b.startY = 600;
    // A start of 0 or below keeps the board's own start.
    b.drawRect(200, 900, 0, 0, 0, -1);
    const BoardItem& r = b.items().last();
    EXPECT_EQ(r.x1, 200);
    EXPECT_EQ(r.x2, 300) << "x left of the start: left is x, width start - x";
    EXPECT_EQ(r.y1, 600);
    EXPECT_EQ(r.y2, 300);
    EXPECT_EQ(r.pen, 4) << "thickness 0 takes txtThick";

    b.drawCircle(10, 10, 2, 0, 30, 40);
    EXPECT_EQ(b.startX, 30) << "a positive start replaces the board's";
    EXPECT_EQ(b.items().last().pen, 2);

    b.drawLine(70, 80, 2, 0x0000FF, 0, 0);
    const BoardItem& l = b.items().last();
    EXPECT_EQ(QRect(l.x1, l.y1, l.x2, l.y2), QRect(30, 40, 70, 80));
    EXPECT_EQ(l.pen, 6) << "a line's width is three times the thickness";
    EXPECT_EQ(l.colour, qRgb(255, 0, 0)) << "red is the lowest byte";

    b.lblForeColour = 0xFF0000;
    b.drawLine(1, 1, 1, std::nullopt, 0, 0);
    EXPECT_EQ(b.items().last().colour, qRgb(0, 0, 255)) << "no colour takes lblForeColour";
}

TEST(BoardModel, DotsAreTopLeftPlacedAndAtLeastOneThick)
{
    Board b;
    b.drawPoint(150, 300, 0, 0);
    b.drawPoint(150, 300, 0, 3);
    b.erasePoint(7, 8, 0);
    EXPECT_EQ(b.items()[0].x1, 150);
    EXPECT_EQ(b.items()[0].x2, 50);
    EXPECT_EQ(b.items()[1].x2, 150);
    EXPECT_EQ(b.items()[2].x2, 100);
}

TEST(BoardModel, LabelsFallBackOnTheLocalFontSizeAndColour)
{
    Board b;
    b.txtFontName = "Serif";
    b.lblForeColour = 0x00FF00;
    b.remoteLabel(1, 2, "x", {QString(), QString(), 0}, std::nullopt);
    const BoardLabel& l = b.labelText(*b.label(1));
    EXPECT_EQ(l.fontName, "Serif");
    EXPECT_EQ(l.fontSize, 9);
    EXPECT_EQ(b.label(1)->colour, qRgb(0, 255, 0));
}

TEST(BoardModel, ErasedLabelsAreMarkedAndUnknownNumbersAreNoError)
{
    Board b;
    b.remoteLabel(1, 1, "a", {}, 0);
    b.remoteLabel(1, 1, "b", {}, 0);
    const quint64 before = b.revision();
    b.eraseLabel(1);
    EXPECT_TRUE(b.labelErased(1));
    EXPECT_FALSE(b.labelErased(2));
    EXPECT_EQ(b.label(1), nullptr);
    EXPECT_NE(b.revision(), before);
    b.eraseLabel(1);
    b.eraseLabel(77);
    b.eraseLabel(-3);
    EXPECT_NE(b.label(2), nullptr);
    EXPECT_FALSE(b.erasePic(1)) << "an unknown picture is an error";

    b.eraseAll();
    EXPECT_EQ(b.labelCount, 0);
    EXPECT_TRUE(b.items().isEmpty());
    // Numbers start again; the new label 1 is not taken for the erased one.
    EXPECT_EQ(b.remoteLabel(1, 1, "c", {}, 0), 1);
    EXPECT_FALSE(b.labelErased(1));
    b.eraseLabel(1);
    EXPECT_EQ(b.label(1), nullptr);
}

TEST(BoardModel, BackgroundChangeRecoloursOnlyEraseDots)
{
    Board b;
    b.drawPoint(1, 1, 0, 1);
    b.erasePoint(1, 1, 0xFFFFFF);
    b.eraseBkCol(0x0000FF);
    EXPECT_EQ(b.backColor(), 0x0000FF);
    EXPECT_EQ(b.items()[0].colour, qRgb(0, 0, 0));
    EXPECT_EQ(b.items()[1].colour, qRgb(255, 0, 0));
}

TEST(BoardModel, LimitsRefuseNewObjectsWithoutGrowing)
{
    Board b;
    for (int i = 0; i < Board::kLabelLimit; ++i)
        ASSERT_GT(b.remoteLabel(0, 0, "l", {}, 0), 0);
    EXPECT_EQ(b.remoteLabel(0, 0, "one too many", {}, 0), 0);
    EXPECT_EQ(b.labelCount, Board::kLabelLimit);
    for (int i = 0; i < Board::kPictureLimit; ++i)
        ASSERT_GT(b.addPicture(QRect(), QImage()), 0);
    EXPECT_EQ(b.addPicture(QRect(), QImage()), 0);
    EXPECT_EQ(b.refused(), 2);

    // Shapes, lines and erase dots share one cap.
    for (int i = 0; i < Board::kMarkLimit - 2; ++i)
        b.drawPoint(qint16(i % 1000), 0, 0, 1);
    EXPECT_TRUE(b.drawLine(1, 1, 1, 0, 0, 0));
    EXPECT_TRUE(b.erasePoint(1, 1, 0));
    const qsizetype count = b.items().size();
    EXPECT_FALSE(b.drawPoint(1, 1, 0, 1));
    EXPECT_FALSE(b.drawRect(1, 1, 1, 0, 0, 0));
    EXPECT_FALSE(b.erasePoint(1, 1, 0));
    EXPECT_EQ(b.items().size(), count);
    EXPECT_EQ(b.shapeCount, Board::kMarkLimit - 2) << "counters go beyond 16 bits";
    EXPECT_EQ(b.refused(), 5);
}

TEST(BoardModel, PicturesAndLabelTextsHaveAMemoryBudget)
{
    Board b;
    // 64 MB pictures of their own each count; one placed again shares its
    // pixels and counts once.
    QImage big(4096, 4096, QImage::Format_RGB32);
    big.fill(Qt::gray);
    for (int i = 0; i < 20; ++i)
        ASSERT_GT(b.addPicture(QRect(0, 0, 10, 10), big), 0);
    QList<QImage> own;
    for (int i = 0; i < 7; ++i) {
        own << big.copy();
        ASSERT_GT(b.addPicture(QRect(0, 0, 10, 10), own.last()), 0);
    }
    EXPECT_EQ(b.refused(), 0);
    own << big.copy();
    EXPECT_EQ(b.addPicture(QRect(0, 0, 10, 10), own.last()), 28) << "the number is still taken";
    EXPECT_EQ(b.refused(), 1);
    EXPECT_FALSE(b.pictureItem(28)->visible);
    EXPECT_TRUE(b.picture(*b.pictureItem(28)).isNull());
    EXPECT_EQ(b.addPicture(QRect(0, 0, 10, 10), big), 29) << "shared pixels cost nothing more";
    EXPECT_TRUE(b.pictureItem(29)->visible);
    b.erasePic(21);
    EXPECT_EQ(b.addPicture(QRect(0, 0, 10, 10), own.last()), 30) << "an erased picture frees its share";
    EXPECT_TRUE(b.pictureItem(30)->visible);
    for (int n = 1; n <= 20; ++n)
        b.erasePic(n);
    own << big.copy();
    EXPECT_EQ(b.addPicture(QRect(0, 0, 10, 10), own.last()), 31) << "still placed once: counted";
    EXPECT_FALSE(b.pictureItem(31)->visible);
    b.erasePic(29);
    EXPECT_EQ(b.addPicture(QRect(0, 0, 10, 10), own.last()), 32) << "its last placing gone: freed";
    EXPECT_TRUE(b.pictureItem(32)->visible);

    b.remoteLabel(0, 0, QString(100000, 'x'), {}, 0);
    EXPECT_EQ(b.labelText(*b.label(1)).text.size(), Board::kLabelTextLimit);
}

TEST(BoardTools, AStrokeHoldsFiveHundredPoints)
{
    BoardTools t;
    for (int i = 0; i < BoardTools::kStrokeLimit; ++i)
        ASSERT_TRUE(t.addPoint(qint16(i), qint16(-i)));
    EXPECT_FALSE(t.addPoint(1, 1));
    EXPECT_TRUE(t.takeFirstFailure());
    EXPECT_FALSE(t.addPoint(1, 1));
    EXPECT_FALSE(t.takeFirstFailure()) << "told once a stroke";
    const QList<QPoint> points = t.strokePoints();
    ASSERT_EQ(points.size(), 500);
    EXPECT_EQ(points.first(), QPoint(0, 0));
    EXPECT_EQ(points.last(), QPoint(499, -499));
    t.clearStroke();
    EXPECT_TRUE(t.strokePoints().isEmpty());
    EXPECT_TRUE(t.addPoint(1, 1));
}

TEST(BoardTools, SelectionPressAndPending)
{
    BoardTools t;
    EXPECT_TRUE(t.noToolSelected);
    EXPECT_FALSE(t.sendsEnds());
    t.select(BoardTool::Rect);
    EXPECT_TRUE(t.toolRect);
    EXPECT_TRUE(t.sendsEnds());
    t.select(BoardTool::Draw);
    EXPECT_FALSE(t.toolRect) << "one tool at a time";
    EXPECT_FALSE(t.sendsEnds());
    EXPECT_EQ(t.hint(), "Move slowly to draw a continue line");

    t.setCurrent(40000, -40000);
    EXPECT_EQ(t.curX, 32767);
    EXPECT_EQ(t.curY, -32768);
    t.setCurrent(10, 20);
    EXPECT_TRUE(t.press());
    EXPECT_EQ(t.startX, 10);
    EXPECT_FALSE(t.press()) << "a press where the last one was does nothing more";
    t.setCurrent(11, 20);
    EXPECT_TRUE(t.press());

    t.capturePending = t.imagePending = true;
    for (int i = 0; i < 99; ++i)
        t.countMove();
    EXPECT_TRUE(t.capturePending);
    t.countMove();
    EXPECT_FALSE(t.capturePending);
    EXPECT_FALSE(t.imagePending);
}

}  // namespace
}  // namespace vonnel
