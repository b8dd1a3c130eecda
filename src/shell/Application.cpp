#include "shell/Application.h"

#include "platform/DesktopScheme.h"
#include "shell/ColorScheme.h"

#include "core/FatalHandler.h"
#include "shell/Startup.h"
#include "platform/AppFolder.h"
#include "shell/StartupTrace.h"
#include "platform/Clipboard.h"
#include "platform/Clock.h"
#include "platform/Companions.h"
#include "platform/Cursor.h"
#include "platform/Desktop.h"
#include "platform/ScriptedPrompter.h"
#include "platform/WidgetPrompter.h"
#include "shell/FrmMain.h"
#include "shell/MainWindow.h"
#include "core/Views.h"
#include "shell/dialogs/LockDialogs.h"
#include "core/CopyContext.h"

#include <QDir>
#include <QFile>
#include <QSocketNotifier>
#include <QTimer>
#include <csignal>
#include <cstdio>
#include <sys/socket.h>
#include <unistd.h>

namespace vonnel {

namespace {
int g_termPipe[2] = {-1, -1};

void onTerm(int)
{
    const char c = 1;
    [[maybe_unused]] auto n = ::write(g_termPipe[1], &c, 1);
}
}  // namespace

ProgramArguments parseProgramArguments(const QStringList& args)
{
    ProgramArguments out;
    for (int i = 1; i < args.size(); ++i) {
        const QString& a = args[i];
        if (!out.command.isEmpty()) {
            out.command << a;
        } else if (a == QLatin1String("--app-path") || a == QLatin1String("--answers")) {
            if (i + 1 >= args.size()) {
                out.error = a + QStringLiteral(" needs a value");
                return out;
            }
            (a == QLatin1String("--app-path") ? out.appPath : out.answersFile) = args[++i];
        } else if (a.startsWith(QLatin1String("--app-path="))) {
            out.appPath = a.mid(11);
        } else if (a.startsWith(QLatin1String("--answers="))) {
            out.answersFile = a.mid(10);
        } else if (a == QLatin1String("--headless")) {
            out.headless = true;
        } else if (a == QLatin1String("--")) {
            out.command = args.mid(i + 1);
            break;
        } else {
            out.command << a;
        }
    }
    return out;
}

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {}

bool Application::notify(QObject* receiver, QEvent* event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception& e) {
        if (m_prompter)
            m_prompter->msgBox(QString::fromLocal8Bit(e.what()), 48, QStringLiteral("Vonnel"));
    } catch (...) {
        if (m_prompter)
            m_prompter->msgBox(QStringLiteral("Unknown error"), 48, QStringLiteral("Vonnel"));
    }
    return false;
}

int runProgram(int argc, char** argv)
{
    StartupTrace trace;
    trace.mark("main");
    FatalHandler::install();
    QStringList raw;
    for (int i = 0; i < argc; ++i)
        raw << QString::fromLocal8Bit(argv[i]);
    const ProgramArguments args = parseProgramArguments(raw);
    if (!args.error.isEmpty()) {
        std::fprintf(stderr, "vonnel: %s\n", qPrintable(args.error));
        return 2;
    }
    if (args.headless && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Keeps stderr to the box lines: the offscreen platform complains
    // about a missing runtime folder otherwise.
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        const QString runtime = QDir::tempPath() + QStringLiteral("/vonnel-runtime-") +
                                QString::number(::getuid());
        QDir().mkpath(runtime);
        QFile::setPermissions(runtime, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                           QFileDevice::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", runtime.toLocal8Bit());
    }

    Application app(argc, argv);
    app.setApplicationName(QStringLiteral("Vonnel"));
    app.setQuitOnLastWindowClosed(false);
    trace.mark("application made");

    app.setDesktopFileName(QStringLiteral("vonnel"));
    // Light or dark before the first window: forced by the environment, or
    // as the desktop asks.
    const ColorScheme scheme = schemeByName(qEnvironmentVariable("VONNEL_COLOR_SCHEME"));
    applyColorScheme(app, scheme, scheme == ColorScheme::System ? desktopPrefersDark() : std::nullopt);

    AppFolderInputs where;
    where.appPathArgument = args.appPath;
    where.vonnelHome = qEnvironmentVariable("VONNEL_HOME");
    where.xdgDataHome = qEnvironmentVariable("XDG_DATA_HOME");
    where.home = QDir::homePath();
    where.programDir = QCoreApplication::applicationDirPath();
    where.installedData =
        installedDataFolder(where.programDir, QStringLiteral(VONNEL_DATA_FROM_PROGRAM));
    const AppFolderChoice folder = chooseAppFolder(where);
    // Before the settings are looked for: a first start finds them in place.
    seedAppFolder(folder.appPath, folder.seedFrom);
    const QString appPath = folder.appPath;

    Clock clock;
    SystemClipboard clipboard;
    Desktop desktop;
    std::unique_ptr<Prompter> prompter;
    if (args.headless)
        prompter = std::make_unique<ScriptedPrompter>(
            args.answersFile.isEmpty() ? QStringList() : ScriptedPrompter::loadAnswers(args.answersFile),
            stderr);
    else
        prompter = std::make_unique<WidgetPrompter>();
    app.setPrompter(prompter.get());
    // The pieces a session needs and cannot miss silently: each missing
    // one is named, and the start goes on.
    if (!args.headless)
        reportMissingCompanions(*prompter, companionProbes());

    Views headlessViews;
    CopyEnvironment env;
    env.appPath = appPath;
    env.commandLine = args.command.join(QLatin1Char(' '));
    env.headless = args.headless;
    env.prompter = prompter.get();
    env.clock = &clock;
    env.clipboard = &clipboard;
    env.desktop = &desktop;
    env.views = &headlessViews;
    OverrideCursor overrideCursor;
    if (!args.headless)
        env.cursor = &overrideCursor;

    // The copy stands first; the window binds to its parts and then
    // becomes its view.
    std::unique_ptr<FrmMain> frm;
    std::unique_ptr<MainWindow> window;
    frm = std::make_unique<FrmMain>(env);
    trace.mark("copy made");
    if (!args.headless) {
        window = std::make_unique<MainWindow>(*frm);
        trace.mark("window made");
        trace.watchFirstPaint(window.get());
        frm->ctx().setViews(window.get());
        static_cast<WidgetPrompter*>(prompter.get())->setParent(window.get());
        installLockDialogs(*frm);
    }

    QObject::connect(frm.get(), &FrmMain::endRequested, &app,
                     [](int code) { QTimer::singleShot(0, [code] { QCoreApplication::exit(code); }); });

    // A polite kill ends the copy the way the Exit menu does.
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, g_termPipe) == 0) {
        auto* notifier = new QSocketNotifier(g_termPipe[0], QSocketNotifier::Read, &app);
        QObject::connect(notifier, &QSocketNotifier::activated, frm.get(), [&frm] {
            char c;
            [[maybe_unused]] auto n = ::read(g_termPipe[0], &c, 1);
            frm->requestClose(false);
            if (!frm->ended())
                frm->endProcess(0);
        });
        std::signal(SIGTERM, onTerm);
        std::signal(SIGINT, onTerm);
    }

    if (!startCopy(*frm, &trace))
        return frm->exitCode();
    if (frm->ended())
        return frm->exitCode();
    trace.mark("event loop");
    return app.exec();
}

}  // namespace vonnel
