#include "core/IniStore.h"
#include "connection/Connection.h"
#include "connection/PropertyDialog.h"
#include "shell/Startup.h"
#include "support/TestCopy.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "access/Encryption.h"
#include "access/PasswordStore.h"
#include "wire/Receiver.h"
#include "platform/Winsock.h"
#include "core/CopyContext.h"

#include <QDir>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

bool canConnect(quint16 port)
{
    QTcpSocket s;
    s.connectToHost(QHostAddress::LocalHost, port);
    return s.waitForConnected(2000);
}

TEST(Repair, FirstSourceFoundIsTheOnlyOneTried)
{
    QTemporaryDir dir;
    const QString app = dir.path() + '/';
    WriteIni(kSection, "From", "bak", app + "Vonnel.bak");
    WriteIni(kSection, "From", "preset", app + "vonnel.ini.preset");
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    ASSERT_TRUE(repairIni(app, prompter, desktop));
    EXPECT_EQ(ReadIni(kSection, "From", app + "vonnel.ini"), "bak");
    EXPECT_EQ(ReadIni(kSection, "From", app + "vonnel.ini.preset"), "preset");
    ASSERT_EQ(prompter.records().size(), 1);
    EXPECT_TRUE(prompter.records()[0].text.contains("vonnel.ini is missing."));
    // A present file needs no repair and asks nothing.
    prompter.clearRecords();
    EXPECT_TRUE(repairIni(app, prompter, desktop));
    EXPECT_TRUE(prompter.records().isEmpty());
}

TEST(Repair, NoSourceEndsWithCriticalError)
{
    QTemporaryDir dir;
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    EXPECT_FALSE(repairIni(dir.path() + '/', prompter, desktop));
    ASSERT_EQ(prompter.records().size(), 2);
    EXPECT_EQ(prompter.records()[1].title, "Critical Error");
    EXPECT_EQ(prompter.records()[1].text, "This error cannot be fixed. This program will be ended.");
}

TEST(Startup, FirstStartWritesCorrectedKeysCountsUsageAndListens)
{
    TestCopy copy;
    for (const char* key : {"Byte Per Send", "Overflow", "Repair Count Limit", "Command Line Interval"})
        copy.set(key, "0");
    copy.set("Text Limit", "70000");
    copy.set("Usage", "41");
    WriteIni(kSection, "Error 1", "stale", copy.file("error.log"));
    ASSERT_TRUE(copy.start());
    FrmMain& f = copy.frm();

    EXPECT_EQ(copy.get("Byte Per Send"), "2000");
    EXPECT_EQ(copy.get("Overflow"), "50");
    EXPECT_EQ(copy.get("Repair Count Limit"), "50");
    EXPECT_EQ(copy.get("Command Line Interval"), "1000");
    EXPECT_EQ(copy.get("Text Limit"), "64000");
    EXPECT_EQ(copy.get("Usage"), "42");
    EXPECT_EQ(copy.get("Version"), "3.0");
    EXPECT_FALSE(QFile::exists(copy.file("error.log")));
    EXPECT_EQ(f.tTimer2().interval(), 1000);
    EXPECT_EQ(f.receiver().textLimit, 64000);

    EXPECT_EQ(f.session().winsock(0).State(), Winsock::sckListening);
    EXPECT_EQ(f.model().stStatusbar.text(2), "Local Port = " + QString::number(copy.port()));
    EXPECT_EQ(f.model().caption(), "Vonnel 3.0");
    EXPECT_EQ(f.ctx().VersionString, "Vonnel 3.0.0");
    EXPECT_TRUE(f.model().isVisible());
    EXPECT_TRUE(f.model().controls.enabled(Control::mnuConnect));
    EXPECT_TRUE(canConnect(copy.port()));
}

TEST(Startup, TextLimitBelowOneReadsDefault)
{
    TestCopy copy(0, {{"Text Limit", "0"}});
    ASSERT_TRUE(copy.start());
    EXPECT_EQ(copy.get("Text Limit"), "32000");
}

