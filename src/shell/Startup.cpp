#include "shell/Startup.h"

#include "access/Encryption.h"
#include "access/PasswordStore.h"
#include "core/FatalHandler.h"
#include "core/IniStore.h"
#include "core/Translator.h"
#include "platform/Desktop.h"
#include "platform/Prompter.h"
#include "shell/CommandControl.h"
#include "shell/FrmMain.h"
#include "shell/NetTools.h"
#include "shell/StartupTrace.h"
#include "core/Views.h"
#include "core/MainModel.h"
#include "core/CopyContext.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>

namespace vonnel {

bool repairIni(const QString& appPath, Prompter& prompter, Desktop& desktop)
{
    const QString ini = appPath + QStringLiteral("vonnel.ini");
    if (FileExist(ini, &prompter))
        return true;
    prompter.msgBox(QStringLiteral("The required initial file - ") + appPath +
                        QStringLiteral("vonnel.ini is missing.\r\n\r\nClick OK and this program "
                                       "will try to repair this file."),
                    MsgStyle::Exclamation);
    // The first source found is the only one tried.
    const QString bak = appPath + QStringLiteral("vonnel.bak");
    const QString preset = appPath + QStringLiteral("vonnel.ini.preset");
    const QString script = appPath + QStringLiteral("repair.sh");
    if (FileExist(bak, &prompter)) {
        QFile::copy(resolveCaseBlind(appPath + QStringLiteral("Vonnel.bak")), ini);
    } else if (FileExist(preset, &prompter)) {
        QFile::copy(resolveCaseBlind(appPath + QStringLiteral("Vonnel.ini.preset")), ini);
    } else if (FileExist(script, &prompter)) {
        desktop.startProgram(QStringLiteral("/bin/sh"), {resolveCaseBlind(script)});
        prompter.msgBox(QStringLiteral("Click OK to continue..."));
    }
    // A copy keeps the source's permissions; the settings must be writable.
    QFile(ini).setPermissions(QFile(ini).permissions() | QFileDevice::WriteOwner);
    if (FileExist(ini, &prompter))
        return true;
    prompter.msgBox(QStringLiteral("This error cannot be fixed. This program will be ended."),
                    MsgStyle::Critical, QStringLiteral("Critical Error"));
    return false;
}

bool startCopy(FrmMain& f, StartupTrace* trace)
{
    const auto mark = [trace](const char* name) {
        if (trace)
            trace->mark(name);
    };
    const QString appPath = f.ctx().AppPath();
    FatalHandler::setErrorLog(appPath + QStringLiteral("error.log"));

    if (!repairIni(appPath, f.ctx().prompter(), f.ctx().desktop())) {
        f.endProcess(1);
        return false;
    }
    f.ctx().writeSetting(QStringLiteral("Version"),
                   QString::number(MainModel::kMajor) + QLatin1Char('.') + QString::number(MainModel::kMinor));
    f.ctx().HelpPath = f.ctx().setting(QStringLiteral("Help Path"));
    if (f.ctx().HelpPath.isEmpty())
        f.ctx().HelpPath = appPath + QStringLiteral("help/");
    // The key is kept without the closing separator; pages are joined to
    // the folder, not to its name.
    else if (!f.ctx().HelpPath.endsWith(QLatin1Char('/')) && !f.ctx().HelpPath.endsWith(QLatin1Char('\\')))
        f.ctx().HelpPath += QLatin1Char('/');
    f.UsageCount = f.ctx().settingInt(QStringLiteral("Usage")) + 1;
    f.ctx().writeSetting(QStringLiteral("Usage"), QString::number(f.UsageCount));

    if (const auto on = flagByText(f.ctx().setting(QStringLiteral("Translation"))))
        f.ctx().TranslationOn = *on;
    f.LangFile = f.ctx().setting(QStringLiteral("LangFile"));
    f.ctx().translator().setLangFile(f.LangFile);
    f.ctx().translator().setTranslationOn(f.ctx().TranslationOn);
    QString loading;
    if (FileExist(f.ctx().translator().langPath()) && f.ctx().TranslationOn) {
        loading = f.ctx().translate(QStringLiteral("Loading"), QStringLiteral("Loading. . ."));
    } else {
        f.ctx().TranslationOn = false;
        f.ctx().translator().setTranslationOn(false);
        loading = QStringLiteral("Loading. . . ");
    }
    f.TrayOnly = f.ctx().settingInt(QStringLiteral("System Tray Only"));
    f.splashCaption = f.ctx().TranslationOn
                          ? f.model().titleWithVersion() + QLatin1Char(' ') + loading
                          : QStringLiteral("Tollwood Presents... ") + f.model().titleWithVersion();
    const bool noSplash =
        flagByText(f.ctx().setting(QStringLiteral("No Splash Screen"))).value_or(false);

    bool help = false;
    const QString parsed = parseCommandLine(f.ctx().commandLine(), f.ctx().prompter(), &help);
    if (help) {
        f.endProcess(0);
        return false;
    }
    if (parsed == QLatin1String("NULL") && !noSplash && f.TrayOnly == 0)
        f.ctx().views().showModeless(Form::frmPopMsg);

    // The help folder as it is spelt on disk ("Help" as shipped).
    const QString helpIndex = resolveCaseBlind(resolveCaseBlind(appPath + QStringLiteral("Help")) +
                                               QStringLiteral("/index.htm"));
    if (QFileInfo::exists(helpIndex))
        f.ctx().writeSetting(QStringLiteral("Help Path"), QFileInfo(helpIndex).absolutePath());

    mark("settings read");
    f.Form_Load();
    mark("Form_Load done");
    if (f.ended())
        return false;
    f.Init();
    mark("Init done");
    if (!f.encryption().passwords().startupLock()) {
        // Not satisfied at the first level: the main form unloads itself.
        f.Form_Unload();
        return false;
    }

    f.model().setVisible(true);
    mark("shown");
    f.fullyLoaded = true;
    if (f.TrayOnly == 1)
        f.model().setWindowState(MainModel::vbMinimized);
    f.WindowContext = QStringLiteral("Vonnel");

    if (f.portConflictAtStart()) {
        // The user has to give another port; Cancel is not offered.
        f.model().controls.setEnabled(Control::frmProperty_cmdCancel, false);
        f.ctx().views().runModal(Form::frmProperty);
        f.model().controls.setEnabled(Control::frmProperty_cmdCancel, true);
    }

    f.ctx().rings.Ring = f.ctx().setting(QStringLiteral("Ring"));
    f.ctx().rings.Ring1 = f.ctx().setting(QStringLiteral("Ring1"));
    f.ctx().rings.Ring2 = f.ctx().setting(QStringLiteral("Ring2"));
    f.ctx().rings.Ring3 = f.ctx().setting(QStringLiteral("Ring3"));
    f.ctx().rings.Ring4 = f.ctx().setting(QStringLiteral("Ring4"));
    f.ctx().rings.Ring5 = f.ctx().setting(QStringLiteral("Ring5"));

    const QString command = parseCommandLine(f.ctx().commandLine(), f.ctx().prompter(), nullptr);
    Q_EMIT f.commandGiven(command);
    if (f.ended())
        return false;
    f.netTools().startAutoConnect();
    mark("command line obeyed");
    return !f.ended();
}

}  // namespace vonnel
