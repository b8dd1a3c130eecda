#pragma once
// Where a copy keeps vonnel.ini and its companions. A program run from its
// build folder keeps them beside itself; an installed one (its data folder
// <prefix>/share/vonnel next to <prefix>/bin) keeps them per user and fills
// a new folder from the installed files, so a first start asks nothing.

#include <QString>
#include <QStringList>

namespace vonnel {

struct AppFolderInputs {
    QString appPathArgument;  // --app-path
    QString vonnelHome;       // $VONNEL_HOME
    QString xdgDataHome;      // $XDG_DATA_HOME
    QString home;             // the user's home folder
    QString programDir;       // the folder the program runs from
    QString installedData;    // the installed data folder; empty in a build folder
};

struct AppFolderChoice {
    QString appPath;   // absolute, with a trailing '/'
    QString seedFrom;  // the installed data folder a new folder is filled from; may be empty
};

// --app-path, else $VONNEL_HOME, else the program's folder when it is not
// installed, else $XDG_DATA_HOME/vonnel (~/.local/share/vonnel when that is
// unset or not absolute).
AppFolderChoice chooseAppFolder(const AppFolderInputs& in);

// The installed data folder of a program in programDir: programDir joined
// with dataFromProgram ("../share/vonnel") when it holds vonnel.ini.preset,
// else empty.
QString installedDataFolder(const QString& programDir, const QString& dataFromProgram);

// Fills appPath from the installed data folder. A new folder (missing or
// empty) is created and gets everything, vonnel.ini made from the preset.
// A folder in use gets only the companions it lacks, never vonnel.ini: a
// vonnel.ini lost later is the repair's business. Existing files are kept.
// Returns the names copied, relative to appPath.
QStringList seedAppFolder(const QString& appPath, const QString& dataFolder);

}  // namespace vonnel
