#include "shell/MenuRoutines.h"

#include "core/Controls.h"
#include "core/CopyContext.h"
#include "shell/MenuTable.h"

namespace vonnel {

namespace {

constexpr MenuSwitch kSwitches[] = {
    {"Save Menu Off", Control::mnuSave, std::nullopt},
    {"AutoConnect Menu Off", Control::mnuFileAutoConnect, Control::mnuSysAutoConnect},
    {"Properties Menu Off", Control::mnuFileProperties, Control::mnuSysProperties},
    {"Exit Menu Off", Control::mnuFileExit, Control::mnuSysClose},
    {"Message Menu Off", Control::mnuMessage, std::nullopt},
    {"Tool Menu Off", Control::mnuTools, std::nullopt},
    {"Ring Menu Off", Control::mnuRing, std::nullopt},
    {"Send File Menu Off", Control::mnuSendFile, std::nullopt},
    {"Scrivet Menu Off", Control::mnuDraw, std::nullopt},
    {"Security Menu Off", Control::mnuSecurity, std::nullopt},
    {"Options Menu Off", Control::mnuOptions, std::nullopt},
    {"Extra Menu Off", Control::mnuSpecial, std::nullopt},
    {"Net View Menu Off", Control::mnuNetView, Control::mnuSysNetView},
    {"Net Resolve Menu Off", Control::mnuNetResolve, Control::mnuSysNetResolve},
    {"AutoNotify Menu Off", Control::mnuAutoCheck, std::nullopt},
    {"Encryption Menu Off", Control::mnuEncryption, std::nullopt},
    // The companion editor has no entry in these menus; the switch is
    // still read, so the options keep their meaning.
    {"Lexlet Menu Off", std::nullopt, std::nullopt},
    {"URL History Menu Off", Control::mnuURLHistory, std::nullopt},
};

QString text(const char* s) { return QString::fromLatin1(s); }

// A tip shows a caption without its access key's mark ("&&" stays one '&'):
// a language file gives the menus' captions, marks and all.
QString tipText(const QString& caption)
{
    QString tip;
    for (qsizetype i = 0; i < caption.size(); ++i) {
        if (caption[i] == QLatin1Char('&') && i + 1 < caption.size())
            ++i;
        tip += caption[i];
    }
    return tip;
}

void translateEntries(CopyContext& ctx, Controls& controls, std::span<const MenuEntry> entries)
{
    for (const MenuEntry& e : entries) {
        if (e.separator())
            continue;
        if (e.c >= Control::mnuMsg1 && e.c <= Control::mnuMsg6)
            continue;
        controls.setCaption(e.c, ctx.translate(text(e.key), text(e.fallback)));
        controls.setToolTip(e.c, tipText(ctx.translate(text(e.key))));
    }
}

const MenuHead& head(Control c)
{
    for (const MenuHead& h : mainMenus())
        if (h.c == c)
            return h;
    return mainMenus().front();
}

}  // namespace

std::span<const MenuSwitch> menuSwitches() { return kSwitches; }

void TransMenu(CopyContext& ctx, Controls& controls)
{
    for (const MenuHead& h : mainMenus())
        controls.setCaption(h.c, ctx.translate(text(h.key), text(h.fallback)));
    // The entries in the order of the routine: the File, Edit, Voice and
    // Tools entries run straight into the Extras ones.
    for (Control c : {Control::mnuFile, Control::mnuEdit, Control::mnuVoice, Control::mnuTools,
                      Control::mnuSpecial, Control::mnuWindow, Control::mnuHelp, Control::mnuMessage})
        translateEntries(ctx, controls, head(c).entries);
    translateEntries(ctx, controls, trayMenu());
    for (const ToolbarTip& t : toolbarTips()) {
        const QString tip = tipText(ctx.translate(text(t.key)));
        controls.setCaption(t.c, tip);
        controls.setToolTip(t.c, tip);
    }
}

void miniMenu(CopyContext& ctx, Controls& controls)
{
    for (const MenuSwitch& s : kSwitches) {
        const bool off = ctx.settingNumber(text(s.key)) != 0;
        if (s.entry)
            controls.setVisible(*s.entry, !off);
        if (s.trayTwin)
            controls.setVisible(*s.trayTwin, !off);
    }
}

}  // namespace vonnel
