#include "nettools/AutoConnect.h"

#include "nettools/LikePattern.h"
#include "platform/Clock.h"

namespace vonnel {

int settingNumber(const QString& text)
{
    const QString t = text.trimmed();
    int end = 0;
    if (end < t.size() && (t[end] == QLatin1Char('-') || t[end] == QLatin1Char('+')))
        ++end;
    while (end < t.size() && t[end] >= QLatin1Char('0') && t[end] <= QLatin1Char('9'))
        ++end;
    bool ok = false;
    const int n = t.left(end).toInt(&ok);
    return ok ? n : 0;
}

AutoConnect::AutoConnect(SettingsStore& settings, SessionQuery& session, EchoProber& prober,
                         QObject* parent)
    : QObject(parent), m_settings(settings), m_session(session), m_engine(prober, 2),
      m_now([] { return Clock().timeOfDay(); })
{
    connect(&m_engine, &SweepEngine::result, this, &AutoConnect::onResult);
    connect(&m_engine, &SweepEngine::finished, this, &AutoConnect::onFinished);
}

void AutoConnect::setTimerEnabled(bool on)
{
    if (on == m_timerEnabled)
        return;
    m_timerEnabled = on;
    Q_EMIT timerEnabledChanged(on);
}

void AutoConnect::setChecking(bool on)
{
    if (on == m_checking)
        return;
    m_checking = on;
    Q_EMIT checkingChanged(on);
}

void AutoConnect::tTimer1_Timer()
{
    m_autoCheckDuring = settingNumber(m_settings.read(AutoConnectKeys::During)) != 0;
    if (m_autoCheckTicks == 0 && (!m_session.isConnected() || m_autoCheckDuring))
        checkStations();
    m_autoCheckInterval = settingNumber(m_settings.read(AutoConnectKeys::Interval));
    ++m_autoCheckTicks;
    // An interval of 0 or none sends the count back every tick: a check a minute.
    if (m_autoCheckTicks >= m_autoCheckInterval)
        m_autoCheckTicks = 0;
    if (m_session.isClosing())
        Q_EMIT closeAgain();
}

void AutoConnect::updateAutoCheckState()
{
    if (m_settings.read(AutoConnectKeys::AutoConnect) == QLatin1String("1")) {
        setTimerEnabled(true);
        Q_EMIT autoCheckMenuChecked();
    } else {
        setTimerEnabled(false);
    }
}

void AutoConnect::checkStations()
{
    if (m_session.isClosing())
        return;
    updateAutoCheckState();
    if (m_session.isConnected() ||
        m_settings.read(AutoConnectKeys::AutoConnect) != QLatin1String("1"))
        return;
    if (m_checking)
        return;
    const int max = settingNumber(m_settings.read(AutoConnectKeys::Max));
    QStringList addresses;
    m_hosts.clear();
    for (int n = 1; n <= max; ++n) {
        addresses << m_settings.read(AutoConnectKeys::IP + QString::number(n));
        m_hosts << m_settings.read(AutoConnectKeys::Host + QString::number(n));
    }
    m_optionConnect = settingNumber(m_settings.read(AutoConnectKeys::Option)) != 0;
    m_onlineAddresses.clear();
    m_onlineHosts.clear();
    setChecking(true);
    m_engine.start(addresses);  // a free or malformed slot is a failed probe
}

void AutoConnect::onResult(int index, const QString& target, bool answered)
{
    if (!answered)
        return;
    m_onlineAddresses << target;
    m_onlineHosts << m_hosts.value(index);
}

void AutoConnect::onFinished(bool)
{
    setChecking(false);
    const QStringList online = m_onlineAddresses;
    Q_EMIT checkDone(online);
    if (online.isEmpty())
        return;
    // The probes took a while; the peer that called meanwhile is no reason
    // to call out again.
    if (m_session.isConnected() && online.size() == 1 && online.first() == m_session.peerAddress())
        return;
    if (m_optionConnect) {
        Q_EMIT commandRequested(online.first());
        return;
    }
    // The line shows the host, "- - - - - - " included: the address would
    // take its place only for a host equal to both that text and "".
    QStringList lines;
    for (int i = 0; i < online.size(); ++i) {
        const QString host = m_onlineHosts.value(i);
        const bool unresolved = host == kLookupFailed && host.isEmpty();
        lines << (unresolved ? online[i] : host);
    }
    Q_EMIT onlineStations(lines, m_translate(QStringLiteral("Last Checked: ")) +
                                     m_now().toString(QStringLiteral("HH:mm:ss")));
}

void AutoConnect::sessionEnded()
{
    if (settingNumber(m_settings.read(AutoConnectKeys::AfterSession)) != 0)
        m_settings.write(AutoConnectKeys::AutoConnect, QStringLiteral("0"));
}

void AutoConnect::chat(const QString& line)
{
    if (m_session.isConnected()) {
        Q_EMIT notice(QStringLiteral("You have to disconnect before make another session."));
        return;
    }
    Q_EMIT commandRequested(line);
}

}  // namespace vonnel