TEST(Startup, WindowPlacementCorrections)
{
    TestCopy narrow(0, {{"Settings-MainLeft", "0"}, {"Settings-MainTop", "-5"},
                        {"Settings-MainWidth", "3999"}, {"Settings-MainHeight", "1999"}});
    ASSERT_TRUE(narrow.start());
    EXPECT_EQ(narrow.frm().placement.left, 1500);
    EXPECT_EQ(narrow.frm().placement.top, 1500);
    EXPECT_EQ(narrow.frm().placement.width, 7000);
    EXPECT_EQ(narrow.frm().placement.height, 5000);

    TestCopy wide(0, {{"Settings-MainLeft", "300"}, {"Settings-MainTop", "400"},
                      {"Settings-MainWidth", "4000"}, {"Settings-MainHeight", "2000"}});
    ASSERT_TRUE(wide.start());
    EXPECT_EQ(wide.frm().placement.left, 300);
    EXPECT_EQ(wide.frm().placement.width, 4000);
    EXPECT_EQ(wide.frm().placement.height, 2000);
}

TEST(Startup, PortInUseIsReportedAndForcesProperties)
{
    QTcpServer blocker;
    const quint16 port = freePort();
    ASSERT_TRUE(blocker.listen(QHostAddress::Any, port));
    TestCopy copy(port);
    ASSERT_TRUE(copy.start());
    EXPECT_TRUE(copy.frm().portConflictAtStart());
    ASSERT_GE(copy.prompter().records().size(), 1);
    EXPECT_EQ(copy.prompter().records()[0].title, "Inital Error");
    EXPECT_TRUE(copy.prompter().records()[0].text.startsWith(
        "Error: Local Port Address in use by another program\r\r"));
}

TEST(Startup, SecondCopyHandsItsCommandOverAndEnds)
{
    TestCopy first;
    ASSERT_TRUE(first.start());
    const QByteArray before = [&] {
        QFile f(first.file("vonnel.ini"));
        f.open(QIODevice::ReadOnly);
        return f.readAll();
    }();

    // Same folder, second start: Dup Vonnel 0.
    CopyEnvironment env;
    env.appPath = first.appPath();
    env.commandLine = "Input hello";
    env.headless = true;
    ScriptedPrompter prompter;
    Clock clock;
    MemoryClipboard clip;
    RecordingDesktop desktop;
    Views views;
    env.prompter = &prompter;
    env.clock = &clock;
    env.clipboard = &clip;
    env.desktop = &desktop;
    env.views = &views;
    {
        FrmMain second(env);
        EXPECT_FALSE(startCopy(second));
        EXPECT_TRUE(second.ended());
        EXPECT_EQ(second.exitCode(), 0);
        EXPECT_EQ(second.session().winsock(0).State(), Winsock::sckClosed);
    }
    EXPECT_EQ(ReadIni(kSection, "Command", first.file("Command.ini")), "Input hello");
    QFile::remove(first.file("Command.ini"));

    // No arguments: it ends and leaves no trace.
    env.commandLine.clear();
    {
        FrmMain second(env);
        EXPECT_FALSE(startCopy(second));
    }
    EXPECT_FALSE(QFile::exists(first.file("Command.ini")));

    // Dup Vonnel 1: a copy of its own on the next port; the file's port stays.
    first.set("Dup Vonnel", "1");
    env.commandLine = "Input hello";
    {
        FrmMain second(env);
        EXPECT_TRUE(startCopy(second));
        EXPECT_EQ(second.session().winsock(0).State(), Winsock::sckListening);
        EXPECT_EQ(second.session().winsock(0).LocalPort(), first.port() + 1);
        EXPECT_EQ(first.get("LocalPort"), QString::number(first.port()));
        EXPECT_FALSE(QFile::exists(first.file("Command.ini")));
        EXPECT_TRUE(second.model().controls.enabled(Control::frmProperty_cmdApply));
        second.requestClose(false);
    }
    // Its port taken as well: it cannot listen, and the port settings, the
    // first copy's, cannot be applied from it.
    {
        // (The port in the file is read afresh: closing the copy above may
        // have moved it.)
        const QString portInFile = first.get("LocalPort");
        QTcpServer taken;
        ASSERT_TRUE(taken.listen(QHostAddress::Any, quint16(portInFile.toInt() + 1)));
        FrmMain second(env);
        startCopy(second);
        EXPECT_NE(second.session().winsock(0).State(), Winsock::sckListening);
        EXPECT_FALSE(second.model().controls.enabled(Control::frmProperty_cmdApply));
        EXPECT_FALSE(second.model().controls.enabled(Control::frmProperty_cmdOK));
        second.connection().propertyDialog().cmdApply_Click();
        EXPECT_EQ(first.get("LocalPort"), portInFile);
        EXPECT_NE(second.session().winsock(0).State(), Winsock::sckListening);
        second.ctx().ProgramExiting = true;  // ends without the disconnect's rebinding
    }
    Q_UNUSED(before);
}

