#pragma once
// File transfer: one file at a time each way, stop-and-wait on the session
// socket, with pause, hold and cancel.
//
// The sender writes one data frame ("<*> ", payload, " </*>") and then
// nothing until the receiver acknowledges with the length of its file;
// that length is the only authority on where the next frame starts. The
// flow is driven by the acknowledgements: each one is handled in the
// socket's receive event and sends at most one frame, so the window and
// the chat stay live between frames.
//
// A board picture and a ring sound take the same road; which one a frame
// belongs to is the receiver's own state (the board window's visibility).

#include "transfer/FrameJoiner.h"
#include "transfer/PartialFiles.h"
#include "transfer/ProgressModel.h"

#include <QByteArray>
#include <QFile>
#include <QObject>
#include <functional>
#include <QString>
#include <memory>

namespace vonnel {

class CopyContext;
class MainModel;
class Session;
class Sender;
class Receiver;

class Transfer : public QObject {
    Q_OBJECT
public:
    Transfer(CopyContext& ctx, MainModel& model, Session& session, Sender& sender,
             Receiver& receiver, QObject* parent = nullptr);
    ~Transfer() override;

    // "Vonnel" while files go between two copies of this program; any other
    // value sends pictures of the board the other way.
    QString transferMode = QStringLiteral("Vonnel");
    // The last picture and the last file taken in this run, "n/a" for none.
    QString lastPictureFile = QStringLiteral("n/a");
    QString lastReceivedFile = QStringLiteral("n/a");

    // --- the dispatcher ----------------------------------------------------
    // Handles the one file message or data frame at the start of data and
    // returns the rest the receive loop goes on with. bytes are the bytes
    // of the whole read.
    QString cSendFileCheck(QString& data, QByteArray& bytes);

    // The data frame that starts at position s of a read: written to the
    // file of the transfer and acknowledged, or held when its end has not
    // come yet. Returns, as text, whatever followed its end.
    QString dataFrame(const QByteArray& bytes, qsizetype s);

    // Joining of torn frames. A data frame that does not end within its read
    // is kept here, and the following reads are added to it until its end
    // marker comes. Returns false when nothing is held (the read goes to the
    // receive loop as it is); otherwise parts gets what is now ready for the
    // loop, in order: the whole frame, and whatever came behind its end.
    bool joinArrival(const QByteArray& bytes, QList<QByteArray>& parts);
    bool holdingFrame() const { return m_joiner.holding(); }
    static constexpr qsizetype kMaxHeldFrame = FrameJoiner::kMaxHeldFrame;

    // --- sending side -------------------------------------------------------
    void mnuSendFile_Click();
    void sendFileRequest(const QString& name, qint64 size);
    void beginSendFile(QString path);
    void ContSendFile(qint64 position);

    // --- receiving side ------------------------------------------------------
    void getSaveFileName(QString offer);
    void beginGetFile();
    void updateProgress(const QString& what);
    // A ring sound the peer is about to send (the ring's own issue calls
    // this): the name must be bare; it is received into the application
    // folder with no question, and may be at most limit bytes. Returns
    // false when the name or the announced size is refused. A ring that
    // grows past the limit is cancelled and its file removed.
    bool receiveRingFile(const QString& name, qint64 size, qint64 limit);

    // --- resuming a broken receive -------------------------------------------
    // The parts broken receives left, remembered until the program ends.
    PartialFiles& partialFiles() { return m_partials; }
    // What the last resumed receive found. The wire carries no checksum:
    // what can be compared is the first frame (always the head of the
    // peer's file) with the head of the part, and the bytes the peer sends
    // again just before the end of the part with those the part holds.
    struct ResumeReport {
        qint64 keptLength = 0;    // the part's length at the resume
        qint64 askedFrom = 0;     // the first count sent: where the peer went on
        qint64 headCompared = 0;  // bytes of the part's head found equal
        qint64 tailCompared = 0;  // bytes before the part's end found equal
        bool peerChanged = false; // a difference: received again from the start
    };
    const ResumeReport& lastResume() const { return m_lastResume; }
    bool resuming() const { return m_resumeStep != ResumeStep::None; }

