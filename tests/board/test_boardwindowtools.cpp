// frmDraw's own controls and its behaviour around other windows: Enter in
// the chat line sends the line and opens nothing; the palette, thickness
// and font sample; the hints through the lookup; the board to the front
// with On top; frmOptions closed when the peer opens the board; the away
// notice taken back by the mouse over the surface; and frmTmp's zoom, fit,
// Esc, right button and dropped files.

#include "board/PreviewZoom.h"
#include "BoardWindowOn.h"
#include "board/Scrivet.h"
#include "core/Controls.h"
#include "core/CopyContext.h"
#include "core/MainModel.h"
#include "core/Translator.h"
#include "shell/CommandControl.h"
#include "shell/MainWindow.h"
#include "shell/dialogs/BoardSurface.h"
#include "shell/dialogs/BoardToolPanel.h"
#include "shell/dialogs/BoardWindow.h"
#include "shell/dialogs/PreviewWindow.h"
#include "support/Session.h"
#include "wire/AwayNotice.h"

#include <QApplication>
#include <QDialog>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

// Closes every modal window that comes up while it lives, and counts them.
struct ModalWatch {
    ModalWatch()
    {
        QObject::connect(&timer, &QTimer::timeout, [this] {
            if (QWidget* w = QApplication::activeModalWidget()) {
                ++opened;
                names << w->metaObject()->className();
                w->close();
            }
        });
        timer.start(20);
    }
    QTimer timer;
    int opened = 0;
    QStringList names;
};

void key(QWidget* w, int k)
{
    QKeyEvent press(QEvent::KeyPress, k, Qt::NoModifier, k == Qt::Key_Return ? QStringLiteral("\r") : QString());
    QApplication::sendEvent(w, &press);
    QKeyEvent release(QEvent::KeyRelease, k, Qt::NoModifier);
    QApplication::sendEvent(w, &release);
}

class BoardAlone : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(copy.start());
        on = std::make_unique<WindowOn>(copy);
        s().mnuDraw_Click();
        ASSERT_NE(on->board(), nullptr);
    }
    Scrivet& s() { return copy.frm().scrivet(); }
    BoardWindow* w() { return on->board(); }
    TestCopy copy;
    std::unique_ptr<WindowOn> on;
};

TEST_F(BoardAlone, EnterInTheChatLineSendsTheLineAndNothingElse)
{
    ModalWatch watch;
    w()->txtServer()->setFocus();
    w()->txtServer()->setText("first line");
    key(w()->txtServer(), Qt::Key_Return);
    pump(150);
    EXPECT_EQ(watch.opened, 0) << qPrintable(watch.names.join(","));
    EXPECT_EQ(s().txtServerHist, "first line\r\n");
    EXPECT_TRUE(w()->txtServer()->text().isEmpty());
    EXPECT_TRUE(w()->isVisible()) << "Enter does not close the board either";

    // Enter on the keypad, and Esc, neither close nor open anything.
    w()->txtServer()->setText("second");
    key(w()->txtServer(), Qt::Key_Enter);
    key(w()->txtServer(), Qt::Key_Escape);
    pump(150);
    EXPECT_EQ(watch.opened, 0) << qPrintable(watch.names.join(","));
    EXPECT_EQ(s().txtServerHist, "first line\r\nsecond\r\n");
    EXPECT_TRUE(w()->isVisible());
}

// Toolbar1 is a bar of pictures: each tool has its own drawing, its name
// as the tip, and a click on it chooses the tool.
TEST_F(BoardAlone, ToolsAreABarOfPicturesWithTips)
{
    const BoardTool tools[] = {BoardTool::Draw, BoardTool::Line,  BoardTool::Rect,    BoardTool::Circle,
                               BoardTool::Text, BoardTool::Erase, BoardTool::Capture, BoardTool::Image};
    QList<QImage> pictures;
    for (BoardTool t : tools) {
        QToolButton* b = w()->toolButton(t);
        ASSERT_TRUE(b) << qPrintable(BoardTools::key(t));
        EXPECT_TRUE(qobject_cast<QToolBar*>(b->parentWidget())) << qPrintable(BoardTools::key(t));
        EXPECT_EQ(b->toolButtonStyle(), Qt::ToolButtonIconOnly);
        EXPECT_FALSE(b->text().isEmpty());
        EXPECT_EQ(b->toolTip(), b->text());
        ASSERT_FALSE(b->icon().isNull()) << qPrintable(BoardTools::key(t));
        const QImage img = b->icon().pixmap(QSize(24, 24)).toImage();
        int drawn = 0;
        for (int y = 0; y < img.height(); ++y)
            for (int x = 0; x < img.width(); ++x)
                drawn += qAlpha(img.pixel(x, y)) > 0;
        EXPECT_GT(drawn, 24) << qPrintable(BoardTools::key(t));
        EXPECT_FALSE(pictures.contains(img)) << qPrintable(BoardTools::key(t)) << " looks like another tool";
        pictures << img;
    }
    w()->toolButton(BoardTool::Circle)->click();
    EXPECT_EQ(s().tools().tool(), BoardTool::Circle);
    EXPECT_TRUE(w()->toolButton(BoardTool::Circle)->isChecked());
    EXPECT_FALSE(w()->toolButton(BoardTool::Draw)->isChecked());
}

