// frmTmp's zoom arithmetic, frmDlg's files and details, and frmDrawTip on
// the shipped DrawTips.txt.

#include "board/PictureFiles.h"
#include "board/Scrivet.h"
#include "board/PreviewZoom.h"
#include "core/CopyContext.h"
#include "shell/MainWindow.h"
#include "shell/dialogs/BoardWindow.h"
#include "shell/dialogs/PictureBrowser.h"
#include "shell/dialogs/TipWindow.h"
#include "support/TestCopy.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

TEST(PreviewZoom, FitsTheWholePictureOrFillsTheView)
{
    // Wider than the room: the width decides the fit, the height the fill.
    EXPECT_EQ(PreviewZoom::fitImage({1600, 1200}, {800, 800}), 50);
    EXPECT_EQ(PreviewZoom::fitScreen({1600, 1200}, {800, 800}), 66);
    // A small picture is enlarged, never past the bound.
    EXPECT_EQ(PreviewZoom::fitImage({100, 50}, {300, 300}), 300);
    EXPECT_EQ(PreviewZoom::fitImage({10, 10}, {4000, 4000}), PreviewZoom::kMax);
    // A huge one is shrunk no further than the bound.
    EXPECT_EQ(PreviewZoom::fitImage({100000, 100000}, {800, 600}), PreviewZoom::kMin);
    // The fitted picture never spills over the room by a pixel.
    for (QSize pic : {QSize(1023, 767), QSize(333, 999), QSize(1280, 720)}) {
        const QSize room(777, 555);
        const QSize shown = PreviewZoom::shown(pic, PreviewZoom::fitImage(pic, room));
        EXPECT_LE(shown.width(), room.width()) << pic.width();
        EXPECT_LE(shown.height(), room.height()) << pic.width();
    }
    // Nothing to fit: actual size.
    EXPECT_EQ(PreviewZoom::fitImage({0, 0}, {800, 600}), 100);
    EXPECT_EQ(PreviewZoom::fitImage({800, 600}, {0, 0}), 100);
}

TEST(PreviewZoom, ShownSizesAndPointsBackOnThePicture)
{
    EXPECT_EQ(PreviewZoom::shown({1600, 1200}, 25), QSize(400, 300));
    EXPECT_EQ(PreviewZoom::shown({3, 3}, 5), QSize(1, 1));
    EXPECT_EQ(PreviewZoom::pictureAt({100, 50}, 50), QPoint(200, 100));
    EXPECT_EQ(PreviewZoom::pictureAt({300, 300}, 150), QPoint(200, 200));
    EXPECT_EQ(PreviewZoom::clamp(0), PreviewZoom::kMin);
    EXPECT_EQ(PreviewZoom::clamp(1000), PreviewZoom::kMax);
}

TEST(PreviewZoom, CentredUnlessSetOrTheCapture)
{
    EXPECT_TRUE(PreviewZoom::centres(false, "photo.jpg - Picture Preview"));
    EXPECT_FALSE(PreviewZoom::centres(true, "photo.jpg - Picture Preview"));
    EXPECT_FALSE(PreviewZoom::centres(false, "Screen Capture"));
}

TEST(PictureFiles, PictureEndingsSizesAndDetails)
{
    for (const char* name : {"a.bmp", "b.GIF", "c.jpg", "d.rle", "e.cur", "f.ico", "g.emf", "h.WMF"})
        EXPECT_TRUE(PictureFiles::isPicture(name)) << name;
    for (const char* name : {"a.jpeg", "b.png", "c.txt", "jpg", "d.jpg.exe", ""})
        EXPECT_FALSE(PictureFiles::isPicture(name)) << name;
    EXPECT_EQ(PictureFiles::nameFilters().size(), 8);
    EXPECT_EQ(PictureFiles::sizeText(0), "0 B");
    EXPECT_EQ(PictureFiles::sizeText(1000), "1000 B");
    EXPECT_EQ(PictureFiles::sizeText(1001), "0.98 KB");
    EXPECT_EQ(PictureFiles::sizeText(2048), "2.00 KB");
    const QDateTime t(QDate(2024, 3, 5), QTime(14, 7, 9));
    EXPECT_EQ(PictureFiles::details("Grösse", 512, "Zeit", t), "Grösse: 512 B\nZeit: 2024-03-05 14:07:09");
}

