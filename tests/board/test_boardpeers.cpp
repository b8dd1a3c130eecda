// Two copies on one board over loopback, and a raw peer drawing into a
// copy: what one side does, the other has as the same objects, under the
// same numbers, painted to the same pixels.

#include "BoardRawPeer.h"
#include "TwoBoardCopies.h"
#include "board/BoardPaint.h"
#include "board/BoardSave.h"
#include "access/Encryption.h"
#include "board/BoardCodec.h"
#include "board/Scrivet.h"
#include "core/CopyContext.h"
#include "core/MainModel.h"
#include "shell/CommandControl.h"
#include "support/Session.h"
#include "transfer/Transfer.h"

#include <QFile>
#include <QTcpSocket>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

bool sameItems(const Board& x, const Board& y, QString* why)
{
    if (x.items().size() != y.items().size()) {
        *why = QString("%1 objects against %2").arg(x.items().size()).arg(y.items().size());
        return false;
    }
    for (qsizetype i = 0; i < x.items().size(); ++i) {
        const BoardItem& a = x.items()[i];
        const BoardItem& b = y.items()[i];
        const bool same = a.kind == b.kind && a.visible == b.visible && a.number == b.number &&
                          a.x1 == b.x1 && a.y1 == b.y1 && a.x2 == b.x2 && a.y2 == b.y2 &&
                          a.pen == b.pen && a.colour == b.colour &&
                          (a.kind != ItemKind::Label || !a.visible ||
                           x.labelText(a).text == y.labelText(b).text);
        if (!same) {
            *why = QString("object %1 differs").arg(i);
            return false;
        }
    }
    return true;
}

class BoardPeers : public TwoBoardCopies {
protected:
    // Waits until b holds what a holds.
    void expectSame(const char* step)
    {
        QString why;
        waitUntil([&] { return sameItems(sa().board(), sb().board(), &why); }, 5000);
        ASSERT_TRUE(sameItems(sa().board(), sb().board(), &why)) << step << ": " << why.toStdString();
        const Board& x = sa().board();
        const Board& y = sb().board();
        EXPECT_EQ(x.labelCount, y.labelCount) << step;
        EXPECT_EQ(x.shapeCount, y.shapeCount) << step;
        EXPECT_EQ(x.lineCount, y.lineCount) << step;
        EXPECT_EQ(x.eraseCount, y.eraseCount) << step;
        EXPECT_EQ(x.imageCount, y.imageCount) << step;
        EXPECT_EQ(x.backColor(), y.backColor()) << step;
        EXPECT_TRUE(BoardPaint::render(x) == BoardPaint::render(y)) << step;
    }
    void drag(BoardTool tool, QPoint from, QPoint to)
    {
        sa().selectTool(tool);
        sa().mouseMove(from.x(), from.y(), false);
        sa().mouseDown(from.x(), from.y());
        sa().mouseMove((from.x() + to.x()) / 2, (from.y() + to.y()) / 2, true);
        sa().mouseMove(to.x() - 15, to.y(), true);
        sa().mouseUp(to.x(), to.y());
    }
};

