#include "core/Startup.h"

#include "access/Encryption.h"
#include "access/PasswordStore.h"
#include "core/FatalHandler.h"
#include "core/IniStore.h"
#include "core/Translator.h"
#include "platform/Desktop.h"
#include "platform/Prompter.h"
#include "shell/CommandControl.h"
#include "shell/FrmMain.h"
#include "shell/Views.h"

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

bool startCopy(FrmMain& f)
{
    const QString appPath = f.AppPath();
    FatalHandler::setErrorLog(appPath + QStringLiteral("error.log"));

    if (!repairIni(appPath, f.prompter(), f.desktop())) {
        f.endProcess(1);
        return false;
    }
    f.writeSetting(QStringLiteral("Version"),
                   QString::number(FrmMain::kMajor) + QLatin1Char('.') + QString::number(FrmMain::kMinor));
    f.HelpPath = f.setting(QStringLiteral("Help Path"));
    if (f.HelpPath.isEmpty())
        f.HelpPath = appPath + QStringLiteral("help/");
    // The key is kept without the closing separator; pages are joined to
    // the folder, not to its name.
    else if (!f.HelpPath.endsWith(QLatin1Char('/')) && !f.HelpPath.endsWith(QLatin1Char('\\')))
        f.HelpPath += QLatin1Char('/');
    f.UsageCount = f.settingInt(QStringLiteral("Usage")) + 1;
    f.writeSetting(QStringLiteral("Usage"), QString::number(f.UsageCount));

    if (const auto on = flagByText(f.setting(QStringLiteral("Translation"))))
        f.TranslationOn = *on;
    f.LangFile = f.setting(QStringLiteral("LangFile"));
    f.translator().setLangFile(f.LangFile);
    f.translator().setTranslationOn(f.TranslationOn);
    QString loading;
    if (FileExist(f.translator().langPath()) && f.TranslationOn) {
        loading = f.translate(QStringLiteral("Loading"), QStringLiteral("Loading. . ."));
    } else {
        f.TranslationOn = false;
        f.translator().setTranslationOn(false);
        loading = QStringLiteral("Loading. . . ");
    }
    f.TrayOnly = f.settingInt(QStringLiteral("System Tray Only"));
    f.splashCaption = f.TranslationOn
                          ? f.titleWithVersion() + QLatin1Char(' ') + loading
                          : QStringLiteral("Tollwood Presents... ") + f.titleWithVersion();
    const bool noSplash =
        flagByText(f.setting(QStringLiteral("No Splash Screen"))).value_or(false);

    bool help = false;
    const QString parsed = parseCommandLine(f.commandLine(), f.prompter(), &help);
    if (help) {
        f.endProcess(0);
        return false;
    }
    if (parsed == QLatin1String("NULL") && !noSplash && f.TrayOnly == 0)
        f.views().showModeless(QStringLiteral("frmPopMsg"));

    // The help folder as it is spelt on disk ("Help" as shipped).
    const QString helpIndex = resolveCaseBlind(resolveCaseBlind(appPath + QStringLiteral("Help")) +
                                               QStringLiteral("/index.htm"));
    if (QFileInfo::exists(helpIndex))
        f.writeSetting(QStringLiteral("Help Path"), QFileInfo(helpIndex).absolutePath());

    f.Form_Load();
    if (f.ended())
        return false;
    f.Init();
    if (!f.encryption().passwords().startupLock()) {
        // Not satisfied at the first level: the main form unloads itself.
        f.Form_Unload();
        return false;
    }

    f.setVisible(true);
    f.fullyLoaded = true;
    if (f.TrayOnly == 1)
        f.setWindowState(FrmMain::vbMinimized);
    f.WindowContext = QStringLiteral("Vonnel");

    if (f.PortConflictAtStart) {
        // The user has to give another port; Cancel is not offered.
        f.controls.setEnabled(QStringLiteral("frmProperty.cmdCancel"), false);
        f.views().runModal(QStringLiteral("frmProperty"));
        f.controls.setEnabled(QStringLiteral("frmProperty.cmdCancel"), true);
    }

    f.Ring = f.setting(QStringLiteral("Ring"));
    f.Ring1 = f.setting(QStringLiteral("Ring1"));
    f.Ring2 = f.setting(QStringLiteral("Ring2"));
    f.Ring3 = f.setting(QStringLiteral("Ring3"));
    f.Ring4 = f.setting(QStringLiteral("Ring4"));
    f.Ring5 = f.setting(QStringLiteral("Ring5"));

    const QString command = parseCommandLine(f.commandLine(), f.prompter(), nullptr);
    Q_EMIT f.commandGiven(command);
    return !f.ended();
}

}  // namespace vonnel
