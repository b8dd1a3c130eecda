#pragma once
// The logic of the three password windows. A window binds its boxes and
// buttons to these; without windows the prompter's input boxes drive them
// (PasswordStore::runUnlock, runPassLock).

#include <QString>

namespace vonnel {

class CopyContext;
class Encryption;
class PasswordStore;

// Sets the password of store.passLevel.
class FrmPassLock {
public:
    FrmPassLock(CopyContext& ctx, PasswordStore& store);

    static QString captionTop();     // "Enter new password in the following. (Case Sensative)"
    static QString captionBottom();  // "Or, leave them empty for no password."
    static QString labelPass();      // "Choose your password:"
    static QString labelPassword();  // "Confirm your password:"
    // Which password a level sets, for the window's title and head line:
    // "Startup password" for "1st", "Away password" for "2nd".
    static QString levelName(const QString& level);
    static QString levelPurpose(const QString& level);

    // The level this window sets.
    QString level() const;

    QString txtPass;
    QString txtPassword;
    bool closed = false;

    // Stores the boxes' password and closes, or shows why not and stays.
    void cmdOK_Click();
    void cmdCancel_Click() { closed = true; }

private:
    // False (after its box) when a text holds a character the store can't keep.
    bool charactersFit(const QString& text);

    CopyContext& m_ctx;
    PasswordStore& m_store;
};

// Asks for the password of store.passLevel.
class FrmUnlock {
public:
    FrmUnlock(CopyContext& ctx, PasswordStore& store);

    static QString title();  // "Vonnel - [Locked]"
    static QString label();  // "Please enter password to unlock it"

    QString txtUnlock;
    bool closed = false;
    bool recoveryArmed = false;

    void Form_Load();
    void OKButton_Click();
    void CancelButton_Click() { closed = true; }
    // The window's picture: with "Tulip" in the box, the next OK shows the
    // password first.
    void imgLock_Click();

private:
    CopyContext& m_ctx;
    PasswordStore& m_store;
};

// The overview of both levels.
class FrmSecurity {
public:
    FrmSecurity(CopyContext& ctx, PasswordStore& store);

    // Lang.txt key: the text returned
    static QString lblStartup() { return QStringLiteral("Startup password protected"); }
    // Lang.txt key: the text returned
    static QString lblStartupNote() { return QStringLiteral("Prevent unauthorized person from usage"); }
    // Lang.txt key: the text returned
    static QString lblAway() { return QStringLiteral("Away password protected"); }
    static QString lblAwayNote()
    {
        // Lang.txt key: the text returned
        return QStringLiteral("Prevent unauthorized person from accessing during chat session");
    }

    QString txtPass1;
    QString txtPass2;
    // The closed lock shows for a filled box, the open one for an empty box.
    bool imgStLock = false;
    bool imgAwLock = false;
    bool closed = false;

    void Form_Load();
    void cmdSetPass1_Click() { setPass(QStringLiteral("1st")); }
    void cmdSetPass2_Click() { setPass(QStringLiteral("2nd")); }
    void OKButton_Click();
    void cmdHelp_Click();

private:
    void setPass(const QString& level);
    void refill();

    CopyContext& m_ctx;
    PasswordStore& m_store;
};

// The hand tool: enciphers or deciphers a text under a typed key.
class FrmEncrypt {
public:
    FrmEncrypt(CopyContext& ctx, Encryption& cipher);

    // Lang.txt key: the text returned
    static QString title() { return QStringLiteral("128 Bit Encryption"); }

    QString txtKey;
    QString txtText;
    QString txtResult;
    // Loaded from the settings and the lookup at load.
    QString colour, colourFg, colourBk;
    QString lblKey, captionEncrypt, captionDecrypt;

    void Form_Load();
    void cmdEncrypt_Click();
    void cmdDecrypt_Click();
    void cmdHelp_Click();

private:
    bool keyGiven();

    CopyContext& m_ctx;
    Encryption& m_cipher;
};

}  // namespace vonnel