TEST_F(BoardPeers, EveryKindOfObjectArrivesTheSame)
{
    sa().mnuDraw_Click();
    ASSERT_TRUE(waitUntil([&] { return sb().isOpen(); }));
    EXPECT_TRUE(sa().isOpen());
    EXPECT_EQ(b.frm().transfer().transferMode, "Scrivet");

    drag(BoardTool::Draw, {150, 150}, {900, 600});
    expectSame("stroke");
    EXPECT_EQ(sb().board().shapeCount, 4) << "press, two moves and the release";
    drag(BoardTool::Rect, {1500, 1500}, {3000, 2400});
    expectSame("rectangle");
    drag(BoardTool::Circle, {4500, 1500}, {3600, 3000});
    expectSame("circle");
    sa().setForeColour(0x0000FF);
    drag(BoardTool::Line, {300, 4500}, {6000, 3000});
    expectSame("line");
    EXPECT_EQ(sb().board().items().last().colour, qRgb(255, 0, 0));

    a.prompter().addAnswers({"text:first label", "text:second label"});
    drag(BoardTool::Text, {4500, 600}, {4500, 600});
    drag(BoardTool::Text, {6000, 600}, {6000, 600});
    expectSame("labels");
    ASSERT_NE(sb().board().label(2), nullptr);
    EXPECT_EQ(sb().board().labelText(*sb().board().label(2)).text, "second label");

    sa().cmdUndo_Click();
    expectSame("undo");
    EXPECT_EQ(sb().board().label(2), nullptr);
    EXPECT_TRUE(sb().board().labelErased(2));

    drag(BoardTool::Erase, {1500, 1500}, {2400, 1500});
    expectSame("erase trail");
    EXPECT_EQ(sb().board().eraseCount, 3) << "press and two moves; the release adds none";

    sa().setBackColour(0x00FFFF);
    expectSame("background");
    EXPECT_EQ(sb().board().backColor(), 0x00FFFF);

    // A picture: the image tool's frame, a file, the preview's choice, then
    // the transfer's picture branch and "&&showPic$" at the peer.
    QImage file(200, 150, QImage::Format_RGB32);
    for (int y = 0; y < file.height(); ++y)
        for (int x = 0; x < file.width(); ++x)
            file.setPixel(x, y, qRgb(x, y, 128));
    ASSERT_TRUE(file.save(a.file("photo.jpg"), "jpg", 90));
    a.prompter().addAnswers({"file:" + a.file("photo.jpg")});
    drag(BoardTool::Image, {600, 5400}, {2100, 6600});
    ASSERT_TRUE(sa().preview().has_value());
    EXPECT_EQ(sa().preview()->frame, QSize(100, 80));
    EXPECT_EQ(a.get("Capture Width"), "1500");
    // frmTmp's Open puts another file in the preview, its Save As writes it.
    QImage other(300, 200, QImage::Format_RGB32);
    other.fill(qRgb(10, 40, 220));
    ASSERT_TRUE(other.save(a.file("other.jpg"), "jpg", 90));
    a.prompter().addAnswers({"file:" + a.file("other.jpg"), "file:" + a.file("kept")});
    sa().openPreviewFile();
    EXPECT_EQ(sa().preview()->picture.size(), QSize(300, 200));
    EXPECT_EQ(sa().preview()->title, "other.jpg - Picture Preview");
    EXPECT_EQ(sa().savePreviewAs(), a.file("kept.jpg"));
    EXPECT_EQ(QImage(a.file("kept.jpg")).size(), QSize(300, 200));
    sa().confirmPreview({30, 40});
    EXPECT_EQ(sa().board().imageCount, 1);
    ASSERT_TRUE(waitUntil([&] {
        const BoardItem* p = sb().board().pictureItem(1);
        return p && p->visible;
    }, 10000));
    expectSame("picture");
    const BoardItem* mine = sa().board().pictureItem(1);
    const BoardItem* theirs = sb().board().pictureItem(1);
    EXPECT_EQ(QRect(theirs->x1, theirs->y1, theirs->x2, theirs->y2), QRect(600, 5400, 1500, 1200));
    EXPECT_TRUE(sa().board().picture(*mine) == sb().board().picture(*theirs));
    EXPECT_EQ(sb().board().picture(*theirs).size(), QSize(100, 80));

    sa().mnuEraseAll_Click();
    expectSame("erase all");
    EXPECT_TRUE(sb().board().items().isEmpty());
}

