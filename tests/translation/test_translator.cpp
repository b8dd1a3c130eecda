// The lookup's rules: the language file's entry when translation is on and
// the entry is not empty, else the fallback, else the key itself; entries
// cut at 255 characters; a file that is missing translates nothing.

#include "core/Translator.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vonnel;

namespace {

class Lookup : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        appPath = dir.path() + QLatin1Char('/');
    }
    void writeLanguage(const QByteArray& body)
    {
        QFile f(appPath + "Test.lng");
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("[Vonnel]\r\n" + body);
    }
    QTemporaryDir dir;
    QString appPath;
};

TEST_F(Lookup, EntryFallbackOrKey)
{
    writeLanguage("File=&Datei\r\n"
                  "Blank=\r\n"
                  "Paste=\"  &Einf\xfcgen \"\r\n"
                  "[Other]\r\n"
                  "Elsewhere=Anderswo\r\n");
    const struct {
        bool on;
        const char* file;
        const char* key;
        const char* fallback;
        QString expected;
    } cases[] = {
        {true, "Test.lng", "File", "&File", "&Datei"},
        {true, "Test.lng", "file", "&File", "&Datei"},  // keys are found whatever their case
        {true, "Test.lng", "Missing", "", "Missing"},   // no entry, no fallback: the key
        {true, "Test.lng", "Missing", "&Missing", "&Missing"},
        {true, "Test.lng", "Blank", "&Blank", "&Blank"},  // an empty entry falls back
        {true, "Test.lng", "Blank", "", "Blank"},
        {true, "Test.lng", "Elsewhere", "", "Elsewhere"},  // only the Vonnel section counts
        {true, "Test.lng", "Paste", "", QString::fromUtf8("  &Einf\u00fcgen")},  // 8-bit text, quotes and trailing blanks off
        {false, "Test.lng", "File", "&File", "&File"},  // translation off
        {false, "Test.lng", "File", "", "File"},
        {true, "Gone.lng", "File", "&File", "&File"},  // a missing file gives empty entries
        {true, "", "File", "", "File"},
    };
    for (const auto& c : cases) {
        Translator t(appPath);
        t.setLangFile(QLatin1String(c.file));
        t.setTranslationOn(c.on);
        EXPECT_EQ(t.translate(QLatin1String(c.key), QLatin1String(c.fallback)), c.expected)
            << c.key << " on=" << c.on << " file=" << c.file;
    }
}

TEST_F(Lookup, LongEntriesAreCutAt255)
{
    for (const int length : {254, 255, 256, 300, 1000}) {
        writeLanguage("Long=" + QByteArray(length, 'x') + "\r\n");
        Translator t(appPath);
        t.setLangFile(appPath + "Test.lng");  // a whole path is taken as it is
        t.setTranslationOn(true);
        EXPECT_EQ(t.translate("Long").size(), std::min(length, 255)) << length;
    }
}

TEST_F(Lookup, TheFileIsReadAgainOnEveryLookup)
{
    writeLanguage("Ring=Klingeln\r\n");
    Translator t(appPath);
    t.setLangFile("test.LNG");  // the application's files are found whatever their case
    t.setTranslationOn(true);
    EXPECT_EQ(t.translate("Ring", "&Ring"), "Klingeln");
    writeLanguage("Ring=Sonner\r\n");
    EXPECT_EQ(t.translate("Ring", "&Ring"), "Sonner");
}

TEST_F(Lookup, TheRecorderHearsEveryKeyWhateverTheAnswer)
{
    writeLanguage("File=&Datei\r\n");
    Translator t(appPath);
    t.setLangFile("Test.lng");
    QStringList asked;
    t.setLookupRecorder([&asked](const QString& key) { asked << key; });
    t.translate("File", "&File");
    t.setTranslationOn(true);
    t.translate("File", "&File");
    t.translate("Missing");
    EXPECT_EQ(asked, QStringList({"File", "File", "Missing"}));
}

}  // namespace
