#pragma once
// frmLogin: the address and port to call, the history of addresses, and
// the running report of an attempt. cmdOK_Click runs the whole attempt;
// a window binds its controls to these fields and follows changed().

#include <QObject>
#include <QString>
#include <QStringList>

namespace vonnel {

class CopyContext;
class MainModel;
class Session;
class Connection;

class LoginDialog : public QObject {
    Q_OBJECT
public:
    LoginDialog(CopyContext& ctx, MainModel& model, Session& session, Connection& connection,
                QObject* parent = nullptr);

    QString cmbIPadr;        // the text of the combo box
    QStringList cmbList;     // its list: the address history
    QString txtConnectPort;
    QString lblStatus;
    QString txtStatus;       // lines ended by "\r\n"
    bool fraConnectStatusVisible = false;
    bool cmdOKEnabled = true;
    bool cmdCancelEnabled = true;
    bool cmdAbortVisible = false;
    QString cmdAbortCaption = QStringLiteral("Close");
    QString cmdAbortTag = QStringLiteral("Close");
    QString cmdAbortToolTip;
    bool unloaded = false;

    void Form_Load();
    void Form_Activate();
    void cmdOK_Click();
    void cmdAbortConnect_Click();
    // Esc on the abort button while a session is up closes the dialog.
    void cmdAbortConnect_Escape();
    void cmdCancel_Click();
    void cmdClearRec_Click();
    void cmdHelp_Click();
    void cmdBrowse_Click();

    // The running report.
    void appendStatus(const QString& line);  // adds the line and a line break
    QString lastStatusLine() const;
    void setLastStatusLine(const QString& text);
    void setAbort(const QString& caption, const QString& tag);
    void unload();
    void notify() { Q_EMIT changed(); }

Q_SIGNALS:
    void changed();

private:
    CopyContext& m_ctx;
    MainModel& m_model;
    Session& m_session;
    Connection& m_connection;
};

}  // namespace vonnel
