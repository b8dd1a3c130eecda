#pragma once
// The composition root of one running copy: builds the context, the window
// model and the subsystems, wires them to each other, and runs the start
// and the end of the copy. Two copies in one process never share anything.
// Windows bind to the parts it hands out; it holds no widgets.

#include "core/CopyContext.h"
#include "core/MainModel.h"

#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>

namespace vonnel {

class Session;
class Sender;
class Connection;
class Receiver;
class LiveTyping;
class Transfer;
class Scrivet;
class Encryption;
class SessionRecords;
class CommandControl;
class CopyLock;
class UrlHistory;
class UrlHistoryCommands;
class Links;
class Sound;
class RingExchange;
class Speech;
class PresetMessages;
class AwayNotice;
class NetTools;
class DesktopNotice;

class FrmMain : public QObject {
    Q_OBJECT
public:
    explicit FrmMain(const CopyEnvironment& env, QObject* parent = nullptr);
    ~FrmMain() override;

    // --- the parts ------------------------------------------------------------
    CopyContext& ctx() const;
    MainModel& model() const;
    Session& session() const;
    Sender& sender() const;
    Encryption& encryption() const;
    Connection& connection() const;
    Receiver& receiver() const;
    LiveTyping& typing() const;
    Transfer& transfer() const;
    // The shared drawing board.
    Scrivet& scrivet() const;
    SessionRecords& records() const;
    // The sounds of the copy, and the ring between the two sides.
    Sound& sound() const;
    RingExchange& rings() const;
    // Speech here and at the peer.
    Speech& speech() const;
    // The command interpreter: the start's own command line and Command.ini.
    CommandControl& commands() const;
    // Addresses seen in the session and the URL History's lists.
    Links& links() const;
    UrlHistory& urlHistory() const;
    UrlHistoryCommands& urlHistoryCommands() const;
    // The Messages menu, and the notice that the user is away.
    PresetMessages& presets() const;
    AwayNotice& away() const;
    // The station check, the sweep and the name converter.
    NetTools& netTools() const;

    // tTimer1 polls the stations, tTimer2 Command.ini and the away notice.
    QTimer& tTimer1() { return m_tTimer1; }
    QTimer& tTimer2() { return m_tTimer2; }

    // Window placement in twips, as kept in the settings.
    struct Placement {
        int left = 0, top = 0, width = 0, height = 0, scaleWidth = 0;
    };
    Placement placement;

    // --- values of the start --------------------------------------------------
    int UsageCount = 0;
    QString LangFile;
    int TrayOnly = 0;
    // "Scrivet" while the board stands for the whole program.
    QString WindowContext = QStringLiteral("Vonnel");
    QString splashCaption;
    bool fullyLoaded = false;
    bool portConflictAtStart() const { return m_portConflictAtStart; }
    bool voiceFlag() const { return m_voiceFlag; }

    // Brings the window back (from the tray): behind the away lock when a
    // second-level password guards it.
    void ShowMain();
    // The away lock: true when the window is in front, when no second-level
    // password applies, or when the user has just given it.
    bool awayLockPassed();
    // --- the tray icon's callback ----------------------------------------------
    // What the tray's messages come to: a move over the icon (512) makes the
    // tip from the session socket's state; a double click (515) is ShowMain;
    // the right button let go (517) runs trayRightButtonUp and, when that
    // allows it, pops up mnuTray. Qt tells of no move over a tray icon, so
    // the tip is made again whenever the socket's state changes instead.
    static QString trayStateTip(int state, const QString& remoteHostIP, const QString& peerHostName,
                                const std::function<QString(const QString&)>& translate);
    void trayMouseMove();
    // Sets mnuSysAutoConnect and mnuSysProperties from the lock flags; false
    // while frmUnlock or frmPassLock is up, when no menu may open.
    bool trayRightButtonUp();
    // The desktop notices of callers, offers and rings.
    DesktopNotice& notice() const;

    // Help > Update: the update tool (UpdateExe with UpdateParam and the
    // Update address) when one is set, else the Update address in the
    // user's browser. Also run after a version conflict.
    void mnuUpdate_Click();

    // --- menus and language ----------------------------------------------------
    // Run at form load in this order; SetMsgMnu and miniMenu again after the
    // options are applied, TransMenu again after a language is applied.
    void SetMsgMnu();
    void TransMenu();
    void miniMenu();
    // frmPopMsg as the language picker, modal (the options page's language
    // button opens it).
    void showLanguagePicker();
    // A language was applied: the main window's texts are set again, and
    // languageChanged tells the other windows (frmOptions) to do the same.
    void languageApplied();

    // --- start and end -------------------------------------------------------
    void Form_Load();
    void Init();
    // Reloads the values kept from the settings and sends the format again.
    void aftOptSet();
    // The options were applied: the preset entries, the menu switches and
    // aftOptSet, in this order.
    void afterOptionsApplied();
    bool Form_QueryUnload(bool fromUser);
    void Form_Unload();
    // Shuts the copy down in order: the query (unless forced), the unload.
    // Returns false when the user cancelled.
    bool requestClose(bool fromUser = true);
    // Set when the copy has ended itself; exitCode says how.
    bool ended() const { return m_ended; }
    int exitCode() const { return m_exitCode; }
    void endProcess(int code);

Q_SIGNALS:
    void endRequested(int code);
    // The language changed: windows that show translated text set it again.
    void languageChanged();
    // A command line to obey (the start's own, or one handed over through
    // Command.ini), already through the syntax check; "NULL" for none.
    void commandGiven(const QString& command);

private:
    void wireLinks();

    struct Parts;
    std::unique_ptr<Parts> m_parts;
    std::unique_ptr<CopyLock> m_copyLock;
    QTimer m_tTimer1;
    QTimer m_tTimer2;
    bool m_portConflictAtStart = false;
    bool m_voiceFlag = false;
    bool m_ended = false;
    int m_exitCode = 0;
};

}  // namespace vonnel
