#pragma once
// Failures met while one arrival is taken apart. A handler that meets one
// notes it here and goes on; the receive loop says it after the stage that
// met it ("SPK 5 ...", "File Fransfer 75 ..."), or at the end of the
// arrival as "DataArrival Error". A peer decides what arrives, so a peer
// that sends the same broken frame again and again must not bury the user
// in boxes: each kind of box is shown, and written to error.log, at most
// once per session. The handlers go on after a box in every case.

#include <QSet>
#include <QString>

namespace vonnel {

class Prompter;
class Logs;

class ArrivalFaults {
public:
    ArrivalFaults(Prompter& prompter, Logs& logs) : m_prompter(prompter), m_logs(logs) {}

    // Number and description of a failing statement. The first one of a
    // stage stands until it is reported.
    void raise(int number, const QString& description);
    bool pending() const { return m_number != 0; }
    void clear();

    // After a handler stage: prefix + number + " " + description, when a
    // failure stands; it is cleared either way.
    void reportStage(const QString& prefix);
    // At the end of an arrival: a failure other than number 5 gives the
    // "DataArrival Error" box with what was left of the text.
    void reportArrival(const QString& remaining);

    // A new session: every kind may be shown once more.
    void beginSession() { m_shown.clear(); }

private:
    void show(const QString& kind, const QString& text);

    Prompter& m_prompter;
    Logs& m_logs;
    int m_number = 0;
    QString m_description;
    // Kinds already shown in this session.
    QSet<QString> m_shown;
};

// Failure numbers the receive path gives, in the run-time's own numbering.
namespace fault {
constexpr int kInvalidCall = 5;     // "Invalid procedure call or argument"
constexpr int kTypeMismatch = 13;   // a text that should hold a number does not
constexpr int kBadFile = 52;        // "Bad file name or number": no file is open
constexpr int kFileAccess = 75;     // "Path/File access error": the write failed
}  // namespace fault

}  // namespace vonnel
