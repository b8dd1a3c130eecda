#pragma once
// frmProperty: the local identity, the two ports with the tops of their
// retry ranges, the hosts file and the two caller lists.

#include <QObject>
#include <QString>

#include "core/Watched.h"

namespace vonnel {

class CopyContext;
class MainModel;
class Session;

class PropertyDialog : public QObject, public FieldOwner {
    Q_OBJECT
public:
    PropertyDialog(CopyContext& ctx, MainModel& model, Session& session, QObject* parent = nullptr);

    // What the window shows; every change emits changed().
    Watched<QString> txtComputerName{this}, txtLocalHost{this}, txtLocalIP{this};
    Watched<QString> txtLocalPort{this}, txtLocalPort5{this}, txtRemotePort{this}, txtRemotePort5{this};
    Watched<QString> lblLocalPort{this}, lblRemotePort{this};
    Watched<QString> lblSysMsg{this};
    Watched<bool> unloaded{this, false};

    void Form_Load();
    void cmdRestore_Click();
    void cmdApply_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdHostConfig_Click();
    void cmdBadIPLst_Click();
    void cmdSafeLst_Click();
    void cmdHelp_Click();
    bool cmdCancelEnabled() const;
    bool cmdApplyEnabled() const;
    bool cmdOKEnabled() const;

    // The hosts file: the system's own, unless the key HostsPath names one.
    QString HostsPath() const;

Q_SIGNALS:
    void changed();
    // Apply wrote the settings: the copy reads its start values again.
    void applied();

private:
    void fieldChanged(const void*) override { Q_EMIT changed(); }

    CopyContext& m_ctx;
    MainModel& m_model;
    Session& m_session;
};

}  // namespace vonnel
