#include "shell/dialogs/LockDialogs.h"

#include "access/Encryption.h"
#include "access/LockForms.h"
#include "access/PasswordStore.h"
#include "shell/FrmMain.h"
#include "core/MainModel.h"
#include "core/CopyContext.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace vonnel {

UnlockDialog::UnlockDialog(FrmMain& frm, FrmUnlock& form, QWidget* parent)
    : QDialog(parent), m_form(form), m_edit(new QLineEdit(this))
{
    setWindowTitle(frm.ctx().translate(FrmUnlock::title()));
    setModal(true);
    auto* picture = new QToolButton(this);
    picture->setObjectName(QStringLiteral("imgLock"));
    picture->setAutoRaise(true);
    picture->setIcon(style()->standardIcon(QStyle::SP_MessageBoxWarning));
    picture->setIconSize(QSize(32, 32));
    m_edit->setObjectName(QStringLiteral("txtUnlock"));
    m_edit->setEchoMode(QLineEdit::Password);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);

    auto* right = new QVBoxLayout;
    right->addWidget(new QLabel(frm.ctx().translate(FrmUnlock::label()), this));
    right->addWidget(m_edit);
    auto* top = new QHBoxLayout;
    top->addWidget(picture, 0, Qt::AlignTop);
    top->addLayout(right);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(buttons);

    connect(picture, &QToolButton::clicked, this, &UnlockDialog::imgLock_Click);
    connect(buttons, &QDialogButtonBox::accepted, this, &UnlockDialog::OKButton_Click);
    connect(buttons, &QDialogButtonBox::rejected, this, &UnlockDialog::CancelButton_Click);
}

void UnlockDialog::imgLock_Click()
{
    m_form.txtUnlock = m_edit->text();
    m_form.imgLock_Click();
}

void UnlockDialog::OKButton_Click()
{
    m_form.txtUnlock = m_edit->text();
    m_form.OKButton_Click();
    m_edit->setText(m_form.txtUnlock);
    if (m_form.closed)
        accept();
}

void UnlockDialog::CancelButton_Click()
{
    m_form.CancelButton_Click();
    reject();
}

PassLockDialog::PassLockDialog(FrmMain& frm, FrmPassLock& form, QWidget* parent)
    : QDialog(parent), m_form(form), m_pass(new QLineEdit(this)), m_password(new QLineEdit(this))
{
    // Each window says which of the two passwords it sets.
    const QString level = form.level();
    setWindowTitle(MainModel::kTitle + QStringLiteral(" - ") + frm.ctx().translate(FrmPassLock::levelName(level)));
    setModal(true);
    auto* heading = new QLabel(QStringLiteral("<b>%1</b><br>%2")
                                   .arg(frm.ctx().translate(FrmPassLock::levelName(level)).toHtmlEscaped(),
                                        frm.ctx().translate(FrmPassLock::levelPurpose(level)).toHtmlEscaped()),
                               this);
    heading->setObjectName(QStringLiteral("lblLevel"));
    m_pass->setObjectName(QStringLiteral("txtPass"));
    m_password->setObjectName(QStringLiteral("txtPassword"));
    m_pass->setEchoMode(QLineEdit::Password);
    m_password->setEchoMode(QLineEdit::Password);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addWidget(new QLabel(frm.ctx().translate(FrmPassLock::captionTop()), this));
    layout->addWidget(new QLabel(frm.ctx().translate(FrmPassLock::labelPass()), this));
    layout->addWidget(m_pass);
    layout->addWidget(new QLabel(frm.ctx().translate(FrmPassLock::labelPassword()), this));
    layout->addWidget(m_password);
    layout->addWidget(new QLabel(frm.ctx().translate(FrmPassLock::captionBottom()), this));
    layout->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::accepted, this, &PassLockDialog::cmdOK_Click);
    connect(buttons, &QDialogButtonBox::rejected, this, &PassLockDialog::cmdCancel_Click);
}

void PassLockDialog::cmdOK_Click()
{
    m_form.txtPass = m_pass->text();
    m_form.txtPassword = m_password->text();
    m_form.cmdOK_Click();
    m_pass->setText(m_form.txtPass);
    m_password->setText(m_form.txtPassword);
    if (m_form.closed)
        accept();
}

void PassLockDialog::cmdCancel_Click()
{
    m_form.cmdCancel_Click();
    reject();
}

void installLockDialogs(FrmMain& frm)
{
    PasswordStore& store = frm.encryption().passwords();
    store.unlockScreen = [&frm](FrmUnlock& form) {
        UnlockDialog dialog(frm, form);
        dialog.exec();
        if (!form.closed)  // closed by the window's own close box
            form.CancelButton_Click();
    };
    store.passLockScreen = [&frm](FrmPassLock& form) {
        PassLockDialog dialog(frm, form);
        dialog.exec();
        if (!form.closed)
            form.cmdCancel_Click();
    };
}

}  // namespace vonnel
