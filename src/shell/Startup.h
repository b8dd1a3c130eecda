#pragma once
// How a copy comes up: the configuration is repaired where it is missing,
// the few settings needed before the main form exist are read, the main
// form loads and shows, and the command line is obeyed.

#include <QString>

namespace vonnel {

class FrmMain;
class Prompter;
class Desktop;
class StartupTrace;

// Rebuilds a missing vonnel.ini from vonnel.bak, else vonnel.ini.preset,
// else by running repair.sh (the repair script of this platform). Returns
// false when the file is still missing; the "Critical Error" box has then
// been shown and the copy must end.
bool repairIni(const QString& appPath, Prompter& prompter, Desktop& desktop);

// Runs the start of one copy on a constructed FrmMain. Returns false when
// the copy ended during start (see FrmMain::exitCode()). The trace, when
// given, is marked at each stage.
bool startCopy(FrmMain& frm, StartupTrace* trace = nullptr);

}  // namespace vonnel
