// Saving frmNetView's list: the name asked through the prompter, ".txt" for
// a bare name, the question before an existing file is overwritten.

#include "Fakes.h"
#include "nettools/NetViewSave.h"
#include "platform/ScriptedPrompter.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vonnel;

namespace {

QByteArray contents(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

TEST(NetViewSave, BareNameGetsTxtAndAnExistingFileIsOnlyOverwrittenOnYes)
{
    QTemporaryDir dir;
    const QString bare = dir.filePath("stations");
    const QString text = "List\r\n====\r\n127.0.0.2\r\n";

    ScriptedPrompter prompter({"file:" + bare});
    EXPECT_EQ(saveNetViewList(prompter, text), bare + ".txt");
    EXPECT_EQ(contents(bare + ".txt"), text.toLatin1());
    EXPECT_EQ(prompter.records().last().kind, "file");
    EXPECT_EQ(prompter.records().last().title, "Save");

    prompter.addAnswers({"file:" + bare + ".txt", "no"});
    EXPECT_EQ(saveNetViewList(prompter, "other"), QString());
    EXPECT_EQ(prompter.count("is already exist."), 1);
    EXPECT_EQ(contents(bare + ".txt"), text.toLatin1());

    prompter.addAnswers({"file:" + bare + ".txt", "yes"});
    EXPECT_EQ(saveNetViewList(prompter, "other"), bare + ".txt");
    EXPECT_EQ(contents(bare + ".txt"), QByteArray("other"));
}

TEST(NetViewSave, CancelWritesNothingAndAFailureIsTold)
{
    QTemporaryDir dir;
    ScriptedPrompter prompter({"cancel"});
    EXPECT_EQ(saveNetViewList(prompter, "x"), QString());
    EXPECT_TRUE(QDir(dir.path()).entryList(QDir::Files).isEmpty());

    prompter.addAnswers({"file:" + dir.filePath("no/such/folder/list.txt"), "ok"});
    EXPECT_EQ(saveNetViewList(prompter, "x"), QString());
    EXPECT_EQ(prompter.count("Save Ping List Error: "), 1);
}

}  // namespace
