#include "shell/dialogs/ConnectionDialogs.h"

#include "connection/Connection.h"
#include "connection/IpList.h"
#include "connection/LoginDialog.h"
#include "connection/PropertyDialog.h"
#include "shell/FrmMain.h"
#include "shell/WindowLook.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "core/MainModel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace vonnel {

namespace {

void setTextIfChanged(QLineEdit* e, const QString& t)
{
    if (e->text() != t)
        e->setText(t);
}

// --- frmLogin -------------------------------------------------------------------

class LoginWindow : public QDialog {
public:
    LoginWindow(FrmMain& frm, LoginDialog& d, QWidget* parent) : QDialog(parent), m_d(d)
    {
        setWindowTitle(frm.ctx().translate(QStringLiteral("Connect"), QStringLiteral("Connect")));
        m_address = new QComboBox(this);
        m_address->setEditable(true);
        m_port = new QLineEdit(this);
        m_status = new QLabel(this);
        m_report = new QPlainTextEdit(this);
        m_report->setReadOnly(true);
        m_frame = new QGroupBox(this);
        auto* frameLayout = new QVBoxLayout(m_frame);
        frameLayout->addWidget(m_status);
        frameLayout->addWidget(m_report);
        m_ok = new QPushButton(frm.ctx().translate(QStringLiteral("OK"), QStringLiteral("OK")), this);
        m_cancel = new QPushButton(frm.ctx().translate(QStringLiteral("Cancel"), QStringLiteral("Cancel")), this);
        m_abort = new QPushButton(this);
        auto* clear = new QPushButton(frm.ctx().translate(QStringLiteral("Clear"), QStringLiteral("Clear")), this);
        auto* browse = new QPushButton(frm.ctx().translate(QStringLiteral("Browse"), QStringLiteral("Browse...")), this);
        auto* help = new QPushButton(frm.ctx().translate(QStringLiteral("Help"), QStringLiteral("Help")), this);
        m_ok->setDefault(true);

        auto* form = new QFormLayout;
        form->addRow(frm.ctx().translate(QStringLiteral("IP address"), QStringLiteral("Address")), m_address);
        form->addRow(frm.ctx().translate(QStringLiteral("Port"), QStringLiteral("Port")), m_port);
        auto* buttons = new QHBoxLayout;
        for (QPushButton* b : {m_ok, m_cancel, m_abort, clear, browse, help})
            buttons->addWidget(b);
        auto* layout = new QVBoxLayout(this);
        layout->addLayout(form);
        layout->addWidget(m_frame);
        layout->addLayout(buttons);

        connect(m_address, &QComboBox::currentTextChanged, this, [this](const QString& t) { m_d.cmbIPadr = t; });
        connect(m_port, &QLineEdit::textEdited, this, [this](const QString& t) { m_d.txtConnectPort = t; });
        connect(m_ok, &QPushButton::clicked, this, [this] { m_d.cmdOK_Click(); });
        connect(m_cancel, &QPushButton::clicked, this, [this] { m_d.cmdCancel_Click(); });
        connect(m_abort, &QPushButton::clicked, this, [this] { m_d.cmdAbortConnect_Click(); });
        connect(clear, &QPushButton::clicked, this, [this] { m_d.cmdClearRec_Click(); });
        connect(browse, &QPushButton::clicked, this, [this] { m_d.cmdBrowse_Click(); });
        connect(help, &QPushButton::clicked, this, [this] { m_d.cmdHelp_Click(); });
        connect(&m_d, &LoginDialog::changed, this, &LoginWindow::refresh);
        refresh();
    }

protected:
    void reject() override
    {
        // Esc and the window's close box: the abort button's Esc rule, else
        // a plain close.
        if (m_abort->hasFocus())
            m_d.cmdAbortConnect_Escape();
        else
            m_d.unload();
    }

private:
    void refresh()
    {
        if (m_d.unloaded) {
            done(m_d.cmdOKEnabled ? Rejected : Accepted);
            return;
        }
        QStringList items;
        for (int i = 0; i < m_address->count(); ++i)
            items << m_address->itemText(i);
        if (items != m_d.cmbList) {
            const QSignalBlocker block(m_address);
            m_address->clear();
            m_address->addItems(m_d.cmbList);
        }
        if (m_address->currentText() != m_d.cmbIPadr) {
            const QSignalBlocker block(m_address);
            m_address->setEditText(m_d.cmbIPadr);
        }
        setTextIfChanged(m_port, m_d.txtConnectPort);
        m_status->setText(m_d.lblStatus);
        QString shown = m_d.txtStatus;
        shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        if (shown.endsWith(QLatin1Char('\n')))
            shown.chop(1);
        if (m_report->toPlainText() != shown) {
            m_report->setPlainText(shown);
            m_report->moveCursor(QTextCursor::End);
        }
        m_frame->setVisible(m_d.fraConnectStatusVisible);
        m_ok->setEnabled(m_d.cmdOKEnabled);
        m_cancel->setEnabled(m_d.cmdCancelEnabled);
        m_abort->setVisible(m_d.cmdAbortVisible);
        m_abort->setText(m_d.cmdAbortCaption);
        m_abort->setToolTip(m_d.cmdAbortToolTip);
    }

