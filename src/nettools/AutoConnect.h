#pragma once
// AutoConnect and AutoNotify: the station check driven by tTimer1. The
// listed stations are probed side by side and judged in list order, which
// is their priority: with the option "connect" the first that answered is
// called, otherwise all that answered are shown in frmAutoIP.
//
// The settings keep two pairs of names that do not meet: the dialog writes
// "AutoCheck During Session" and the tick reads "AutoCheck During", and the
// AutoNotify window reads its place from "Settings-AutoConnect..." keys and
// writes it to "Settings-AutoConnec..." ones. Both are kept as they are.

#include "nettools/NetToolsPorts.h"
#include "nettools/SweepEngine.h"

#include <QObject>
#include <QStringList>
#include <QTime>
#include <functional>

namespace vonnel {

namespace AutoConnectKeys {
inline const QString AutoConnect = QStringLiteral("AutoConnect");
inline const QString Max = QStringLiteral("AutoConnectMax");
inline const QString IP = QStringLiteral("AutoConnect IP ");      // + n
inline const QString Host = QStringLiteral("AutoConnect Host ");  // + n
inline const QString Option = QStringLiteral("AutoConnect Option");
inline const QString Interval = QStringLiteral("AutoConnect Interval");
inline const QString DuringSession = QStringLiteral("AutoCheck During Session");
inline const QString During = QStringLiteral("AutoCheck During");
inline const QString AfterSession = QStringLiteral("AutoCheck After Session");
// frmAutoIP's place: read under one family of names, written under another.
inline const QString ReadLeft = QStringLiteral("Settings-AutoConnectLeft");
inline const QString ReadTop = QStringLiteral("Settings-AutoConnectTop");
inline const QString ReadHeight = QStringLiteral("Settings-AutoConnectHeight");
inline const QString ReadWidth = QStringLiteral("Settings-Width");
inline const QString WriteLeft = QStringLiteral("Settings-AutoConnecLeft");
inline const QString WriteTop = QStringLiteral("Settings-AutoConnecTop");
inline const QString WriteWidth = QStringLiteral("Settings-AutoConnecWidth");
inline const QString WriteHeight = QStringLiteral("Settings-AutoConnecHeight");
}  // namespace AutoConnectKeys

// The number a setting holds as far as it is one; "" and words are 0.
int settingNumber(const QString& text);

class AutoConnect : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool timerEnabled READ timerEnabled NOTIFY timerEnabledChanged)
    Q_PROPERTY(bool checking READ checking NOTIFY checkingChanged)
public:
    static constexpr int kTimerIntervalMs = 60000;

    AutoConnect(SettingsStore& settings, SessionQuery& session, EchoProber& prober,
                QObject* parent = nullptr);

    bool timerEnabled() const { return m_timerEnabled; }
    bool checking() const { return m_checking; }
    bool autoCheckDuring() const { return m_autoCheckDuring; }
    int autoCheckInterval() const { return m_autoCheckInterval; }
    int autoCheckTicks() const { return m_autoCheckTicks; }
    void setTimeSource(std::function<QTime()> now) { m_now = std::move(now); }
    // The lookup of the language file for the words frmAutoIP shows.
    void setTranslate(std::function<QString(const QString&)> translate)
    {
        m_translate = std::move(translate);
    }

    // One tick of the one-minute timer.
    void tTimer1_Timer();
    // The probe run. The probes run side by side; a run still going when
    // another is asked for is left to finish.
    void checkStations();
    void updateAutoCheckState();
    // A session ended: "AutoCheck After Session" switches the check off.
    void sessionEnded();
    // frmAutoIP's "Chat" on a list line.
    void chat(const QString& line);

Q_SIGNALS:
    void timerEnabledChanged(bool enabled);
    void checkingChanged(bool checking);
    // mnuAutoCheck is to be checked (it is never unchecked from here).
    void autoCheckMenuChecked();
    // Hand this to the command interpreter: a plain address calls it.
    void commandRequested(const QString& command);
    // Show frmAutoIP without blocking, with these lines and status text.
    void onlineStations(const QStringList& lines, const QString& statusText);
    void notice(const QString& text);
    // The closing routine is to run again.
    void closeAgain();
    // A run is over (whatever it found).
    void checkDone(const QStringList& onlineAddresses);

private:
    void onResult(int index, const QString& target, bool answered);
    void onFinished(bool aborted);
    void setTimerEnabled(bool on);
    void setChecking(bool on);

    SettingsStore& m_settings;
    SessionQuery& m_session;
    SweepEngine m_engine;
    std::function<QTime()> m_now;
    std::function<QString(const QString&)> m_translate = [](const QString& t) { return t; };
    bool m_timerEnabled = false;
    bool m_checking = false;
    bool m_autoCheckDuring = false;
    int m_autoCheckInterval = 0;
    int m_autoCheckTicks = 0;
    bool m_optionConnect = false;
    QStringList m_hosts;
    QStringList m_onlineAddresses;
    QStringList m_onlineHosts;
};

}  // namespace vonnel
