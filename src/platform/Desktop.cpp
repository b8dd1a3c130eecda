#include "platform/Desktop.h"

#include <QDesktopServices>
#include <QProcess>
#include <QUrl>

namespace vonnel {

bool Desktop::openUrl(const QString& url)
{
    return QDesktopServices::openUrl(QUrl::fromUserInput(url));
}

bool Desktop::openFile(const QString& path)
{
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

bool Desktop::startProgram(const QString& program, const QStringList& args)
{
    return QProcess::startDetached(program, args);
}

}  // namespace vonnel
