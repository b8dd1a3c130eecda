// frmDraw on two copies: the menu opens both boards, the mouse on one
// surface draws on both, the chat strip reaches the other side, and the
// frame's close closes both. Saves a picture of each window in the build
// folder.

#include "BoardWindowOn.h"
#include "board/Scrivet.h"
#include "core/CopyContext.h"
#include "shell/MainWindow.h"
#include "shell/dialogs/BoardSurface.h"
#include "shell/dialogs/BoardWindow.h"
#include "shell/dialogs/PreviewWindow.h"
#include "support/Session.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QToolButton>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

void drag(BoardWindow* window, BoardTool tool, QPoint from, QPoint to, int steps = 6)
{
    window->toolButton(tool)->click();
    QWidget* s = window->picDraw();
    mouse(s, QEvent::MouseMove, from, Qt::NoButton);
    mouse(s, QEvent::MouseButtonPress, from);
    for (int k = 1; k <= steps; ++k)
        mouse(s, QEvent::MouseMove, from + (to - from) * k / steps);
    mouse(s, QEvent::MouseButtonRelease, to);
}

TEST(BoardWindow, DrawingOnOneWindowShowsOnTheOther)
{
    TestCopy a, b;
    ASSERT_TRUE(a.start());
    ASSERT_TRUE(b.start());
    ASSERT_TRUE(connectCopies(a, b));
    WindowOn wa(a), wb(b);

    QAction* menu = wa.window.action(Control::mnuDraw);
    ASSERT_NE(menu, nullptr);
    menu->trigger();
    ASSERT_TRUE(waitUntil([&] { return wb.board() && wb.board()->isVisible(); }));
    ASSERT_NE(wa.board(), nullptr);
    EXPECT_TRUE(wa.board()->isVisible());

    BoardWindow* w = wa.board();
    drag(w, BoardTool::Draw, {40, 40}, {160, 90}, 60);
    drag(w, BoardTool::Rect, {200, 60}, {330, 160});
    a.frm().scrivet().setForeColour(0x0000FF);
    drag(w, BoardTool::Circle, {360, 60}, {480, 170});
    a.frm().scrivet().setForeColour(0xC00000);
    drag(w, BoardTool::Line, {60, 220}, {470, 300});
    a.prompter().addAnswers({"text:Hello from the caller"});
    drag(w, BoardTool::Text, {120, 330}, {120, 330});
    drag(w, BoardTool::Erase, {250, 60}, {250, 160});

    const Board& ba = a.frm().scrivet().board();
    const Board& bb = b.frm().scrivet().board();
    ASSERT_TRUE(waitUntil([&] {
        return bb.items().size() == ba.items().size() && bb.eraseCount == ba.eraseCount &&
               bb.labelCount == 1;
    }));
    EXPECT_EQ(ba.shapeCount, 61 + 2) << "61 dots of the stroke, a rectangle and an oval";
    EXPECT_EQ(bb.shapeCount, ba.shapeCount);
    EXPECT_EQ(bb.lineCount, 1);
    EXPECT_EQ(bb.eraseCount, 7);
    EXPECT_EQ(bb.labelText(*bb.label(1)).text, "Hello from the caller");
    // Twips on both sides: 15 to the pixel from the surface's corner.
    const BoardItem& rect = ba.items()[61];
    EXPECT_EQ(rect.kind, ItemKind::Rect);
    EXPECT_EQ(QRect(rect.x1, rect.y1, rect.x2, rect.y2), QRect(3000, 900, 1950, 1500));

    // A picture through the image tool and frmTmp's double-click.
    QImage photo(320, 240, QImage::Format_RGB32);
    for (int y = 0; y < photo.height(); ++y)
        for (int x = 0; x < photo.width(); ++x)
            photo.setPixel(x, y, qRgb(x * 255 / 320, 120, y * 255 / 240));
    ASSERT_TRUE(photo.save(a.file("photo.jpg"), "jpg", 90));
    a.prompter().addAnswers({"file:" + a.file("photo.jpg")});
    drag(w, BoardTool::Image, {540, 60}, {690, 170});
    PreviewWindow* preview = w->previewWindow();
    ASSERT_NE(preview, nullptr);
    EXPECT_TRUE(preview->isVisible());
    mouse(preview->picture1(), QEvent::MouseButtonPress, {40, 30});
    mouse(preview->picture1(), QEvent::MouseButtonRelease, {40, 30});
    preview->grab().save(QStringLiteral(VONNEL_BINARY_DIR "/frmTmp-part-chosen.png"));
    mouse(preview->picture1(), QEvent::MouseButtonDblClick, {40, 30});
    EXPECT_EQ(ba.imageCount, 1);
    ASSERT_TRUE(waitUntil([&] {
        const BoardItem* p = bb.pictureItem(1);
        return p && p->visible;
    }, 10000));
    EXPECT_TRUE(ba.picture(*ba.pictureItem(1)) == bb.picture(*bb.pictureItem(1)));

    w->txtServer()->setText("look at the square");
    Q_EMIT w->txtServer()->returnPressed();
    ASSERT_TRUE(waitUntil([&] { return wb.board()->txtClient()->text() == "look at the square"; }));

    wa.board()->grab().save(QStringLiteral(VONNEL_BINARY_DIR "/frmDraw-caller.png"));
    wb.board()->grab().save(QStringLiteral(VONNEL_BINARY_DIR "/frmDraw-called.png"));

    // The frame's close is the board's close, on both sides.
    w->close();
    EXPECT_EQ(wa.board(), nullptr);
    ASSERT_TRUE(waitUntil([&] { return wb.board() == nullptr; }));
    EXPECT_TRUE(bb.items().isEmpty());
    EXPECT_EQ(b.frm().scrivet().txtClient, "<Close>");
}

}  // namespace
}  // namespace vonnel::test
