#include "core/Cp1252.h"
#include "core/IniStore.h"
#include "platform/ScriptedPrompter.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vonnel;

namespace {

class IniStoreTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString path(const QString& name) const { return dir.path() + QLatin1Char('/') + name; }
    void put(const QString& name, const QByteArray& bytes)
    {
        QFile f(path(name));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    }
    QByteArray bytes(const QString& name) const
    {
        QFile f(path(name));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
};

TEST_F(IniStoreTest, ReadsTrimmedUnquotedAndCutValues)
{
    put("a.ini", "[Other]\r\nKey=wrong\r\n[Vonnel]\r\n  Name  =  spaced out   \r\n"
                 "Quoted=\"  keep inner  \"\r\nSingle='x'\r\nHalf=\"open\r\n"
                 "Long=" + QByteArray(300, 'z') + "\r\n;Comment=1\r\nEmpty=\r\n");
    const QString f = path("a.ini");
    EXPECT_EQ(ReadIni(kSection, "Name", f), "spaced out");
    EXPECT_EQ(ReadIni(kSection, "Quoted", f), "  keep inner");  // right blanks go after the cut
    EXPECT_EQ(ReadIni(kSection, "Single", f), "x");
    EXPECT_EQ(ReadIni(kSection, "Half", f), "\"open");
    EXPECT_EQ(ReadIni(kSection, "Long", f), QString(254, 'z'));
    EXPECT_EQ(ReadIni(kSection, "Comment", f), "");
    EXPECT_EQ(ReadIni(kSection, "Empty", f), "");
    EXPECT_EQ(ReadIni(kSection, "Key", f), "");          // only in another section
    EXPECT_EQ(ReadIni("vONNEL", "nAmE", f), "spaced out");  // names ignore case
    EXPECT_EQ(ReadIni(kSection, "Missing", f), "");
    EXPECT_EQ(ReadIni("Nowhere", "Name", f), "");
    EXPECT_EQ(ReadIni(kSection, "Name", path("absent.ini")), "");
}

TEST_F(IniStoreTest, WriteReplacesInPlaceAndLeavesOtherLinesAlone)
{
    put("b.ini", "; hand written\r\n[Vonnel]\r\nA=1\r\n  b = two  \r\nC=3\r\n\r\n[Tail]\r\nA=9\r\n");
    const QString f = path("b.ini");
    WriteIni(kSection, "B", "zwei", f);
    WriteIni(kSection, "New", "n", f);
    WriteIni("Fresh", "K", "v", f);
    EXPECT_EQ(bytes("b.ini"),
              QByteArray("; hand written\r\n[Vonnel]\r\nA=1\r\nB=zwei\r\nC=3\r\nNew=n\r\n\r\n"
                         "[Tail]\r\nA=9\r\n[Fresh]\r\nK=v\r\n"));
    EXPECT_EQ(ReadIni("Tail", "A", f), "9");

    // A last line with a carriage return and no line feed: the writer
    // closes the line instead of keeping the return inside the value.
    put("c.ini", "[Vonnel]\r\nA=1\r\nZ=end\r");
    WriteIni(kSection, "A", "2", path("c.ini"));
    EXPECT_EQ(ReadIni(kSection, "Z", path("c.ini")), "end");
    EXPECT_EQ(bytes("c.ini"), QByteArray("[Vonnel]\r\nA=2\r\nZ=end\r\n"));
}

TEST_F(IniStoreTest, WriteCreatesFileAndKeepsLogKeysWithTrailingBlank)
{
    const QString f = path("new.ini");
    WriteIni(kSection, "11/23/26 10:00:01 - ", "> Connection with 1.2.3.4", f);
    WriteIni(kSection, "11/23/26 10:00:01 - ", "> Close connection with 1.2.3.4", f);
    EXPECT_EQ(bytes("new.ini"),
              QByteArray("[Vonnel]\r\n11/23/26 10:00:01 - => Close connection with 1.2.3.4\r\n"));
}

TEST_F(IniStoreTest, HandEditBetweenReadsIsSeen)
{
    const QString f = path("c.ini");
    WriteIni(kSection, "Port", "2500", f);
    EXPECT_EQ(ReadIni(kSection, "Port", f), "2500");
    put("c.ini", "[Vonnel]\nPort=2600\n");
    EXPECT_EQ(ReadIni(kSection, "Port", f), "2600");
}

TEST_F(IniStoreTest, FilesAreFoundWithoutRegardToCase)
{
    put("Vonnel.BAK", "[Vonnel]\r\nX=1\r\n");
    EXPECT_EQ(ReadIni(kSection, "X", path("vonnel.bak")), "1");
    EXPECT_TRUE(FileExist(path("VONNEL.bak")));
    WriteIni(kSection, "X", "2", path("vonnel.bak"));
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{"Vonnel.BAK"});
    EXPECT_EQ(ReadIni(kSection, "X", path("Vonnel.BAK")), "2");
}

