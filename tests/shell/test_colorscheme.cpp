// Light or dark: a forced scheme or the desktop's wish sets the palette;
// the panes follow it while they show the preset colours, and a colour the
// user or the peer chose stays.

#include "shell/ColorScheme.h"
#include "shell/MainWindow.h"
#include "support/TestCopy.h"
#include "wire/LiveTyping.h"
#include "wire/PaneFormat.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QStyle>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

// Gives the application its palette and style back, whatever a test set.
struct KeepLook {
    KeepLook() : palette(QApplication::palette()), style(QApplication::style()->name()) {}
    ~KeepLook()
    {
        QApplication::setStyle(style);
        QApplication::setPalette(palette);
    }
    QPalette palette;
    QString style;
};

TEST(ColorScheme, NamesChooseASchemeAndAnythingElseLeavesItToTheDesktop)
{
    EXPECT_EQ(schemeByName("dark"), ColorScheme::Dark);
    EXPECT_EQ(schemeByName(" Dark\n"), ColorScheme::Dark);
    EXPECT_EQ(schemeByName("LIGHT"), ColorScheme::Light);
    for (const char* other : {"", "auto", "darker", "1"})
        EXPECT_EQ(schemeByName(other), ColorScheme::System) << other;
    EXPECT_TRUE(isDark(schemePalette(ColorScheme::Dark)));
    EXPECT_FALSE(isDark(schemePalette(ColorScheme::Light)));
    // Text reads on its ground in both.
    for (ColorScheme s : {ColorScheme::Light, ColorScheme::Dark}) {
        const QPalette p = schemePalette(s);
        EXPECT_GT(std::abs(p.color(QPalette::Text).lightness() - p.color(QPalette::Base).lightness()), 150);
        EXPECT_GT(std::abs(p.color(QPalette::WindowText).lightness() - p.color(QPalette::Window).lightness()),
                  150);
    }
}

TEST(ColorScheme, ForcedOrAskedSchemeSetsThePaletteAndNoWishKeepsThePlatforms)
{
    KeepLook keep;
    auto* app = qobject_cast<QApplication*>(QCoreApplication::instance());
    ASSERT_TRUE(app);
    QApplication::setPalette(schemePalette(ColorScheme::Light));
    EXPECT_FALSE(applyColorScheme(*app, ColorScheme::System, std::nullopt));
    EXPECT_FALSE(isDark(QApplication::palette()));
    EXPECT_FALSE(applyColorScheme(*app, ColorScheme::System, false));
    EXPECT_TRUE(applyColorScheme(*app, ColorScheme::System, true));
    EXPECT_TRUE(isDark(QApplication::palette()));
    // A forced scheme wins over the desktop's wish.
    EXPECT_TRUE(applyColorScheme(*app, ColorScheme::Light, true));
    EXPECT_FALSE(isDark(QApplication::palette()));
    EXPECT_TRUE(applyColorScheme(*app, ColorScheme::Dark, false));
    EXPECT_TRUE(isDark(QApplication::palette()));
    EXPECT_FALSE(applyColorScheme(*app, ColorScheme::Dark, std::nullopt));
}

TEST(ColorScheme, PresetPaneColoursFollowThePaletteAndChosenOnesStay)
{
    const PaneFormat preset;
    EXPECT_FALSE(paneColours(preset.foreColor(), preset.backColor()));
    // One colour of the pair changed is a choice: both stay as chosen, so
    // black text never lands on a dark ground.
    const auto yellowGround = paneColours(preset.foreColor(), 65535);
    ASSERT_TRUE(yellowGround);
    EXPECT_EQ(yellowGround->first, QColor(0, 0, 0));
    EXPECT_EQ(yellowGround->second, QColor(255, 255, 0));
    const auto redText = paneColours(255, preset.backColor());
    ASSERT_TRUE(redText);
    EXPECT_EQ(redText->first, QColor(255, 0, 0));
    EXPECT_EQ(redText->second, QColor(255, 255, 255));
}

TEST(ColorScheme, PanesOfADarkWindowAreDarkUntilTheUserPicksAColour)
{
    KeepLook keep;
    QApplication::setPalette(schemePalette(ColorScheme::Dark));
    TestCopy copy(0);
    ASSERT_TRUE(copy.start());
    MainWindow window(copy.frm());
    QPlainTextEdit* server = window.serverPane();
    QPlainTextEdit* client = window.clientPane();
    for (QPlainTextEdit* pane : {server, client}) {
        EXPECT_TRUE(isDark(pane->palette()));
        EXPECT_LT(pane->palette().color(QPalette::Base).lightness(), 80) << qPrintable(pane->objectName());
        EXPECT_GT(pane->palette().color(QPalette::Text).lightness(), 180) << qPrintable(pane->objectName());
    }
    // The user's ground colour stays, on a dark palette too.
    copy.frm().typing().serverFormat.setBackColor(65535);
    EXPECT_EQ(server->palette().color(QPalette::Base), QColor(255, 255, 0));
    EXPECT_EQ(server->palette().color(QPalette::Text), QColor(0, 0, 0));
    EXPECT_LT(client->palette().color(QPalette::Base).lightness(), 80);
    // Back to the preset pair: the palette's again.
    copy.frm().typing().serverFormat.setBackColor(PaneFormat().backColor());
    EXPECT_LT(server->palette().color(QPalette::Base).lightness(), 80);
}

}  // namespace
}  // namespace vonnel::test
