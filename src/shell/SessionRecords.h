#pragma once
// Session records: the text of a session saved at its end and by hand.

#include <QObject>
#include <QString>

namespace vonnel {

class FrmMain;

class SessionRecords : public QObject {
    Q_OBJECT
public:
    explicit SessionRecords(FrmMain& frm);

    // Runs when a session ends: counts it and, unless saving is off, writes
    // the message form into the SmartSave folder as "mmddhhmm.txt".
    void SmartSave();
    // The end of a session as the connection reports it, which may come
    // more than once for one session, and also for a call that never
    // connected: only the first end of an opened session is saved, with its
    // end time stamped if the path that ended it did not.
    void sessionEnded();
    // Save As: the message form (filter 2) or the chat form (filter 3).
    void mnuSave_Click();

    // The header line, without its line end.
    QString headerLine() const;
    // The two forms of a record, as written.
    QString messageFormat() const;
    QString chatFormat() const;
    // Where SmartSave writes now.
    QString smartSavePath() const;

private:
    bool writeRecord(const QString& path, const QString& text, QString* error) const;

    FrmMain& m_frm;
    // A session was opened and its record is still to be saved.
    bool m_open = false;
};

}  // namespace vonnel
