// A copy's settings are re-read only after the file changed; every change,
// by any writer, is seen by the very next read.

#include "core/IniStore.h"
#include "support/TestCopy.h"
#include "core/CopyContext.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
}

TEST(IniFileWatch, EveryKindOfChangeIsSeenAtOnce)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("vonnel.ini");
    writeBytes(path, "[Vonnel]\r\nTest=1\r\n");
    IniFileWatch watch(path);
#ifdef Q_OS_LINUX
    ASSERT_TRUE(watch.bytes().has_value()) << "the file is watched, not read each time";
#endif
    auto read = [&] {
        const std::optional<QByteArray> b = watch.bytes();
        return b ? ReadIniBytes(*b, kSection, "Test") : ReadIni(kSection, "Test", path);
    };
    EXPECT_EQ(read(), "1");
    // Same length, straight after: no time stamp tells this apart.
    writeBytes(path, "[Vonnel]\r\nTest=2\r\n");
    EXPECT_EQ(read(), "2");
    WriteIni(kSection, "Test", "3", path);
    EXPECT_EQ(read(), "3");
    // Replaced by another file, as editors save.
    const QString other = dir.filePath("new.ini");
    writeBytes(other, "[Vonnel]\r\nTest=4\r\n");
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QFile::rename(other, path));
    EXPECT_EQ(read(), "4");
    // Gone, then back.
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(read(), "");
    writeBytes(path, "[Vonnel]\r\nTest=5\r\n");
    EXPECT_EQ(read(), "5");
}

TEST(IniFileWatch, ACopySeesSettingsWrittenBehindItsBack)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    for (const char* v : {"7", "8", "9"}) {
        copy.set("Byte Per Send", v);
        EXPECT_EQ(copy.frm().ctx().setting("Byte Per Send"), v);
    }
    copy.frm().ctx().writeSetting("Byte Per Send", "6");
    EXPECT_EQ(copy.get("Byte Per Send"), "6");
    EXPECT_EQ(copy.frm().ctx().settingInt("Byte Per Send"), 6);
}

}  // namespace