TEST_F(BoardPeers, ScreenCaptureAfterItsWaits)
{
    sa().mnuDraw_Click();
    ASSERT_TRUE(waitUntil([&] { return sb().isOpen(); }));
    QList<int> waits;
    sa().waitFor = [&](int ms) {
        waits << ms;
        return true;
    };
    QImage screen(400, 300, QImage::Format_RGB32);
    screen.fill(qRgb(20, 200, 90));
    int grabs = 0;
    sa().grabScreen = [&](QString*) {
        ++grabs;
        return screen;
    };
    a.set("Capture Time", "0");
    drag(BoardTool::Capture, {600, 600}, {799, 1500});
    EXPECT_TRUE(waits.isEmpty()) << "a frame of 199 units does nothing";
    EXPECT_FALSE(sa().preview().has_value());

    drag(BoardTool::Capture, {600, 600}, {2100, 1800});
    EXPECT_EQ(waits, (QList<int>{2000, 3000})) << "a Capture Time below 3 is 3";
    EXPECT_EQ(grabs, 1);
    ASSERT_TRUE(sa().preview().has_value());
    EXPECT_EQ(sa().preview()->title, "Screen Capture");
    EXPECT_EQ(sa().preview()->frame, QSize(100, 80));
    sa().confirmPreview({10, 10});
    ASSERT_TRUE(waitUntil([&] {
        const BoardItem* p = sb().board().pictureItem(1);
        return p && p->visible;
    }, 10000));
    expectSame("capture");

    // The peer leaves during the first wait: the screen is not taken.
    a.set("Capture Time", "5");
    waits.clear();
    sa().waitFor = [&](int ms) {
        waits << ms;
        sa().txtClient = "<Close>";
        return true;
    };
    drag(BoardTool::Capture, {3000, 600}, {4500, 1800});
    EXPECT_EQ(waits, (QList<int>{2000}));
    EXPECT_EQ(grabs, 1);
    EXPECT_FALSE(sa().preview().has_value());

    sa().txtClient.clear();
    waits.clear();
    sa().waitFor = [&](int ms) {
        waits << ms;
        return true;
    };
    sa().grabScreen = [](QString* why) {
        *why = "no screen here";
        return QImage();
    };
    drag(BoardTool::Capture, {3000, 3000}, {4500, 4500});
    EXPECT_EQ(waits, (QList<int>{2000, 5000}));
    EXPECT_TRUE(a.prompter().asked("Scren capture Error: no screen here"));
    EXPECT_FALSE(sa().preview().has_value());
}

TEST_F(BoardPeers, ChatStripAndClosingOnBothSides)
{
    a.frm().commands().runCommand("Cmd Scrivet");
    ASSERT_TRUE(waitUntil([&] { return sb().isOpen(); }));
    sa().cmdSendText_Click("hello board");
    ASSERT_TRUE(waitUntil([&] { return sb().txtClient == "hello board"; }));
    EXPECT_EQ(sb().txtClientHist, "hello board\r\n");
    sa().cmdSendText_Click("set transparent on");
    EXPECT_TRUE(sa().seeThrough);

    sb().board().drawPoint(1, 1, 0, 1);
    sa().cmdCloseDraw_Click();
    ASSERT_TRUE(waitUntil([&] { return !sb().isOpen(); }));
    EXPECT_EQ(sb().txtClient, "<Close>");
    EXPECT_TRUE(sb().board().items().isEmpty());
    EXPECT_EQ(b.frm().transfer().transferMode, "Vonnel");
    EXPECT_EQ(a.frm().transfer().transferMode, "Vonnel");
    EXPECT_EQ(a.get("DrawingBoard - Thickness"), "2");
}