TEST_F(BoardAlone, PaletteThicknessAndFontSample)
{
    BoardToolPanel* panel = w()->toolPanel();
    const QList<qint32> colours = BoardToolPanel::paletteColours();
    ASSERT_GE(colours.size(), 16);
    EXPECT_EQ(colours[9], 0x0000FF) << "red, red in the low byte";
    EXPECT_EQ(colours[12], 0xFF0000) << "blue";
    panel->paletteButton(9)->click();
    EXPECT_EQ(s().board().lblForeColour, 0x0000FF);
    Q_EMIT panel->paletteButton(12)->customContextMenuRequested(QPoint(2, 2));
    EXPECT_EQ(s().board().lblBackColour, 0xFF0000);
    EXPECT_EQ(s().board().lblForeColour, 0x0000FF);

    // Slider and number box agree, and the board takes the value.
    w()->toolButton(BoardTool::Line)->click();
    EXPECT_TRUE(panel->fraThickness()->isEnabled());
    EXPECT_FALSE(panel->fraFont()->isEnabled());
    panel->slidThick()->setValue(7);
    EXPECT_EQ(panel->txtThick()->value(), 7);
    EXPECT_EQ(s().board().txtThick, 7);
    panel->txtThick()->setValue(4);
    EXPECT_EQ(panel->slidThick()->value(), 4);
    EXPECT_EQ(s().board().txtThick, 4);
    // The next drawing tool keeps it.
    w()->toolButton(BoardTool::Rect)->click();
    EXPECT_EQ(s().board().txtThick, 4);
    EXPECT_EQ(panel->slidThick()->value(), 4);
    EXPECT_EQ(copy.get("DrawingBoard - Thickness"), "4");

    // The sample shows the font of the labels.
    w()->toolButton(BoardTool::Text)->click();
    EXPECT_TRUE(panel->fraFont()->isEnabled());
    s().cmdFontSetting_Click({QString(), "DejaVu Serif", 16, true, true, false, false});
    const QFont shown = panel->txtFont()->font();
    EXPECT_TRUE(shown.bold());
    EXPECT_TRUE(shown.italic());
    EXPECT_EQ(shown.pointSize(), 16);
    EXPECT_TRUE(panel->txtFont()->styleSheet().contains("#ff0000")) << "the fore colour";
    EXPECT_TRUE(panel->txtFont()->styleSheet().contains("#0000ff")) << "the back colour";
    w()->grab().save(QStringLiteral(VONNEL_BINARY_DIR "/frmDraw-tools.png"));
}

TEST_F(BoardAlone, HintsGoThroughTheLookup)
{
    QStringList asked;
    copy.frm().ctx().translator().setLookupRecorder([&asked](const QString& k) { asked << k; });
    int x = 300;
    for (BoardTool t : {BoardTool::Draw, BoardTool::Erase, BoardTool::Image}) {
        s().selectTool(t);
        s().mouseMove(x += 15, 300, false);
    }
    copy.frm().ctx().translator().setLookupRecorder({});
    EXPECT_TRUE(asked.contains("Move slowly to draw a continue line"));
    EXPECT_TRUE(asked.contains("Right click to erase all objects"));
    EXPECT_TRUE(asked.contains("Select an area to display image"));
}

