#include "shell/CommandControl.h"

#include "connection/CallAddress.h"

#include "board/BoardSave.h"
#include "board/Scrivet.h"
#include "connection/PrivateLink.h"
#include "connection/Connection.h"
#include "core/IniStore.h"
#include "platform/Clipboard.h"
#include "platform/Prompter.h"
#include "shell/FrmMain.h"
#include "media/RingExchange.h"
#include "transfer/Transfer.h"
#include "wire/LiveTyping.h"
#include "connection/Session.h"
#include "platform/Winsock.h"
#include "core/CopyContext.h"

#include <QFile>

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

std::pair<QString, QString> splitCommandAddress(const QString& text)
{
    // A bare IPv6 address got the ":" of a bare host behind it.
    QString t = text;
    if (t.endsWith(QLatin1Char(':')) && parseCallAddress(t.chopped(1)).ipv6)
        t.chop(1);
    if (const CallAddress a = parseCallAddress(t); a.ipv6)
        return {a.host, a.port ? QString::number(*a.port) : QString()};
    const qsizetype colon = t.indexOf(QLatin1Char(':'));
    if (colon < 0)
        return {t, QString()};
    return {t.left(colon), t.mid(colon + 1)};
}

QString parseCommandLine(const QString& text, Prompter& prompter, bool* helpShown)
{
    if (helpShown)
        *helpShown = false;
    if (text.isEmpty())
        return QStringLiteral("NULL");
    QString result = text;
    // A bare host becomes an address with no port; the worded commands
    // ("Input ", "Key ", "Cmd ") hold a blank and stay as they are.
    if (result.indexOf(QLatin1Char(':')) < 1 && !result.contains(QLatin1Char(' ')))
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

// --- the interpreter ------------------------------------------------------------

CommandControl::CommandControl(FrmMain& frm) : QObject(&frm), m_frm(frm)
{
    connect(&frm, &FrmMain::commandGiven, this, &CommandControl::runCommand);
    connect(&frm.tTimer2(), &QTimer::timeout, this, &CommandControl::tTimer2_Timer);
}

QString CommandControl::commandFile() const
{
    return m_frm.ctx().appFile(QStringLiteral("Command.ini"));
}

void CommandControl::runCommand(const QString& text)
{
    FrmMain& f = m_frm;
    LiveTyping& typing = f.typing();
    const QString lower = text.toLower();

    // A text through the paste path, the clipboard given back afterwards.
    auto pasteThrough = [&](const QString& what) {
        const QString saved = f.ctx().clipboard().text();
        f.ctx().clipboard().setText(what);
        typing.PasteText(false);
        f.ctx().clipboard().setText(saved);
    };

    if (lower.startsWith(QLatin1String("input "))) {
        pasteThrough(text.mid(6));
        return;
    }
    if (lower.startsWith(QLatin1String("key "))) {
        const QString key = lower.mid(4);
        int code = 0;
        if (key == QLatin1String("enter")) {
            // The Return key itself, pressed and released: the same frames,
            // nothing more.
            typing.typeText(QStringLiteral("\r"));
            return;
        }
        if (key == QLatin1String("space")) {
            pasteThrough(QStringLiteral(" "));
            code = LiveTyping::vbKeySpace;
        } else if (key == QLatin1String("backspace")) {
            typing.setServerText(f.model().txtServer.text().chopped(qMin<qsizetype>(1, f.model().txtServer.length())));
            code = LiveTyping::vbKeyBack;
        } else {
            return;
        }
        typing.txtServer_KeyPress(code);
        typing.txtServer_KeyUp(code, 0);
        return;
    }
    if (lower.startsWith(QLatin1String("cmd "))) {
        const QString word = lower.mid(4);
        if (word == QLatin1String("clearscreen"))
            typing.mnuClrScr_Click();
        else if (word == QLatin1String("refresh"))
            typing.mnuRefresh_Click();
        else if (word == QLatin1String("override"))
            typing.mnuOverride_Click();
        else if (word == QLatin1String("mute")) {
            if (mnuMute_Click)
                mnuMute_Click();
        } else if (word == QLatin1String("disconnect"))
            f.connection().mnuDisconnect_Click();
        else if (word == QLatin1String("sendfile"))
            f.transfer().mnuSendFile_Click();
        else if (word == QLatin1String("scrivet"))
            f.scrivet().mnuDraw_Click();
        else if (word == QLatin1String("saveboard"))
            cmdSave_Click(f.ctx(), f.scrivet().board());
        else if (word == QLatin1String("ring"))
            f.rings().mnuBeep_Click();
        else if (word == QLatin1String("verify"))
            f.connection().privateLink().markVerified();
        else if (word == QLatin1String("exit"))
            f.requestClose(true);
        return;
    }
    if (text.contains(QLatin1Char(' ')) || text == QLatin1String("NULL") || text.isEmpty())
        return;
    const int state = f.session().winsock(f.session().sIdx).State();
    if (f.session().IsConnected() || state == Winsock::sckConnecting ||
        state == Winsock::sckResolvingHost || state == Winsock::sckHostResolved)
        return;
    const auto [host, port] = splitCommandAddress(text);
    f.ctx().writeSetting(QStringLiteral("Previous IP Address"), host);
    if (!port.isEmpty())
        f.ctx().writeSetting(QStringLiteral("Connect Port"), port);
    if (connectToAddress)
        connectToAddress(host, port);
}

void CommandControl::tTimer2_Timer()
{
    FrmMain& f = m_frm;
    if (f.ctx().ProgramExiting)
        return;
    const QString file = resolveCaseBlind(commandFile());
    if (!QFile::exists(file))
        return;
    const QString command = ReadIni(kSection, QStringLiteral("Command"), file);
    if (command.isEmpty())
        return;
    QFile::setPermissions(file, QFile::permissions(file) | QFileDevice::WriteOwner);
    QFile::remove(file);
    bool help = false;
    const QString parsed = parseCommandLine(command, f.ctx().prompter(), &help);
    if (help) {
        f.requestClose(false);
        return;
    }
    runCommand(parsed);
}

}  // namespace vonnel
