#pragma once
// The process: its arguments, the choice between windows and headless, and
// the catching of exceptions that escape an event handler.

#include <QApplication>
#include <QString>
#include <QStringList>

namespace vonnel {

class Prompter;

struct ProgramArguments {
    QString appPath;      // --app-path, else $VONNEL_HOME, else the program's folder
    bool headless = false;
    QString answersFile;  // --answers
    QStringList command;  // the rest
    QString error;        // set when the arguments could not be read
};

ProgramArguments parseProgramArguments(const QStringList& args);

class Application : public QApplication {
public:
    Application(int& argc, char** argv);
    void setPrompter(Prompter* p) { m_prompter = p; }
    // An ordinary exception in an event handler is reported, and the
    // program goes on.
    bool notify(QObject* receiver, QEvent* event) override;

private:
    Prompter* m_prompter = nullptr;
};

// Runs the whole program; the return is the process's exit code.
int runProgram(int argc, char** argv);

}  // namespace vonnel
