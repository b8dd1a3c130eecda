// Freehand strokes: the points of one stroke are painted joined at the
// stroke's width on the drawing board, the receiving board and the saved
// picture alike, never joined to another stroke, and the bytes that carry
// them are what a peer of the old wire reads.

#include "BoardRawPeer.h"
#include "TwoBoardCopies.h"
#include "board/Board.h"
#include "board/BoardPaint.h"
#include "board/BoardSave.h"
#include "board/Scrivet.h"
#include "support/Session.h"

#include <QTcpSocket>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

const QRgb kInk = qRgb(0, 0, 0);
const QRgb kPaper = qRgb(255, 255, 255);

// Twips to the pixel at the centre of a dot of thickness 2 (100 twips).
QPoint centre(int x, int y) { return QPoint(x / 15 + 3, y / 15 + 3); }

// Press, moves and release with the tool in hand.
void drag(Scrivet& s, const QList<QPoint>& points)
{
    s.mouseMove(points.first().x(), points.first().y(), false);
    s.mouseDown(points.first().x(), points.first().y());
    for (qsizetype i = 1; i < points.size(); ++i)
        s.mouseMove(points[i].x(), points[i].y(), true);
    s.mouseUp(points.last().x(), points.last().y());
}

void stroke(Scrivet& s, const QList<QPoint>& points)
{
    s.selectTool(BoardTool::Draw);
    drag(s, points);
}

class BoardStrokes : public TwoBoardCopies {
protected:
    void SetUp() override
    {
        TwoBoardCopies::SetUp();
        sa().mnuDraw_Click();
        ASSERT_TRUE(waitUntil([&] { return sb().isOpen(); }));
    }
};

TEST_F(BoardStrokes, AFastStrokeIsInkedBetweenItsPointsOnBothBoards)
{
    // Three points 200 pixels apart: an L.
    stroke(sa(), {{1500, 1500}, {4500, 1500}, {4500, 4500}});
    ASSERT_TRUE(waitUntil([&] { return sb().board().shapeCount == 3; }));
    EXPECT_EQ(sa().board().shapeCount, 3) << "joining adds no numbered object";

    const QImage mine = BoardPaint::render(sa().board());
    const QImage theirs = BoardPaint::render(sb().board());
    for (const QImage* img : {&mine, &theirs}) {
        const char* side = img == &mine ? "drawing side" : "receiving side";
        EXPECT_EQ(img->pixel(centre(3000, 1500)), kInk) << side << ": the first leg";
        EXPECT_EQ(img->pixel(centre(2000, 1500)), kInk) << side;
        EXPECT_EQ(img->pixel(centre(4500, 3000)), kInk) << side << ": the second leg";
        EXPECT_EQ(img->pixel(centre(3000, 3000)), kPaper) << side << ": not the diagonal";
        // The band is the dot's width (6 to 7 pixels), no wider.
        EXPECT_EQ(img->pixel(centre(3000, 1500) + QPoint(0, 2)), kInk) << side;
        EXPECT_EQ(img->pixel(centre(3000, 1500) + QPoint(0, 6)), kPaper) << side;
    }
    EXPECT_TRUE(mine == theirs);

    // The kept raster of the window, painted object by object as they
    // came, and the saved file show the same.
    BoardPaint raster;
    EXPECT_TRUE(raster.image(sb().board()) == theirs);
    b.prompter().addAnswers({"file:" + b.file("strokes.bmp")});
    ASSERT_EQ(cmdSave_Click(b.frm().ctx(), sb().board()), b.file("strokes.bmp"));
    const QImage saved(b.file("strokes.bmp"));
    ASSERT_FALSE(saved.isNull());
    EXPECT_EQ(saved.pixel(centre(3000, 1500)), kInk);
    EXPECT_EQ(saved.pixel(centre(3000, 3000)), kPaper);
}

TEST_F(BoardStrokes, SeparateStrokesAreNotJoined)
{
    // Two strokes of two points each, one after the other on one line, and
    // a stroke of one dot further on.
    stroke(sa(), {{1500, 6000}, {3000, 6000}});
    stroke(sa(), {{6000, 6000}, {7500, 6000}});
    stroke(sa(), {{9000, 6000}});
    ASSERT_TRUE(waitUntil([&] { return sb().board().shapeCount == 5; }));
    for (const Board* board : {&sa().board(), &sb().board()}) {
        const QImage img = BoardPaint::render(*board);
        const char* side = board == &sa().board() ? "drawing side" : "receiving side";
        EXPECT_EQ(img.pixel(centre(2250, 6000)), kInk) << side << ": within the first stroke";
        EXPECT_EQ(img.pixel(centre(6750, 6000)), kInk) << side << ": within the second";
        EXPECT_EQ(img.pixel(centre(4500, 6000)), kPaper) << side << ": between the strokes";
        EXPECT_EQ(img.pixel(centre(8250, 6000)), kPaper) << side << ": up to the lone dot";
        EXPECT_EQ(img.pixel(centre(9000, 6000)), kInk) << side << ": the lone dot";
    }

    // A stroke's thickness is its own: a thick stroke after a thin one.
    sa().setThickness(6);
    stroke(sa(), {{1500, 7500}, {4500, 7500}});
    ASSERT_TRUE(waitUntil([&] { return sb().board().shapeCount == 7; }));
    const QImage img = BoardPaint::render(sb().board());
    // 300 twips: 20 pixels wide, centred 10 pixels below the top.
    EXPECT_EQ(img.pixel(200, 500 + 18), kInk);
    EXPECT_EQ(img.pixel(200, 500 + 22), kPaper);
    EXPECT_TRUE(img == BoardPaint::render(sa().board()));
}

// The peer of the old wire reads the stroke exactly as before, and its own
// stroke is painted joined here.
TEST(BoardStrokesRawPeer, TheBytesOfAStrokeAreUnchanged)
{
    TestCopy copy;
    QTcpSocket peer;
    copy.set("DrawingBoard - Thickness", "2");
    ASSERT_TRUE(boardOpenedByRawPeer(copy, peer));
    readFor(peer, 200);
    Scrivet& s = copy.frm().scrivet();
    s.selectTool(BoardTool::Draw);
    readFor(peer, 100);  // what the tool's selection says, if anything

    drag(s, {{1500, 1500}, {4500, 1500}, {4500, 4500}});
    EXPECT_EQ(readFor(peer, 300), QByteArray("&&st1500,1500$4500,1500$4500,4500$%"));

    // The same bytes from the peer make the same board.
    peer.write("&&fc0$&&lt2$&&st1500,7500$4500,7500$%&&st6000,7500$%");
    peer.flush();
    ASSERT_TRUE(waitUntil([&] { return s.board().shapeCount == 6; }));
    const QImage img = BoardPaint::render(s.board());
    EXPECT_EQ(img.pixel(centre(3000, 7500)), kInk);
    EXPECT_EQ(img.pixel(centre(5250, 7500)), kPaper);
    EXPECT_EQ(img.pixel(centre(3000, 1500)), kInk);
}

}  // namespace
}  // namespace vonnel::test