    // --- pause, hold, cancel ---------------------------------------------------
    void pauseSendFile(bool state)
    {
        transferPaused = state;
        if (state)
            m_recvFile.flush();  // a paused part is whole on disk
    }
    void cancelSendFiles();
    void savePauseSetting(const QString& progressText, const QString& direction, int percent,
                          const QString& fileName, const QString& fileSize);
    void restorePauseWindow();

    // --- the progress window ------------------------------------------------------
    ProgressModel& progress() { return m_progress; }
    const ProgressModel& progress() const { return m_progress; }
    void cmdPause_Click();
    void cmdCancel_Click();
    void chkCloseProgress_Click(bool checked);
    // Unloads the window by its own close routine (also the window's close box).
    void unloadProgress();

    // Closes every open file of a transfer.
    void closeAllFiles();

    // The session ended (or a new one began): every transfer of it is
    // over. Its files are closed and forgotten with their paths, positions
    // and flags, a hold with them; a partial file stays on the disk and the
    // progress window says so. Nothing a later caller sends can reach them.
    void endSession();
    // What this session has under way: an offer out, a send running, a
    // file being received (a user file, or a ring sound).
    bool fileOffered() const { return m_offered; }
    bool fileSending() const { return m_sending; }
    bool fileReceiving() const { return m_receiving; }

    // --- state ------------------------------------------------------------------
    // Payload bytes of a data frame, from Byte Per Send: read at start and at
    // each Send File command. True when the setting was unusable and 2000
    // was taken instead.
    bool readBytesPerSend();
    int bytesPerSend = 2000;
    QString sendFilePath;
    int sendFileHandle = 0;
    qint64 sendFileSize = 0;
    qint64 sendFileSent = 0;
    int picSendHandle = 0;
    qint64 picSendSent = 0;
    QString recvFilePath;
    int recvFileHandle = 0;
    qint64 recvFileSize = 0;
    int picRecvHandle = 0;
    qint64 picRecvSize = 0;
    bool transferCancelled = false;
    bool picCancelled = false;
    bool transferPaused = false;
    // What mnuDraw goes back to when a transfer ends (the board sets it).
    bool drawMenuAllowed = true;
    // Whether the board is up, as the board knows it (a copy without
    // windows has one too); unset, the board's window is asked.
    std::function<bool()> boardShown;
    int fileHandleCounter = 0;
    int recvHandleCounter = 0;
    int fileHandleRetries = 0;
    // The ring file in passage on the sending side; "n/a" when none. (The
    // receiving side's is the receiver's ringWanted.)
    QString ringSent = QStringLiteral("n/a");

    // The window's texts at the moment of a hold.
    QString holdProgressText;
    QString holdDirection;
    int holdPercent = 0;
    QString holdFileName;
    QString holdFileSize;
    qint64 holdPosition = 0;

    // Whether the files of the transfer are open now (for tests and views).
    bool sendFileOpen() const { return m_sendFile.isOpen(); }
    bool recvFileOpen() const { return m_recvFile.isOpen(); }
    // Payload bytes the current (or last) send has put on the wire.
    qint64 payloadSent() const { return m_payloadSent; }

Q_SIGNALS:
    // One beep of the system bell.
    void beep();
    // The board's "sending" label (lblSending) takes this text.
    void drawSendingLabel(const QString& text);
    // The board's close button may be used again (or not).
    void closeDrawEnabled(bool enabled);
    // A data frame is being copied; the copy yields to the event loop once
    // here, so buttons pressed now act as if pressed in the middle of it.
    void copyingFrame(qint64 bytes);

private:
    bool drawVisible() const;
    bool connected() const;
    QString lookup(const char* text) const;
    QString lookup(const char* key, const char* fallback) const;
    void loadProgress();
    void showProgress();
    void setCancelButton(const char* tag);
    void setPauseButton(const char* tag);
    void windowBack();
    QString receiveFrame(QByteArray frame, const QByteArray& rest);
    QString acknowledgeFrame(QFile& target, qint64 expected, bool board, const QString& rest);
    void sendCount(qint64 n);
    enum class ResumeAnswer { Fresh, Resume, Refuse };
    ResumeAnswer askResume(const QString& name, const QString& offeredPath, qint64 size);
    bool chooseSavePath(const QString& name);
    void startResume();
    QString resumeFrame(QFile& target, const QByteArray& payload, qint64 expected,
                        const QString& rest);
    QString peerFileChanged(QFile& target, qint64 expected, const QString& rest);
    // The part is gone past: what lies beyond it is written and counted as
    // any frame is.
    QString resumeDone(QFile& target, const QByteArray& beyond, qint64 expected,
                       const QString& rest);
    void keepPartial();
    QString acknowledgement(QString& data);
    QString acceptOffer(QString& data, qsizetype headLength, const QString& head, QString& text);
    QString protocolFault(const QString& description, const QString& message, const QString& data);
    void saveError(const QFile& target);
    bool anyUnderWay() const;
    bool fileUnderWay() const { return m_sending || m_receiving; }
    void goOn(qint64 position = 0);
    qint64 acknowledgedLength(QFile& target, qint64 length);
    void strayFrame(qsizetype bytes);
    // The ring being received would pass its limit: told to the peer,
    // its file removed, one line in the failure log.
    void refuseRing(const QString& name, qint64 length, qint64 limit);
    bool refusedForSize(qint64 length);
    bool readChunk(QFile& file, qint64 at, qint64 size, QByteArray& out);
    void sendFrame(const QByteArray& payload);
    void clearHeldFrame();

