#pragma once
// The windows of the start-up and away locks: masked boxes bound to the
// password forms. Installed on a copy that has windows.

#include <QDialog>

class QLineEdit;

namespace vonnel {

class FrmMain;
class FrmPassLock;
class FrmUnlock;

class UnlockDialog : public QDialog {
    Q_OBJECT
public:
    UnlockDialog(FrmMain& frm, FrmUnlock& form, QWidget* parent = nullptr);
    QLineEdit* txtUnlock() const { return m_edit; }

    void OKButton_Click();
    void CancelButton_Click();
    void imgLock_Click();

private:
    FrmUnlock& m_form;
    QLineEdit* m_edit;
};

class PassLockDialog : public QDialog {
    Q_OBJECT
public:
    PassLockDialog(FrmMain& frm, FrmPassLock& form, QWidget* parent = nullptr);
    QLineEdit* txtPass() const { return m_pass; }
    QLineEdit* txtPassword() const { return m_password; }

    void cmdOK_Click();
    void cmdCancel_Click();

private:
    FrmPassLock& m_form;
    QLineEdit* m_pass;
    QLineEdit* m_password;
};

// Has the copy's password store run these windows instead of input boxes.
void installLockDialogs(FrmMain& frm);

}  // namespace vonnel