    LoginDialog& m_d;
    QComboBox* m_address;
    QLineEdit* m_port;
    QLabel* m_status;
    QPlainTextEdit* m_report;
    QGroupBox* m_frame;
    QPushButton *m_ok, *m_cancel, *m_abort;
};

// --- frmProperty ----------------------------------------------------------------

class PropertyWindow : public QDialog {
public:
    PropertyWindow(FrmMain& frm, PropertyDialog& d, QWidget* parent) : QDialog(parent), m_d(d)
    {
        setWindowTitle(frm.ctx().translate(QStringLiteral("Properties"), QStringLiteral("Properties")));
        auto field = [this](bool editable) {
            auto* e = new QLineEdit(this);
            e->setReadOnly(!editable);
            return e;
        };
        m_computer = field(false);
        m_host = field(false);
        m_ip = field(false);
        m_local = field(true);
        m_local5 = field(false);
        m_remote = field(true);
        m_remote5 = field(false);
        m_sysMsg = new QLabel(this);
        m_sysMsg->setWordWrap(true);
        auto* form = new QFormLayout;
        form->addRow(frm.ctx().translate(QStringLiteral("Computer Name")), m_computer);
        form->addRow(frm.ctx().translate(QStringLiteral("Host"), QStringLiteral("Host")), m_host);
        form->addRow(frm.ctx().translate(QStringLiteral("Address")), m_ip);
        auto* localRow = new QHBoxLayout;
        localRow->addWidget(m_local);
        localRow->addWidget(new QLabel(QStringLiteral("-"), this));
        localRow->addWidget(m_local5);
        form->addRow(frm.ctx().translate(QStringLiteral("Local Port")), localRow);
        auto* remoteRow = new QHBoxLayout;
        remoteRow->addWidget(m_remote);
        remoteRow->addWidget(new QLabel(QStringLiteral("-"), this));
        remoteRow->addWidget(m_remote5);
        form->addRow(frm.ctx().translate(QStringLiteral("Remote Port")), remoteRow);

        auto button = [this](const QString& text) { return new QPushButton(text, this); };
        auto* hosts = button(frm.ctx().translate(QStringLiteral("Hosts File"), QStringLiteral("Hosts File...")));
        auto* black = button(frm.ctx().translate(QStringLiteral("Black List")));
        auto* white = button(frm.ctx().translate(QStringLiteral("White List")));
        auto* ok = button(frm.ctx().translate(QStringLiteral("OK"), QStringLiteral("OK")));
        m_cancel = button(frm.ctx().translate(QStringLiteral("Cancel"), QStringLiteral("Cancel")));
        auto* apply = button(frm.ctx().translate(QStringLiteral("Apply"), QStringLiteral("Apply")));
        m_apply = apply;
        m_ok = ok;
        auto* restore = button(frm.ctx().translate(QStringLiteral("Restore"), QStringLiteral("Restore")));
        auto* help = button(frm.ctx().translate(QStringLiteral("Help"), QStringLiteral("Help")));
        ok->setDefault(true);
        auto* tools = new QHBoxLayout;
        for (QPushButton* b : {hosts, black, white})
            tools->addWidget(b);
        auto* buttons = new QHBoxLayout;
        for (QPushButton* b : {ok, m_cancel, apply, restore, help})
            buttons->addWidget(b);
        auto* layout = new QVBoxLayout(this);
        layout->addLayout(form);
        layout->addLayout(tools);
        layout->addWidget(m_sysMsg);
        layout->addLayout(buttons);

        connect(m_local, &QLineEdit::textEdited, this, [this](const QString& t) { m_d.txtLocalPort = t; });
        connect(m_remote, &QLineEdit::textEdited, this, [this](const QString& t) { m_d.txtRemotePort = t; });
        connect(hosts, &QPushButton::clicked, this, [this] { m_d.cmdHostConfig_Click(); });
        connect(black, &QPushButton::clicked, this, [this] { m_d.cmdBadIPLst_Click(); });
        connect(white, &QPushButton::clicked, this, [this] { m_d.cmdSafeLst_Click(); });
        connect(ok, &QPushButton::clicked, this, [this] { m_d.cmdOK_Click(); });
        connect(m_cancel, &QPushButton::clicked, this, [this] { m_d.cmdCancel_Click(); });
        connect(apply, &QPushButton::clicked, this, [this] { m_d.cmdApply_Click(); });
        connect(restore, &QPushButton::clicked, this, [this] { m_d.cmdRestore_Click(); });
        connect(help, &QPushButton::clicked, this, [this] { m_d.cmdHelp_Click(); });
        connect(&m_d, &PropertyDialog::changed, this, &PropertyWindow::refresh);
        // The logic enables OK, Cancel and Apply through the controls.
        connect(&frm.model().controls, &Controls::changed, this, [this](Control c) {
            if (c == Control::frmProperty_cmdApply || c == Control::frmProperty_cmdOK ||
                c == Control::frmProperty_cmdCancel)
                refresh();
        });
        refresh();
    }

protected:
    void reject() override
    {
        if (m_d.cmdCancelEnabled())
            m_d.cmdCancel_Click();
    }

private:
    void refresh()
    {
        if (m_d.unloaded) {
            done(Accepted);
            return;
        }
        setTextIfChanged(m_computer, m_d.txtComputerName);
        setTextIfChanged(m_host, m_d.txtLocalHost);
        setTextIfChanged(m_ip, m_d.txtLocalIP);
        setTextIfChanged(m_local, m_d.txtLocalPort);
        setTextIfChanged(m_local5, m_d.txtLocalPort5);
        setTextIfChanged(m_remote, m_d.txtRemotePort);
        setTextIfChanged(m_remote5, m_d.txtRemotePort5);
        m_sysMsg->setText(m_d.lblSysMsg);
        m_sysMsg->setVisible(!m_d.lblSysMsg->isEmpty());
        m_cancel->setEnabled(m_d.cmdCancelEnabled());
        m_apply->setEnabled(m_d.cmdApplyEnabled());
        m_ok->setEnabled(m_d.cmdOKEnabled());
    }

