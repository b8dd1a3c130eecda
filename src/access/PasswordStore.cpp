#include "access/PasswordStore.h"

#include "core/Cp1252.h"
#include "access/CipherText.h"
#include "access/LockForms.h"
#include "core/IniStore.h"
#include "platform/Clock.h"
#include "platform/Prompter.h"
#include "core/CopyContext.h"
#include "core/MainModel.h"

namespace vonnel {

namespace {

// The level named by a text's first character: 1 or 2, else 0.
int levelNumber(const QString& level)
{
    if (level.isEmpty())
        return 0;
    const QChar c = level.at(0);
    return c == QLatin1Char('1') ? 1 : c == QLatin1Char('2') ? 2 : 0;
}

// Drops characters below code 33 at both ends.
QString sharedTrim(const QString& text)
{
    qsizetype b = 0, e = text.size();
    while (b < e && text.at(b).unicode() < 33)
        ++b;
    while (e > b && text.at(e - 1).unicode() < 33)
        --e;
    return text.mid(b, e - b);
}

// Keeps the count of open lock screens for as long as one runs.
struct ScreenUp {
    explicit ScreenUp(int& n) : count(n) { ++count; }
    ~ScreenUp() { --count; }
    int& count;
};

}  // namespace

PasswordStore::PasswordStore(CopyContext& ctx, MainModel& model) : m_ctx(ctx), m_model(model) {}

QDate PasswordStore::parseSavedDate(const QString& text)
{
    const QString t = text.trimmed();
    QDate d = QDate::fromString(t, Qt::ISODate);
    if (!d.isValid())
        d = QDate::fromString(t, QStringLiteral("M/d/yyyy"));
    return d;
}

QString PasswordStore::readPassword(const QString& cipher)
{
    if (cipher.isEmpty())
        return kEmptyCipher;
    QDate day = m_ctx.clock().today();
    const QString saved = m_ctx.setting(savedKey(passLevel));
    if (!saved.isEmpty()) {
        const QDate d = parseSavedDate(saved);
        if (d.isValid())
            day = d;
        else
            m_ctx.prompter().msgBox(QStringLiteral("Decryption Error: Type mismatch"),
                                    MsgStyle::Exclamation);
    }
    QString error;
    const QByteArray plain =
        getEPass(toCp1252(cipher), numericKey(dayNumber(day)), &error);
    if (!error.isEmpty())
        m_ctx.prompter().msgBox(QStringLiteral("Decryption Error: ") + error, MsgStyle::Exclamation);
    return fromCp1252(plain);
}

void PasswordStore::loadPassword(const QString& level)
{
    const int n = levelNumber(level);
    if (n == 0)
        return;
    passLevel = n == 1 ? QStringLiteral("1st") : QStringLiteral("2nd");
    const QString cipher = m_ctx.setting(levelKey(passLevel));
    const bool overridden = m_ctx.settingFlag(QStringLiteral("Override Password"));

    QString password;
    bool has = true;
    const QString read = readPassword(cipher);
    if (read == kNoPassword || overridden) {
        password.clear();
        has = false;
    } else if (cipher.isEmpty()) {
        password = kNoRecord;
    } else {
        password = read;
    }
    (n == 1 ? firstPassword : secondPassword) = password;
    (n == 1 ? hasFirstPassword : hasSecondPassword) = has;
}

void PasswordStore::loadBoth()
{
    const QString level = passLevel;
    loadPassword(QStringLiteral("1st"));
    loadPassword(QStringLiteral("2nd"));
    passLevel = level;
}

void PasswordStore::storePassword(const QString& text)
{
    const QDate today = m_ctx.clock().today();
    const QByteArray cipher = genpass(toCp1252(sharedTrim(text)), today);
    m_ctx.writeSetting(levelKey(passLevel), fromCp1252(cipher));
    m_ctx.writeSetting(savedKey(passLevel), today.toString(Qt::ISODate));
    m_ctx.writeSetting(QStringLiteral("Override Password"), QStringLiteral("0"));
}

bool PasswordStore::storeNoPasswordIfMissing(const QString& level)
{
    if (!m_ctx.setting(levelKey(level)).isEmpty())
        return false;
    const QDate today = m_ctx.clock().today();
    m_ctx.writeSetting(levelKey(level), fromCp1252(genpass(toCp1252(kNoPassword), today)));
    m_ctx.writeSetting(savedKey(level), today.toString(Qt::ISODate));
    return true;
}

QString PasswordStore::passwordOfLevel() const
{
    switch (levelNumber(passLevel)) {
    case 1: return firstPassword;
    case 2: return secondPassword;
    default: return QString();
    }
}

// --- who asks -----------------------------------------------------------------

bool PasswordStore::runUnlock(const QString& level)
{
    ScreenUp up(m_screensUp);
    passLevel = level;
    FrmUnlock form(m_ctx, *this);
    form.Form_Load();
    if (unlockScreen) {
        unlockScreen(form);
        return unlockPassed;
    }
    while (!form.closed) {
        const auto typed = m_ctx.prompter().input(
            m_ctx.translate(FrmUnlock::title()), m_ctx.translate(FrmUnlock::label()), QString());
        if (!typed) {
            form.CancelButton_Click();
            break;
        }
        form.txtUnlock = *typed;
        form.OKButton_Click();
    }
    return unlockPassed;
}

void PasswordStore::runPassLock(const QString& level)
{
    ScreenUp up(m_screensUp);
    passLevel = level;
    FrmPassLock form(m_ctx, *this);
    if (passLockScreen) {
        passLockScreen(form);
        return;
    }
    const QString title =
        MainModel::kTitle + QStringLiteral(" - ") + m_ctx.translate(FrmPassLock::levelName(level));
    const QString head = m_ctx.translate(FrmPassLock::captionTop()) + QStringLiteral("\r\n") +
                         m_ctx.translate(FrmPassLock::captionBottom()) + QStringLiteral("\r\n\r\n");
    while (!form.closed) {
        const auto pass = m_ctx.prompter().input(
            title, head + m_ctx.translate(FrmPassLock::labelPass()), QString());
        if (!pass) {
            form.cmdCancel_Click();
            break;
        }
        const auto confirm =
            m_ctx.prompter().input(title, m_ctx.translate(FrmPassLock::labelPassword()), QString());
        if (!confirm) {
            form.cmdCancel_Click();
            break;
        }
        form.txtPass = *pass;
        form.txtPassword = *confirm;
        form.cmdOK_Click();
    }
}

bool PasswordStore::startupLock()
{
    if (!hasFirstPassword)
        return true;
    if (runUnlock(QStringLiteral("1st")))
        return true;
    for (Control c : {Control::mnuSysShow, Control::mnuSysNetResolve, Control::mnuSysNetView,
                      Control::mnuSysAutoConnect, Control::mnuSysProperties, Control::mnuSysClose,
                      Control::mnuEdit, Control::mnuMessage, Control::mnuTools, Control::mnuFileProperties,
                      Control::mnuConnect, Control::mnuFileAutoConnect, Control::mnuFileClose,
                      Control::mnuSpecial, Control::mnuDisconnect, Control::mnuSave})
        m_model.controls.setEnabled(c, false);
    m_model.controls.setVisible(Control::Toolbar1, false);
    m_model.txtServer.setEnabled(false);
    startupLockFailed = true;
    return false;
}

bool PasswordStore::secondLevelUnlocked()
{
    if (!hasSecondPassword)
        return true;
    return runUnlock(QStringLiteral("2nd"));
}

void PasswordStore::initPasswordSetting()
{
    if (m_ctx.settingInt(QStringLiteral("Usage")) < 3) {
        m_model.stStatusbar.setText(2, m_ctx.translate(QStringLiteral("Inialize password setting...")));
        runPassLock(QStringLiteral("1st"));
        runPassLock(QStringLiteral("2nd"));
    }
    loadBoth();
    applyMenuState();
}

void PasswordStore::applyMenuState()
{
    m_model.controls.setCaption(Control::mnuMin,
                              hasSecondPassword
                                  ? m_ctx.translate(QStringLiteral("Minimize && Lock"),
                                                    QStringLiteral("Min&Lock"))
                                  : m_ctx.translate(QStringLiteral("Minimize")));
    m_model.controls.setChecked(Control::mnuSecurity, hasFirstPassword || hasSecondPassword);
}

}  // namespace vonnel
