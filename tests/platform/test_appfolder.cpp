// Which folder a copy uses, how an installed program is told from one in
// its build folder, and how a user's folder is filled from the installed
// files.

#include "platform/AppFolder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vonnel;

namespace {

void writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// An installed data folder as the install puts it, read-only as root's is.
QString makeInstalledData(const QString& root)
{
    const QString data = root + "/share/vonnel";
    writeFile(data + "/vonnel.ini.preset", "[Vonnel]\nLocalPort=2500\n");
    writeFile(data + "/ring.wav", "RIFF");
    writeFile(data + "/TIPS.TXT", "tip");
    writeFile(data + "/Lang.txt", "[Lang]\n");
    writeFile(data + "/help/index.htm", "<html>");
    for (const QString& f : {"/vonnel.ini.preset", "/ring.wav", "/TIPS.TXT", "/Lang.txt", "/help/index.htm"})
        QFile::setPermissions(data + f, QFileDevice::ReadOwner | QFileDevice::ReadGroup);
    QDir().mkpath(root + "/bin");
    return data;
}

}  // namespace

TEST(AppFolder, TheFolderIsChosenInOrderOfPrecedence)
{
    struct Case {
        const char* what;
        AppFolderInputs in;
        QString expected;
    };
    const QString data = "/usr/share/vonnel";
    const Case cases[] = {
        {"--app-path wins over everything",
         {"/a", "/h", "/x", "/home/u", "/usr/bin", data}, "/a/"},
        {"$VONNEL_HOME wins over the per-user folder",
         {"", "/h/", "/x", "/home/u", "/usr/bin", data}, "/h/"},
        {"$VONNEL_HOME wins over the build folder",
         {"", "/h", "", "/home/u", "/src/build", ""}, "/h/"},
        {"a build keeps its own folder", {"", "", "/x", "/home/u", "/src/build", ""}, "/src/build/"},
        {"installed: under $XDG_DATA_HOME", {"", "", "/x", "/home/u", "/usr/bin", data}, "/x/vonnel/"},
        {"installed: ~/.local/share without $XDG_DATA_HOME",
         {"", "", "", "/home/u", "/usr/bin", data}, "/home/u/.local/share/vonnel/"},
        {"installed: a relative $XDG_DATA_HOME is ignored",
         {"", "", "rel/data", "/home/u", "/usr/bin", data}, "/home/u/.local/share/vonnel/"},
        {"a relative --app-path is made absolute",
         {"sub", "", "", "/home/u", "/usr/bin", data}, QDir::currentPath() + "/sub/"},
    };
    for (const Case& c : cases) {
        const AppFolderChoice got = chooseAppFolder(c.in);
        EXPECT_EQ(got.appPath, c.expected) << c.what;
        EXPECT_EQ(got.seedFrom, c.in.installedData) << c.what;
    }
}

TEST(AppFolder, OnlyASeparateDataFolderWithThePresetMeansInstalled)
{
    QTemporaryDir root;
    const QString data = makeInstalledData(root.path());
    EXPECT_EQ(installedDataFolder(root.path() + "/bin", "../share/vonnel"), data);
    // The same layout without the preset is not an install.
    QTemporaryDir bare;
    QDir().mkpath(bare.path() + "/bin");
    QDir().mkpath(bare.path() + "/share/vonnel");
    EXPECT_EQ(installedDataFolder(bare.path() + "/bin", "../share/vonnel"), "");
    // A build folder holds the preset beside the program; that is no install.
    QTemporaryDir build;
    writeFile(build.path() + "/vonnel.ini.preset", "[Vonnel]\n");
    EXPECT_EQ(installedDataFolder(build.path(), "."), "");
    EXPECT_EQ(installedDataFolder(build.path(), "../share/vonnel"), "");
    EXPECT_EQ(installedDataFolder("", "../share/vonnel"), "");
}

TEST(AppFolder, ANewFolderGetsEverythingAndVonnelIniFromThePreset)
{
    QTemporaryDir root;
    const QString data = makeInstalledData(root.path());
    for (const QString& appPath : {root.path() + "/home/.local/share/vonnel/", root.path() + "/empty/"}) {
        if (appPath.endsWith("empty/"))
            QDir().mkpath(appPath);
        EXPECT_EQ(seedAppFolder(appPath, data),
                  QStringList({"Lang.txt", "TIPS.TXT", "help/index.htm", "ring.wav", "vonnel.ini",
                               "vonnel.ini.preset"}))
            << appPath.toStdString();
        EXPECT_EQ(readFile(appPath + "vonnel.ini"), "[Vonnel]\nLocalPort=2500\n");
        EXPECT_EQ(readFile(appPath + "help/index.htm"), "<html>");
        // The settings are written at every start: the copies are the
        // user's to write, though the installed files are not.
        EXPECT_TRUE(QFile::permissions(appPath + "vonnel.ini") & QFileDevice::WriteOwner);
        EXPECT_TRUE(QFile::permissions(appPath + "help/index.htm") & QFileDevice::WriteOwner);
    }
}

TEST(AppFolder, AFolderInUseGetsOnlyWhatItLacksAndNeverVonnelIni)
{
    QTemporaryDir root;
    const QString data = makeInstalledData(root.path());
    const QString app = root.path() + "/app/";
    writeFile(app + "TIPS.TXT", "my own tips");
    writeFile(app + "vonnel.bak", "[Vonnel]\nLocalPort=3000\n");
    // vonnel.ini lost: the repair box and vonnel.bak decide, not the seed.
    EXPECT_EQ(seedAppFolder(app, data),
              QStringList({"Lang.txt", "help/index.htm", "ring.wav", "vonnel.ini.preset"}));
    EXPECT_FALSE(QFileInfo::exists(app + "vonnel.ini"));
    EXPECT_EQ(readFile(app + "TIPS.TXT"), "my own tips");
    // A second start finds nothing to copy.
    EXPECT_EQ(seedAppFolder(app, data), QStringList());
    // A settings file in the folder is never replaced.
    writeFile(app + "vonnel.ini", "[Vonnel]\nLocalPort=4000\n");
    QFile::remove(app + "ring.wav");
    EXPECT_EQ(seedAppFolder(app, data), QStringList({"ring.wav"}));
    EXPECT_EQ(readFile(app + "vonnel.ini"), "[Vonnel]\nLocalPort=4000\n");
}

TEST(AppFolder, NoDataFolderCopiesNothingAndMakesNoFolder)
{
    QTemporaryDir root;
    const QString app = root.path() + "/app/";
    EXPECT_EQ(seedAppFolder(app, ""), QStringList());
    EXPECT_EQ(seedAppFolder(app, root.path() + "/missing"), QStringList());
    EXPECT_FALSE(QFileInfo::exists(app));
}
