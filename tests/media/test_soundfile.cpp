// Choosing a ring sound: the size limit in bytes told in units of 1024,
// the copy into the application folder, and the name the box takes.

#include "media/SoundFile.h"
#include "support/TestCopy.h"
#include "core/CopyContext.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

class SoundFileTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(copy.start()); }
    CopyContext& ctx() { return copy.frm().ctx(); }
    // The texts of the boxes shown.
    QStringList boxes()
    {
        QStringList texts;
        for (const PromptRecord& r : copy.prompter().records())
            if (r.kind == "box")
                texts << r.text;
        return texts;
    }
    QString make(const QString& name, qsizetype size)
    {
        const QString path = elsewhere.filePath(name);
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(randomBytes(size, quint32(size)));
        return path;
    }
    TestCopy copy;
    QTemporaryDir elsewhere;
};

TEST_F(SoundFileTest, SizeLimitInBytesToldInKilobytes)
{
    struct Case {
        const char* setting;
        qint64 size;
        bool taken;
        const char* box;
    } cases[] = {
        {"0", 50000, true, nullptr},
        {"0", 50001, false, "File should not larger than 48.828125KB."},
        {"", 50001, false, "File should not larger than 48.828125KB."},
        {"51200", 51200, true, nullptr},
        {"51200", 51201, false, "File should not larger than 50KB."},
        {"1000", 1001, false, "File should not larger than 0.9765625KB."},
    };
    int n = 0;
    for (const Case& c : cases) {
        SCOPED_TRACE(QString("%1 / %2").arg(c.setting).arg(c.size).toStdString());
        copy.set("SndMaxSize", c.setting);
        copy.prompter().clearRecords();
        const QString name = QString("s%1.wav").arg(++n);
        const QString got = takeSoundFile(ctx(), make(name, c.size), "before.wav");
        EXPECT_EQ(got, c.taken ? name : QString("before.wav"));
        EXPECT_EQ(QFile::exists(copy.file(name)), c.taken);
        if (c.box) {
            ASSERT_EQ(boxes().size(), 1);
            EXPECT_TRUE(boxes()[0].contains(c.box)) << boxes()[0].toStdString();
        } else {
            EXPECT_TRUE(boxes().isEmpty());
        }
    }
}

TEST_F(SoundFileTest, CopiedIntoTheApplicationFolder)
{
    const QString path = make("bell.mp3", 3000);
    // A file of that name in the folder already is replaced by the choice.
    QFile old(copy.file("bell.mp3"));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    EXPECT_EQ(takeSoundFile(ctx(), path, "x.wav"), "bell.mp3");
    EXPECT_EQ(readFile(copy.file("bell.mp3")), readFile(path));

    // The one in the folder itself is taken as it is.
    EXPECT_EQ(takeSoundFile(ctx(), copy.file("bell.mp3"), "x.wav"), "bell.mp3");
    EXPECT_EQ(readFile(copy.file("bell.mp3")), readFile(path));

    // The dialog: the sound filter; cancelled keeps the name.
    copy.prompter().addAnswers({"file:" + path});
    EXPECT_EQ(browseSoundFile(ctx(), "x.wav"), "bell.mp3");
    copy.prompter().addAnswers({"file:"});
    EXPECT_EQ(browseSoundFile(ctx(), "x.wav"), "x.wav");
    EXPECT_TRUE(soundFileFilter().startsWith("All Support Format|*mp3;*.wma;"));
}

TEST_F(SoundFileTest, CopyFailureKeepsThePreviousName)
{
    const QString path = make("ring.wav", 100);
    QFile::remove(path);  // gone between the choice and the copy
    copy.prompter().clearRecords();
    EXPECT_EQ(takeSoundFile(ctx(), path, "keep.wav"), "keep.wav");
    ASSERT_EQ(boxes().size(), 1);
    EXPECT_TRUE(boxes()[0].startsWith("Error: "));
}

}  // namespace
}  // namespace vonnel::test
