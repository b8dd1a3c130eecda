#pragma once
// frmLogin: the address and port to call, the history of addresses, and
// the running report of an attempt. cmdOK_Click runs the whole attempt;
// a window binds its controls to these fields and follows changed(),
// which every change of a field emits.

#include <QObject>
#include <QString>
#include <QStringList>

#include "core/Watched.h"

namespace vonnel {

class CopyContext;
class MainModel;
class Session;
class Connection;

class LoginDialog : public QObject, public FieldOwner {
    Q_OBJECT
public:
    LoginDialog(CopyContext& ctx, MainModel& model, Session& session, Connection& connection,
                QObject* parent = nullptr);

    Watched<QString> cmbIPadr{this};        // the text of the combo box
    Watched<QStringList> cmbList{this};     // its list: the address history
    Watched<QString> txtConnectPort{this};
    Watched<QString> lblStatus{this};
    Watched<QString> txtStatus{this};       // lines ended by "\r\n"
    Watched<bool> fraConnectStatusVisible{this, false};
    Watched<bool> cmdOKEnabled{this, true};
    Watched<bool> cmdCancelEnabled{this, true};
    Watched<bool> cmdAbortVisible{this, false};
    Watched<QString> cmdAbortCaption{this, QStringLiteral("Close")};
    Watched<QString> cmdAbortTag{this, QStringLiteral("Close")};
    Watched<QString> cmdAbortToolTip{this};
    Watched<bool> unloaded{this, false};

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

Q_SIGNALS:
    // Any of the fields above changed.
    void changed();

private:
    void fieldChanged(const void*) override { Q_EMIT changed(); }

    CopyContext& m_ctx;
    MainModel& m_model;
    Session& m_session;
    Connection& m_connection;
};

}  // namespace vonnel
