#pragma once
// frmAutoConnect without its widgets: the station list with its hosts, the
// add (resolving names), remove and priority moves, the minute box held to
// 1..59, and OKButton_Click writing every slot.

#include "nettools/NetToolsPorts.h"

#include <QObject>
#include <QStringList>

namespace vonnel {

class AutoConnect;

class AutoConnectSettings : public QObject {
    Q_OBJECT
    Q_PROPERTY(QStringList lstAutoCheck READ lstAutoCheck NOTIFY listChanged)
    Q_PROPERTY(QStringList lstAutoHost READ lstAutoHost NOTIFY listChanged)
    Q_PROPERTY(QString txtAutoCheck READ txtAutoCheck NOTIFY txtAutoCheckChanged)
    Q_PROPERTY(QString txtChkMin READ txtChkMin NOTIFY txtChkMinChanged)
    Q_PROPERTY(bool chkAutoCheckOn READ chkAutoCheckOn WRITE setChkAutoCheckOn NOTIFY
                   chkAutoCheckOnChanged)
public:
    static constexpr int kMinMinutes = 1;
    static constexpr int kMaxMinutes = 59;

    // checker: run at once by OK when the check is on; may be null.
    AutoConnectSettings(SettingsStore& settings, NameLookup& names, AutoConnect* checker,
                        QObject* parent = nullptr);

    // Form load: the keys, and the non-empty slots 1..AutoConnectMax.
    void load();

    QStringList lstAutoCheck() const { return m_addresses; }
    QStringList lstAutoHost() const { return m_hosts; }
    QString txtAutoCheck() const { return m_txtAutoCheck; }
    QString txtChkMin() const { return m_txtChkMin; }
    bool chkAutoCheckOn() const { return m_checkOn; }
    int selected() const { return m_selected; }

    bool optAutoConnect = true;  // else optAutoShow
    bool chkChkDuring = false;
    bool chkChkAfter = false;

    void setChkAutoCheckOn(bool on);
    void setTxtAutoCheck(const QString& text);
    // txtChkMin's change: below 1 becomes 1, above 59 becomes 59.
    void setTxtChkMin(const QString& text);
    // vscMin: one step up or down inside the same range.
    void vscMinStep(int delta);
    void select(int row);

    void cmdAdd_Click();
    void cmdRemove_Click();
    void cmdPriorUp_Click();
    void cmdPriorDwn_Click();
    void OKButton_Click();

Q_SIGNALS:
    void listChanged();
    void txtAutoCheckChanged(const QString& text);
    void txtChkMinChanged(const QString& text);
    void chkAutoCheckOnChanged(bool on);
    void selectionChanged(int row);
    void notice(const QString& text);
    // The dialog is done and closes.
    void closed();

private:
    void swapWith(int other);
    int maxSlots() const;

    SettingsStore& m_settings;
    NameLookup& m_names;
    AutoConnect* m_checker;
    QStringList m_addresses;
    QStringList m_hosts;
    QString m_txtAutoCheck;
    QString m_txtChkMin = QStringLiteral("1");
    bool m_checkOn = false;
    int m_selected = -1;
};

}  // namespace vonnel
