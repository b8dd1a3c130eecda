#include "FakePrompter.h"
#include "links/UrlHistory.h"
#include "links/UrlHistoryCommands.h"
#include "links/UrlHistoryFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vonnel;

namespace {

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void writeAll(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

}  // namespace

TEST(UrlHistoryFile, WritesTwoLinesPerEntry)
{
    EXPECT_EQ(urlListText({"http://a.example", "www.b.example"}, {"Site A", ""}),
              "http://a.example\r\n\tSite A\r\nwww.b.example\r\n\t\r\n");
}

TEST(UrlHistoryFile, FieldInputSplitsAtCommasAndLineEnds)
{
    EXPECT_EQ(readListFields("a,b\r\n\tc\rd\ne"), (QStringList{"a", "b", "c", "d", "e"}));
    EXPECT_EQ(readListFields("\"a,b\" tail,c\r\n  \"q"), (QStringList{"a,b", "c", "q"}));
    EXPECT_EQ(readListFields("x\r\n\r\ny\r\n"), (QStringList{"x", "", "y"}));

    // An address with a comma splits, and the pairs shift by one.
    const QString file = urlListText({"http://a.example/x,y", "http://c.example"}, {"Site", "C"});
    EXPECT_EQ(urlListEntries(file),
              (QList<UrlListEntry>{{"http://a.example/x", "y"}, {"Site", "http://c.example"}, {"C", "C"}}));
}

TEST(UrlHistoryFile, SaveAndOpenRoundTrip)
{
    QTemporaryDir dir;
    test::FakePrompter prompter;
    UrlHistory saved;
    saved.addurl("http://www.example.org/index.html", "Example home", -1);
    saved.addurl("ftp://ftp.example.net/pub/", "", -1);
    saved.addurl("joe@mail.example.com", "Joe's mail", -1);
    saved.addurl("www.example.com/a?b=1&c=\u00e9t\u00e9", "caf\u00e9", -1);
    UrlHistoryCommands save(saved, prompter);
    const QString path = dir.filePath("urls.txt");
    ASSERT_TRUE(save.saveTo(path));
    EXPECT_FALSE(saved.modified());
    EXPECT_EQ(readAll(path).left(51), "http://www.example.org/index.html\r\n\tExample home\r\nf");

    UrlHistory loaded;
    loaded.appendRemote("http://kept.example");
    UrlHistoryCommands open(loaded, prompter);
    EXPECT_EQ(open.openFrom(path), 4);
    EXPECT_EQ(loaded.lstURL().mid(1), saved.lstURL()) << "added behind what was there";
    EXPECT_EQ(loaded.lstDescript().mid(1), saved.lstDescript());
    EXPECT_TRUE(prompter.boxes.isEmpty());

    EXPECT_EQ(open.openFrom(dir.filePath("missing.txt")), 0);
    ASSERT_EQ(prompter.boxes.size(), 1);
    EXPECT_EQ(prompter.boxes[0].text, "53: File not found");
    EXPECT_EQ(loaded.count(), 5);
}

TEST(UrlHistoryFile, SaveDialogAddsTxtAndAsksBeforeOverwriting)
{
    QTemporaryDir dir;
    test::FakePrompter prompter;
    UrlHistory h;
    h.appendRemote("http://a.example");
    UrlHistoryCommands c(h, prompter);

    prompter.fileAnswers = {dir.filePath("list")};
    EXPECT_EQ(c.mnuSave_Click(), UrlHistoryCommands::SaveResult::Saved);
    ASSERT_EQ(prompter.files.size(), 1);
    EXPECT_TRUE(prompter.files[0].save);
    EXPECT_EQ(prompter.files[0].title, "Save As");
    EXPECT_EQ(prompter.files[0].filter, "All Files|*.*|Text Files|*.txt");
    EXPECT_TRUE(QFile::exists(dir.filePath("list.txt")));

    h.appendRemote("http://b.example");
    prompter.fileAnswers = {dir.filePath("list.txt")};
    prompter.answers = {Answer::No};
    EXPECT_EQ(c.mnuSave_Click(), UrlHistoryCommands::SaveResult::Cancelled);
    ASSERT_EQ(prompter.boxes.size(), 1);
    EXPECT_EQ(prompter.boxes[0].text,
              dir.filePath("list.txt") + " is already exist.\r\nDo you want to overwrite it?");
    EXPECT_EQ(readAll(dir.filePath("list.txt")), "http://a.example\r\n\thttp://a.example\r\n");

    prompter.fileAnswers = {dir.filePath("list.txt")};
    prompter.answers = {Answer::Yes};
    EXPECT_EQ(c.mnuSave_Click(), UrlHistoryCommands::SaveResult::Saved);
    EXPECT_EQ(urlListEntries(QString::fromLatin1(readAll(dir.filePath("list.txt")))).size(), 2);
}

TEST(UrlHistoryFile, SaveReminderOnClose)
{
    QTemporaryDir dir;
    test::FakePrompter prompter;
    UrlHistory h;
    UrlHistoryCommands c(h, prompter);
    EXPECT_TRUE(c.Form_QueryUnload(true)) << "nothing to save, nothing asked";
    h.appendRemote("http://a.example");
    EXPECT_TRUE(c.Form_QueryUnload(false));
    EXPECT_TRUE(prompter.boxes.isEmpty());

    prompter.answers = {Answer::Cancel, Answer::No, Answer::Yes, Answer::Yes};
    EXPECT_FALSE(c.Form_QueryUnload(true));
    EXPECT_EQ(prompter.boxes[0].text, "Do you want to save before quit?");
    EXPECT_EQ(prompter.boxes[0].title, "URL History");
    EXPECT_EQ(prompter.boxes[0].buttonSet(), MsgStyle::YesNoCancel);
    EXPECT_TRUE(c.Form_QueryUnload(true));
    EXPECT_FALSE(c.Form_QueryUnload(true)) << "Yes, then the save dialog cancelled: the list stays open";
    prompter.fileAnswers = {dir.filePath("h.txt")};
    EXPECT_TRUE(c.Form_QueryUnload(true));
    EXPECT_TRUE(QFile::exists(dir.filePath("h.txt")));
}

TEST(UrlHistoryFile, EditVisitAndCopy)
{
    test::FakePrompter prompter;
    UrlHistory h;
    UrlHistoryCommands c(h, prompter);
    QList<QUrl> opened;
    QString clip;
    c.openUrl = [&](const QUrl& u) {
        opened << u;
        return true;
    };
    c.setClipboardText = [&](const QString& s) { clip = s; };

    UrlEditForm add = c.mnuAdd_Click();
    EXPECT_EQ(add.txtEditIndex, "-1");
    EXPECT_FALSE(c.cmdOK_Click(add)) << "an empty address does nothing";
    add.txtURL = "www.a.example";
    add.txtDescript = "A";
    EXPECT_TRUE(c.cmdOK_Click(add));
    EXPECT_FALSE(c.mnuEdit_Click().has_value()) << "nothing selected";

    h.select(0);
    UrlEditForm edit = *c.mnuEdit_Click();
    EXPECT_EQ(edit.txtEditIndex, "0");
    edit.txtDescript = "Changed";
    EXPECT_TRUE(c.cmdOK_Click(edit));
    EXPECT_EQ(h.lstDescript(), QStringList{"Changed"});

    h.select(0);
    EXPECT_TRUE(c.mnuVisit_Click());
    c.mnuCopy_Click();
    EXPECT_EQ(opened, QList<QUrl>{QUrl("http://www.a.example")});
    EXPECT_EQ(clip, "www.a.example");
}