TEST_F(IniStoreTest, FileExistRules)
{
    put("real.txt", "x");
    put(".hidden", "x");
    ScriptedPrompter prompter;
    EXPECT_TRUE(FileExist(path("real.txt"), &prompter));
    EXPECT_FALSE(FileExist("", &prompter));
    EXPECT_FALSE(FileExist("n/a", &prompter));
    EXPECT_FALSE(FileExist(path("ring.n/a"), &prompter));
    EXPECT_FALSE(FileExist(dir.path(), &prompter));
    EXPECT_FALSE(FileExist(path(".hidden"), &prompter));
    EXPECT_FALSE(FileExist(path("missing"), &prompter));
    EXPECT_TRUE(prompter.records().isEmpty());
}

TEST_F(IniStoreTest, ClearForRecreateDeletesReadOnlyFile)
{
    put("captscr.jpg", "x");
    QFile::setPermissions(path("captscr.jpg"), QFileDevice::ReadOwner);
    ScriptedPrompter prompter;
    ClearForRecreate(path("captscr.jpg"), prompter);
    EXPECT_FALSE(QFile::exists(path("captscr.jpg")));
    EXPECT_TRUE(prompter.records().isEmpty());
}

TEST(IniIdioms, NumbersAndFlags)
{
    EXPECT_EQ(iniNumber(""), 0);
    EXPECT_EQ(iniNumber("abc"), 0);
    EXPECT_EQ(iniNumber("12abc"), 12);
    EXPECT_DOUBLE_EQ(iniNumber(" -3.5x"), -3.5);
    EXPECT_DOUBLE_EQ(iniNumber("1.000038E+07"), 10000380.0);
    EXPECT_EQ(iniInt("2.5"), 2);  // to even
    EXPECT_EQ(iniInt("3.5"), 4);
    EXPECT_FALSE(flagByNumber(""));
    EXPECT_TRUE(flagByNumber("-1"));
    EXPECT_FALSE(flagByNumber("0"));
    EXPECT_EQ(flagByText("True"), std::optional<bool>(true));
    EXPECT_EQ(flagByText("false"), std::optional<bool>(false));
    EXPECT_EQ(flagByText("-1"), std::optional<bool>(true));
    EXPECT_EQ(flagByText("0"), std::optional<bool>(false));
    EXPECT_EQ(flagByText(""), std::nullopt);
    EXPECT_EQ(flagByText("yes"), std::nullopt);
}

TEST(Codepage, Cp1252RoundTripsAllBytes)
{
    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all.append(char(i));
    const QString text = fromCp1252(all);
    EXPECT_EQ(text[0x80], QChar(0x20AC));
    EXPECT_EQ(text[0x92], QChar(0x2019));
    EXPECT_EQ(text[0xE9], QChar(0xE9));
    EXPECT_EQ(toCp1252(text), all);
    EXPECT_EQ(toCp1252(QString(QChar(0x4E2D))), QByteArray("?"));
}

}  // namespace
