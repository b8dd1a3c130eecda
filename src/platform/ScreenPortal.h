#pragma once
// The desktop's screenshot portal (org.freedesktop.portal.Screenshot over
// the session bus), for desktops where a program may not read the screen
// itself. The answer comes as a signal on a request object; the window's
// thread goes on with its events while it is awaited.

#include <QImage>
#include <QObject>
#include <QString>
#include <QVariantMap>

namespace vonnel {

// Whether the session bus has the portal running or can start it.
bool screenPortalOffered();
// The whole screen as the portal gives it, without asking the user where
// the desktop allows; null and why when there is no picture within
// timeoutMs.
QImage screenFromPortal(QString* why, int timeoutMs = 30000);

// The request's Response signal, caught.
class PortalAnswer : public QObject {
    Q_OBJECT
public:
    bool came = false;
    uint code = 2;
    QVariantMap results;
Q_SIGNALS:
    void answered();
public Q_SLOTS:
    void response(uint code, const QVariantMap& results);
};

}  // namespace vonnel
