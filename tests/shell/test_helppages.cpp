// Every help page the program opens by name is shipped in dist/help/ and
// copied beside the program in the build folder.

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

TEST(HelpPages, EveryPageNamedInTheCodeIsShipped)
{
    const QString src = QStringLiteral(VONNEL_SOURCE_DIR "/src");
    const QRegularExpression literal(QStringLiteral("\"/?([A-Za-z0-9_.-]+\\.htm)\""));
    QSet<QString> names;
    QDirIterator it(src, {"*.cpp", "*.h"}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile f(it.next());
        ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << f.fileName().toStdString();
        const QString text = QString::fromUtf8(f.readAll());
        for (const auto& m : literal.globalMatch(text))
            names.insert(m.captured(1));
    }
    // The scan finds what it must: the contents and the board's page.
    ASSERT_TRUE(names.contains("index.htm"));
    ASSERT_TRUE(names.contains("usingscrivet.htm"));
    for (const QString& name : names) {
        // Exact case: the pages are opened by these names on a file system that minds it.
        EXPECT_TRUE(QFile::exists(QStringLiteral(VONNEL_SOURCE_DIR "/dist/help/") + name)) << name.toStdString();
        EXPECT_TRUE(QFile::exists(QStringLiteral(VONNEL_BINARY_DIR "/help/") + name)) << name.toStdString();
    }
}

TEST(HelpPages, OptionsTabsHaveTheirPages)
{
    // The options dialog opens one page per tab.
    for (const char* name : {"general_setting.htm", "font_setting.htm", "sound_setting.htm", "apperance_setting.htm",
                             "message_setting.htm", "menu_setting.htm", "session_setting.htm",
                             "picture_url_setting.htm", "tts_setting.htm", "security_setting.htm",
                             "advanced_setting.htm", "security.htm", "preview.htm"})
        EXPECT_TRUE(QFile::exists(QStringLiteral(VONNEL_SOURCE_DIR "/dist/help/") + name)) << name;
}