TEST_F(BoardAlone, TheLabelMenuAndTheBoardMenuRing)
{
    copy.set("Ring", "plain.wav");
    copy.frm().ctx().rings.Ring = "plain.wav";
    copy.prompter().addAnswers({"text:menu me"});
    s().selectTool(BoardTool::Text);
    s().mouseMove(600, 600, false);
    s().mouseDown(600, 600);
    s().mouseUp(600, 600);
    ASSERT_NE(s().board().label(1), nullptr);
    BoardSurface* surface = w()->picDraw();
    EXPECT_EQ(surface->labelAt(QPoint(630, 630)), 1);
    EXPECT_EQ(surface->labelAt(QPoint(6000, 6000)), 0);

    // The right button on the label brings up its menu, not the board's.
    QStringList menus;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (auto* m = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            menus << m->objectName();
            for (QAction* a : m->actions())
                menus << a->objectName();
            m->close();
        }
    });
    poll.start(20);
    mouse(surface, QEvent::MouseButtonPress, QPoint(42, 42), Qt::RightButton);
    mouse(surface, QEvent::MouseButtonRelease, QPoint(42, 42), Qt::RightButton);
    pump(100);
    ASSERT_FALSE(menus.isEmpty());
    EXPECT_EQ(menus.first(), "mnuPopLabel");
    EXPECT_TRUE(menus.contains("mnuEraseLabel"));
    EXPECT_TRUE(menus.contains("mnuRing"));
    EXPECT_FALSE(menus.contains("mnuPopRMenu"));

    // Away from labels: the board's own menu, with its ring.
    menus.clear();
    s().selectTool(BoardTool::Line);
    mouse(surface, QEvent::MouseButtonPress, QPoint(300, 300), Qt::RightButton);
    mouse(surface, QEvent::MouseButtonRelease, QPoint(300, 300), Qt::RightButton);
    pump(100);
    ASSERT_FALSE(menus.isEmpty());
    EXPECT_EQ(menus.first(), "mnuPopRMenu");
    EXPECT_TRUE(menus.contains("mnuRing"));
    EXPECT_TRUE(menus.contains("mnuDrawTips"));
}

TEST_F(BoardAlone, OnTopBringsTheBoardForward)
{
    int raised = 0;
    QObject::connect(&s(), &Scrivet::raiseBoard, [&raised] { ++raised; });
    s().mnuDraw_Click();
    EXPECT_EQ(raised, 0);
    copy.frm().model().controls.setChecked(Control::mnuViewontop, true);
    s().mnuDraw_Click();
    EXPECT_EQ(raised, 1);
    EXPECT_TRUE(w()->isVisible());
}

// frmTmp on a picture chosen with the image tool.
class PreviewOnBoard : public BoardAlone {
protected:
    void SetUp() override
    {
        BoardAlone::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        QImage photo(1600, 1200, QImage::Format_RGB32);
        for (int y = 0; y < photo.height(); ++y)
            for (int x = 0; x < photo.width(); ++x)
                photo.setPixel(x, y, qRgb(x * 255 / 1600, 90, y * 255 / 1200));
        ASSERT_TRUE(photo.save(copy.file("photo.jpg"), "jpg", 90));
        copy.prompter().addAnswers({"file:" + copy.file("photo.jpg")});
        s().selectTool(BoardTool::Image);
        s().mouseMove(600, 600, false);
        s().mouseDown(600, 600);
        s().mouseMove(3000, 2400, true);
        s().mouseUp(3000, 2400);
        preview = w()->previewWindow();
        ASSERT_NE(preview, nullptr);
        preview->showNormal();
        preview->resize(800, 600);
        pump(50);
    }
    PreviewWindow* preview = nullptr;
};

TEST_F(PreviewOnBoard, FitZoomSliderAndCentring)
{
    const QSize room = preview->view()->viewport()->size();
    preview->mnuFitImage_Click();
    const int fitted = preview->zoom();
    EXPECT_EQ(fitted, PreviewZoom::fitImage({1600, 1200}, room - QSize(4, 4)));
    EXPECT_LE(preview->picture1()->width(), room.width());
    EXPECT_LE(preview->picture1()->height(), room.height());
    EXPECT_EQ(preview->slidResize()->value(), fitted);
    EXPECT_TRUE(preview->centred());
    EXPECT_EQ(preview->view()->alignment(), Qt::AlignCenter);
    preview->grab().save(QStringLiteral(VONNEL_BINARY_DIR "/frmTmp-fitted.png"));

    preview->mnuFitScreen_Click();
    EXPECT_GE(preview->zoom(), fitted);

    // The slider zooms; the menu's entries move the slider.
    preview->slidResize()->setValue(150);
    EXPECT_EQ(preview->zoom(), 150);
    EXPECT_EQ(preview->picture1()->width(), 2400);
    // Larger than the view: its middle is shown.
    const QScrollBar* across = preview->view()->horizontalScrollBar();
    ASSERT_GT(across->maximum(), 0);
    EXPECT_EQ(across->value(), across->maximum() / 2);
    preview->setZoom(50);
    EXPECT_EQ(preview->slidResize()->value(), 50);

    // The right button fits the picture again.
    const QSize roomNow = preview->view()->viewport()->size();
    mouse(preview->picture1(), QEvent::MouseButtonPress, {10, 10}, Qt::RightButton);
    EXPECT_EQ(preview->zoom(), PreviewZoom::fitImage({1600, 1200}, roomNow - QSize(4, 4)));
    EXPECT_LE(preview->picture1()->width(), roomNow.width());

    // No Move Pic To Center keeps the picture at the corner.
    copy.set("No Move Pic To Center", "1");
    preview->setZoom(25);
    EXPECT_FALSE(preview->centred());
    EXPECT_EQ(preview->view()->alignment(), Qt::AlignLeft | Qt::AlignTop);
}

