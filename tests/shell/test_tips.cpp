#include "shell/Tips.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vonnel;

TEST(Tips, StartsAnywhereSkipsBlankLinesAndWraps)
{
    QTemporaryDir dir;
    QFile f(dir.path() + "/TIPS.TXT");
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("one\r\n\r\ntwo\r\nthree\n");
    f.close();
    Tips tips(dir.path() + "/tips.txt", 7);  // found whatever the case
    ASSERT_EQ(tips.count(), 3);
    EXPECT_EQ(tips.current(), "two");  // 7 mod 3
    EXPECT_EQ(tips.next(), "three");
    EXPECT_EQ(tips.next(), "one");
    EXPECT_TRUE(Tips(dir.path() + "/missing.txt", 0).isEmpty());
    EXPECT_EQ(Tips(dir.path() + "/missing.txt", 0).current(), "");
}
