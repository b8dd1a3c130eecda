// The start-up entry lives in the user's autostart folder only, and an
// entry the desktop has switched off stays off.

#include "platform/Autostart.h"
#include "support/TestCopy.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

TEST(Autostart, FolderFollowsXdgConfigHome)
{
    const QByteArray saved = qgetenv("XDG_CONFIG_HOME");
    QTemporaryDir dir;
    qputenv("XDG_CONFIG_HOME", dir.path().toUtf8());
    EXPECT_EQ(Autostart::userFolder(), dir.path() + "/autostart");
    Autostart autostart;
    EXPECT_EQ(autostart.entryPath(), dir.path() + "/autostart/vonnel.desktop");
    ASSERT_TRUE(autostart.add("/usr/bin/vonnel", {}));
    EXPECT_TRUE(QFile::exists(dir.path() + "/autostart/vonnel.desktop"));
    qputenv("XDG_CONFIG_HOME", "relative/ignored");
    EXPECT_EQ(Autostart::userFolder(), QDir::homePath() + "/.config/autostart");
    if (saved.isNull())
        qunsetenv("XDG_CONFIG_HOME");
    else
        qputenv("XDG_CONFIG_HOME", saved);
}

TEST(Autostart, WritesRemovesAndHonoursHidden)
{
    QTemporaryDir dir;
    Autostart autostart(dir.path() + "/a/autostart");
    ASSERT_TRUE(autostart.add("/opt/my apps/vonnel", {"--app-path", "/home/u/it's \"here\"/"}));
    const QByteArray entry = readFile(autostart.entryPath());
    EXPECT_TRUE(entry.startsWith("[Desktop Entry]\n"));
    EXPECT_TRUE(entry.contains("\nType=Application\n"));
    EXPECT_TRUE(entry.contains(
        "\nExec=\"/opt/my apps/vonnel\" --app-path \"/home/u/it's \\\\\"here\\\\\"/\"\n"))
        << entry.constData();
    EXPECT_FALSE(autostart.hiddenByDesktop());
    EXPECT_TRUE(autostart.remove());
    EXPECT_FALSE(autostart.exists());
    EXPECT_TRUE(autostart.remove());  // nothing to remove is no failure

    // The desktop switched the entry off: adding leaves it as it is.
    QDir().mkpath(dir.path() + "/a/autostart");
    const QByteArray hidden = "[Desktop Entry]\nType=Application\nExec=vonnel\nHidden = true\n";
    QFile f(autostart.entryPath());
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(hidden);
    f.close();
    EXPECT_TRUE(autostart.hiddenByDesktop());
    EXPECT_FALSE(autostart.add("/usr/bin/vonnel", {}));
    EXPECT_EQ(readFile(autostart.entryPath()), hidden);
    // Switching start-up off still takes it away.
    EXPECT_TRUE(autostart.remove());
    EXPECT_FALSE(autostart.exists());
}

}  // namespace
}  // namespace vonnel::test
