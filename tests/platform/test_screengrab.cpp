// Which way the board's capture takes to the screen: the program's own
// reading where the desktop allows it, the screenshot portal where it does
// not, and words the user can act on where neither is there. The sources
// are fakes: no test needs a real portal or screen.

#include "platform/ScreenGrab.h"

#include <gtest/gtest.h>

using namespace vonnel;

namespace {

struct FakeScreen {
    bool direct = false;
    bool portal = false;
    QImage screen;      // what the program's own reading gives
    QImage portalShot;  // what the portal gives
    QString portalWhy;
    int grabs = 0, asks = 0;

    ScreenSources sources()
    {
        ScreenSources s;
        s.direct = [this] { return direct; };
        s.grab = [this] {
            ++grabs;
            return screen;
        };
        s.portal = [this] { return portal; };
        s.askPortal = [this](QString* why) {
            ++asks;
            if (portalShot.isNull())
                *why = portalWhy;
            return portalShot;
        };
        return s;
    }
};

QImage filled(QRgb colour)
{
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

}  // namespace

TEST(ScreenGrab, TheProgramsOwnReadingComesFirstAndThePortalAfterIt)
{
    FakeScreen f;
    f.direct = f.portal = true;
    f.screen = filled(qRgb(1, 2, 3));
    f.portalShot = filled(qRgb(9, 9, 9));
    QString why = "untouched";
    QImage got = grabScreen(f.sources(), &why);
    EXPECT_EQ(got.pixel(0, 0), qRgb(1, 2, 3));
    EXPECT_EQ(f.asks, 0) << "no portal where the screen can be read";
    EXPECT_EQ(why, "untouched");

    // Wayland: no reading of our own; the portal's picture is taken.
    f.direct = false;
    got = grabScreen(f.sources(), &why);
    EXPECT_EQ(got.pixel(0, 0), qRgb(9, 9, 9));
    EXPECT_EQ(f.grabs, 1) << "the screen is not read where it may not be";
    EXPECT_EQ(f.asks, 1);

    // A reading that gives nothing falls back on the portal too.
    f.direct = true;
    f.screen = QImage();
    got = grabScreen(f.sources(), &why);
    EXPECT_EQ(got.pixel(0, 0), qRgb(9, 9, 9));
    EXPECT_EQ(f.asks, 2);
}

TEST(ScreenGrab, NoPictureIsToldInWordsTheUserCanActOn)
{
    FakeScreen f;
    QString why;
    // Neither way.
    EXPECT_TRUE(grabScreen(f.sources(), &why).isNull());
    EXPECT_EQ(why, "The desktop does not let programs read the screen and offers no screenshot "
                   "service; take a screenshot and put it on the board with the image tool");
    EXPECT_EQ(f.grabs + f.asks, 0);

    // The portal is there but the user cancelled its question.
    f.portal = true;
    f.portalWhy = "cancelled";
    EXPECT_TRUE(grabScreen(f.sources(), &why).isNull());
    EXPECT_EQ(why, "The desktop's screenshot service gave no picture (cancelled); take a "
                   "screenshot and put it on the board with the image tool");
    f.portalWhy.clear();
    grabScreen(f.sources(), &why);
    EXPECT_TRUE(why.contains("(no answer)")) << why.toStdString();

    // A screen that may be read but gives nothing, with no portal.
    f.portal = false;
    f.direct = true;
    EXPECT_TRUE(grabScreen(f.sources(), &why).isNull());
    EXPECT_EQ(why, "The screen could not be read");
    EXPECT_EQ(f.grabs, 1);
}

TEST(ScreenGrab, TheOffscreenPlatformReadsTheScreenItselfAndNeverAsksThePortal)
{
    // The desktop's own sources under the test platform: reading is allowed.
    const ScreenSources s = desktopScreenSources();
    ASSERT_TRUE(s.direct && s.grab && s.portal && s.askPortal);
    EXPECT_TRUE(s.direct());
}
