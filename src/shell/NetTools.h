#pragma once
// The network tools of one copy: the station check on tTimer1 with its
// AutoNotify list, the sweep of frmNetView, the name converter of
// frmNetResolve, all on the copy's settings, its session, its one address
// service and the echo prober its pinger made. Built and owned by FrmMain.

#include <QObject>
#include <memory>

namespace vonnel {

class FrmMain;
class AutoConnect;
class AutoConnectSettings;
class AutoNotify;
class NetResolve;
class NetViewModel;
class NameLookup;

class NetTools : public QObject {
    Q_OBJECT
public:
    explicit NetTools(FrmMain& frm);
    ~NetTools() override;

    AutoConnect& autoConnect() const;
    AutoNotify& autoNotify() const;
    NetViewModel& netView() const;
    NetResolve& netResolve() const;
    NameLookup& names() const;
    // frmAutoConnect's state, read afresh from the settings each time the
    // dialog opens; its OK runs this copy's check.
    std::unique_ptr<AutoConnectSettings> autoConnectSettings();

    // End of start-up: the first check, so a listed station is called (or
    // shown) at once instead of a minute later.
    void startAutoConnect();

private:
    struct Parts;
    FrmMain& m_frm;
    std::unique_ptr<Parts> m_parts;
};

}  // namespace vonnel
