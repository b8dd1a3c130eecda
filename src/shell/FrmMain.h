#pragma once
// The session controller of one running copy. It owns the socket pair, the
// panes, the status bar and the state the whole program shares, and is the
// root of that copy's object graph: two copies in one process never share
// anything. Windows bind to it; it holds no widgets.

#include "platform/Clock.h"
#include "platform/Prompter.h"
#include "platform/Winsock.h"
#include "shell/Views.h"
#include "shell/Controls.h"
#include "shell/StatusBar.h"
#include "shell/TextPane.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QTimer>
#include <array>
#include <memory>

namespace vonnel {

class Prompter;
class Clock;
class Clipboard;
class Desktop;
class Views;
class Translator;
class Logs;
class Connection;
class Receiver;
class LiveTyping;
class Transfer;
class Encryption;
class SessionRecords;
class CopyLock;
class Pinger;
class Cursor;
class IniFileWatch;

struct CopyEnvironment {
    QString appPath;  // ends in '/'
    QString commandLine;  // the command words joined by blanks, "" for none
    bool headless = false;
    Prompter* prompter = nullptr;
    Clock* clock = nullptr;
    Clipboard* clipboard = nullptr;
    Desktop* desktop = nullptr;
    Views* views = nullptr;
    Pinger* pinger = nullptr;  // none given: the system's own ICMP echo
    Cursor* cursor = nullptr;  // none given: no pointer to change (headless)
};

class FrmMain : public QObject {
    Q_OBJECT
public:
    static constexpr int kMajor = VONNEL_VERSION_MAJOR;
    static constexpr int kMinor = VONNEL_VERSION_MINOR;
    static constexpr int kRevision = VONNEL_VERSION_REVISION;
    static inline const QString kTitle = QStringLiteral("Vonnel");

    explicit FrmMain(const CopyEnvironment& env, QObject* parent = nullptr);
    ~FrmMain() override;

    // --- environment -----------------------------------------------------
    const QString& AppPath() const { return m_env.appPath; }
    const QString& commandLine() const { return m_env.commandLine; }
    bool headless() const { return m_env.headless; }
    Prompter& prompter() const { return *m_env.prompter; }
    Clock& clock() const { return *m_env.clock; }
    Clipboard& clipboard() const { return *m_env.clipboard; }
    Desktop& desktop() const { return *m_env.desktop; }
    Views& views() const { return *m_env.views; }
    void setViews(Views* v) { m_env.views = v; }
    Pinger& pinger() const { return *m_env.pinger; }
    // The mouse pointer over this copy's windows (wait or normal).
    Cursor& cursor() const { return *m_env.cursor; }
    void setPinger(Pinger* p);
    Translator& translator() const { return *m_translator; }
    Logs& logs() const { return *m_logs; }

    // --- settings: vonnel.ini, read afresh on every call ---------------------
    QString iniPath() const { return AppPath() + QStringLiteral("vonnel.ini"); }
    QString appFile(const QString& name) const { return AppPath() + name; }
    QString setting(const QString& key) const;
    void writeSetting(const QString& key, const QString& value) const;
    double settingNumber(const QString& key) const;
    int settingInt(const QString& key) const;
    bool settingFlag(const QString& key) const;  // number is not 0
    QString translate(const QString& key, const QString& fallback = QString()) const;

    // --- controls ------------------------------------------------------
    Winsock& winsock(int index) { return *m_winsock.at(size_t(index)); }
    TextPane txtServer{QStringLiteral("txtServer")};
    TextPane txtTextMsg{QStringLiteral("txtTextMsg")};
    TextPane& txtClient(int index) { return *m_txtClient.at(size_t(index)); }
    TextPane& txtClient() { return txtClient(sIdx); }
    StatusBar stStatusbar;
    Controls controls;
    QTimer tTimer1;
    QTimer tTimer2;

    // Window model.
    QString caption() const { return m_caption; }
    void setCaption(const QString& c);
    QString titleWithVersion() const;  // title + " " + major + "." + minor
    bool isVisible() const { return m_visible; }
    void setVisible(bool v);
    enum WindowState { vbNormal = 0, vbMinimized = 1, vbMaximized = 2 };
    int windowState() const { return m_windowState; }
    void setWindowState(int s);
    // The tray icon's tip: the title, or who is calling while the window
    // is hidden.
    QString trayTip() const { return m_trayTip; }
    void setTrayTip(const QString& tip)
    {
        m_trayTip = tip;
        Q_EMIT trayTipChanged(tip);
    }
    // Brings the window back (from the tray): behind the away lock when a
    // second-level password guards it.
    void ShowMain();
    // Window placement in twips, as kept in the settings.
    int left = 0, top = 0, width = 0, height = 0, scaleWidth = 0;

    // --- state shared by the whole copy -----------------------------------
    int UsageCount = 0;
    bool TranslationOn = false;
    QString LangFile;
    QString HelpPath;
    int TrayOnly = 0;
    QString WindowContext = QStringLiteral("Vonnel");
    bool PortConflictAtStart = false;
    bool StartupLockFailed = false;
    bool fullyLoaded = false;
    QString Ring, Ring1, Ring2, Ring3, Ring4, Ring5;
    QString VersionString;
    QString splashCaption;

    int sIdx = 0;
    bool RemoteResponded = false;
    bool StopConnecting = false;
    bool ProgramExiting = false;
    bool unloading = false;
    bool NotReadySent = false;
    bool PasteInProgress = false;
    bool ConnectionStartedHere = false;
    QString PeerHostName;
    QString PeerIP;
    QString peerForRecord;  // the remote address named in session records
    QDateTime SessionDateStart;
    QTime SessionStartTime;
    QTime SessionEndTime;
    bool TransferOnHold = false;
    qint64 bytesSentCount = 0;
    qint64 arrivedLength = 0;

