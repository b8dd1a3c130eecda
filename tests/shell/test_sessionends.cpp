// Nothing ends a session by surprise: the shipped preset asks before the
// program exits, File > Close puts the window away while the copy keeps
// listening, the Connect window offers the port last called, and a
// received file is saved in the download folder unless the user says
// otherwise.

#include "connection/Connection.h"
#include "connection/SessionPeers.h"
#include "connection/LoginDialog.h"
#include "connection/Session.h"
#include "core/IniStore.h"
#include "shell/MainWindow.h"
#include "support/Session.h"
#include "support/TestCopy.h"
#include "transfer/RawPeer.h"
#include "transfer/TransferText.h"

#include <QAction>
#include <QDir>
#include <QStandardPaths>
#include <QSystemTrayIcon>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

QString preset(const QString& key)
{
    return ReadIni(QStringLiteral("Vonnel"), key, presetPath());
}

struct ViewsWindow {  // the window is the copy's views from its start
    explicit ViewsWindow(const QList<QPair<QString, QString>>& settings)
        : copy(0, settings)
    {
        copy.beforeStart = [this](FrmMain& f) {
            window = std::make_unique<MainWindow>(f);
            f.ctx().setViews(window.get());
        };
        started = copy.start();
    }
    ~ViewsWindow() { copy.frm().ctx().setViews(&headless); }  // the window goes first
    void trigger(Control c) { window->action(c)->trigger(); }
    Views headless;
    TestCopy copy;
    std::unique_ptr<MainWindow> window;
    bool started = false;
};

TEST(PresetChoices, ExitAsksFirstAndNoKeepsTheSession)
{
    ASSERT_EQ(preset("Confirm Exit"), "1");
    Callee b;
    Caller a;
    ASSERT_TRUE(a.started && b.started);
    a.copy.set("Confirm Exit", preset("Confirm Exit"));
    ASSERT_TRUE(a.call("127.0.0.1", b.copy.port()));
    a.endCall();
    FrmMain& fa = a.copy.frm();
    ASSERT_TRUE(waitUntil([&] { return fa.session().IsConnected(); }));

    a.copy.prompter().addAnswers({"no"});
    EXPECT_FALSE(fa.requestClose(true));
    EXPECT_TRUE(a.copy.prompter().asked("Are you really want to exit completely?"));
    EXPECT_FALSE(fa.ctx().ProgramExiting);
    pump(100);
    EXPECT_TRUE(fa.session().IsConnected());
    EXPECT_TRUE(b.copy.frm().session().IsConnected());

    a.copy.prompter().addAnswers({"yes"});
    EXPECT_TRUE(fa.requestClose(true));
    EXPECT_TRUE(fa.ctx().ProgramExiting);
}

TEST(PresetChoices, TheConnectWindowOffersThePortLastCalled)
{
    ASSERT_EQ(preset("Permanent Port"), "1");
    for (const QString keep : {preset("Permanent Port"), QStringLiteral("0")}) {
        SCOPED_TRACE(keep.toStdString());
        Callee b;
        Caller a;
        ASSERT_TRUE(a.started && b.started);
        a.copy.set("Permanent Port", keep);
        ASSERT_NE(a.copy.port(), b.copy.port());
        ASSERT_TRUE(a.call("127.0.0.1", b.copy.port()));
        a.endCall();
        FrmMain& fa = a.copy.frm();
        ASSERT_TRUE(waitUntil([&] { return fa.session().IsConnected(); }));
        fa.connection().mnuDisconnect_Click();
        ASSERT_TRUE(waitUntil([&] { return !fa.session().IsConnected(); }));

        LoginDialog* again = fa.connection().beginConnect();
        ASSERT_NE(again, nullptr);
        // Without the flag the window falls back on the copy's RemotePort.
        const quint16 offered = keep == "1" ? b.copy.port() : a.copy.port();
        EXPECT_EQ(again->txtConnectPort, QString::number(offered));
        a.endCall();
    }
}

TEST(FileClose, PutsTheWindowAwayAndKeepsListeningExitEnds)
{
    // The test platform has no tray: Close minimises, and says why once.
    ASSERT_FALSE(QSystemTrayIcon::isSystemTrayAvailable());
    ViewsWindow w({{"Confirm Exit", preset("Confirm Exit")}});
    ASSERT_TRUE(w.started);
    FrmMain& f = w.copy.frm();
    w.window->show();
    pump(20);

    w.trigger(Control::mnuFileClose);
    pump(50);
    EXPECT_FALSE(f.ctx().ProgramExiting);
    EXPECT_FALSE(w.copy.prompter().asked("exit completely"));
    EXPECT_TRUE(w.window->windowState() & Qt::WindowMinimized);
    EXPECT_EQ(w.copy.prompter().count("no system tray"), 1);
    EXPECT_EQ(f.session().winsock(0).State(), Winsock::sckListening);

    // Shown again from the tray menu, then Exit: asked, and then gone.
    w.trigger(Control::mnuSysShow);
    EXPECT_FALSE(w.window->windowState() & Qt::WindowMinimized);
    w.copy.prompter().addAnswers({"yes"});
    w.trigger(Control::mnuFileExit);
    EXPECT_TRUE(w.copy.prompter().asked("exit completely"));
    EXPECT_TRUE(f.ctx().ProgramExiting);
}

// The folder comes from the user's XDG_DOWNLOAD_DIR, read where the
// desktop keeps it.
class DownloadFolder : public RawPeer {
public:
    void SetUp() override
    {
        m_oldConfig = qgetenv("XDG_CONFIG_HOME");
        qputenv("XDG_CONFIG_HOME", m_config.path().toLocal8Bit());
        RawPeer::SetUp();
    }
    void TearDown() override
    {
        RawPeer::TearDown();
        if (m_oldConfig.isNull())
            qunsetenv("XDG_CONFIG_HOME");
        else
            qputenv("XDG_CONFIG_HOME", m_oldConfig);
    }
    void pointDownloadsAt(const QString& folder)
    {
        QFile dirs(m_config.path() + "/user-dirs.dirs");
        ASSERT_TRUE(dirs.open(QIODevice::WriteOnly | QIODevice::Truncate));
        dirs.write("XDG_DOWNLOAD_DIR=\"" + folder.toLocal8Bit() + "\"\n");
    }
    QString folderAsked()
    {
        for (const PromptRecord& r : copy.prompter().records())
            if (r.kind == "file" && r.title == "Save File As")
                return r.folder;
        return "(not asked)";
    }

private:
    QTemporaryDir m_config;
    QByteArray m_oldConfig;
};

TEST_F(DownloadFolder, TheSaveDialogOpensThere)
{
    QTemporaryDir downloads;
    pointDownloadsAt(downloads.path());
    ASSERT_EQ(offer("C:\\docs\\a.txt", 10, copy.file("in/a.txt")),
              "%%FS Request OK%%C:\\docs\\a.txt*fs*");
    EXPECT_EQ(folderAsked(), downloads.path());
}

TEST_F(DownloadFolder, AMissingOneFallsBackOnHome)
{
    pointDownloadsAt(QDir::tempPath() + "/vonnel-no-such-folder-for-downloads");
    ASSERT_EQ(offer("C:\\docs\\a.txt", 10, copy.file("in/a.txt")),
              "%%FS Request OK%%C:\\docs\\a.txt*fs*");
    EXPECT_EQ(folderAsked(), QDir::homePath());
}

}  // namespace