TEST(PictureBrowser, ListsFoldersAndFilesAndShowsAPicture)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    ASSERT_TRUE(QDir(copy.appPath()).mkpath("pictures/sub"));
    const QString folder = copy.file("pictures");
    QImage pic(64, 48, QImage::Format_RGB32);
    pic.fill(Qt::blue);
    ASSERT_TRUE(pic.save(folder + "/blue.jpg", "jpg"));
    QFile notes(folder + "/notes.txt");
    ASSERT_TRUE(notes.open(QIODevice::WriteOnly));
    notes.write("hello");
    notes.close();

    PictureBrowser dlg(copy.frm().ctx(), nullptr, folder);
    EXPECT_EQ(dlg.objectName(), "frmDlg");
    EXPECT_GE(dlg.drvList()->count(), 1);
    QStringList dirs, files;
    for (int i = 0; i < dlg.dirList()->count(); ++i)
        dirs << dlg.dirList()->item(i)->text();
    for (int i = 0; i < dlg.filList()->count(); ++i)
        files << dlg.filList()->item(i)->text();
    EXPECT_EQ(dirs, (QStringList{"..", "sub"}));
    EXPECT_EQ(dlg.findChild<QLabel*>("lblFolder")->text(), QDir::toNativeSeparators(QDir(folder).absolutePath()));
    EXPECT_EQ(files, (QStringList{"blue.jpg", "notes.txt"}));

    dlg.filList()->setCurrentRow(0);
    EXPECT_FALSE(dlg.imgPreview()->pixmap().isNull());
    EXPECT_TRUE(dlg.lblDetails()->text().startsWith("Size: "));
    EXPECT_TRUE(dlg.lblDetails()->text().contains("Date/Time: "));
    // Not a picture: details only.
    dlg.filList()->setCurrentRow(1);
    EXPECT_TRUE(dlg.imgPreview()->pixmap().isNull());
    EXPECT_TRUE(dlg.lblDetails()->text().startsWith("Size: 5 B"));

    QStringList picked;
    QObject::connect(&dlg, &PictureBrowser::picked, [&picked](const QString& p) { picked << p; });
    dlg.filList()->setCurrentRow(0);
    dlg.findChild<QPushButton*>("cmdOK")->click();
    EXPECT_EQ(picked, QStringList{QDir(folder).absoluteFilePath("blue.jpg")});

    // A folder that is not there says so and keeps the list.
    dlg.openFolder(copy.file("nowhere"));
    EXPECT_TRUE(copy.prompter().asked("File Error: "));
    EXPECT_EQ(dlg.folder(), QDir(folder).absolutePath());
}

TEST(DrawTips, TheBoardsTipsWindowReadsTheShippedFile)
{
    TestCopy copy;
    ASSERT_TRUE(QFile::copy(QStringLiteral(VONNEL_SOURCE_DIR "/dist/DrawTips.txt"), copy.file("DrawTips.txt")));
    ASSERT_TRUE(copy.start());
    MainWindow window(copy.frm());
    TipWindow tips(copy.frm(), QLatin1String(TipWindow::kDrawTips), 0, nullptr, "frmDrawTip");
    EXPECT_EQ(tips.objectName(), "frmDrawTip");
    ASSERT_TRUE(tips.hasTips());
    const QString first = tips.shownTip();
    EXPECT_FALSE(first.isEmpty());
    tips.cmdNextTip_Click();
    EXPECT_NE(tips.shownTip(), first);
    tips.chkLoadTipsAtStartup()->setChecked(true);
    tips.chkLoadTipsAtStartup_Click();
    EXPECT_EQ(copy.get("Show Tips at Startup"), "1");
    tips.grab().save(QStringLiteral(VONNEL_BINARY_DIR "/frmDrawTip.png"));

    // The board opens it with the tips of the day on.
    Views* old = &copy.frm().ctx().views();
    copy.frm().ctx().setViews(&window);
    copy.frm().scrivet().mnuDraw_Click();
    ASSERT_NE(window.boardWindow(), nullptr);
    TipWindow* shown = window.boardWindow()->showDrawTips();
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->objectName(), "frmDrawTip");
    EXPECT_EQ(window.boardWindow()->showDrawTips(), shown) << "one at a time";
    copy.frm().scrivet().cmdCloseDraw_Click();
    copy.frm().ctx().setViews(old);
}

}  // namespace
}  // namespace vonnel::test
