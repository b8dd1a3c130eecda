#include "core/Control.h"

namespace vonnel {

QString controlName(Control c)
{
    switch (c) {
    case Control::mnuFile: return QStringLiteral("mnuFile");
    case Control::mnuEdit: return QStringLiteral("mnuEdit");
    case Control::mnuMessage: return QStringLiteral("mnuMessage");
    case Control::mnuVoice: return QStringLiteral("mnuVoice");
    case Control::mnuTools: return QStringLiteral("mnuTools");
    case Control::mnuWindow: return QStringLiteral("mnuWindow");
    case Control::mnuSpecial: return QStringLiteral("mnuSpecial");
    case Control::mnuHelp: return QStringLiteral("mnuHelp");
    case Control::mnuConnect: return QStringLiteral("mnuConnect");
    case Control::mnuDisconnect: return QStringLiteral("mnuDisconnect");
    case Control::mnuSave: return QStringLiteral("mnuSave");
    case Control::mnuFileAutoConnect: return QStringLiteral("mnuFileAutoConnect");
    case Control::mnuFileProperties: return QStringLiteral("mnuFileProperties");
    case Control::mnuFileClose: return QStringLiteral("mnuFileClose");
    case Control::mnuFileExit: return QStringLiteral("mnuFileExit");
    case Control::mnuCopyAll: return QStringLiteral("mnuCopyAll");
    case Control::mnuCopy: return QStringLiteral("mnuCopy");
    case Control::mnuEditPaste: return QStringLiteral("mnuEditPaste");
    case Control::mnuClrScr: return QStringLiteral("mnuClrScr");
    case Control::mnuOverride: return QStringLiteral("mnuOverride");
    case Control::mnuRefresh: return QStringLiteral("mnuRefresh");
    case Control::mnuMsg1: return QStringLiteral("mnuMsg1");
    case Control::mnuMsg2: return QStringLiteral("mnuMsg2");
    case Control::mnuMsg3: return QStringLiteral("mnuMsg3");
    case Control::mnuMsg4: return QStringLiteral("mnuMsg4");
    case Control::mnuMsg5: return QStringLiteral("mnuMsg5");
    case Control::mnuMsg6: return QStringLiteral("mnuMsg6");
    case Control::mnuMsg7: return QStringLiteral("mnuMsg7");
    case Control::mnuMsg8: return QStringLiteral("mnuMsg8");
    case Control::mnuSpeak: return QStringLiteral("mnuSpeak");
    case Control::mnuMute: return QStringLiteral("mnuMute");
    case Control::mnuVolUp: return QStringLiteral("mnuVolUp");
    case Control::mnuVolDown: return QStringLiteral("mnuVolDown");
    case Control::mnuBeep: return QStringLiteral("mnuBeep");
    case Control::mnuRing: return QStringLiteral("mnuRing");
    case Control::mnuSendFile: return QStringLiteral("mnuSendFile");
    case Control::mnuDraw: return QStringLiteral("mnuDraw");
    case Control::mnuSecurity: return QStringLiteral("mnuSecurity");
    case Control::mnuOptions: return QStringLiteral("mnuOptions");
    case Control::mnuViewontop: return QStringLiteral("mnuViewontop");
    case Control::mnuMin: return QStringLiteral("mnuMin");
    case Control::mnuNetView: return QStringLiteral("mnuNetView");
    case Control::mnuNetResolve: return QStringLiteral("mnuNetResolve");
    case Control::mnuAutoCheck: return QStringLiteral("mnuAutoCheck");
    case Control::mnuEncryption: return QStringLiteral("mnuEncryption");
    case Control::mnuURLHistory: return QStringLiteral("mnuURLHistory");
    case Control::mnuHelpContents: return QStringLiteral("mnuHelpContents");
    case Control::mnuHomePage: return QStringLiteral("mnuHomePage");
    case Control::mnuSupport: return QStringLiteral("mnuSupport");
    case Control::mnuUpdate: return QStringLiteral("mnuUpdate");
    case Control::mnuAbout: return QStringLiteral("mnuAbout");
    case Control::mnuTray: return QStringLiteral("mnuTray");
    case Control::mnuSysShow: return QStringLiteral("mnuSysShow");
    case Control::mnuSysNetResolve: return QStringLiteral("mnuSysNetResolve");
    case Control::mnuSysNetView: return QStringLiteral("mnuSysNetView");
    case Control::mnuSysAutoConnect: return QStringLiteral("mnuSysAutoConnect");
    case Control::mnuSysProperties: return QStringLiteral("mnuSysProperties");
    case Control::mnuSysClose: return QStringLiteral("mnuSysClose");
    case Control::Toolbar1: return QStringLiteral("Toolbar1");
    case Control::Toolbar1_1: return QStringLiteral("Toolbar1:1");
    case Control::Toolbar1_2: return QStringLiteral("Toolbar1:2");
    case Control::Toolbar1_3: return QStringLiteral("Toolbar1:3");
    case Control::Toolbar1_4: return QStringLiteral("Toolbar1:4");
    case Control::Toolbar1_5: return QStringLiteral("Toolbar1:5");
    case Control::Toolbar1_6: return QStringLiteral("Toolbar1:6");
    case Control::Toolbar1_7: return QStringLiteral("Toolbar1:7");
    case Control::Toolbar1_8: return QStringLiteral("Toolbar1:8");
    case Control::Toolbar1_9: return QStringLiteral("Toolbar1:9");
    case Control::Toolbar1_10: return QStringLiteral("Toolbar1:10");
    case Control::Toolbar1_11: return QStringLiteral("Toolbar1:11");
    case Control::Toolbar1_12: return QStringLiteral("Toolbar1:12");
    case Control::Toolbar1_13: return QStringLiteral("Toolbar1:13");
    case Control::Toolbar1_14: return QStringLiteral("Toolbar1:14");
    case Control::Toolbar1_15: return QStringLiteral("Toolbar1:15");
    case Control::Toolbar1_16: return QStringLiteral("Toolbar1:16");
    case Control::Toolbar1_17: return QStringLiteral("Toolbar1:17");
    case Control::Toolbar1_SendFile: return QStringLiteral("Toolbar1:SendFile");
    case Control::Toolbar1_Scrivet: return QStringLiteral("Toolbar1:Scrivet");
    case Control::popCopy: return QStringLiteral("popCopy");
    case Control::popCopyAll: return QStringLiteral("popCopyAll");
    case Control::popPaste: return QStringLiteral("popPaste");
    case Control::popBold: return QStringLiteral("popBold");
    case Control::popItalic: return QStringLiteral("popItalic");
    case Control::popFontUp: return QStringLiteral("popFontUp");
    case Control::popFontDown: return QStringLiteral("popFontDown");
    case Control::popFontColour: return QStringLiteral("popFontColour");
    case Control::popBackColour: return QStringLiteral("popBackColour");
    case Control::popOverride: return QStringLiteral("popOverride");
    case Control::popClrScr: return QStringLiteral("popClrScr");
    case Control::popsSpeak: return QStringLiteral("popsSpeak");
    case Control::popcSpeak: return QStringLiteral("popcSpeak");
    case Control::frmProperty_cmdApply: return QStringLiteral("frmProperty.cmdApply");
    case Control::frmProperty_cmdOK: return QStringLiteral("frmProperty.cmdOK");
    case Control::frmProperty_cmdCancel: return QStringLiteral("frmProperty.cmdCancel");
    }
    return QString();
}

Control toolbarButton(int n)
{
    Q_ASSERT(n >= 1 && n <= 17);
    return Control(int(Control::Toolbar1_1) + n - 1);
}

int toolbarNumber(Control c)
{
    const int n = int(c) - int(Control::Toolbar1_1) + 1;
    return n >= 1 && n <= 17 ? n : 0;
}

Control popupTwin(Control c)
{
    switch (c) {
    case Control::popCopy: return Control::mnuCopy;
    case Control::popCopyAll: return Control::mnuCopyAll;
    case Control::popPaste: return Control::mnuEditPaste;
    case Control::popBold: return Control::Toolbar1_7;
    case Control::popItalic: return Control::Toolbar1_8;
    case Control::popFontUp: return Control::Toolbar1_9;
    case Control::popFontDown: return Control::Toolbar1_10;
    case Control::popFontColour: return Control::Toolbar1_11;
    case Control::popBackColour: return Control::Toolbar1_12;
    case Control::popOverride: return Control::mnuOverride;
    case Control::popClrScr: return Control::mnuClrScr;
    default: return c;
    }
}

}  // namespace vonnel