    CopyContext& m_ctx;
    MainModel& m_model;
    Session& m_session;
    Sender& m_sender;
    Receiver& m_receiver;
    ProgressModel m_progress;
    QFile m_sendFile;
    QFile m_picSendFile;
    // The lengths of the two send files as read at their open; -1 unknown.
    qint64 m_sendLength = -1;
    qint64 m_picSendLength = -1;
    QFile m_recvFile;
    QFile m_picRecvFile;
    // What this session has under way, for each kind: only these let an
    // acceptance, a data frame or an acknowledgement act.
    bool m_offered = false;       // an offer of a user file is out
    bool m_picOffered = false;    // an offer of the board's picture is out
    bool m_sending = false;       // a user file (or ring) is being sent
    bool m_picSending = false;
    bool m_receiving = false;     // a user file (or ring) is being received
    bool m_picReceiving = false;
    // Whether the session socket was connected at its last change.
    bool m_sessionUp = false;
    // A frame of ours has not been acknowledged yet.
    bool m_frameOut = false;
    quint64 m_framesSent = 0;
    static constexpr int kUnansweredFrameMs = 2000;
    // Payload bytes of the current send so far.
    qint64 m_payloadSent = 0;
    // The most a ring being received may hold, -1 for a user file.
    qint64 m_recvLimit = -1;
    // A ring was refused: the frames the peer still pushes are dropped
    // without a line each, until the next receive or session.
    bool m_ringRefused = false;
    // Who offered the file being received, and its path in the offer.
    QString m_recvPeer;
    QString m_recvOffer;
    PartialFiles m_partials;
    // A resumed receive: the first frame (the head of the peer's file) is
    // compared with the part and not written; then, while the overlap
    // step lasts, frames that start inside the part are compared too.
    enum class ResumeStep { None, FirstFrame, Overlap };
    ResumeStep m_resumeStep = ResumeStep::None;
    qint64 m_resumeFrom = 0;  // where the next frame starts, in the overlap step
    QByteArray m_resumeHead;  // the first frame's payload, for a restart
    ResumeReport m_lastResume;
    // The count of the last acknowledgement this side sent for a file.
    qint64 m_lastAck = 0;
    // The file the Open button of a finished receive opens.
    QString m_receivedPath;
    // A data frame whose end has not come yet.
    FrameJoiner m_joiner;
    // Time since the copy of a frame last yielded to the event loop.
    qint64 m_lastYieldMs = -1;  // on the clock's steady time; -1: none yet
    static constexpr int kYieldEveryMs = 20;
    // The window's caption while frames pass, looked up again at most this
    // often: a language file saved meanwhile still shows, and a frame costs
    // no lookup.
    void frameCaption(const char* direction);
    QString m_frameCaption;
    qint64 m_frameCaptionAtMs = -1;
    static constexpr int kFrameCaptionEveryMs = 50;
};

}  // namespace vonnel
