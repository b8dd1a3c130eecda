#pragma once
// Desktop notifications: a short word on the desktop when something wants
// the user while the window is away. The tray's balloon where a tray icon
// is up, else the freedesktop notification service over D-Bus; where
// neither answers, nothing is shown (the text stays in the window).

#include <QPointer>
#include <QString>
#include <QStringList>

class QSystemTrayIcon;

namespace vonnel {

class Notifier {
public:
    virtual ~Notifier() = default;
    virtual void notify(const QString& title, const QString& text) = 0;
};

// Keeps what it was given; for tests and for copies without windows.
class RecordingNotifier : public Notifier {
public:
    void notify(const QString& title, const QString& text) override { shown << title + QLatin1String(": ") + text; }
    QStringList shown;
};

class SystemNotifier : public Notifier {
public:
    void notify(const QString& title, const QString& text) override;
    // The tray icon that shows the balloon; none (or one gone) sends the
    // notice over D-Bus.
    void setTray(QSystemTrayIcon* tray);

    // How the last notice went out.
    enum class Route { None, Tray, DBus };
    Route lastRoute() const { return m_last; }

private:
    QPointer<QObject> m_tray;  // the QSystemTrayIcon
    Route m_last = Route::None;
    // The notification service did not answer once: not asked again.
    bool m_dbusGone = false;
};

}  // namespace vonnel
