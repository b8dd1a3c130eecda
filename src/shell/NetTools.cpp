#include "shell/NetTools.h"

#include "access/Encryption.h"
#include "access/PasswordStore.h"
#include "connection/AddressServices.h"
#include "connection/Connection.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "core/Views.h"
#include "nettools/AutoConnect.h"
#include "nettools/AutoConnectSettings.h"
#include "nettools/AutoNotify.h"
#include "nettools/NetResolve.h"
#include "nettools/NetViewModel.h"
#include "platform/Clock.h"
#include "platform/Pinger.h"
#include "platform/Prompter.h"
#include "shell/CommandControl.h"
#include "shell/FrmMain.h"

namespace vonnel {

namespace {

// The tools' lookups are the connection's: one resolver per copy.
class CopyNames : public NameLookup {
public:
    explicit CopyNames(FrmMain& frm) : m_frm(frm) {}
    QString resolveName(const QString& host) override
    {
        return m_frm.connection().address().ResolveName(host);
    }
    QString resolveAddress(const QString& address) override
    {
        return m_frm.connection().address().ResolveAddress(address);
    }

private:
    FrmMain& m_frm;
};

class CopySettings : public SettingsStore {
public:
    explicit CopySettings(CopyContext& ctx) : m_ctx(ctx) {}
    QString read(const QString& key) override { return m_ctx.setting(key); }
    void write(const QString& key, const QString& value) override
    {
        m_ctx.writeSetting(key, value);
    }

private:
    CopyContext& m_ctx;
};

class CopySession : public SessionQuery {
public:
    explicit CopySession(FrmMain& frm) : m_frm(frm) {}
    bool isConnected() const override { return m_frm.session().IsConnected(); }
    bool isLocked() const override
    {
        return m_frm.ctx().views().isVisible(Form::frmLock) ||
               m_frm.encryption().passwords().lockScreenUp();
    }
    bool isClosing() const override { return m_frm.ctx().ProgramExiting; }
    QString peerAddress() const override
    {
        const Session& s = m_frm.session();
        return s.IsConnected() ? s.winsock(s.sIdx).RemoteHostIP() : QString();
    }

private:
    FrmMain& m_frm;
};

}  // namespace

struct NetTools::Parts {
    explicit Parts(FrmMain& frm)
        : names(frm), settings(frm.ctx()), session(frm),
          check(settings, session, frm.ctx().prober()), notify(check, session),
          view(frm.ctx().prober(), frm.ctx().ownAddresses(), names, session), resolve(names)
    {
    }
    CopyNames names;
    CopySettings settings;
    CopySession session;
    AutoConnect check;
    AutoNotify notify;
    NetViewModel view;
    NetResolve resolve;
};

NetTools::NetTools(FrmMain& frm)
    : QObject(&frm), m_frm(frm), m_parts(std::make_unique<Parts>(frm))
{
    Parts& p = *m_parts;
    CopyContext& ctx = frm.ctx();
    // "Last Checked" and "Updated" read the copy's clock.
    const auto timeOfDay = [&ctx] { return ctx.clock().timeOfDay(); };
    p.check.setTimeSource(timeOfDay);
    p.view.setTimeSource(timeOfDay);
    p.check.setTranslate([&ctx](const QString& t) { return ctx.translate(t); });
    p.view.setTranslate([&ctx](const QString& t) { return ctx.translate(t); });
    QTimer& timer = frm.tTimer1();
    timer.setInterval(AutoConnect::kTimerIntervalMs);
    connect(&timer, &QTimer::timeout, &p.check, &AutoConnect::tTimer1_Timer);
    connect(&p.check, &AutoConnect::timerEnabledChanged, &timer, [&timer](bool on) {
        if (on && !timer.isActive())
            timer.start();
        else if (!on)
            timer.stop();
    });
    connect(&p.check, &AutoConnect::autoCheckMenuChecked, this,
            [&frm] { frm.model().controls.setChecked(Control::mnuAutoCheck, true); });
    connect(&p.check, &AutoConnect::closeAgain, this, [&frm] { frm.requestClose(false); });
    // The plain-address form of a command calls the station.
    auto call = [&frm](const QString& address) {
        frm.commands().runCommand(parseCommandLine(address, frm.ctx().prompter(), nullptr));
    };
    connect(&p.check, &AutoConnect::commandRequested, this, call);
    connect(&p.view, &NetViewModel::connectRequested, this, call);
    // Each model's message boxes, through the copy's prompter.
    connect(&p.check, &AutoConnect::notice, this,
            [&ctx](const QString& t) { ctx.prompter().msgBox(ctx.translate(t)); });
    connect(&p.view, &NetViewModel::notice, this,
            [&ctx](const QString& t) { ctx.prompter().msgBox(ctx.translate(t)); });
    connect(&p.resolve, &NetResolve::notice, this,
            [&ctx](const QString& t) { ctx.prompter().msgBox(ctx.translate(t)); });
    connect(&p.notify, &AutoNotify::showRequested, this,
            [&ctx] { ctx.views().showModeless(Form::frmAutoIP); });
    connect(&p.notify, &AutoNotify::hideRequested, this,
            [&ctx] { ctx.views().unload(Form::frmAutoIP); });
    // A missing ICMP socket is told once for the copy, whichever echo met it.
    ctx.pinger().setUnavailableNotice([&ctx](const QString& why) {
        ctx.prompter().msgBox(why, MsgStyle::Exclamation, QStringLiteral("Ping"));
    });
    // The peer closed: "AutoCheck After Session" switches the check off.
    connect(&frm.connection(), &Connection::peerClosed, &p.check, &AutoConnect::sessionEnded);
}

NetTools::~NetTools() = default;

AutoConnect& NetTools::autoConnect() const { return m_parts->check; }
AutoNotify& NetTools::autoNotify() const { return m_parts->notify; }
NetViewModel& NetTools::netView() const { return m_parts->view; }
NetResolve& NetTools::netResolve() const { return m_parts->resolve; }
NameLookup& NetTools::names() const { return m_parts->names; }

std::unique_ptr<AutoConnectSettings> NetTools::autoConnectSettings()
{
    auto s = std::make_unique<AutoConnectSettings>(m_parts->settings, m_parts->names,
                                                   &m_parts->check);
    CopyContext& ctx = m_frm.ctx();
    connect(s.get(), &AutoConnectSettings::notice, this,
            [&ctx](const QString& t) { ctx.prompter().msgBox(ctx.translate(t)); });
    s->load();
    return s;
}

void NetTools::startAutoConnect()
{
    m_parts->check.checkStations();
}

}  // namespace vonnel
