#include "core/Translator.h"
#include "core/IniStore.h"
#include "platform/ScriptedPrompter.h"
#include "platform/WidgetPrompter.h"
#include "shell/Application.h"
#include "platform/Prompter.h"

#include <QApplication>
#include <QFontMetrics>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>
#include <QTemporaryFile>
#include <gtest/gtest.h>

using namespace vonnel;

namespace {

QString readAll(FILE* f)
{
    std::rewind(f);
    QByteArray out;
    char buf[512];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0)
        out.append(buf, qsizetype(n));
    return QString::fromUtf8(out);
}

TEST(ScriptedPrompter, EveryControlByteIsEscapedOnTheEchoLine)
{
    // A peer's text can hold any byte: none below 32, nor DEL, reaches the
    // line as it is.
    EXPECT_EQ(ScriptedPrompter::escapeField(QString::fromLatin1("a\0b\x1b[2J\x07\x7f\x1f\\\r\n\t", 14)),
              "a\\x00b\\x1B[2J\\x07\\x7F\\x1F\\\\\\r\\n\\t");
    FILE* echo = std::tmpfile();
    ScriptedPrompter p({}, echo);
    QString all;
    for (int c = 0; c < 128; ++c)
        all += QChar(c);
    p.msgBox(all, MsgStyle::OkOnly, all);
    const QString line = readAll(echo);
    std::fclose(echo);
    ASSERT_TRUE(line.endsWith('\n'));
    EXPECT_EQ(line.count('\t'), 3);
    EXPECT_EQ(line.count('\n'), 1);
    for (QChar c : line.chopped(1))
        EXPECT_TRUE(c == '\t' || (c.unicode() >= 32 && c.unicode() != 127)) << int(c.unicode());
}

TEST(ScriptedPrompter, AnswersInOrderFallsBackToDefaultAndEchoesEscapedLines)
{
    FILE* echo = std::tmpfile();
    ScriptedPrompter p({"no", "maybe", "text:Abcd", "file:/tmp/x.txt", "yes"}, echo);
    using namespace MsgStyle;
    // Scripted answer.
    EXPECT_EQ(p.msgBox("Sure?\r\nReally\t\\", YesNo | DefaultButton2, "Q"), Answer::No);
    // An answer the box does not offer gives its default button.
    EXPECT_EQ(p.msgBox("x", YesNoCancel | DefaultButton3, "T"), Answer::Cancel);
    EXPECT_EQ(p.input("Unlock", "Password:", ""), std::optional<QString>("Abcd"));
    EXPECT_EQ(p.file({true, "Save", "", "a.txt", ""}), "/tmp/x.txt");
    // "yes" to an OK box is not offered: OK.
    EXPECT_EQ(p.msgBox("done"), Answer::Ok);
    // Script used up: default button, and dialogs cancel.
    EXPECT_EQ(p.msgBox("again", YesNo), Answer::Yes);
    EXPECT_EQ(p.input("I", "p", "d"), std::nullopt);
    EXPECT_EQ(p.file({false, "Open", "", "", ""}), "");

    const QStringList lines = readAll(echo).split('\n', Qt::SkipEmptyParts);
    std::fclose(echo);
    ASSERT_EQ(lines.size(), 8);
    EXPECT_EQ(lines[0], "box\tQ\tSure?\\r\\nReally\\t\\\\\tno");
    EXPECT_EQ(lines[1], "box\tT\tx\tcancel");
    EXPECT_EQ(lines[2], "input\tUnlock\tPassword:\ttext:Abcd");
    EXPECT_EQ(lines[3], "file\tSave\ta.txt\tfile:/tmp/x.txt");
    EXPECT_EQ(lines[4], "box\tVonnel\tdone\tok");
    EXPECT_EQ(lines[6], "input\tI\tp\tcancel");
    EXPECT_EQ(p.count("again"), 1);
}

TEST(ProgramArguments, OptionsThenCommandWords)
{
    auto a = parseProgramArguments({"vonnel", "--app-path", "/x", "--headless", "--answers=/a",
                                    "Input", "hello", "--headless"});
    EXPECT_EQ(a.appPath, "/x");
    EXPECT_TRUE(a.headless);
    EXPECT_EQ(a.answersFile, "/a");
    EXPECT_EQ(a.command, (QStringList{"Input", "hello", "--headless"}));
    EXPECT_FALSE(parseProgramArguments({"vonnel", "--answers"}).error.isEmpty());
}

TEST(WidgetPrompter, FilterListsBecomeQtFilters)
{
    EXPECT_EQ(WidgetPrompter::qtFilter("Text (*.txt)|*.txt|All Files|*.*"),
              "Text (*.txt) (*.txt);;All Files (*)");
    EXPECT_EQ(WidgetPrompter::qtFilter("Images (*.png *.jpg)"), "Images (*.png *.jpg)");
}

// A short text under a long title: the box is wide enough for the desktop
// to show the whole title beside its buttons.
TEST(WidgetPrompter, BoxIsWideEnoughForItsTitle)
{
    WidgetPrompter prompter;
    int width = 0;
    QTimer::singleShot(100, [&width] {
        if (QWidget* w = QApplication::activeModalWidget()) {
            width = w->width();
            w->close();
        }
    });
    const QString title = "File Receiving Request";
    prompter.box({title, "OK?", 0});
    const int titleText = QFontMetrics(QApplication::font()).horizontalAdvance(title);
    EXPECT_GE(width, WidgetPrompter::titleRoom(title));
    EXPECT_GT(WidgetPrompter::titleRoom(title), titleText + 60);
}

TEST(Translator, LanguageFileEntryElseFallbackElseKey)
{
    QTemporaryDir dir;
    const QString app = dir.path() + '/';
    WriteIni(kSection, "Ready", "Bereit", app + "Deutsch.lng");
    Translator t(app);
    t.setLangFile("Deutsch.lng");
    EXPECT_EQ(t.translate("Ready"), "Ready");  // translation off
    t.setTranslationOn(true);
    EXPECT_EQ(t.translate("Ready"), "Bereit");
    EXPECT_EQ(t.translate("Connect", "&Connect"), "&Connect");
    EXPECT_EQ(t.translate("Connect"), "Connect");
    // Read on every call: a new entry is seen at once.
    WriteIni(kSection, "Connect", "Verbinden", app + "deutsch.LNG");
    EXPECT_EQ(t.translate("Connect", "&Connect"), "Verbinden");
}

}  // namespace
