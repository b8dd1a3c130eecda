#pragma once
// frmProperty: the local identity, the two ports with the tops of their
// retry ranges, the hosts file and the two caller lists.

#include <QObject>
#include <QString>

namespace vonnel {

class CopyContext;
class MainModel;
class Session;

class PropertyDialog : public QObject {
    Q_OBJECT
public:
    PropertyDialog(CopyContext& ctx, MainModel& model, Session& session, QObject* parent = nullptr);

    QString txtComputerName, txtLocalHost, txtLocalIP;
    QString txtLocalPort, txtLocalPort5, txtRemotePort, txtRemotePort5;
    QString lblLocalPort, lblRemotePort;
    QString lblSysMsg;
    bool unloaded = false;

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
    CopyContext& m_ctx;
    MainModel& m_model;
    Session& m_session;
};

}  // namespace vonnel
