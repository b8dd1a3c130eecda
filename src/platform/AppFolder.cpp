#include "platform/AppFolder.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

namespace vonnel {

namespace {

const QString kIni = QStringLiteral("vonnel.ini");
const QString kPreset = QStringLiteral("vonnel.ini.preset");

QString withSlash(QString path)
{
    path = QDir(path).absolutePath();
    if (!path.endsWith(QLatin1Char('/')))
        path += QLatin1Char('/');
    return path;
}

// Installed files are read-only for the user; the copies are the user's.
bool copyWritable(const QString& from, const QString& to)
{
    QDir().mkpath(QFileInfo(to).absolutePath());
    if (!QFile::copy(from, to))
        return false;
    QFile(to).setPermissions(QFile(to).permissions() | QFileDevice::ReadOwner |
                             QFileDevice::WriteOwner);
    return true;
}

}  // namespace

AppFolderChoice chooseAppFolder(const AppFolderInputs& in)
{
    AppFolderChoice out;
    out.seedFrom = in.installedData;
    if (!in.appPathArgument.isEmpty())
        out.appPath = in.appPathArgument;
    else if (!in.vonnelHome.isEmpty())
        out.appPath = in.vonnelHome;
    else if (in.installedData.isEmpty())
        out.appPath = in.programDir;
    else if (QDir::isAbsolutePath(in.xdgDataHome))
        out.appPath = in.xdgDataHome + QStringLiteral("/vonnel");
    else
        out.appPath = in.home + QStringLiteral("/.local/share/vonnel");
    out.appPath = withSlash(out.appPath);
    return out;
}

QString installedDataFolder(const QString& programDir, const QString& dataFromProgram)
{
    if (programDir.isEmpty() || dataFromProgram.isEmpty())
        return {};
    const QString data = QDir::cleanPath(QDir(programDir).absoluteFilePath(dataFromProgram));
    // The build folder holds the preset too, beside the program: only a
    // separate data folder says "installed".
    if (data == QDir::cleanPath(QDir(programDir).absolutePath()))
        return {};
    return QFileInfo(data + QLatin1Char('/') + kPreset).isFile() ? data : QString();
}

QStringList seedAppFolder(const QString& appPath, const QString& dataFolder)
{
    QStringList copied;
    if (dataFolder.isEmpty() || !QFileInfo(dataFolder).isDir())
        return copied;
    const QDir app(appPath);
    const bool fresh =
        !app.exists() || app.isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    if (!app.exists() && !QDir().mkpath(app.absolutePath()))
        return copied;

    const QDir data(dataFolder);
    QDirIterator it(dataFolder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString from = it.next();
        const QString name = data.relativeFilePath(from);
        // The settings come from the preset alone.
        if (name == kIni)
            continue;
        if (QFileInfo::exists(app.filePath(name)))
            continue;
        if (copyWritable(from, app.filePath(name)))
            copied << name;
    }
    if (fresh && !QFileInfo::exists(app.filePath(kIni)) &&
        copyWritable(data.filePath(kPreset), app.filePath(kIni)))
        copied << kIni;
    copied.sort();
    return copied;
}

}  // namespace vonnel