TEST(BoardRawPeer, DrawingIntoACopyThenSavingIt)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    QTcpSocket peer;
    acceptRawPeer(copy, peer);
    Scrivet& s = copy.frm().scrivet();

    // A picture waiting under the name the transfer gives it.
    QImage pic(30, 20, QImage::Format_RGB32);
    pic.fill(Qt::green);
    ASSERT_TRUE(pic.save(copy.file("captscr.jpg"), "jpg", 85));

    peer.write("&& Scrivet Request &&");
    ASSERT_TRUE(waitUntil([&] { return s.isOpen(); }));
    // The ready reset went out for the peer's tests 3 and 4.
    const QByteArray answer = readFor(peer, 300);
    EXPECT_TRUE(answer.contains("&&!NotReady!&&")) << answer.constData();
    EXPECT_TRUE(answer.contains("&&!Ready!&&"));

    peer.write("&&fc255$&&lt1$&&st1500,1500$1515,1500$%");
    peer.write("&&sp3000,1500$&&ep4500,3000$&&rec$");
    peer.write("&&sp6000,3000$&&ep7500,4500$&&showPic$");
    ASSERT_TRUE(waitUntil([&] { return s.board().imageCount == 1; }));
    ASSERT_TRUE(waitUntil([&] { return s.receivedPictures().idle(); }));
    EXPECT_EQ(s.board().shapeCount, 3);

    copy.prompter().addAnswers({"file:" + copy.file("saved")});
    const QString saved = cmdSave_Click(copy.frm().ctx(), s.board());
    ASSERT_EQ(saved, copy.file("saved.jpg")) << "the first filter's ending is added";
    copy.prompter().addAnswers({"file:" + copy.file("saved.bmp")});
    copy.frm().commands().runCommand("cmd saveboard");
    ASSERT_TRUE(QFile::exists(copy.file("saved.bmp")));
    const QImage img(copy.file("saved.bmp"));
    ASSERT_GE(img.width(), 600);
    ASSERT_GE(img.height(), 400);
    EXPECT_EQ(img.pixel(101, 101), qRgb(255, 0, 0)) << "the dot at 1500,1500 twips";
    EXPECT_EQ(img.pixel(200, 150), qRgb(255, 0, 0)) << "the rectangle's left edge";
    const QColor inPicture = img.pixelColor(450, 250);
    EXPECT_GT(inPicture.green(), 200);
    EXPECT_LT(inPicture.red(), 60);

    // Saving over a file asks first.
    copy.prompter().addAnswers({"file:" + copy.file("saved.bmp"), "no"});
    EXPECT_EQ(cmdSave_Click(copy.frm().ctx(), s.board()), "");
    EXPECT_TRUE(copy.prompter().asked("is already exist."));

    // A wrong field: the error tail, and the copy goes on reading.
    copy.prompter().clearRecords();
    peer.write("&&sp99999,1$");
    ASSERT_TRUE(waitUntil([&] { return copy.prompter().asked("DrawCheck Protocol Error"); }));
    peer.write("&&eee$");
    EXPECT_TRUE(waitUntil([&] { return s.board().items().isEmpty(); }));
}

}  // namespace
}  // namespace vonnel::test

