// The board's windows on a real X display, photographed whole with
// ImageMagick's import: the board with its palette and font sample, frmTmp
// fitted and zoomed, frmDlg and frmDrawTip. Runs only when VONNEL_SCREENS
// names the folder for the pictures (and the copy runs on xcb); the
// pictures in docs/screenshots come from it.

#include "board/Scrivet.h"
#include "core/CopyContext.h"
#include "shell/MainWindow.h"
#include "shell/dialogs/BoardToolPanel.h"
#include "shell/dialogs/BoardWindow.h"
#include "shell/dialogs/PictureBrowser.h"
#include "shell/dialogs/PreviewWindow.h"
#include "shell/dialogs/TipWindow.h"
#include "support/Session.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QListWidget>
#include <QPainter>
#include <QProcess>
#include <QScreen>
#include <QSet>
#include <QSlider>
#include <QToolButton>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

// The whole screen into folder/name.png; false when nothing usable came.
bool shoot(const QString& folder, const QString& name)
{
    pump(400);
    const QString path = folder + QLatin1Char('/') + name + QStringLiteral(".png");
    QFile::remove(path);
    if (QProcess::execute(QStringLiteral("import"), {QStringLiteral("-window"), QStringLiteral("root"), path}) != 0)
        return false;
    const QImage shot(path);
    if (shot.isNull())
        return false;
    // A screen with nothing on it has a colour or two; windows have many.
    QSet<QRgb> colours;
    for (int y = 0; y < shot.height(); y += 7)
        for (int x = 0; x < shot.width(); x += 7)
            colours.insert(shot.pixel(x, y));
    return colours.size() > 8;
}

TEST(BoardScreens, TheBoardsWindowsOnTheScreen)
{
    const QString folder = qEnvironmentVariable("VONNEL_SCREENS");
    if (folder.isEmpty() || QGuiApplication::platformName() != QLatin1String("xcb"))
        GTEST_SKIP() << "VONNEL_SCREENS unset or not on X";
    ASSERT_TRUE(QDir().mkpath(folder));
    TestCopy a, b;
    for (TestCopy* c : {&a, &b})
        c->set("Show Tips at Startup", "0");
    ASSERT_TRUE(QFile::copy(QStringLiteral(VONNEL_SOURCE_DIR "/dist/DrawTips.txt"), a.file("DrawTips.txt")));
    ASSERT_TRUE(a.start());
    ASSERT_TRUE(b.start());
    ASSERT_TRUE(connectCopies(a, b));
    Views* oldA = &a.frm().ctx().views();
    MainWindow wa(a.frm());
    a.frm().ctx().setViews(&wa);
    Scrivet& s = a.frm().scrivet();
    s.mnuDraw_Click();
    BoardWindow* board = wa.boardWindow();
    ASSERT_NE(board, nullptr);
    board->move(20, 20);
    board->resize(1100, 760);

    // Something on the board, the Text tool with a chosen font.
    s.selectTool(BoardTool::Rect);
    s.setForeColour(0x0000C0);
    s.mouseMove(1500, 1500, false);
    s.mouseDown(1500, 1500);
    s.mouseUp(5200, 3800);
    s.selectTool(BoardTool::Circle);
    s.setForeColour(0x008000);
    s.mouseMove(6000, 1200, false);
    s.mouseDown(6000, 1200);
    s.mouseUp(9000, 4200);
    a.prompter().addAnswers({"text:Hello, board"});
    board->toolButton(BoardTool::Text)->click();
    s.cmdFontSetting_Click({QString(), QStringLiteral("DejaVu Serif"), 14, true, true, false, false});
    s.mouseMove(2200, 5200, false);
    s.mouseDown(2200, 5200);
    s.mouseUp(2200, 5200);
    s.cmdSendText_Click(QStringLiteral("a line for the peer"));
    EXPECT_TRUE(shoot(folder, QStringLiteral("board-palette-font")));

    // frmTmp on a picture of the image tool: fitted, then zoomed.
    QImage photo(1600, 1000, QImage::Format_RGB32);
    QPainter p(&photo);
    for (int y = 0; y < photo.height(); y += 4)
        p.fillRect(0, y, photo.width(), 4, QColor::fromHsv((y / 4) % 360, 140, 230));
    p.setPen(QPen(Qt::black, 8));
    p.drawEllipse(QRect(300, 200, 1000, 600));
    p.setFont(QFont(QStringLiteral("DejaVu Sans"), 60));
    p.drawText(photo.rect(), Qt::AlignCenter, QStringLiteral("preview"));
    p.end();
    ASSERT_TRUE(photo.save(a.file("photo.jpg"), "jpg", 90));
    a.prompter().addAnswers({"file:" + a.file("photo.jpg")});
    board->toolButton(BoardTool::Image)->click();
    s.mouseMove(9000, 6000, false);
    s.mouseDown(9000, 6000);
    s.mouseMove(12000, 8000, true);
    s.mouseUp(12000, 8000);
    PreviewWindow* preview = board->previewWindow();
    ASSERT_NE(preview, nullptr);
    preview->showNormal();
    // As maximised (the screen has no window manager to do it).
    preview->setGeometry(QGuiApplication::primaryScreen()->geometry());
    pump(300);
    preview->mnuFitImage_Click();
    EXPECT_TRUE(shoot(folder, QStringLiteral("frmTmp-fitted")));
    preview->setZoom(150);
    EXPECT_EQ(preview->slidResize()->value(), 150);
    EXPECT_TRUE(shoot(folder, QStringLiteral("frmTmp-zoomed")));

    // frmDlg on a folder with the picture and two folders.
    ASSERT_TRUE(QDir(a.appPath()).mkpath(QStringLiteral("pictures")));
    ASSERT_TRUE(QDir(a.appPath()).mkpath(QStringLiteral("saved boards")));
    auto* dlg = new PictureBrowser(a.frm().ctx(), preview, a.appPath());
    dlg->setAttribute(Qt::WA_DeleteOnClose);
    dlg->show();
    dlg->move(120, 120);
    const QList<QListWidgetItem*> found = dlg->filList()->findItems(QStringLiteral("photo.jpg"), Qt::MatchExactly);
    ASSERT_EQ(found.size(), 1);
    dlg->filList()->setCurrentItem(found.first());
    EXPECT_TRUE(shoot(folder, QStringLiteral("frmDlg")));
    dlg->close();
    preview->close();

    // frmDrawTip over the board.
    TipWindow* tips = board->showDrawTips();
    ASSERT_NE(tips, nullptr);
    tips->move(640, 430);
    EXPECT_TRUE(shoot(folder, QStringLiteral("frmDrawTip")));
    tips->close();
    s.cmdCloseDraw_Click();
    a.frm().ctx().setViews(oldA);
}

}  // namespace
}  // namespace vonnel::test
