#pragma once
// Live typing: key events of the local pane become frames as they are
// typed. Also the actions on whole texts (paste, refresh, override, clear)
// and the format exchange that gives the remote pane the sender's look.
//
// The key handlers take key events as plain data, in the order the text
// control delivers them: key down, key press (the character not yet in the
// pane), the control's own edit, change, key up. `keyboardPress` and
// `keyboardRelease` run that order for one key as a keyboard would, and
// `typeText` for a whole string. The pane model `txtServer` is the truth;
// the window only shows it.

#include "core/Control.h"
#include "wire/PaneFormat.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <array>
#include <functional>
#include <memory>
#include <optional>

namespace vonnel {

class CopyContext;
class MainModel;
class Session;
class Sender;
class Encryption;
class Receiver;

class LiveTyping : public QObject {
    Q_OBJECT
public:
    LiveTyping(CopyContext& ctx, MainModel& model, Session& session, Sender& sender,
               Encryption& cipher, Receiver& receiver, QObject* parent = nullptr);
    ~LiveTyping() override;

    // Key codes of the keys the handlers know by number.
    static constexpr int vbKeyBack = 8, vbKeyTab = 9, vbKeyReturn = 13, vbKeyEscape = 27,
                         vbKeySpace = 32, vbKeyInsert = 45, vbKeyDelete = 46;
    static constexpr int vbShiftMask = 1, vbCtrlMask = 2, vbAltMask = 4;
    // Upper bound of pressedKeys.
    static constexpr int kPressedKeysBound = 4900;

    // --- state of the typing path -------------------------------------------
    int PressCount = 0;
    std::array<int, kPressedKeysBound + 1> pressedKeys{};  // from index 1; 0 stays 0
    bool keyTyping = false;
    bool sameKeys = false;
    int urlScanned = 0;
    int lineMark = 0;
    bool pasting = false;
    // The key frame went out from the typing path; cleared when a session ends.
    bool keySent = false;
    // Text cleared from txtServer in this session, for the session record.
    QString localHistory;
    // The remote host as the socket last reported it.
    QString remoteHostNoted;
    // Set when this side asked for a full resend and waits for it.
    bool refreshAwaited = false;

    // Looks of the panes: txtServer and the remote pane txtClient(0).
    PaneFormat serverFormat;
    PaneFormat clientFormat;

    // --- seams to other subsystems, wired where those live -----------------
    // The URL scan of a local text (scanLocalText).
    std::function<void(const QString&)> scanLocalText;
    // Speaks a local line with this side's voice, sending nothing.
    std::function<void(const QString&)> speakLocalLine;
    // Sends the speech settings message.
    std::function<void()> sendSpeakerSetting;
    // The local address update of a refresh while unconnected.
    std::function<void()> localAddressUpdate;
    // The colour dialog: given the current colour and a title, the chosen
    // colour, or nothing when cancelled.
    std::function<std::optional<qint64>(qint64, const QString&)> chooseColour;

    // --- key events of txtServer ----------------------------------------------
    void txtServer_KeyDown(int keyCode, int shift);
    void txtServer_KeyPress(int& keyAscii);
    void txtServer_Change();
    void txtServer_KeyUp(int keyCode, int shift);
    // Also bound to the pane gaining the focus.
    void txtServer_GotFocus();
    void firstTyping();

    // What the text control does on its own between key press and change:
    // inserts the character at the caret (CR LF for Return), in place of the
    // selection when there is one; Backspace takes off the selection or the
    // character (a line break as one) before the caret; nothing for Esc. The
    // caret is at the end unless the user put it elsewhere. Runs the change
    // handler when the text changed. Respects the pane's maximum length.
    void controlKey(int keyAscii);
    // The control's deletion of a range (the Delete key on selected text),
    // positions in the pane's own text.
    void controlDeleteRange(int start, int length);
    // The Delete key without a selection: the character (a line break as
    // one) behind the caret; nothing at the end.
    void controlDeleteForward();
    // Text entered other than by key press (an input method, the control's
    // own paste): at the caret, or in place of the selection.
    void controlInput(const QString& text);
    // Sets the pane's text as an assignment to the control would, running
    // the change handler when it differs.
    void setServerText(const QString& text);

