#include "nettools/AutoNotify.h"

#include "nettools/AutoConnect.h"

namespace vonnel {

AutoNotify::AutoNotify(AutoConnect& check, SessionQuery& session, QObject* parent)
    : QObject(parent), m_check(check), m_session(session)
{
    connect(&check, &AutoConnect::onlineStations, this, &AutoNotify::show);
}

void AutoNotify::show(const QStringList& lines, const QString& statusText)
{
    Q_EMIT showRequested();
    m_lines.clear();
    Q_EMIT lstOnlineIPChanged();
    if (statusText != m_stbTime) {
        m_stbTime = statusText;
        Q_EMIT stbTimeChanged(statusText);
    }
    m_lines = lines;
    Q_EMIT lstOnlineIPChanged();
}

bool AutoNotify::popOnlineAllowed() const
{
    return !m_session.isConnected();
}

void AutoNotify::OKButton_Click(int row)
{
    if (row < 0 || row >= m_lines.size())
        return;
    // The window goes before the call starts; with a session up the check
    // says why nothing happens and the window stays.
    if (!m_session.isConnected())
        Q_EMIT hideRequested();
    m_check.chat(m_lines[row]);
}

}  // namespace vonnel
