#include "wire/FrameText.h"

#include <QList>
#include <gtest/gtest.h>

using namespace vonnel;

TEST(FrameText, GetBetweenAndStripThroughKeepTheirMissingMarkerRules)
{
    struct Case {
        QString data, open, close, between;
    };
    const QList<Case> between = {
        {"<KEY> a <:KEY>3</KEY>", "<KEY> ", " <:KEY>", "a"},
        {"3</KEY>rest", "", "</KEY>", "3"},
        {"<Paste> abc", "<Paste> ", "</Paste>", ""},         // closing marker lost
        {"xx^BK2#BK", "^BK", "#BK", "2"},                  // opening found further on
        {"2#BK", "^BK", "#BK", ""},                        // opening missing: from the start+3
        {"^BK12#BK", "^BK", "#BK", "12"},
        {"^s>123n/a", "^s>", "n/a", "123"},
        {"abc", "a", "", ""},
    };
    for (const Case& c : between)
        EXPECT_EQ(getBetween(c.data, c.open, c.close), c.between) << c.data.toStdString();

    EXPECT_EQ(stripThrough("a#BKrest", "#BK"), "rest");
    EXPECT_EQ(stripThrough("abcdef", "#BK"), "def") << "a missing token drops its length";
    EXPECT_EQ(stripThrough("ab", "</Paste>"), "");
    EXPECT_EQ(stripThrough("abc", ""), "abc");
}

TEST(FrameText, RemoveFirstAndLeftOf)
{
    EXPECT_EQ(removeFirst("tt:=k=:ttrest", "tt:=k=:tt"), "rest");
    EXPECT_EQ(removeFirst("abab", "ab"), "ab");
    EXPECT_EQ(removeFirst("ab", "ab"), "");
    EXPECT_EQ(removeFirst("ab", ""), "ab");
    EXPECT_EQ(removeFirst("a", "ab"), "a");
    EXPECT_EQ(removeFirst("xyz", "q"), "xyz");

    EXPECT_EQ(leftOf("Arial^fbFalse", "^fb"), "Arial");
    EXPECT_EQ(leftOf("Arial", "^fb"), "Arial");
    EXPECT_EQ(leftOf("", "^fb"), "");
    EXPECT_EQ(leftOf("Arial", ""), "Arial");
}

TEST(FrameText, PositionsAreDecimalWithinThirtyTwoBits)
{
    int v = 7;
    EXPECT_TRUE(readPosition(" 12 ", v));
    EXPECT_EQ(v, 12);
    EXPECT_TRUE(readPosition("2.5", v));
    EXPECT_EQ(v, 2) << "rounds half to even";
    for (const char* bad : {"", "x", "12x", "99999999999", "nan", "inf"}) {
        v = 7;
        EXPECT_FALSE(readPosition(bad, v)) << bad;
        EXPECT_EQ(v, 7) << "the previous value stays";
    }
}
