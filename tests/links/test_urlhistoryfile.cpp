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

TEST(UrlHistoryFile, SaveDialogAndTheReminderOnClose)
{
    QTemporaryDir dir;
    test::FakePrompter prompter;
    UrlHistory h;
    UrlHistoryCommands c(h, prompter);
    EXPECT_TRUE(c.Form_QueryUnload(true)) << "nothing to save, nothing asked";
    h.appendRemote("http://a.example");
    EXPECT_TRUE(c.Form_QueryUnload(false));
    EXPECT_TRUE(prompter.boxes.isEmpty());

    prompter.fileAnswers = {dir.filePath("list")};
    EXPECT_EQ(c.mnuSave_Click(), UrlHistoryCommands::SaveResult::Saved);
    EXPECT_EQ(prompter.files[0].title, "Save As");
    EXPECT_EQ(prompter.files[0].filter, "All Files|*.*|Text Files|*.txt");
    const QString path = dir.filePath("list.txt");
    EXPECT_EQ(readAll(path), "http://a.example\r\n\thttp://a.example\r\n");

    h.appendRemote("http://b.example");
    prompter.fileAnswers = {path};
    prompter.answers = {Answer::No};
    EXPECT_EQ(c.mnuSave_Click(), UrlHistoryCommands::SaveResult::Cancelled);
    EXPECT_EQ(prompter.boxes[0].text, path + " is already exist.\r\nDo you want to overwrite it?");
    EXPECT_EQ(readAll(path).count('\n'), 2) << "the file is as it was";

    // Cancel keeps the window; No closes; Yes with the save dialog called off
    // keeps it, so the list is not lost; Yes and a save closes.
    prompter.boxes.clear();
    prompter.answers = {Answer::Cancel, Answer::No, Answer::Yes, Answer::Yes, Answer::Yes};
    EXPECT_FALSE(c.Form_QueryUnload(true));
    EXPECT_EQ(prompter.boxes[0].text, "Do you want to save before quit?");
    EXPECT_EQ(prompter.boxes[0].title, "URL History");
    EXPECT_EQ(prompter.boxes[0].buttonSet(), MsgStyle::YesNoCancel);
    EXPECT_TRUE(c.Form_QueryUnload(true));
    EXPECT_FALSE(c.Form_QueryUnload(true));
    prompter.fileAnswers = {path};
    EXPECT_TRUE(c.Form_QueryUnload(true));
    EXPECT_EQ(readAll(path).count('\n'), 4);
}

TEST(UrlHistoryFile, EditDialogGoesThroughAddurl)
{
    test::FakePrompter prompter;
    UrlHistory h;
    UrlHistoryCommands c(h, prompter);
    UrlEditForm form = c.mnuAdd_Click();
    EXPECT_FALSE(c.cmdOK_Click(form)) << "an empty address does nothing";
    form.txtURL = "www.a.example";
    EXPECT_TRUE(c.cmdOK_Click(form));
    EXPECT_EQ(h.selectedIndex(), 0) << "selected for its description";
    form = *c.mnuEdit_Click();
    EXPECT_EQ(form.txtEditIndex, "0");
    form.txtDescript = "Changed";
    EXPECT_TRUE(c.cmdOK_Click(form));
    EXPECT_EQ(h.lstDescript(), QStringList{"Changed"});
    EXPECT_EQ(h.count(), 1);
}
