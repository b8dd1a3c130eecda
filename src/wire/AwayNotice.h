#pragma once
// The away notice: while the user's screen saver runs, or while the window
// is minimised, a line "[ text ]" is pasted into the session so the peer
// knows nobody reads; it is taken out again on both sides when the user is
// back (the screen saver gone, or the mouse over the pane).

#include <QObject>
#include <QString>
#include <functional>

namespace vonnel {

class CopyContext;
class MainModel;
class Session;
class Sender;
class LiveTyping;

class AwayNotice : public QObject {
    Q_OBJECT
public:
    AwayNotice(CopyContext& ctx, MainModel& model, Session& session, Sender& sender, LiveTyping& typing,
               QObject* parent = nullptr);

    // The notice stands in the pane (or went out as a board chat line).
    bool awayShown = false;
    // True while the board window is what the user has in front; the
    // notice then goes out as a chat line of the board.
    std::function<bool()> boardInUse;

    // The text between the brackets: the setting, or "User is away...".
    QString noticeText() const;

    // On every tTimer2 tick: sets the notice when the screen saver runs,
    // takes it back when it has stopped.
    void tTimer2_Timer();
    // The window changed its state; minimised sets the notice when the
    // settings ask for it.
    void Form_Resize();
    // The mouse moved over the local pane: the user is back.
    void txtServer_MouseMove();
    // The mouse moved over the board's surface: the user is back, and the
    // peer's board line goes empty.
    void boardMouseMove();
    // A session ended: nothing stands any more.
    void sessionEnded();

private:
    bool active() const;
    void setNotice();
    void takeBack();

    CopyContext& m_ctx;
    MainModel& m_model;
    Session& m_session;
    Sender& m_sender;
    LiveTyping& m_typing;
};

}  // namespace vonnel
