#pragma once
// The two windows of the access tools: frmSecurity, the overview of both
// passwords, and frmEncrypt, the hand tool that enciphers a text under a
// typed key. Each binds its boxes and buttons to its form's logic.

#include <QDialog>
#include <memory>

class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace vonnel {

class FrmMain;
class FrmSecurity;
class FrmEncrypt;

class SecurityDialog : public QDialog {
    Q_OBJECT
public:
    SecurityDialog(FrmMain& frm, QWidget* parent = nullptr);
    ~SecurityDialog() override;

    FrmSecurity& form() const { return *m_form; }
    void cmdSetPass1_Click();
    void cmdSetPass2_Click();
    void OKButton_Click();

private:
    void refill();

    FrmMain& m_frm;
    std::unique_ptr<FrmSecurity> m_form;
    QLineEdit* m_pass1;
    QLineEdit* m_pass2;
    QLabel* m_stLock;
    QLabel* m_awLock;
};

class EncryptDialog : public QDialog {
    Q_OBJECT
public:
    EncryptDialog(FrmMain& frm, QWidget* parent = nullptr);
    ~EncryptDialog() override;

    FrmEncrypt& form() const { return *m_form; }
    void cmdEncrypt_Click();
    void cmdDecrypt_Click();

private:
    void take();
    void showResult();

    FrmMain& m_frm;
    std::unique_ptr<FrmEncrypt> m_form;
    QLineEdit* m_key;
    QPlainTextEdit* m_text;
    QPlainTextEdit* m_result;
};

// A padlock drawn closed or open, for the lock pictures.
QPixmap lockPicture(bool closed, int size = 32);

}  // namespace vonnel
