#pragma once
// frmAutoIP without its widgets: the stations that answered the last check
// (their host texts), the time of that check, and "Chat" on one of them.

#include <QObject>
#include <QStringList>

namespace vonnel {

class AutoConnect;
class SessionQuery;

class AutoNotify : public QObject {
    Q_OBJECT
    Q_PROPERTY(QStringList lstOnlineIP READ lstOnlineIP NOTIFY lstOnlineIPChanged)
    Q_PROPERTY(QString stbTime READ stbTime NOTIFY stbTimeChanged)
public:
    // Fills itself from every check of the station check that shows.
    AutoNotify(AutoConnect& check, SessionQuery& session, QObject* parent = nullptr);

    QStringList lstOnlineIP() const { return m_lines; }
    // The first panel of stbTime: "Last Checked: " and the time.
    QString stbTime() const { return m_stbTime; }

    // A check found these: the list is emptied and filled again, and the
    // window is to be shown without blocking.
    void show(const QStringList& lines, const QString& statusText);
    // Double click, mnuChat, popChat and OKButton on a line.
    void OKButton_Click(int row);
    // popOnline opens on a right click only while no session is up.
    bool popOnlineAllowed() const;

Q_SIGNALS:
    void lstOnlineIPChanged();
    void stbTimeChanged(const QString& text);
    void showRequested();
    void hideRequested();

private:
    AutoConnect& m_check;
    SessionQuery& m_session;
    QStringList m_lines;
    QString m_stbTime;
};

}  // namespace vonnel
