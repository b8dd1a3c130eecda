#include "core/options/OptionsTable.h"

#include <array>

namespace vonnel {

const std::vector<OptionsTab>& optionsTabs()
{
    static const std::vector<OptionsTab> tabs = {
        {OptionsPage::General, "&General", "General",
         {QStringLiteral("fraStartup"), QStringLiteral("fraConnection"), QStringLiteral("fraSaveExit")},
         "general_setting.htm"},
        {OptionsPage::Font, "&Font", "Font", {QStringLiteral("fraFont")}, "font_setting.htm"},
        {OptionsPage::Sound, "&Sound", "Sound", {QStringLiteral("fraSound")}, "sound_setting.htm"},
        {OptionsPage::Apperance, "&Apperance", "Apperance", {QStringLiteral("fraApperance")},
         "apperance_setting.htm"},
        {OptionsPage::Message, "&Message", "Message",
         {QStringLiteral("fraMsg"), QStringLiteral("fraAway")}, "message_setting.htm"},
        {OptionsPage::Menu, "Menu (&E)", "Menu",
         {QStringLiteral("fraMenu"), QStringLiteral("fraLanguage")}, "menu_setting.htm"},
        {OptionsPage::Session, "Session (&I)", "Session",
         {QStringLiteral("fraSessionRec"), QStringLiteral("fraOutgoing"), QStringLiteral("fraIncoming")},
         "session_setting.htm"},
        {OptionsPage::PictureUrl, "&Picture + URL", "Picture + URL",
         {QStringLiteral("fraPic"), QStringLiteral("fraURL")}, "picture_url_setting.htm"},
        {OptionsPage::Voice, "&Voice (TTS)", "Voice (TTS)", {QStringLiteral("fraTTS")},
         "tts_setting.htm"},
        {OptionsPage::Security, "Security (&C)", "Security",
         {QStringLiteral("fraPassword"), QStringLiteral("fraEncrypt"), QStringLiteral("fraPrivate")},
         "security_setting.htm"},
        {OptionsPage::Advanced, "Advanced (&V)", "Advanced",
         {QStringLiteral("fraAdvConnect"), QStringLiteral("fraSending"), QStringLiteral("fraReceiving"),
          QStringLiteral("fraSys")},
         "advanced_setting.htm"},
    };
    return tabs;
}

const OptionsTab& optionsTab(OptionsPage page)
{
    return optionsTabs()[size_t(page)];
}

namespace {

using K = OptKind;
using P = OptionsPage;

#define ROW(c) Opt::c, #c

const std::vector<OptRow> kRows = {
    // General
    {ROW(chkLoadAtStartUp), "Load At Startup", K::Check, P::General, "fraStartup"},
    {ROW(chkShowTips), "Show Tips at Startup", K::Check, P::General, "fraStartup"},
    {ROW(chkMinStart), "System Tray Only", K::Check, P::General, "fraStartup"},
    {ROW(chkLocalInfo), "No Network Info Display", K::Check, P::General, "fraStartup"},
    {ROW(chkDesktopNotify), "Desktop Notification", K::Check, P::General, "fraStartup", nullptr,
     nullptr, "1"},
    {ROW(chkAutoCheck), "AutoConnect", K::CheckOne, P::General, "fraConnection"},
    {ROW(chkCloseProgress), "Close Progress", K::Check, P::General, "fraConnection"},
    {ROW(chkExitConfirm), "Confirm Exit", K::Check, P::General, "fraSaveExit"},
    {ROW(chkSaveToolbar), "Permanent Toolbar Settings", K::Check, P::General, "fraSaveExit"},
    // Font
    {ROW(txtFont), "Font", K::Text, P::Font, "fraFont"},
    {ROW(txtSize), "Font Size", K::Number, P::Font, "fraFont"},
    {ROW(txtStyle), "Font Bold", K::FontStyle, P::Font, "fraFont", nullptr, "Font Italic"},
    {ROW(cmdFontColour), "Font Colour", K::Colour, P::Font, "fraFont"},
    {ROW(cmdBackColour), "Background Colour", K::Colour, P::Font, "fraFont"},
    // Sound
    {ROW(chkDisableSnd), "Disable Sound", K::Check, P::Sound, "fraSound"},
    {ROW(chkSameRing), "Same Remote Ring", K::Check, P::Sound, "fraSound"},
    {ROW(txtRing), "Ring", K::Ring, P::Sound, "fraSound"},
    {ROW(txtRing1), "Ring1", K::Ring, P::Sound, "fraSound"},
    {ROW(txtRing2), "Ring2", K::Ring, P::Sound, "fraSound"},
    {ROW(txtRing3), "Ring3", K::Ring, P::Sound, "fraSound"},
    {ROW(txtRing4), "Ring4", K::Ring, P::Sound, "fraSound"},
    {ROW(txtRing5), "Ring5", K::Ring, P::Sound, "fraSound"},
    // Apperance
    {ROW(slidTrans), "Settings-Transparent", K::Slider, P::Apperance, "fraApperance"},
    {ROW(chkNetViewColour), "NetView-Colour", K::CheckOne, P::Apperance, "fraApperance"},
    {ROW(lblNV_FG), "NetView-Colour-FG", K::Colour, P::Apperance, "fraApperance"},
    {ROW(lblNV_BK), "NetView-Colour-BK", K::Colour, P::Apperance, "fraApperance"},
    {ROW(chkNetResolveColour), "NetResolve-Colour", K::CheckOne, P::Apperance, "fraApperance"},
    {ROW(lblNR_FG), "NetResolve-Colour-FG", K::Colour, P::Apperance, "fraApperance"},
    {ROW(lblNR_BK), "NetResolve-Colour-BK", K::Colour, P::Apperance, "fraApperance"},
    {ROW(chkURLColour), "URL History-Colour", K::CheckOne, P::Apperance, "fraApperance"},
    {ROW(lblURL_FG), "URL History-Colour-FG", K::Colour, P::Apperance, "fraApperance"},
    {ROW(lblURL_BK), "URL History-Colour-BK", K::Colour, P::Apperance, "fraApperance"},
    {ROW(chkCheckColour), "AutoCheck-Colour", K::CheckOne, P::Apperance, "fraApperance"},
    {ROW(lblAC_FG), "AutoCheck-Colour-FG", K::Colour, P::Apperance, "fraApperance"},
    {ROW(lblAC_BK), "AutoCheck-Colour-BK", K::Colour, P::Apperance, "fraApperance"},
    {ROW(chkEncryptColour), "Encrypt-Colour", K::CheckOne, P::Apperance, "fraApperance"},
    {ROW(lblEnc_FG), "Encrypt-Colour-FG", K::Colour, P::Apperance, "fraApperance"},
    {ROW(lblEnc_BK), "Encrypt-Colour-BK", K::Colour, P::Apperance, "fraApperance"},
    // Message
    {ROW(txtMnu1), "Menu1", K::Text, P::Message, "fraMsg"},
    {ROW(txtMsg1), "Message1", K::Text, P::Message, "fraMsg"},
    {ROW(txtMnu2), "Menu2", K::Text, P::Message, "fraMsg"},
    {ROW(txtMsg2), "Message2", K::Text, P::Message, "fraMsg"},
    {ROW(txtMnu3), "Menu3", K::Text, P::Message, "fraMsg"},
    {ROW(txtMsg3), "Message3", K::Text, P::Message, "fraMsg"},
    {ROW(txtMnu4), "Menu4", K::Text, P::Message, "fraMsg"},
    {ROW(txtMsg4), "Message4", K::Text, P::Message, "fraMsg"},
    {ROW(txtMnu5), "Menu5", K::Text, P::Message, "fraMsg"},
    {ROW(txtMsg5), "Message5", K::Text, P::Message, "fraMsg"},
    {ROW(txtMnu6), "Menu6", K::Text, P::Message, "fraMsg"},
    {ROW(txtMsg6), "Message6", K::Text, P::Message, "fraMsg"},
    {ROW(chkAwayMsgOn), "Away Message On", K::Check, P::Message, "fraAway"},
    {ROW(chkAwayResize), "Away Message When Minimized", K::Check, P::Message, "fraAway"},
    {ROW(txtAwayMsg), "Away Message", K::Text, P::Message, "fraAway"},
    {ROW(chkAutoMin), "Automatic Minimize (Screen Saver)", K::Check, P::Message, "fraAway"},
    // Menu: a checked box hides its entry
    {ROW(chkMSave), "Save Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMAutoConnect), "AutoConnect Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMProperties), "Properties Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMExit), "Exit Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMMessage), "Message Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMTool), "Tool Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMRing), "Ring Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMSendFile), "Send File Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMScrivet), "Scrivet Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMSecurity), "Security Menu Off", K::Check, P::Menu, "fraMenu"},
    // The dialog's own key; the main window reads "Options Menu Off".
    {ROW(chkMOption), "Option Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMExtra), "Extra Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMNetView), "Net View Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMNetResolve), "Net Resolve Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMAutoNotify), "AutoNotify Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMEncryption), "Encryption Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMLexlet), "Lexlet Menu Off", K::Check, P::Menu, "fraMenu"},
    {ROW(chkMURLHistory), "URL History Menu Off", K::Check, P::Menu, "fraMenu"},
    // Session
    {ROW(chkNoSmartSave), "No SmartSave", K::Check, P::Session, "fraSessionRec"},
    {ROW(txtSaveFolder), "SmartSave Folder", K::Text, P::Session, "fraSessionRec"},
    {ROW(chkSaveTempPort), "Permanent Port", K::Check, P::Session, "fraOutgoing"},
    {ROW(chkAutoAcceptChat), "Auto Accept Connection", K::Check, P::Session, "fraIncoming"},
    {ROW(chkBlock), "Detect Bad IP", K::Check, P::Session, "fraIncoming"},
    {ROW(chkPermit), "Detect Safe IP", K::Check, P::Session, "fraIncoming"},
    // Picture + URL
    {ROW(chkMainVisible), "MainVisibleOnDrawMode", K::Check, P::PictureUrl, "fraPic"},
    {ROW(chkNoPicErrChk), "No Pic Error Check", K::Check, P::PictureUrl, "fraPic"},
    {ROW(chkNoPicErrMsg), "No Pic Error Message", K::Check, P::PictureUrl, "fraPic"},
    {ROW(chkAlwaysCenter), "No Move Pic To Center", K::Check, P::PictureUrl, "fraPic"},
    {ROW(chkWebCheck), "Web Check", K::Check, P::PictureUrl, "fraURL"},
    {ROW(chkShowURLHst), "Show URL History", K::Check, P::PictureUrl, "fraURL"},
    {ROW(chkNoLocalURL), "No Local URL", K::Check, P::PictureUrl, "fraURL"},
    {ROW(chkNoRemoteURL), "No Remote URL", K::Check, P::PictureUrl, "fraURL"},
    {ROW(chkURLSaveReminder), "URL Save Reminder", K::Check, P::PictureUrl, "fraURL"},
    // Voice: the two speaker boxes open from keys nothing writes and are
    // written to the keys the speech reads; kept so
    {ROW(chkDisableTTS), "Disable TTS", K::Check, P::Voice, "fraTTS"},
    {ROW(chkDisableLocalTTS), "Local Speaker Off", K::Check, P::Voice, "fraTTS", "Disable Local Speaker"},
    {ROW(chkDisableRemoteTTS), "Remote Speaker Off", K::Check, P::Voice, "fraTTS",
     "Disable Remote Speaker"},
    {ROW(chkNotSendAutoTTS), "Disable Auto TTS Signal", K::Check, P::Voice, "fraTTS"},
    {ROW(chkNotSendManualTTS), "Disable Manual TTS Signal", K::Check, P::Voice, "fraTTS"},
    {ROW(cbVoiceEng), "Speaker", K::Choice, P::Voice, "fraTTS"},
    {ROW(slidVol), "Voice Volume", K::Slider, P::Voice, "fraTTS"},
    {ROW(slidSpeed), "Voice Speed", K::Slider, P::Voice, "fraTTS"},
    {ROW(SlidPitch), "Voice Pitch", K::Slider, P::Voice, "fraTTS"},
    // Security
    {ROW(chkEncrypt), "Encrypted", K::Check, P::Security, "fraEncrypt"},
    // Going private with a copy of ours: on unless switched off; refusing
    // peers of the old wire only when asked to.
    {ROW(chkPrivate), "Private Sessions", K::Check, P::Security, "fraPrivate", nullptr, nullptr, "1"},
    {ROW(chkPrivateOnly), "Private Sessions Only", K::Check, P::Security, "fraPrivate"},
    // Advanced
    {ROW(chkVerChk), "Version Check", K::Check, P::Advanced, "fraAdvConnect"},
    {ROW(chkNoResolve), "No Resolve To Connect", K::Check, P::Advanced, "fraAdvConnect"},
    {ROW(txtTimeout), "Incomming Connection Timeout", K::Number, P::Advanced, "fraAdvConnect"},
    {ROW(txtBytePerSend), "Byte Per Send", K::Number, P::Advanced, "fraSending"},
    {ROW(txtPasteTextLimit), "Paste Text Limit", K::Number, P::Advanced, "fraSending"},
    {ROW(txtEncryptTextLimit), "Paste Encrypted Text Limit", K::Number, P::Advanced, "fraSending"},
    {ROW(txtSndFileSize), "SndMaxSize", K::Thousands, P::Advanced, "fraSending"},
    {ROW(chkSelfRepair), "Character Self Repair", K::Check, P::Advanced, "fraReceiving"},
    {ROW(txtSelfRepairCount), "Repair Count Limit", K::Number, P::Advanced, "fraReceiving"},
    {ROW(txtOverflow), "Overflow", K::Number, P::Advanced, "fraReceiving"},
    {ROW(txtOverallTextLimit), "Text Limit", K::Number, P::Advanced, "fraReceiving"},
    {ROW(txtMemLimit), "Memory Limit", K::Number, P::Advanced, "fraSys"},
    {ROW(txtCaptTime), "Capture Time", K::Number, P::Advanced, "fraSys"},
    {ROW(txtCmlInterval), "Command Line Interval", K::Number, P::Advanced, "fraSys"},
};

#undef ROW

}  // namespace

const std::vector<OptRow>& optionRows()
{
    return kRows;
}

const OptRow& optionRow(Opt control)
{
    // The rows stand in the order of the enumeration; built once.
    static const std::array<const OptRow*, kOptCount> byControl = [] {
        std::array<const OptRow*, kOptCount> index{};
        for (const OptRow& r : kRows)
            index[size_t(r.control)] = &r;
        return index;
    }();
    return *byControl[size_t(control)];
}

QString optName(Opt control)
{
    return QLatin1String(optionRow(control).name);
}

}  // namespace vonnel
