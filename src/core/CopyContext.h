#pragma once
// What every subsystem of one running copy receives: where the copy lives,
// its settings, logs and language, the boxes and the clock it may use, and
// the few copy-wide events. Two copies in one process have two contexts
// and share nothing.

#include "core/DesktopNotice.h"
#include "core/StatusBar.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <memory>
#include <utility>

namespace vonnel {

class Prompter;
class Clock;
class Clipboard;
class Desktop;
class Views;
class Translator;
class Logs;
class Pinger;
class EchoProber;
class OwnAddresses;
class Cursor;
class AudioPlayer;
class SpeechEngine;
class ScreenSaver;
class IniFileWatch;
class Notifier;

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
    // The networks a sweep starts from; none given: the machine's own.
    OwnAddresses* ownAddresses = nullptr;
    Cursor* cursor = nullptr;  // none given: no pointer to change (headless)
    AudioPlayer* audio = nullptr;  // none given: the system's audio, or a recorder
    // None given: the system's engines with windows, a recorder without.
    SpeechEngine* speech = nullptr;
    ScreenSaver* screenSaver = nullptr;  // none given: the desktop's
    // None given: the desktop's notifications with windows, a recorder without.
    Notifier* notifier = nullptr;
};

// Sound files named by the settings: Ring for the bell, Ring1 at a
// session's start, Ring2 at its close, Ring3 for a request, Ring4 for a
// socket error, Ring5 for transfers and the board.
struct RingFiles {
    QString Ring, Ring1, Ring2, Ring3, Ring4, Ring5;
};

class CopyContext : public QObject {
    Q_OBJECT
public:
    explicit CopyContext(const CopyEnvironment& env, QObject* parent = nullptr);
    ~CopyContext() override;

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
    void setPinger(Pinger* p);
    // Echoes side by side for the sweep and the station check, made once by
    // the copy's first pinger, so both tell a missing ICMP socket once
    // between them; a later setPinger changes only the single echo.
    EchoProber& prober() const { return *m_prober; }
    OwnAddresses& ownAddresses() const { return *m_env.ownAddresses; }
    // The mouse pointer over this copy's windows (wait or normal).
    Cursor& cursor() const { return *m_env.cursor; }
    // The copy's one sound player (mmcAudio).
    AudioPlayer& audio() const { return *m_env.audio; }
    // The copy's speech engine (dssTTS).
    SpeechEngine& speech() const { return *m_env.speech; }
    // Whether the user's screen saver runs (the away notice asks).
    ScreenSaver& screenSaver() const { return *m_env.screenSaver; }
    // Notices on the desktop while the window is away.
    Notifier& notifier() const { return *m_env.notifier; }
    Translator& translator() const { return *m_translator; }
    Logs& logs() const { return *m_logs; }

    // --- settings: vonnel.ini, taken again only after the file changed ----
    QString iniPath() const { return AppPath() + QStringLiteral("vonnel.ini"); }
    QString appFile(const QString& name) const { return AppPath() + name; }
    QString setting(const QString& key) const;
    void writeSetting(const QString& key, const QString& value) const;
    double settingNumber(const QString& key) const;
    int settingInt(const QString& key) const;
    bool settingFlag(const QString& key) const;  // number is not 0
    QString translate(const QString& key, const QString& fallback = QString()) const;
    // Words for a screen reader, spoken without taking the focus: what
    // arrived, a ring, an offer, a change of the session's state.
    void announce(const QString& text) { Q_EMIT announcementWanted(text); }

    // --- values the start reads once for the whole copy --------------------
    QString HelpPath;
    QString VersionString;
    bool TranslationOn = false;
    RingFiles rings;

    // --- the copy's end ------------------------------------------------------
    // Set once the copy has begun to end; sockets and sends stand still.
    bool ProgramExiting = false;
    // Set while the main form unloads.
    bool unloading = false;

    // --- what the copy's parts ask of the whole copy ------------------------
    // Each says so through the signal of the same meaning below; the
    // signals are the context's own and only it emits them.
    void requestRing(const QString& file) { Q_EMIT ringRequested(file); }
    void showDrawStatus(int panel, const QString& text, StatePicture picture)
    {
        Q_EMIT drawStatus(panel, text, picture);
    }
    void closeFilesAtEnd() { Q_EMIT closeOpenFiles(); }
    void stopAllAudio() { Q_EMIT stopAudio(); }
    void tellInitialized() { Q_EMIT initialized(); }
    void setMenuTexts() { Q_EMIT menusNeedText(); }
    void wantNotice(vonnel::NoticeKind kind, const QString& detail) { Q_EMIT noticeWanted(kind, detail); }

Q_SIGNALS:
    // A ring sound is to be played: the file named by one of the rings.
    void ringRequested(const QString& file);
    // Panels of the board's own status bar, while the board is up.
    void drawStatus(int panel, const QString& text, StatePicture picture);
    // The copy ends: open files of a transfer are closed, audio stops.
    void closeOpenFiles();
    void stopAudio();
    // Init has run: subsystems read their start settings here.
    void initialized();
    // Menu and toolbar captions are to be set (again) from the lookup.
    void menusNeedText();
    // Something wants the user (a caller, a file offer, a ring): a notice
    // on the desktop may be due while the window is away (core/DesktopNotice).
    void noticeWanted(vonnel::NoticeKind kind, const QString& detail);
    // See announce(); the main window's announcer speaks it.
    void announcementWanted(const QString& text);

private:
    CopyEnvironment m_env;
    std::unique_ptr<Translator> m_translator;
    // vonnel.ini's bytes, taken again only after the file has changed.
    std::unique_ptr<IniFileWatch> m_iniWatch;
    mutable QHash<QString, QString> m_settingValues;
    mutable quint64 m_settingsGeneration = 0;
    mutable QHash<QString, std::pair<QString, double>> m_settingNumbers;
    std::unique_ptr<Logs> m_logs;
    std::unique_ptr<Pinger> m_ownPinger;
    std::unique_ptr<EchoProber> m_prober;  // after the pinger that made it
    std::unique_ptr<OwnAddresses> m_ownAddresses;
    std::unique_ptr<Cursor> m_ownCursor;
    std::unique_ptr<AudioPlayer> m_ownAudio;
    std::unique_ptr<SpeechEngine> m_ownSpeech;
    std::unique_ptr<ScreenSaver> m_ownScreenSaver;
    std::unique_ptr<Notifier> m_ownNotifier;
};

}  // namespace vonnel
