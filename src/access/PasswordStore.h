#pragma once
// The two optional passwords: "1st" asked at start, "2nd" when the user
// comes back to a window locked away in the tray. Both live in vonnel.ini in
// cipher form, keyed by the day number of the date stored beside them, and
// are compared on this machine only; nothing of this goes on the wire.

#include <QDate>
#include <QString>

#include <functional>

namespace vonnel {

class CopyContext;
class MainModel;
class FrmPassLock;
class FrmUnlock;

class PasswordStore {
public:
    // What is stored when the user wants no password.
    static inline const QString kNoPassword = QStringLiteral("voidEntryzq");
    // The password of a level that has no record yet: such a level stays
    // closed until a record exists.
    static inline const QString kNoRecord = QStringLiteral("qzyrtnEdiov");
    // What reading an empty cipher text gives.
    static inline const QString kEmptyCipher = QStringLiteral("qzyrtnEdiovoidEntryzq");

    PasswordStore(CopyContext& ctx, MainModel& model);

    // The level being read, set or asked for: "1st" or "2nd".
    QString passLevel = QStringLiteral("1st");
    QString firstPassword;
    QString secondPassword;
    bool hasFirstPassword = false;
    bool hasSecondPassword = false;
    bool unlockPassed = false;

    static QString levelKey(const QString& level) { return level + QStringLiteral(" Level Password"); }
    static QString savedKey(const QString& level) { return level + QStringLiteral(" Password Saved"); }

    // Deciphers a stored cipher text with the day number of the date saved
    // for passLevel (today when there is none).
    QString readPassword(const QString& cipher);
    // Sets passLevel from the level's first digit and loads that level's
    // password and flag.
    void loadPassword(const QString& level);
    void loadBoth();
    // Writes text (trimmed) as the password of passLevel, with today's date,
    // and clears Override Password.
    void storePassword(const QString& text);
    // Writes the no-password record for a level that has no record at all;
    // true when it did.
    bool storeNoPasswordIfMissing(const QString& level);
    // The password that an unlock at passLevel compares with.
    QString passwordOfLevel() const;

    // --- who asks ----------------------------------------------------------------
    // Runs the unlock screen at the level; the result is unlockPassed.
    bool runUnlock(const QString& level);
    // Runs the set-password screen at the level.
    void runPassLock(const QString& level);
    // Windows for the two screens. Each runs its form modally until the form
    // is closed. Without them the prompter's input boxes stand in.
    std::function<void(FrmUnlock&)> unlockScreen;
    std::function<void(FrmPassLock&)> passLockScreen;
    // True while one of the two screens is up.
    bool lockScreenUp() const { return m_screensUp > 0; }

    // Start-up: with a first-level password the unlock screen runs; when it is
    // not satisfied the main window's commands are disabled and
    // StartupLockFailed is set. Returns false in that case.
    bool startupLock();
    // The start-up lock was not passed: the copy ends.
    bool startupLockFailed = false;
    // The second-level gate of ShowMain and the tray's URL entry.
    bool secondLevelUnlocked();
    // Init: below three starts the passwords are set up; then both levels are
    // read and the minimise entry named after them.
    void initPasswordSetting();
    // Caption of mnuMin and the check of mnuSecurity from the flags.
    void applyMenuState();

    static QDate parseSavedDate(const QString& text);

private:
    CopyContext& m_ctx;
    MainModel& m_model;
    int m_screensUp = 0;
};

}  // namespace vonnel
