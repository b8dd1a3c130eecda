#include "nettools/AutoConnectSettings.h"

#include "nettools/AutoConnect.h"
#include "nettools/LikePattern.h"

namespace vonnel {

namespace K = AutoConnectKeys;

AutoConnectSettings::AutoConnectSettings(SettingsStore& settings, NameLookup& names,
                                         AutoConnect* checker, QObject* parent)
    : QObject(parent), m_settings(settings), m_names(names), m_checker(checker)
{
}

int AutoConnectSettings::maxSlots() const
{
    return settingNumber(m_settings.read(K::Max));
}

void AutoConnectSettings::load()
{
    setChkAutoCheckOn(m_settings.read(K::AutoConnect) == QLatin1String("1"));
    m_addresses.clear();
    m_hosts.clear();
    const int max = maxSlots();
    for (int n = 1; n <= max; ++n) {
        const QString address = m_settings.read(K::IP + QString::number(n));
        if (address.isEmpty())
            continue;
        m_addresses << address;
        m_hosts << m_settings.read(K::Host + QString::number(n));
    }
    Q_EMIT listChanged();
    setTxtChkMin(m_settings.read(K::Interval));
    optAutoConnect = settingNumber(m_settings.read(K::Option)) != 0;
    chkChkDuring = settingNumber(m_settings.read(K::DuringSession)) != 0;
    chkChkAfter = settingNumber(m_settings.read(K::AfterSession)) != 0;
    select(m_addresses.isEmpty() ? -1 : 0);
}

void AutoConnectSettings::setChkAutoCheckOn(bool on)
{
    if (on == m_checkOn)
        return;
    m_checkOn = on;
    Q_EMIT chkAutoCheckOnChanged(on);
}

void AutoConnectSettings::setTxtAutoCheck(const QString& text)
{
    if (text == m_txtAutoCheck)
        return;
    m_txtAutoCheck = text;
    Q_EMIT txtAutoCheckChanged(text);
}

void AutoConnectSettings::setTxtChkMin(const QString& text)
{
    const int n = qBound(kMinMinutes, settingNumber(text), kMaxMinutes);
    const QString corrected = QString::number(n);
    if (corrected == m_txtChkMin)
        return;
    m_txtChkMin = corrected;
    Q_EMIT txtChkMinChanged(corrected);
}

void AutoConnectSettings::vscMinStep(int delta)
{
    setTxtChkMin(QString::number(m_txtChkMin.toInt() + delta));
}

void AutoConnectSettings::select(int row)
{
    if (row < -1 || row >= m_addresses.size())
        row = -1;
    if (row == m_selected)
        return;
    m_selected = row;
    Q_EMIT selectionChanged(row);
}

void AutoConnectSettings::cmdAdd_Click()
{
    const QString typed = m_txtAutoCheck;
    if (typed.isEmpty())
        return;
    QString address = typed;
    QString host = kLookupFailed;
    if (!likeMatch(typed, QStringLiteral("#.#.#.#"))) {
        // A host name (or a dotted text of longer numbers): the lookup says.
        setTxtAutoCheck(QStringLiteral("Resoving..."));
        address = m_names.resolveName(typed.trimmed());
        setTxtAutoCheck(address);
        if (address == kLookupFailed) {
            Q_EMIT notice(QStringLiteral("Please enter IP address"));
            setTxtAutoCheck(QString());
            return;
        }
        host = typed.trimmed();
    }
    if (m_addresses.size() >= maxSlots()) {
        Q_EMIT notice(QStringLiteral("Already reach the Max. limit of the list."));
        return;
    }
    m_addresses << address;
    m_hosts << host;
    Q_EMIT listChanged();
}

void AutoConnectSettings::cmdRemove_Click()
{
    if (m_selected < 0 || m_selected >= m_addresses.size())
        return;
    m_addresses.removeAt(m_selected);
    m_hosts.removeAt(m_selected);
    Q_EMIT listChanged();
    const int row = qMin(m_selected, int(m_addresses.size()) - 1);
    m_selected = -2;  // make select() report the new row
    select(row);
}

void AutoConnectSettings::swapWith(int other)
{
    if (m_selected < 0 || other < 0 || other >= m_addresses.size())
        return;
    m_addresses.swapItemsAt(m_selected, other);
    m_hosts.swapItemsAt(m_selected, other);
    Q_EMIT listChanged();
    select(other);
}

void AutoConnectSettings::cmdPriorUp_Click()
{
    swapWith(m_selected - 1);
}

void AutoConnectSettings::cmdPriorDwn_Click()
{
    swapWith(m_selected + 1);
}

void AutoConnectSettings::OKButton_Click()
{
    m_settings.write(K::AutoConnect, m_checkOn ? QStringLiteral("1") : QStringLiteral("0"));
    const int max = maxSlots();
    for (int n = 1; n <= max; ++n) {
        const bool present = n <= m_addresses.size();
        m_settings.write(K::IP + QString::number(n), present ? m_addresses[n - 1] : QString());
        m_settings.write(K::Host + QString::number(n), present ? m_hosts[n - 1] : QString());
    }
    m_settings.write(K::Interval, m_txtChkMin);
    m_settings.write(K::Option, optAutoConnect ? QStringLiteral("1") : QStringLiteral("0"));
    m_settings.write(K::DuringSession, chkChkDuring ? QStringLiteral("1") : QStringLiteral("0"));
    m_settings.write(K::AfterSession, chkChkAfter ? QStringLiteral("1") : QStringLiteral("0"));
    if (m_checkOn && m_checker)
        m_checker->checkStations();
    Q_EMIT closed();
}

}  // namespace vonnel