    QPushButton* m_apply = nullptr;
    QPushButton* m_ok = nullptr;
    PropertyDialog& m_d;
    QLineEdit *m_computer, *m_host, *m_ip, *m_local, *m_local5, *m_remote, *m_remote5;
    QLabel* m_sysMsg;
    QPushButton* m_cancel;
};

// --- frmIPBlocking / frmIPPermit ---------------------------------------------------

class IpListWindow : public QDialog {
public:
    IpListWindow(FrmMain& frm, IpListDialog& d, QWidget* parent) : QDialog(parent), m_d(d)
    {
        StayOnTop(this, frm);
        m_check = new QCheckBox(this);
        m_list = new QListWidget(this);
        m_text = new QLineEdit(this);
        m_add = new QPushButton(frm.ctx().translate(QStringLiteral("Add"), QStringLiteral("Add")), this);
        m_remove = new QPushButton(frm.ctx().translate(QStringLiteral("Remove"), QStringLiteral("Remove")), this);
        m_ok = new QPushButton(frm.ctx().translate(QStringLiteral("OK"), QStringLiteral("OK")), this);
        auto* cancel = new QPushButton(frm.ctx().translate(QStringLiteral("Cancel"), QStringLiteral("Cancel")), this);
        m_hint = new QLabel(this);
        m_msg = new QLabel(this);
        m_msg->setWordWrap(true);
        auto* entry = new QHBoxLayout;
        entry->addWidget(m_text);
        entry->addWidget(m_add);
        entry->addWidget(m_remove);
        auto* buttons = new QHBoxLayout;
        buttons->addStretch();
        buttons->addWidget(m_ok);
        buttons->addWidget(cancel);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(m_check);
        layout->addWidget(m_list);
        layout->addLayout(entry);
        layout->addWidget(m_hint);
        layout->addWidget(m_msg);
        layout->addLayout(buttons);

        connect(m_check, &QCheckBox::clicked, this, [this](bool on) { m_d.chk_Click(on); });
        connect(m_text, &QLineEdit::textEdited, this, [this](const QString& t) { m_d.txt_Change(t); });
        connect(m_text, &QLineEdit::returnPressed, this, [this] { m_d.txt_KeyPress(QLatin1Char('\r')); });
        connect(m_add, &QPushButton::clicked, this, [this] { m_d.cmdAdd_Click(); });
        connect(m_remove, &QPushButton::clicked, this, [this] { m_d.cmdRemove_Click(); });
        connect(m_list, &QListWidget::currentRowChanged, this, [this](int row) {
            if (row >= 0)
                m_d.lst_Click(row);
        });
        connect(m_ok, &QPushButton::clicked, this, [this] { m_d.OKButton_Click(); });
        connect(cancel, &QPushButton::clicked, this, [this] { m_d.CancelButton_Click(); });
        connect(&m_d, &IpListDialog::changed, this, &IpListWindow::refresh);
        refresh();
    }

protected:
    void reject() override { m_d.CancelButton_Click(); }

private:
    void refresh()
    {
        if (m_d.unloaded) {
            done(Accepted);
            return;
        }
        setWindowTitle(m_d.caption);
        m_check->setText(m_d.checkCaption);
        m_check->setChecked(m_d.chkChecked);
        QStringList shown;
        for (int i = 0; i < m_list->count(); ++i)
            shown << m_list->item(i)->text();
        if (shown != m_d.list) {
            const QSignalBlocker block(m_list);
            m_list->clear();
            m_list->addItems(m_d.list);
        }
        setTextIfChanged(m_text, m_d.text);
        m_text->setToolTip(m_d.textToolTip);
        m_hint->setText(m_d.hint);
        m_msg->setText(m_d.lblMsg);
        m_msg->setVisible(!m_d.lblMsg->isEmpty());
        m_list->setEnabled(m_d.listEnabled);
        m_text->setEnabled(m_d.textEnabled);
        m_add->setEnabled(m_d.cmdAddEnabled);
        m_remove->setEnabled(m_d.cmdRemoveEnabled);
        m_ok->setEnabled(m_d.okEnabled);
    }

