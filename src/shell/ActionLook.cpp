#include "shell/ActionLook.h"

#include "shell/SvgIcon.h"

namespace vonnel {

namespace {

struct Look {
    Control c;
    ActionPicture picture;
    QKeySequence::StandardKey key = QKeySequence::UnknownKey;
    // Where the platform's key scheme has none for the standard key (Quit
    // has none in the Windows scheme some platform plug-ins use).
    const char* fallbackKey = nullptr;
};

// One line per entry. Twins (see menuTwin) share the line, so a button
// and its menu entry read as one action.
const Look kLooks[] = {
    {Control::mnuConnect, {"call-start", "connect"}},
    {Control::mnuDisconnect, {"call-stop", "disconnect"}},
    {Control::mnuSave, {"document-save", "save"}, QKeySequence::Save},
    {Control::mnuFileAutoConnect, {nullptr, "autoconnect"}},
    {Control::mnuFileProperties, {"document-properties", "properties"}},
    {Control::mnuFileClose, {nullptr, "close"}, QKeySequence::Close},
    {Control::mnuFileExit, {"application-exit", "exit"}, QKeySequence::Quit, "Ctrl+Q"},
    {Control::mnuCopyAll, {nullptr, "copy-all"}},
    {Control::mnuCopy, {"edit-copy", "copy"}},
    {Control::mnuEditPaste, {"edit-paste", "paste"}},
    {Control::mnuClrScr, {"edit-clear", "clear"}},
    {Control::mnuOverride, {nullptr, "override"}},
    {Control::mnuRefresh, {"view-refresh", "refresh"}, QKeySequence::Refresh},
    {Control::mnuMsg1, {nullptr, "message"}},
    {Control::mnuMsg2, {nullptr, "message"}},
    {Control::mnuMsg3, {nullptr, "message"}},
    {Control::mnuMsg4, {nullptr, "message"}},
    {Control::mnuMsg5, {nullptr, "message"}},
    {Control::mnuMsg6, {nullptr, "message"}},
    {Control::mnuMsg7, {nullptr, "wait"}},
    {Control::mnuMsg8, {nullptr, "back"}},
    {Control::mnuSpeak, {nullptr, "speak"}},
    {Control::mnuMute, {"audio-volume-muted", "mute"}},
    {Control::mnuVolUp, {nullptr, "volume-up"}},
    {Control::mnuVolDown, {nullptr, "volume-down"}},
    {Control::mnuBeep, {nullptr, "alert-ring"}},
    {Control::mnuRing, {nullptr, "ring"}},
    {Control::mnuSendFile, {"document-send", "send-file"}, QKeySequence::Open},
    {Control::mnuDraw, {nullptr, "board"}},
    {Control::mnuSecurity, {"security-high", "security"}},
    {Control::mnuOptions, {"preferences-system", "options"}, QKeySequence::Preferences},
    {Control::mnuViewontop, {nullptr, "on-top"}},
    {Control::mnuMin, {nullptr, "minimize"}},
    {Control::mnuNetView, {nullptr, "net-view"}},
    {Control::mnuNetResolve, {nullptr, "net-resolve"}},
    {Control::mnuAutoCheck, {nullptr, "autonotify"}},
    {Control::mnuEncryption, {"dialog-password", "encryption"}},
    {Control::mnuURLHistory, {nullptr, "url-history"}},
    {Control::mnuHelpContents, {"help-contents", "help"}, QKeySequence::HelpContents},
    {Control::mnuHomePage, {"go-home", "home"}},
    {Control::mnuSupport, {"help-faq", "support"}},
    {Control::mnuUpdate, {"system-software-update", "update"}},
    {Control::mnuAbout, {"help-about", "about"}},
    {Control::mnuSysShow, {nullptr, "show"}},
    // The format buttons have no menu twin.
    {Control::Toolbar1_7, {"format-text-bold", "bold"}},
    {Control::Toolbar1_8, {"format-text-italic", "italic"}},
    {Control::Toolbar1_9, {"format-font-size-more", "font-up"}},
    {Control::Toolbar1_10, {"format-font-size-less", "font-down"}},
    {Control::Toolbar1_11, {"format-text-color", "font-colour"}},
    {Control::Toolbar1_12, {"format-fill-color", "back-colour"}},
};

const Look* lookOf(Control c)
{
    c = menuTwin(c);
    for (const Look& l : kLooks)
        if (l.c == c)
            return &l;
    return nullptr;
}

}  // namespace

Control menuTwin(Control c)
{
    switch (c) {
    case Control::Toolbar1_1: return Control::mnuConnect;
    case Control::Toolbar1_2: return Control::mnuDisconnect;
    case Control::Toolbar1_3: return Control::mnuRefresh;
    case Control::Toolbar1_4: return Control::mnuClrScr;
    case Control::Toolbar1_5: return Control::mnuCopy;
    case Control::Toolbar1_6: return Control::mnuEditPaste;
    case Control::Toolbar1_13: return Control::mnuOverride;
    case Control::Toolbar1_14: return Control::mnuBeep;
    case Control::Toolbar1_15: return Control::mnuRing;
    case Control::Toolbar1_16: return Control::mnuMute;
    case Control::Toolbar1_17: return Control::mnuHelpContents;
    case Control::Toolbar1_SendFile: return Control::mnuSendFile;
    case Control::Toolbar1_Scrivet: return Control::mnuDraw;
    case Control::mnuSysNetResolve: return Control::mnuNetResolve;
    case Control::mnuSysNetView: return Control::mnuNetView;
    case Control::mnuSysAutoConnect: return Control::mnuFileAutoConnect;
    case Control::mnuSysProperties: return Control::mnuFileProperties;
    case Control::mnuSysClose: return Control::mnuFileExit;
    default: return c;
    }
}

ActionPicture actionPicture(Control c)
{
    const Look* l = lookOf(c);
    return l ? l->picture : ActionPicture{nullptr, nullptr};
}

QIcon drawnIcon(const QString& drawing)
{
    return svgIcon(QStringLiteral(":/icons/") + drawing + QStringLiteral(".svg"));
}

QIcon actionIcon(Control c)
{
    const ActionPicture p = actionPicture(c);
    if (!p.drawing)
        return QIcon();
    const QIcon ours = drawnIcon(QLatin1String(p.drawing));
    return p.themeName ? QIcon::fromTheme(QLatin1String(p.themeName), ours) : ours;
}

QKeySequence::StandardKey actionKey(Control c)
{
    const Look* l = lookOf(c);
    return l ? l->key : QKeySequence::UnknownKey;
}

QList<QKeySequence> actionShortcuts(Control c)
{
    const Look* l = lookOf(c);
    if (!l || l->key == QKeySequence::UnknownKey)
        return {};
    QList<QKeySequence> keys = QKeySequence::keyBindings(l->key);
    if (keys.isEmpty() && l->fallbackKey)
        keys << QKeySequence(QLatin1String(l->fallbackKey), QKeySequence::PortableText);
    return keys;
}

QString tipWithKey(const QString& tip, const QList<QKeySequence>& keys)
{
    if (keys.isEmpty())
        return tip;
    const QKeySequence& key = keys.constFirst();
    return tip + QStringLiteral(" (") + key.toString(QKeySequence::NativeText) + QLatin1Char(')');
}

}  // namespace vonnel