    bool encryptOn = false;
    bool remoteEncrypted = false;
    QString sessionKey;
    QString remoteKey;
    QString transferMode = QStringLiteral("Vonnel");

    int textLimit = 32000;
    int overflowLimit = 50;
    bool acceptIncompatible = false;
    bool selfRepair = false;
    int repairCountLimit = 50;
    bool permanentToolbar = false;
    bool voiceFlag = false;
    QString lastPictureFile = QStringLiteral("n/a");
    QString lastReceivedFile = QStringLiteral("n/a");

    // --- routines of the socket set ----------------------------------------
    bool IsConnected() const;
    void checkStatus();
    void EnableConnect();
    void EnableDisconnect();
    void cmdHiddenReady_Click();
    void cmdHiddenNotReady_Click();
    void stStatusbar_PanelClick(int panel);
    // Help > Update: the update tool (UpdateExe with UpdateParam and the
    // Update address) when one is set, else the Update address in the
    // user's browser. Also run after a version conflict.
    void mnuUpdate_Click();
    // Spins on the clock without running events. 0 seconds means the
    // Connect Idle time, which is written back to the caller. The wait
    // pointer is up for the spin unless keepPointer is set, in which case
    // the pointer is left as the caller has it.
    void idleDelay(double& seconds, bool keepPointer = false);
    void idleDelay0() { double s = 0; idleDelay(s); }
    void idleDelayFor(double s) { idleDelay(s); }
    // Runs pending events once; the waiting loops call this on every turn.
    void yieldEvents();
    // Panels 10 and 11: bytes up to 1000, kilobytes from 1001.
    static QString byteCountText(qint64 bytes);

    // The one text send routine and the raw write.
    void xSendData(QString data);
    // Enciphers the inner text of a wrapped frame with this side's key.
    QString encipher(const QString& inner) const;
    void sendRaw(const QString& text);
    void sendRawBytes(const QByteArray& bytes);

    // --- start and end -------------------------------------------------------
    void Form_Load();
    void Init();
    // Reloads the values kept from the settings and sends the format again.
    void aftOptSet();
    bool Form_QueryUnload(bool fromUser);
    void Form_Unload();
    // Shuts the copy down in order: the query (unless forced), the unload.
    // Returns false when the user cancelled.
    bool requestClose(bool fromUser = true);
    // Set when the copy has ended itself; exitCode says how.
    bool ended() const { return m_ended; }
    int exitCode() const { return m_exitCode; }
    void endProcess(int code);

    // --- subsystems ---------------------------------------------------------
    Connection& connection() const { return *m_connection; }
    Receiver& receiver() const { return *m_receiver; }
    LiveTyping& typing() const { return *m_typing; }
    Transfer& transfer() const { return *m_transfer; }
    Encryption& encryption() const { return *m_encryption; }
    SessionRecords& records() const { return *m_records; }

Q_SIGNALS:
    void captionChanged();
    void trayTipChanged(const QString& tip);
    void visibilityChanged(bool visible);
    void windowStateChanged(int state);
    void endRequested(int code);
    // Panels of the board's own status bar, while the board is up.
    void drawStatus(int panel, const QString& text, StatePicture picture);
    // The receive entry; the wire subsystem connects its dispatcher here.
    void dataArrived(int index, qint64 bytesTotal);
    // A command line to obey (the start's own, or one handed over through
    // Command.ini), already through the syntax check; "NULL" for none.
    void commandGiven(const QString& command);
    // Menu and toolbar captions are to be set (again) from the lookup.
    void menusNeedText();
    // Init has run: subsystems read their start settings here.
    void initialized();
    // A session ended: its record is to be saved.
    void sessionEnded();
    // The copy ends: open files of a transfer are closed, audio stops.
    void closeOpenFiles();
    void stopAudio();
    // A ring sound is to be played: the file named by Ring, Ring1 ... Ring5.
    void ringRequested(const QString& file);
    // A session has just started on either side: the format options are
    // to be sent (aftOptSet).
    void sessionOpened();

private:
    void wireSockets();

    CopyEnvironment m_env;
    std::unique_ptr<Translator> m_translator;
    // vonnel.ini's bytes, taken again only after the file has changed.
    std::unique_ptr<IniFileWatch> m_iniWatch;
    mutable QHash<QString, QString> m_settingValues;
    mutable quint64 m_settingsGeneration = 0;
    std::unique_ptr<Logs> m_logs;
    std::unique_ptr<Connection> m_connection;
    std::unique_ptr<Receiver> m_receiver;
    std::unique_ptr<LiveTyping> m_typing;
    std::unique_ptr<Transfer> m_transfer;
    std::unique_ptr<Encryption> m_encryption;
    std::unique_ptr<SessionRecords> m_records;
    std::unique_ptr<CopyLock> m_copyLock;
    std::unique_ptr<Pinger> m_ownPinger;
    std::unique_ptr<Cursor> m_ownCursor;
    std::array<std::unique_ptr<Winsock>, 2> m_winsock;
    std::array<std::unique_ptr<TextPane>, 2> m_txtClient;
    QString m_caption;
    QString m_trayTip = QStringLiteral("Vonnel");
    bool m_visible = false;
    int m_windowState = vbNormal;
    bool m_ended = false;
    int m_exitCode = 0;
};

}  // namespace vonnel
