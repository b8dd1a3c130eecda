#pragma once
// The command line of a start, and the commands a second start hands over
// through Command.ini.

#include <QObject>
#include <QString>
#include <utility>
#include <functional>

namespace vonnel {

class FrmMain;
class Prompter;

// The help box text of the command line.
QString commandHelpText();

// Syntax check: "NULL" for no command; a bare host gets a ":" added; a help
// switch shows the help box and sets helpShown (the program then ends).
QString parseCommandLine(const QString& text, Prompter& prompter, bool* helpShown);
// The address command as host and port (empty when none): "host:port",
// "host", and IPv6 as "[address]:port" or the bare address.
std::pair<QString, QString> splitCommandAddress(const QString& text);

// The interpreter of one copy: obeys the start's own command line and
// polls Command.ini on tTimer2.
class CommandControl : public QObject {
    Q_OBJECT
public:
    explicit CommandControl(FrmMain& frm);

    // "Input text", "Key Enter/Space/Backspace", "Cmd word", or an address
    // "host:port" (port optional). Words are compared in any case.
    void runCommand(const QString& text);
    // One poll of Command.ini: a waiting command is taken, the file
    // deleted, and the command checked and run.
    void tTimer2_Timer();
    QString commandFile() const;

    // The outgoing connection to the address just written to the connect
    // dialog's keys `Previous IP Address` and `Connect Port` (the port is
    // empty when the command gave none). Wired to the connect procedure.
    std::function<void(const QString& host, const QString& port)> connectToAddress;
    // "Cmd Mute": the mute menu entry of the sound subsystem.
    std::function<void()> mnuMute_Click;

private:
    FrmMain& m_frm;
};

}  // namespace vonnel
