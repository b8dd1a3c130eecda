#pragma once
// The connection log (vonnel.log, kept across runs) and the failure record
// (error.log, this run only). Both are ini files: key, " - ", "=", text.

#include <QDateTime>
#include <QString>

namespace vonnel {

class Clock;

class Logs {
public:
    Logs(QString appPath, const Clock& clock) : m_appPath(std::move(appPath)), m_clock(clock) {}

    QString sessionLogPath() const { return m_appPath + QStringLiteral("vonnel.log"); }
    QString errorLogPath() const { return m_appPath + QStringLiteral("error.log"); }

    // "> " + text under the key date + " " + time + " - ". Two events in
    // one second share a key, and the later one stays.
    void connection(const QString& text);
    // A frame that could not be handled, under "eData " + running count.
    void eData(const QString& data);
    // A failure of the transfer dispatcher: running number + location words.
    void failure(const QString& location, const QString& description);
    // The text of a fatal fault, under "Error " + running number.
    void fatal(const QString& text);

    // The key of a connection line for a given moment.
    static QString stampKey(const QDateTime& when);

    // error.log never grows past this many bytes: when an entry would take
    // it over, the older half of its entries goes first.
    static constexpr qint64 kErrorLogCap = 1024 * 1024;

private:
    // Every key of error.log is new (a running number), so an entry is
    // added at the end of the file: the cost of an entry does not grow with
    // the log, whatever a peer makes the program record.
    void appendError(const QString& key, const QString& value);

    QString m_appPath;
    const Clock& m_clock;
    int m_eData = 0;
    int m_failures = 0;
    int m_fatal = 0;
};

}  // namespace vonnel
