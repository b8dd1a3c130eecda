#pragma once
// Every menu entry, toolbar button, pop-up entry and dialog button whose
// state the logic sets or whose click it hears. The window names its
// actions by controlName(); the logic speaks only of these values, so a
// misspelt control does not compile.

#include <QString>

namespace vonnel {

enum class Control {
    // Menu heads of the menu bar.
    mnuFile,
    mnuEdit,
    mnuMessage,
    mnuVoice,
    mnuTools,
    mnuWindow,
    mnuSpecial,
    mnuHelp,
    // File
    mnuConnect,
    mnuDisconnect,
    mnuSave,
    mnuFileAutoConnect,
    mnuFileProperties,
    mnuFileClose,
    mnuFileExit,
    // Edit
    mnuCopyAll,
    mnuCopy,
    mnuEditPaste,
    mnuClrScr,
    mnuOverride,
    mnuRefresh,
    // Messages
    mnuMsg1,
    mnuMsg2,
    mnuMsg3,
    mnuMsg4,
    mnuMsg5,
    mnuMsg6,
    mnuMsg7,
    mnuMsg8,
    // Voice
    mnuSpeak,
    mnuMute,
    mnuVolUp,
    mnuVolDown,
    // Tools
    mnuBeep,
    mnuRing,
    mnuSendFile,
    mnuDraw,
    mnuSecurity,
    mnuOptions,
    // Window
    mnuViewontop,
    mnuMin,
    // Extras
    mnuNetView,
    mnuNetResolve,
    mnuAutoCheck,
    mnuEncryption,
    mnuURLHistory,
    // Help
    mnuHelpContents,
    mnuHomePage,
    mnuSupport,
    mnuUpdate,
    mnuAbout,
    // The tray icon's menu.
    mnuTray,
    mnuSysShow,
    mnuSysNetResolve,
    mnuSysNetView,
    mnuSysAutoConnect,
    mnuSysProperties,
    mnuSysClose,
    // The toolbar and its buttons in their order: Connect, Disconnect,
    // Refresh, Clear Screen, Copy, Paste, Bold, Italic, Increase Font Size,
    // Decrease Font Size, Font Colour, Background Colour, Override, Alert
    // Ring, Ring, Mute, Help; then Send File, which follows mnuSendFile.
    Toolbar1,
    Toolbar1_1,
    Toolbar1_2,
    Toolbar1_3,
    Toolbar1_4,
    Toolbar1_5,
    Toolbar1_6,
    Toolbar1_7,
    Toolbar1_8,
    Toolbar1_9,
    Toolbar1_10,
    Toolbar1_11,
    Toolbar1_12,
    Toolbar1_13,
    Toolbar1_14,
    Toolbar1_15,
    Toolbar1_16,
    Toolbar1_17,
    Toolbar1_SendFile,
    Toolbar1_Scrivet,
    // The panes' pop-up popsFormat; each entry runs its twin.
    popCopy,
    popCopyAll,
    popPaste,
    popBold,
    popItalic,
    popFontUp,
    popFontDown,
    popFontColour,
    popBackColour,
    popOverride,
    popClrScr,
    // Speak in the pop-up of txtServer and of the remote pane: each reads
    // that pane's selection.
    popsSpeak,
    popcSpeak,
    // Buttons of frmProperty that the logic enables.
    frmProperty_cmdApply,
    frmProperty_cmdOK,
    frmProperty_cmdCancel,
};

inline constexpr int kControlCount = int(Control::frmProperty_cmdCancel) + 1;

// The object name of the control's action or widget: "mnuConnect",
// "Toolbar1:3", "Toolbar1:SendFile", "frmProperty.cmdApply".
QString controlName(Control c);

// Toolbar button n (1..17) of Toolbar1.
Control toolbarButton(int n);
// The number of a toolbar button, 0 for any other control.
int toolbarNumber(Control c);

// The menu entry or button that a pop-up entry runs; the control itself
// when it is no pop-up entry.
Control popupTwin(Control c);

}  // namespace vonnel