TEST_F(PreviewOnBoard, EscMinimisesAndTheBoardRequestResizesIt)
{
    key(preview->picture1(), Qt::Key_Escape);
    pump(50);
    EXPECT_TRUE(preview->isMinimized());
    EXPECT_NE(w()->previewWindow(), nullptr) << "the picture still waits";
    EXPECT_TRUE(s().preview().has_value());

    preview->showNormal();
    preview->resize(500, 400);
    s().mnuDraw_Click();
    const QRect screen = preview->screen()->availableGeometry();
    EXPECT_EQ(preview->width(), screen.width());
    EXPECT_EQ(preview->height(), screen.height() - 40);
}

TEST_F(PreviewOnBoard, ADroppedFileIsShownAndAMissingOneSaysSo)
{
    QImage other(200, 100, QImage::Format_RGB32);
    other.fill(Qt::yellow);
    ASSERT_TRUE(other.save(copy.file("other.jpg"), "jpg", 90));
    preview->openDropped(copy.file("other.jpg"));
    EXPECT_EQ(s().preview()->picture.size(), QSize(200, 100));
    EXPECT_TRUE(preview->windowTitle().startsWith("other.jpg"));

    preview->openDropped(copy.file("gone.jpg"));
    EXPECT_TRUE(copy.prompter().asked("File Open Error"));
    EXPECT_EQ(s().preview()->picture.size(), QSize(200, 100));

    // Closed without a choice: nothing waits, and the frame on the board goes.
    ASSERT_TRUE(s().tools().band.has_value());
    preview->close();
    EXPECT_FALSE(s().preview().has_value());
    EXPECT_FALSE(s().tools().band.has_value());
}

TEST(BoardPeersWindows, TheOptionsDialogGivesWayToThePeersBoard)
{
    TestCopy a, b;
    ASSERT_TRUE(a.start());
    ASSERT_TRUE(b.start());
    ASSERT_TRUE(connectCopies(a, b));
    WindowOn wa(a);
    bool timedOut = false;
    QTimer::singleShot(100, [&] { b.frm().scrivet().mnuDraw_Click(); });
    QTimer::singleShot(8000, [&] {
        if (QWidget* m = QApplication::activeModalWidget()) {
            timedOut = true;
            m->close();
        }
    });
    wa.window.mnuOptions_Click();
    EXPECT_FALSE(timedOut) << "frmOptions stayed open over the board";
    EXPECT_TRUE(a.frm().scrivet().isOpen());
    EXPECT_FALSE(wa.window.isVisible(Form::frmOptions));
}

TEST(BoardPeersWindows, TheMouseOverTheBoardTakesTheAwayNoticeBack)
{
    TestCopy a, b;
    a.set("Away Message On", "1");
    ASSERT_TRUE(a.start());
    ASSERT_TRUE(b.start());
    ASSERT_TRUE(connectCopies(a, b));
    a.frm().commands().runCommand("Cmd Scrivet");
    ASSERT_TRUE(waitUntil([&] { return b.frm().scrivet().isOpen(); }));
    a.frm().scrivet().cmdSendText_Click("[ User is away... ]");
    ASSERT_TRUE(waitUntil([&] { return b.frm().scrivet().txtClient == "[ User is away... ]"; }));

    // Not away: the mouse sends nothing.
    a.frm().scrivet().mouseMove(300, 300, false);
    pump(200);
    EXPECT_EQ(b.frm().scrivet().txtClient, "[ User is away... ]");

    a.frm().away().awayShown = true;
    a.frm().scrivet().mouseMove(315, 300, false);
    ASSERT_TRUE(waitUntil([&] { return b.frm().scrivet().txtClient.isEmpty(); }));
    EXPECT_FALSE(a.frm().away().awayShown);
}

}  // namespace
}  // namespace vonnel::test
