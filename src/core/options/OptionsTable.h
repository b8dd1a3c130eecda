#pragma once
// What the options dialog shows and which setting each of its boxes keeps:
// the eleven tabs in their order, and one table of (control, key, kind,
// page) from which loading, applying and the round trip are all driven.

#include <QString>
#include <QStringList>
#include <vector>

namespace vonnel {

// The tabs of stbOptions, in the order shown.
enum class OptionsPage {
    General,
    Font,
    Sound,
    Apperance,
    Message,
    Menu,
    Session,
    PictureUrl,
    Voice,
    Security,
    Advanced,
};
inline constexpr int kOptionsPageCount = int(OptionsPage::Advanced) + 1;

struct OptionsTab {
    OptionsPage page;
    const char* caption;   // untranslated, with its access key
    const char* key;       // the caption without the access key: the lookup's key
    QStringList frames;
    const char* helpPage;  // under HelpPath
};
const std::vector<OptionsTab>& optionsTabs();
const OptionsTab& optionsTab(OptionsPage page);

// The controls that keep a setting.
enum class Opt {
    // General
    chkLoadAtStartUp, chkShowTips, chkMinStart, chkLocalInfo, chkDesktopNotify,
    chkAutoCheck, chkCloseProgress, chkExitConfirm, chkSaveToolbar,
    // Font
    txtFont, txtSize, txtStyle, cmdFontColour, cmdBackColour,
    // Sound
    chkDisableSnd, chkSameRing, txtRing, txtRing1, txtRing2, txtRing3, txtRing4, txtRing5,
    // Apperance
    slidTrans, chkNetViewColour, lblNV_FG, lblNV_BK, chkNetResolveColour, lblNR_FG, lblNR_BK,
    chkURLColour, lblURL_FG, lblURL_BK, chkCheckColour, lblAC_FG, lblAC_BK,
    chkEncryptColour, lblEnc_FG, lblEnc_BK,
    // Message
    txtMnu1, txtMsg1, txtMnu2, txtMsg2, txtMnu3, txtMsg3, txtMnu4, txtMsg4,
    txtMnu5, txtMsg5, txtMnu6, txtMsg6, chkAwayMsgOn, chkAwayResize, txtAwayMsg, chkAutoMin,
    // Menu (CustMenu / MenuNotDisplayed)
    chkMSave, chkMAutoConnect, chkMProperties, chkMExit, chkMMessage, chkMTool, chkMRing,
    chkMSendFile, chkMScrivet, chkMSecurity, chkMOption, chkMExtra, chkMNetView,
    chkMNetResolve, chkMAutoNotify, chkMEncryption, chkMLexlet, chkMURLHistory,
    // Session
    chkNoSmartSave, txtSaveFolder, chkSaveTempPort, chkAutoAcceptChat, chkBlock, chkPermit,
    // Picture + URL
    chkMainVisible, chkNoPicErrChk, chkNoPicErrMsg, chkAlwaysCenter,
    chkWebCheck, chkShowURLHst, chkNoLocalURL, chkNoRemoteURL, chkURLSaveReminder,
    // Voice
    chkDisableTTS, chkDisableLocalTTS, chkDisableRemoteTTS, chkNotSendAutoTTS,
    chkNotSendManualTTS, cbVoiceEng, slidVol, slidSpeed, SlidPitch,
    // Security
    chkEncrypt, chkPrivate, chkPrivateOnly,
    // Advanced
    chkVerChk, chkNoResolve, txtTimeout, txtBytePerSend, txtPasteTextLimit,
    txtEncryptTextLimit, txtSndFileSize, chkSelfRepair, txtSelfRepairCount, txtOverflow,
    txtOverallTextLimit, txtMemLimit, txtCaptTime, txtCmlInterval,
};
inline constexpr int kOptCount = int(Opt::txtCmlInterval) + 1;

// How a control's value is held (as text) and written.
enum class OptKind {
    Check,      // "1"/"0"; checked when the key is a number not 0
    CheckOne,   // "1"/"0"; checked when the key is exactly 1
    Number,     // the text as typed
    Text,       // the text as typed
    Thousands,  // the key in units, the box in thousands
    Slider,     // a whole number
    Colour,     // a colour as a decimal number
    Choice,     // a list position
    FontStyle,  // "0" regular, "1" bold, "2" italic, "3" both; two keys
    Ring,       // a sound file's bare name, written after all pages
};

struct OptRow {
    Opt control;
    const char* name;  // the control's name
    const char* key;   // the key written on Apply
    OptKind kind;
    OptionsPage page;
    const char* frame;
    // The key read on load when it differs from the written one.
    const char* loadKey = nullptr;
    // The second key of a FontStyle (italic).
    const char* key2 = nullptr;
    // The value of a key that is absent.
    const char* absent = nullptr;
};

// Every row, in the order of the pages: the order Apply writes them in.
const std::vector<OptRow>& optionRows();
const OptRow& optionRow(Opt control);
QString optName(Opt control);

}  // namespace vonnel
