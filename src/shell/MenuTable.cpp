#include "shell/MenuTable.h"

namespace vonnel {

namespace {

constexpr MenuEntry kSeparator{Control::mnuFile, nullptr, nullptr};

// Lang.txt keys: the first text of each line, to the closing "};".
constexpr MenuEntry kFile[] = {
    {Control::mnuConnect, "Connect", "&Connect..."},
    {Control::mnuDisconnect, "Disconnect", "&Disconnect"},
    kSeparator,
    {Control::mnuSave, "Save", "&Save..."},
    {Control::mnuFileAutoConnect, "AutoConnect", "&AutoConnect..."},
    {Control::mnuFileProperties, "Properties", "P&roperties..."},
    kSeparator,
    {Control::mnuFileClose, "Close", "C&lose"},
    {Control::mnuFileExit, "Exit", "E&xit"},
};

// Lang.txt keys: the first text of each line, to the closing "};".
constexpr MenuEntry kEdit[] = {
    {Control::mnuCopyAll, "Copy All", "Copy &All"},
    {Control::mnuCopy, "Copy", "&Copy"},
    {Control::mnuEditPaste, "Paste", "&Paste"},
    kSeparator,
    {Control::mnuClrScr, "Clear Screen", "C&lear Screen"},
    {Control::mnuOverride, "Override", "&Override"},
    {Control::mnuRefresh, "Refresh", "&Refresh"},
};

// The six presets carry the user's own captions (Menu1 to Menu6).
// Lang.txt keys: the first text of each line, to the closing "};".
constexpr MenuEntry kMessages[] = {
    {Control::mnuMsg1, "Message 1", "Message &1"},
    {Control::mnuMsg2, "Message 2", "Message &2"},
    {Control::mnuMsg3, "Message 3", "Message &3"},
    {Control::mnuMsg4, "Message 4", "Message &4"},
    {Control::mnuMsg5, "Message 5", "Message &5"},
    {Control::mnuMsg6, "Message 6", "Message &6"},
    kSeparator,
    {Control::mnuMsg7, "Please Wait", "&Please Wait"},
    {Control::mnuMsg8, "I'm Back", "I'm &Back"},
};

// Lang.txt keys: the first text of each line, to the closing "};".
constexpr MenuEntry kVoice[] = {
    {Control::mnuSpeak, "Speak", "&Speak"},
    {Control::mnuMute, "Mute", "&Mute"},
    {Control::mnuVolUp, "Volume Up", "Volume &Up"},
    {Control::mnuVolDown, "Volume Down", "Volume &Down"},
};

// Lang.txt keys: the first text of each line, to the closing "};".
constexpr MenuEntry kTools[] = {
    {Control::mnuBeep, "Alert Ring", "&Alert Ring"},
    {Control::mnuRing, "Ring", "&Ring"},
    {Control::mnuSendFile, "Send File", "Send &File..."},
    {Control::mnuDraw, "Scrivet", "S&crivet"},
    kSeparator,
    {Control::mnuSecurity, "Security", "S&ecurity..."},
    {Control::mnuOptions, "Options", "&Options..."},
};

// Lang.txt keys: the first text of each line, to the closing "};".
constexpr MenuEntry kWindow[] = {
    {Control::mnuViewontop, "Always on Top", "Always on &Top"},
    {Control::mnuMin, "Minimize", "&Minimize"},
};

// Lang.txt keys: the first text of each line, to the closing "};".
constexpr MenuEntry kExtras[] = {
    {Control::mnuNetView, "Net View", "&Net View..."},
    {Control::mnuNetResolve, "Net Resolve", "Net &Resolve..."},
    {Control::mnuAutoCheck, "AutoNotify", "&AutoNotify..."},
    {Control::mnuEncryption, "Encryption", "&Encryption..."},
    {Control::mnuURLHistory, "URL History", "&URL History..."},
};

// Lang.txt keys: the first text of each line, to the closing "};".
constexpr MenuEntry kHelp[] = {
    {Control::mnuHelpContents, "Contents", "&Contents"},
    {Control::mnuHomePage, "Home Page", "&Home Page"},
    {Control::mnuSupport, "Support", "&Support"},
    {Control::mnuUpdate, "Update", "&Update"},
    kSeparator,
    {Control::mnuAbout, "About", "&About Vonnel"},
};

// Lang.txt keys: the first text of each line, to the closing "};".
constexpr MenuHead kHeads[] = {
    {Control::mnuFile, "File", "&File", kFile},
    {Control::mnuEdit, "Edit", "&Edit", kEdit},
    {Control::mnuMessage, "Messages", "&Messages", kMessages},
    {Control::mnuVoice, "Voice", "&Voice", kVoice},
    {Control::mnuTools, "Tools", "&Tools", kTools},
    {Control::mnuWindow, "Window", "&Window", kWindow},
    {Control::mnuSpecial, "Extras", "E&xtras", kExtras},
    {Control::mnuHelp, "Help", "&Help", kHelp},
};

// Lang.txt keys: the first text of each line, to the closing "};".
constexpr MenuEntry kTray[] = {
    {Control::mnuSysShow, "Show", "&Show"},
    kSeparator,
    {Control::mnuSysNetResolve, "Net Resolve", "Net &Resolve..."},
    {Control::mnuSysNetView, "Net View", "&Net View..."},
    {Control::mnuSysAutoConnect, "AutoConnect", "&AutoConnect..."},
    {Control::mnuSysProperties, "Properties", "P&roperties..."},
    kSeparator,
    {Control::mnuSysClose, "Exit", "E&xit"},
};

// Lang.txt keys: the first text of each line, to the closing "};".
constexpr ToolbarTip kToolbar[] = {
    {Control::Toolbar1_1, "Connect"},
    {Control::Toolbar1_2, "Disconnect", true},
    {Control::Toolbar1_SendFile, "Send File"},
    {Control::Toolbar1_Scrivet, "Scrivet", true},
    {Control::Toolbar1_14, "Alert Ring"},
    {Control::Toolbar1_15, "Ring"},
    {Control::Toolbar1_16, "Mute", true},
    {Control::Toolbar1_7, "Bold"},
    {Control::Toolbar1_8, "Italic"},
    {Control::Toolbar1_9, "Increase Font Size"},
    {Control::Toolbar1_10, "Decrease Font Size"},
    {Control::Toolbar1_11, "Font Colour"},
    {Control::Toolbar1_12, "Background Colour", true},
    {Control::Toolbar1_5, "Copy"},
    {Control::Toolbar1_6, "Paste"},
    {Control::Toolbar1_4, "Clear Screen"},
    {Control::Toolbar1_3, "Refresh"},
    {Control::Toolbar1_13, "Override", true},
    {Control::Toolbar1_17, "Help"},
};

}  // namespace

std::span<const MenuHead> mainMenus() { return kHeads; }
std::span<const MenuEntry> trayMenu() { return kTray; }
std::span<const ToolbarTip> toolbarTips() { return kToolbar; }

std::vector<bool> separatorsShown(std::span<const MenuEntry> entries,
                                  const std::function<bool(Control)>& shown)
{
    std::vector<bool> flags;
    bool entryBefore = false;  // a shown entry since the last standing separator
    int pending = -1;          // a separator waiting for a shown entry after it
    for (const MenuEntry& e : entries) {
        if (e.separator()) {
            flags.push_back(false);
            if (entryBefore && pending < 0)
                pending = int(flags.size()) - 1;
            continue;
        }
        if (!shown(e.c))
            continue;
        if (pending >= 0) {
            flags[size_t(pending)] = true;
            pending = -1;
        }
        entryBefore = true;
    }
    return flags;
}

}  // namespace vonnel
