#pragma once
// frmNetResolve without its widgets: a host name to an address or an
// address to a host name, into the other box. Which way is taken depends on
// the box typed in last, then on what the boxes hold.

#include "nettools/NetToolsPorts.h"

#include <QObject>

namespace vonnel {

class NetResolve : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString txtIP READ txtIP NOTIFY txtIPChanged)
    Q_PROPERTY(QString txtHost READ txtHost NOTIFY txtHostChanged)
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)
public:
    explicit NetResolve(NameLookup& names, QObject* parent = nullptr);

    QString txtIP() const { return m_txtIP; }
    QString txtHost() const { return m_txtHost; }
    QString lastBox() const { return m_lastBox; }
    bool busy() const { return m_busy; }

    // The user typed in a box; that box becomes lastBox.
    void typeIP(const QString& text);
    void typeHost(const QString& text);

    void cmdResolve_Click();
    void cmdReset_Click();

Q_SIGNALS:
    void txtIPChanged(const QString& text);
    void txtHostChanged(const QString& text);
    // The hourglass; a window shows "   Please wait..." before the lookup.
    void busyChanged(bool busy);
    void notice(const QString& text);
    // "IP" or "Host" wants the focus.
    void focusRequested(const QString& box);

private:
    void setIP(const QString& t);
    void setHost(const QString& t);
    void setBusy(bool on);
    void resolveAddressBox();
    void resolveHostBox();

    NameLookup& m_names;
    QString m_txtIP;
    QString m_txtHost;
    QString m_lastBox;
    bool m_busy = false;
};

}  // namespace vonnel
