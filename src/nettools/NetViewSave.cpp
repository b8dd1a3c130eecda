#include "nettools/NetViewSave.h"

#include "core/Cp1252.h"
#include "platform/Prompter.h"

#include <QFile>
#include <QFileInfo>

namespace vonnel {

QString saveNetViewList(Prompter& prompter, const QString& listText)
{
    FileRequest request;
    request.save = true;
    request.title = QStringLiteral("Save");
    request.filter = QStringLiteral("All Files|*.*|Text Files|*.txt");
    QString path = prompter.file(request);
    if (path.isEmpty())
        return QString();
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".txt");
    if (QFileInfo::exists(path)) {
        const Answer a = prompter.msgBox(path + QStringLiteral(" is already exist.\r\n") +
                                             QStringLiteral("Do you want to overwrite it?"),
                                         MsgStyle::YesNo | MsgStyle::Exclamation,
                                         QStringLiteral("Save"));
        if (a != Answer::Yes)
            return QString();
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        file.write(toCp1252(listText)) < 0) {
        prompter.msgBox(QStringLiteral("Save Ping List Error: ") + file.errorString(),
                        MsgStyle::Exclamation);
        return QString();
    }
    return path;
}

}  // namespace vonnel
