#include "shell/CommandControl.h"

#include "platform/Prompter.h"

namespace vonnel {

QString commandHelpText()
{
    const QString blank = QStringLiteral("\r\n\r\n");
    return QStringLiteral("Example:") + blank +
           QStringLiteral("Vonnel.exe <IP address>:<Port>    Port address is optional.") + blank +
           QStringLiteral("Vonnel.exe 192.168.0.1:2500") + blank +
           QStringLiteral("Vonnel.exe Input <Input your text here>") + blank +
           QStringLiteral("Vonnel.exe Key <Enter / Space / Backspace>") + blank +
           QStringLiteral("Vonnel.exe Cmd <ClearScreen / Refresh / Override / Mute / Disconnect / Exit>") +
           blank + QString(57, QLatin1Char('_')) + QStringLiteral("\r\n") +
           QStringLiteral("Commands can be applied in a batch file. It should be paused ") +
           QStringLiteral("for 5 seconds betweewn each commands depended on the advanced ") +
           QStringLiteral("settings. Please also turn off all the confirmation and security ") +
           QStringLiteral("options as well.");
}

QString parseCommandLine(const QString& text, Prompter& prompter, bool* helpShown)
{
    if (helpShown)
        *helpShown = false;
    if (text.isEmpty())
        return QStringLiteral("NULL");
    QString result = text;
    if (result.indexOf(QLatin1Char(':')) < 1)
        result += QLatin1Char(':');
    // Help switches are tested on the text as given, before the ":".
    for (const QString& t : {text, text.toLower()}) {
        if (t == QLatin1String("?") || t == QLatin1String("/?") || t == QLatin1String("/help") ||
            t == QLatin1String("help") || t.startsWith(QLatin1Char('/'))) {
            prompter.msgBox(commandHelpText(), MsgStyle::Information, QStringLiteral("Vonnel"));
            if (helpShown)
                *helpShown = true;
            return QStringLiteral("NULL");
        }
    }
    return result;
}

}  // namespace vonnel