    // --- edits the typing frames cannot carry --------------------------------
    // The frames describe typing at the end of the pane. After any other edit
    // (a deletion or insertion before the end, a replaced selection, a burst
    // of keys whose deletion carries no length, an input method's text that
    // went out as nothing) the whole text follows, the same three frames that
    // answer "^reFresh": "^Clr", the format, one "<Paste> " frame. A run of
    // such edits sends one resend, this long after the last of them.
    int followUpDelayMs = 150;
    void followUp();
    void cancelFollowUp();
    bool followUpPending() const { return m_followUpTimer.isActive(); }
    // Resends that went out unasked in this run.
    int followUpsSent = 0;

    // One key as the keyboard delivers it: key down, then per character of
    // `text` a key press and the control's edit; `keyboardRelease` is the
    // key up. Keys without a character (Delete, arrows) pass empty text;
    // Delete runs the control's deletion at the caret or on the selection.
    void keyboardPress(int keyCode, int shift, const QString& text);
    void keyboardRelease(int keyCode, int shift);
    // Types each character with its own press and release: "\r" or "\n" is
    // Return, "\b" Backspace, "\x7f" Delete, "\x1b" Esc, "\t" Tab.
    void typeText(const QString& text);

    // --- whole texts ------------------------------------------------------------
    void PasteText(bool ownInsert);
    void mnuEditPaste_Click() { PasteText(false); }
    void mnuRefresh_Click();
    void mnuOverride_Click();
    void mnuClrScr_Click();
    // Toolbar buttons 7 to 12: bold, italic, larger, smaller, text colour,
    // background colour of the local pane.
    void Toolbar1_FontClick(int button);
    // A menu entry or toolbar button was clicked; true when it was one of
    // this class's.
    bool controlTriggered(Control c);

    // --- format exchange ----------------------------------------------------------
    QString formatMessage() const;
    void sentSetting();
    // The format message of the other side, up to and with its "^>".
    void receiveFormat(const QString& frameThroughMarker);
    // The look of txtServer from the settings, and back into them.
    void loadFormat();
    void saveFormat() const;
    // "Keep the toolbar's font changes": whether a toolbar font button
    // writes the new look to the settings (read at start and at Apply).
    void setPermanentToolbar(bool on) { m_permanentToolbar = on; }
    bool permanentToolbar() const { return m_permanentToolbar; }
    static constexpr double kMinFontSize = 6, kMaxFontSize = 72;

    // Text helpers of the format exchange.
    static QString removeFirst(const QString& text, const QString& token);
    static QString leftOf(const QString& text, const QString& token);
    // A character counts as double-byte when its code has four or more
    // hexadecimal digits.
    static bool isDoubleByte(QChar c);

private:
    void send(const QString& frame);
    void scan(const QString& text);
    void refreshLengthsPanel();
    void noteRemoteHost();
    int keyAt(int index) const;
    int plainPasteLimit(bool writeBack);
    int encryptedPasteLimit(int upper, bool writeBack);
    void refuseDoubleByte(QChar c, bool keyPressWording);
    // Replaces length characters from start by insert (within the pane's
    // maximum length), caret behind the insert. expressed: the frames that go
    // with this edit already tell the peer; otherwise a resend follows.
    void editRange(int start, int length, const QString& insert, bool expressed);
    void applyEdit(const QString& text, int caret, bool expressed);
    void followUpDue();

    CopyContext& m_ctx;
    MainModel& m_model;
    Session& m_session;
    Sender& m_sender;
    Encryption& m_cipher;
    Receiver& m_receiver;
    int m_lastKeyAscii = 0;
    bool m_changeWarned = false;
    bool m_pasteWarned = false;
    // The change handler sent this character as a block (an input method's
    // double-byte character); empty when it sent nothing.
    QString m_changeSent;
    QTimer m_followUpTimer;
    bool m_permanentToolbar = false;
};

}  // namespace vonnel
