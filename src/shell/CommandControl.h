#pragma once
// The command line of a start, and the commands a second start hands over
// through Command.ini.

#include <QString>

namespace vonnel {

class FrmMain;
class Prompter;

// The help box text of the command line.
QString commandHelpText();

// Syntax check: "NULL" for no command; a bare host gets a ":" added; a help
// switch shows the help box and sets helpShown (the program then ends).
QString parseCommandLine(const QString& text, Prompter& prompter, bool* helpShown);

}  // namespace vonnel
