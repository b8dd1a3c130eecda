#include "access/LockForms.h"

#include "core/Cp1252.h"
#include "access/Encryption.h"
#include "access/PasswordStore.h"
#include "core/IniStore.h"
#include "platform/Desktop.h"
#include "platform/Prompter.h"
#include "core/CopyContext.h"
#include "core/MainModel.h"

namespace vonnel {

// --- frmPassLock ------------------------------------------------------------------

FrmPassLock::FrmPassLock(CopyContext& ctx, PasswordStore& store) : m_ctx(ctx), m_store(store) {}

QString FrmPassLock::captionTop()
{
    // Lang.txt key: the text returned
    return QStringLiteral("Enter new password in the following. (Case Sensative)");
}

QString FrmPassLock::captionBottom()
{
    // Lang.txt key: the text returned
    return QStringLiteral("Or, leave them empty for no password.");
}

QString FrmPassLock::labelPass()
{
    // Lang.txt key: the text returned
    return QStringLiteral("Choose your password:");
}

QString FrmPassLock::labelPassword()
{
    // Lang.txt key: the text returned
    return QStringLiteral("Confirm your password:");
}

QString FrmPassLock::levelName(const QString& level)
{
    // Lang.txt key: the text returned
    return level.startsWith(QLatin1Char('2')) ? QStringLiteral("Away password")
                                              : QStringLiteral("Startup password");
}

QString FrmPassLock::levelPurpose(const QString& level)
{
    return level.startsWith(QLatin1Char('2')) ? FrmSecurity::lblAwayNote()
                                              : FrmSecurity::lblStartupNote();
}

QString FrmPassLock::level() const
{
    return m_store.passLevel;
}

bool FrmPassLock::charactersFit(const QString& text)
{
    for (const QChar c : text) {
        const QString one(c);
        const QByteArray byte = toCp1252(one);
        if (fromCp1252(byte) != one) {
            // Beyond the code page: the old runtime gave such characters a
            // negative code.
            m_ctx.prompter().msgBox(
                m_ctx.translate(QStringLiteral("Any other than English character is not support")),
                MsgStyle::Exclamation);
            return false;
        }
        const int code = uchar(byte.at(0));
        if (code >= 128 && code <= 254) {
            m_ctx.prompter().msgBox(
                m_ctx.translate(QStringLiteral("Any other than standard ASCII character is not support")),
                MsgStyle::Exclamation);
            return false;
        }
    }
    return true;
}

void FrmPassLock::cmdOK_Click()
{
    if (txtPass.isEmpty() && txtPassword.isEmpty()) {
        txtPass = PasswordStore::kNoPassword;
        txtPassword = PasswordStore::kNoPassword;
    } else if (txtPass.size() < 4) {
        m_ctx.prompter().msgBox(m_ctx.translate(QStringLiteral("Password must be at least 4 characters.")),
                                MsgStyle::Exclamation);
        txtPass.clear();
        txtPassword.clear();
        return;
    } else if (txtPass != txtPassword) {
        m_ctx.prompter().msgBox(
            m_ctx.translate(QStringLiteral("Please enter the SAME password for both boxes.")),
            MsgStyle::Exclamation);
        txtPass.clear();
        txtPassword.clear();
        return;
    } else if (!charactersFit(txtPass) || !charactersFit(txtPassword)) {
        return;
    }
    m_store.storePassword(txtPass);
    closed = true;
}

// --- frmUnlock --------------------------------------------------------------------

FrmUnlock::FrmUnlock(CopyContext& ctx, PasswordStore& store) : m_ctx(ctx), m_store(store) {}

QString FrmUnlock::title()
{
    // Lang.txt key: the text returned
    return QStringLiteral("Vonnel - [Locked]");
}

QString FrmUnlock::label()
{
    // Lang.txt key: the text returned
    return QStringLiteral("Please enter password to unlock it");
}

void FrmUnlock::Form_Load()
{
    m_store.unlockPassed = false;
    txtUnlock.clear();
    recoveryArmed = false;
    closed = false;
}

void FrmUnlock::imgLock_Click()
{
    if (txtUnlock == QLatin1String("Tulip"))
        recoveryArmed = true;
}

void FrmUnlock::OKButton_Click()
{
    const QString password = m_store.passwordOfLevel();
    if (recoveryArmed) {
        recoveryArmed = false;
        m_ctx.prompter().msgBox(QStringLiteral("Password is: ") + password);
    }
    if (txtUnlock == password) {
        m_store.unlockPassed = true;
        closed = true;
        return;
    }
    m_store.unlockPassed = false;
    if (txtUnlock == QLatin1String("help")) {
        m_ctx.desktop().openFile(m_ctx.HelpPath + QStringLiteral("password.htm"));
        return;
    }
    m_ctx.prompter().msgBox(m_ctx.translate(QStringLiteral("Not a valid Password!!!")),
                            MsgStyle::Exclamation);
    txtUnlock.clear();
}

// --- frmSecurity ------------------------------------------------------------------

FrmSecurity::FrmSecurity(CopyContext& ctx, PasswordStore& store) : m_ctx(ctx), m_store(store) {}

void FrmSecurity::Form_Load()
{
    closed = false;
    refill();
}

void FrmSecurity::refill()
{
    txtPass1 = m_store.firstPassword;
    txtPass2 = m_store.secondPassword;
    imgStLock = !txtPass1.isEmpty();
    imgAwLock = !txtPass2.isEmpty();
}

void FrmSecurity::setPass(const QString& level)
{
    const int usage = m_ctx.settingInt(QStringLiteral("Usage"));
    m_store.passLevel = level;
    const bool has = level.startsWith(QLatin1Char('1')) ? m_store.hasFirstPassword
                                                         : m_store.hasSecondPassword;
    if (!has || usage < 3)
        m_store.runPassLock(level);
    else if (m_store.runUnlock(level))
        m_store.runPassLock(level);
    // Setting one level here clears the override; the other level, if it
    // never had a record, would then be closed behind a word the user never
    // chose. It gets the no-password record instead.
    const QString other = level.startsWith(QLatin1Char('1')) ? QStringLiteral("2nd")
                                                             : QStringLiteral("1st");
    if (!m_ctx.setting(PasswordStore::levelKey(level)).isEmpty())
        m_store.storeNoPasswordIfMissing(other);
    m_store.loadPassword(other);
    m_store.loadPassword(level);
    refill();
}

void FrmSecurity::OKButton_Click()
{
    m_store.applyMenuState();
    closed = true;
}

void FrmSecurity::cmdHelp_Click()
{
    m_ctx.desktop().openFile(m_ctx.HelpPath + QStringLiteral("security.htm"));
}

// --- frmEncrypt -------------------------------------------------------------------

FrmEncrypt::FrmEncrypt(CopyContext& ctx, Encryption& cipher) : m_ctx(ctx), m_cipher(cipher) {}

void FrmEncrypt::Form_Load()
{
    colour = m_ctx.setting(QStringLiteral("Encrypt-Colour"));
    colourFg = m_ctx.setting(QStringLiteral("Encrypt-Colour-FG"));
    colourBk = m_ctx.setting(QStringLiteral("Encrypt-Colour-BK"));
    lblKey = m_ctx.translate(QStringLiteral("Key:"));
    captionEncrypt = m_ctx.translate(QStringLiteral("Encrypt"));
    captionDecrypt = m_ctx.translate(QStringLiteral("Decrypt"));
}

bool FrmEncrypt::keyGiven()
{
    if (!txtKey.isEmpty())
        return true;
    m_ctx.prompter().msgBox(m_ctx.translate(QStringLiteral("Key should not be empty")),
                            MsgStyle::Exclamation);
    return false;
}

void FrmEncrypt::cmdEncrypt_Click()
{
    if (keyGiven())
        txtResult = m_cipher.genEPass(txtText, txtKey);
}

void FrmEncrypt::cmdDecrypt_Click()
{
    if (keyGiven())
        txtResult = m_cipher.getEPass(txtResult, txtKey);
}

void FrmEncrypt::cmdHelp_Click()
{
    m_ctx.desktop().openFile(m_ctx.HelpPath + QStringLiteral("encryption.htm"));
}

}  // namespace vonnel
