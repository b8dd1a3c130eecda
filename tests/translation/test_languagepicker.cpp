// frmPopMsg as the language picker: the list of languages, New or Edit,
// the editor for a language file (the user's own as a program with the
// file as one argument, else the desktop's), and Apply with its ".lng".

#include "core/Translator.h"
#include "shell/LanguagePicker.h"
#include "support/TestCopy.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

void touch(const QString& path, const QByteArray& body = "[Vonnel]\r\n")
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(body);
}

TEST(LanguagePicker, ListsEnglishThenTheFilesOfTheExtension)
{
    const struct {
        const char* langExt;
        QStringList expected;
    } cases[] = {
        {"", {"English", "Deutsch", "Espa\u00f1ol", "francais"}},
        {".lng", {"English", "Deutsch", "Espa\u00f1ol", "francais"}},
        {".LNGX", {"English", "Klingon"}},  // the extension in lower case
        {".none", {"English"}},
    };
    for (const auto& c : cases) {
        TestCopy copy(0, {{"LangExt", c.langExt}});
        for (const char* name : {"Deutsch.lng", "francais.LNG", "Espa\u00f1ol.lng", "Klingon.lngx",
                                 "notes.txt", "lng", ".lng"})
            touch(copy.file(QString::fromUtf8(name)));
        ASSERT_TRUE(copy.start());
        LanguagePicker picker(copy.frm().ctx());
        EXPECT_EQ(picker.cboLang(), c.expected) << c.langExt;
        EXPECT_EQ(picker.caption(), "Select a language:");
        EXPECT_EQ(picker.cmdPopAbortCaption(), "&Apply");
        EXPECT_EQ(picker.cmdLangEditCaption(), "&Edit");
    }
}

TEST(LanguagePicker, NewForEnglishEditForALanguage)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    LanguagePicker picker(copy.frm().ctx());
    QStringList captions;
    QObject::connect(&picker, &LanguagePicker::cmdLangEditCaptionChanged,
                     [&captions](const QString& c) { captions << c; });
    picker.cboLang_Change("Deutsch");
    picker.cboLang_Change("English");
    picker.cboLang_Change("Deutsch");
    EXPECT_EQ(captions, QStringList({"Edit", "New", "Edit"}));
    EXPECT_EQ(picker.cmdLangEditCaption(), "Edit");
}

TEST(LanguagePicker, EditOpensTheFileInTheEditor)
{
    // English: the help box, then Lang.txt; a language: its own file.
    TestCopy copy(0, {{"Editor", ""}});
    touch(copy.file("Deutsch.lng"));
    ASSERT_TRUE(copy.start());
    LanguagePicker picker(copy.frm().ctx());
    picker.cboLang_Change("English");
    picker.cmdLangEdit_Click();
    ASSERT_TRUE(copy.prompter().asked("Create New Language"));
    const PromptRecord& help = copy.prompter().records().back();
    EXPECT_EQ(help.title, "Create New Language");
    EXPECT_EQ(help.text, "Steps:\r\n 1) Fill in entries (UNICODE not supported)\r\n"
                         " 2) Save file as xxxxxx.lng (where xxxxxx = your language)\r\n\r\n"
                         " Note:\r\n - Unfilled entries will be replaced by English.");
    EXPECT_EQ(copy.desktop().opened.value(0), copy.file("Lang.txt"));

    copy.prompter().clearRecords();
    picker.cboLang_Change("Deutsch");
    picker.cmdLangEdit_Click();
    EXPECT_TRUE(copy.prompter().records().isEmpty());
    EXPECT_EQ(copy.desktop().opened.value(1), copy.file("Deutsch.lng"));
    EXPECT_TRUE(copy.desktop().started.isEmpty());

    // The user's editor: run as a program, the file name one argument
    // however many blanks and quotes it holds; no shell sees it.
    copy.set("Editor", "/usr/bin/my editor");
    const QString odd = "Deutsch \"; rm -rf x; \"";
    touch(copy.file(odd + ".lng"));
    picker.cboLang_Change(odd);
    picker.cmdLangEdit_Click();
    ASSERT_EQ(copy.desktop().started.size(), 1);
    EXPECT_EQ(copy.desktop().started[0].first, "/usr/bin/my editor");
    EXPECT_EQ(copy.desktop().started[0].second, QStringList({copy.file(odd + ".lng")}));
}

TEST(LanguagePicker, ApplyWritesTheLanguageWithItsLngQuirk)
{
    // LangExt lists ".txt2" files, but Apply always forms the name with ".lng".
    TestCopy copy(0, {{"LangExt", ".txt2"}, {"Translation", "0"}, {"LangFile", ""}});
    touch(copy.file("Deutsch.txt2"), "[Vonnel]\r\nFile=&Datei\r\n");
    touch(copy.file("Deutsch.lng"), "[Vonnel]\r\nFile=Datei (lng)\r\n");
    ASSERT_TRUE(copy.start());
    CopyContext& ctx = copy.frm().ctx();
    {
        LanguagePicker picker(ctx);
        ASSERT_EQ(picker.cboLang(), QStringList({"English", "Deutsch"}));
        int applied = 0;
        QObject::connect(&picker, &LanguagePicker::applied, [&applied] { ++applied; });
        picker.cboLang_Change(" Deutsch ");  // the choice is trimmed
        picker.cmdPopAbort_Click();
        EXPECT_EQ(applied, 1);
    }
    EXPECT_EQ(copy.get("LangFile"), copy.file("Deutsch.lng"));
    EXPECT_EQ(copy.get("Translation"), "1");
    EXPECT_TRUE(ctx.TranslationOn);
    EXPECT_EQ(ctx.translate("File", "&File"), "Datei (lng)");

    // Back to English: translation off, the file of the language kept.
    {
        LanguagePicker picker(ctx);
        EXPECT_EQ(picker.selected(), "Deutsch");  // opens on the language in use
        picker.cboLang_Change("English");
        picker.cmdPopAbort_Click();
    }
    EXPECT_EQ(copy.get("Translation"), "0");
    EXPECT_EQ(copy.get("LangFile"), copy.file("Deutsch.lng"));
    EXPECT_FALSE(ctx.TranslationOn);
    EXPECT_EQ(ctx.translate("File", "&File"), "&File");
}

}  // namespace