    IpListDialog& m_d;
    QCheckBox* m_check;
    QListWidget* m_list;
    QLineEdit* m_text;
    QPushButton *m_add, *m_remove, *m_ok;
    QLabel *m_hint, *m_msg;
};

}  // namespace

std::optional<bool> runConnectionDialog(FrmMain& frm, Form form, QWidget* parent)
{
    if (form == Form::frmLogin) {
        LoginDialog* d = frm.connection().login();
        if (!d)
            return false;
        LoginWindow w(frm, *d, parent);
        if (!d->unloaded)
            w.exec();
        return frm.session().IsConnected();
    }
    if (form == Form::frmProperty) {
        PropertyDialog& d = frm.connection().propertyDialog();
        bool ok = false;
        {
            PropertyWindow w(frm, d, parent);
            w.exec();
            ok = d.lblSysMsg->isEmpty() && d.unloaded;
        }
        frm.connection().unloadProperty();
        return ok;
    }
    if (form == Form::frmIPBlocking || form == Form::frmIPPermit) {
        IpListDialog d(frm.ctx(), form == Form::frmIPBlocking ? IpListKind::Blocked
                                                                    : IpListKind::Permitted);
        d.Form_Load();
        IpListWindow w(frm, d, parent);
        w.exec();
        return true;
    }
    return std::nullopt;
}

}  // namespace vonnel