TEST(Startup, HelpSwitchShowsHelpAndEnds)
{
    TestCopy copy;
    EXPECT_FALSE(copy.start("/x"));
    EXPECT_TRUE(copy.frm().ended());
    ASSERT_EQ(copy.prompter().records().size(), 1);
    EXPECT_TRUE(copy.prompter().records()[0].text.startsWith("Example:"));
    EXPECT_TRUE(copy.prompter().records()[0].text.contains("betweewn"));
}

TEST(Startup, ShutdownWritesPlacementAndStopsListening)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    copy.frm().placement.left = 3000;
    copy.frm().placement.width = 9000;
    EXPECT_TRUE(copy.frm().requestClose(true));
    EXPECT_TRUE(copy.frm().ctx().ProgramExiting);
    EXPECT_FALSE(copy.frm().session().IsConnected());
    EXPECT_EQ(copy.get("Settings-MainLeft"), "3000");
    EXPECT_EQ(copy.get("Settings-MainWidth"), "9000");
    EXPECT_EQ(copy.frm().session().winsock(0).State(), Winsock::sckClosed);
    EXPECT_FALSE(canConnect(copy.port()));
}

TEST(Startup, ConfirmExitNoKeepsTheCopyRunning)
{
    TestCopy copy(0, {{"Confirm Exit", "1"}});
    ASSERT_TRUE(copy.start());
    copy.prompter().addAnswers({"no"});
    EXPECT_FALSE(copy.frm().requestClose(true));
    EXPECT_FALSE(copy.frm().ctx().ProgramExiting);
    EXPECT_EQ(copy.prompter().records().last().title, "Vonnel - Program Exit");
    EXPECT_EQ(copy.frm().session().winsock(0).State(), Winsock::sckListening);
}

}  // namespace

namespace {

// The first start from the shipped preset goes straight to the main window:
// no password windows (Tools > Security sets them at any time), no unlock.
TEST(Startup, FirstStartFromThePresetOpensTheMainWindowAtOnce)
{
    TestCopy copy;
    copy.set("Usage", ReadIni(kSection, "Usage", presetPath()));
    ASSERT_TRUE(copy.start());
    EXPECT_TRUE(copy.prompter().records().isEmpty())
        << copy.prompter().records().value(0).text.toStdString();
    EXPECT_TRUE(copy.frm().model().isVisible());
    EXPECT_FALSE(copy.frm().encryption().passwords().startupLockFailed);
}

// The help folder is written as it is spelt on disk, and read back with
// its separator, so pages open from it at the next start.
TEST(Startup, HelpPathKeepsTheFolderAsSpeltAndOpensPages)
{
    for (const char* folder : {"Help", "help"}) {
        TestCopy copy;
        QDir(copy.appPath()).mkpath(folder);
        QFile index(copy.file(QString(folder) + "/index.htm"));
        ASSERT_TRUE(index.open(QIODevice::WriteOnly));
        index.close();
        ASSERT_TRUE(copy.start());
        EXPECT_EQ(copy.get("Help Path"), copy.appPath() + folder);

        TestCopy again;
        again.set("Help Path", copy.get("Help Path"));
        ASSERT_TRUE(again.start());
        EXPECT_EQ(again.frm().ctx().HelpPath, copy.appPath() + folder + "/");
    }
}

}  // namespace