namespace vonnel::test {
namespace {

// A peer that floods: the board keeps no more than its limits, refuses the
// rest without a box each, and the copy goes on answering.
TEST(BoardRawPeer, AFloodStopsAtTheLimitsAndTheCopyAnswers)
{
    TestCopy copy;
    QTcpSocket peer;
    ASSERT_TRUE(boardOpenedByRawPeer(copy, peer));
    Scrivet& s = copy.frm().scrivet();

    QList<QPoint> points;
    for (int i = 0; i < 500; ++i)
        points << QPoint(i, i);
    const QByteArray stroke = board::stroke(points).toLatin1();
    const int messages = Board::kMarkLimit / 500 + 20;
    for (int i = 0; i < messages; ++i)
        peer.write(stroke);
    QByteArray labels;
    for (int i = 0; i < Board::kLabelLimit + 10; ++i)
        labels += "&&lbl" + QByteArray::number(i) + "$";
    peer.write(labels);
    ASSERT_TRUE(waitUntil([&] { return s.board().labelCount == Board::kLabelLimit; }, 30000));
    EXPECT_EQ(s.board().shapeCount, Board::kMarkLimit);
    EXPECT_EQ(s.board().refused(), 20 * 500 + 10);
    EXPECT_FALSE(copy.prompter().asked("DrawCheck")) << "refusals are not errors";

    // Chat lines by the thousand: the history keeps the newest.
    QByteArray lines;
    for (int i = 0; i < 2000; ++i)
        lines += "&&<#> line " + QByteArray::number(i) + QByteArray(90, '.') + " <#>&&";
    peer.write(lines);
    ASSERT_TRUE(waitUntil([&] { return s.txtClient.startsWith("line 1999"); }));
    EXPECT_EQ(s.txtClientHist.size(), Scrivet::kHistoryLimit);
    EXPECT_TRUE(s.txtClientHist.startsWith("line 1999"));

    // Still answering: the peer's chat line arrives, and erase-all frees it all.
    peer.write("&&<#> still there <#>&&&&eee$");
    ASSERT_TRUE(waitUntil([&] { return s.board().items().isEmpty(); }));
    EXPECT_EQ(s.txtClient, "still there");
    EXPECT_TRUE(s.board().drawPoint(1, 1, 0, 1));
}

TEST(BoardRawPeer, NotReadyAndReadyFollowThePeer)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    QTcpSocket peer;
    acceptRawPeer(copy, peer);
    Scrivet& s = copy.frm().scrivet();
    QList<bool> pictureTools;
    QObject::connect(&s, &Scrivet::pictureToolsEnabled, [&](bool on) { pictureTools << on; });
    peer.write("&&!NotReady!&&");
    ASSERT_TRUE(waitUntil([&] { return !copy.frm().transfer().drawMenuAllowed; }));
    EXPECT_FALSE(copy.frm().model().controls.enabled(Control::mnuDraw));
    peer.write("&&!Ready!&&");
    ASSERT_TRUE(waitUntil([&] { return copy.frm().transfer().drawMenuAllowed; }));
    EXPECT_TRUE(copy.frm().model().controls.enabled(Control::mnuDraw));
    EXPECT_EQ(pictureTools, (QList<bool>{false, true}));
}

}  // namespace
}  // namespace vonnel::test

namespace vonnel::test {
namespace {

// With encryption on at one side, its strip line and label go out
// enciphered and the other board shows them in clear.
TEST(BoardEncrypted, StripAndLabelAreReadInClear)
{
    const quint16 calleePort = freePort();
    TestCopy caller;
    TestCopy callee(calleePort, {{"Encrypted", "1"}});
    ASSERT_TRUE(caller.start());
    ASSERT_TRUE(callee.start());
    ASSERT_TRUE(connectCopies(caller, callee));
    callee.frm().encryption().beginSession();
    ASSERT_TRUE(callee.frm().encryption().encryptOn);
    callee.frm().encryption().sendKeyOnAccept();

    Scrivet& mine = callee.frm().scrivet();
    Scrivet& theirs = caller.frm().scrivet();
    mine.mnuDraw_Click();
    ASSERT_TRUE(waitUntil([&] { return theirs.isOpen(); }));
    mine.cmdSendText_Click("secret line");
    callee.prompter().addAnswers({"text:secret label"});
    mine.selectTool(BoardTool::Text);
    mine.mouseMove(900, 900, false);
    mine.mouseDown(900, 900);
    mine.mouseUp(900, 900);
    ASSERT_TRUE(waitUntil([&] { return theirs.board().labelCount == 1; }));
    EXPECT_TRUE(caller.frm().encryption().remoteEncrypted) << "the lines came enciphered";
    EXPECT_EQ(theirs.txtClient, "secret line");
    EXPECT_EQ(theirs.board().labelText(*theirs.board().label(1)).text, "secret label");

    // A line the cipher cannot take is refused, and nothing goes out.
    mine.cmdSendText_Click(QString::fromUtf8("\u4f60\u597d"));
    EXPECT_TRUE(callee.prompter().asked("Please disconnect, turn off encryption and reconnect again!"));
    EXPECT_EQ(mine.txtServerHist, "secret line\r\n");
    mine.cmdSendText_Click("after");
    ASSERT_TRUE(waitUntil([&] { return theirs.txtClient == "after"; }));
    EXPECT_EQ(theirs.txtClientHist, "after\r\nsecret line\r\n");
}

}  // namespace
}  // namespace vonnel::test
