#pragma once
// The receive entry: every arrival is taken apart in passes and each message
// handed to its handler. The order of the tests is part of the protocol.
//
// Features that are not part of the live text (file transfer, board, rings,
// speech, links, the format exchange) are reached through the hooks and
// signals below; where nobody listens their messages are still consumed
// exactly as the full handler would consume them.

#include "core/JoinedText.h"
#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <functional>

#include "wire/ArrivalFaults.h"

namespace vonnel {

class CopyContext;
class MainModel;
class Session;
class Sender;
class Encryption;
class Connection;
class RemotePane;

class Receiver : public QObject {
    Q_OBJECT
public:
    Receiver(CopyContext& ctx, MainModel& model, Session& session, Sender& sender,
             Encryption& cipher, Connection& connection, QObject* parent = nullptr);

    // Limits of the remote pane and of the repair of damaged text, read at
    // the start and again after the options change.
    int textLimit = 32000;
    int overflowLimit = 50;
    bool acceptIncompatible = false;
    bool selfRepair = false;
    int repairCountLimit = 50;
    double testDelay = 0;  // seconds each read waits ("Test"), for tests of slow receivers
    // Reads them: at the start the text limit is clamped and the defaults
    // written back; later only the repair values are read again.
    void readLimits(bool atStart);

    // The socket's receive event: takes the bytes off the socket and hands
    // them to handleArrival.
    void Winsock_DataArrival(int index, qint64 bytesTotal);
    // Everything the receive event does once the bytes are read: the status
    // panels, the dispatch passes, the clean-up. Returns at once for an
    // index above 0 or while the copy unloads.
    void handleArrival(int index, QByteArray bytes, qint64 bytesTotal = -1);

    // Handles the "^" code at the start of data and returns what remains.
    QString cControlCheck(QString& data);
    // Adds text at the end of the remote pane and refreshes the lengths panel.
    void cFinishCheck(const QString& text);
    // Board messages ("&&" and a third character other than "&"): takes
    // them off data and returns what is left for the passes. The board
    // installs its reader here.
    std::function<QString(QString& data)> cDrawcheck;

    // File messages and data frames ("%%..." and "<*> "). Takes the rest of
    // the arrival and the arrival's bytes, returns what the loop goes on
    // with. The transfer subsystem installs its dispatcher here; until then
    // the default only consumes, message by message, what the dispatcher
    // would take off the text (see consumeFileMessage).
    std::function<QString(QString& data, QByteArray& bytes)> cSendFileCheck;
    // What the default above does: the rest after one file message, data
    // unchanged when the message is not one of the twelve.
    static QString consumeFileMessage(const QString& data);
    // A read that begins with a data frame: handles the frame straight from
    // the bytes and returns, as text, what followed its end. Not installed:
    // the read goes through the passes to cSendFileCheck like any other.
    std::function<QString(QByteArray& bytes)> frameArrival;
    // Reads that belong to a data frame still open from an earlier read.
    // When it takes the bytes (returns true), parts holds what is ready for
    // the passes, each handled as an arrival of its own; until the frame is
    // whole nothing is. Not installed: every read goes to the passes.
    std::function<bool(const QByteArray& bytes, QList<QByteArray>& parts)> joinArrival;

    // Whether the typing side has already sent its key frame this session
    // (the answer to "^reFresh" sends the key only while it has not). The
    // typing subsystem installs it; the default says no.
    std::function<bool()> keySent;

    // What the position-bearing frames do to the remote pane, and the
    // self-repair.
    RemotePane& remotePane() const { return *m_pane; }

    // The answer to "^reFresh": the key frame while the typing side has not
    // sent it, "^Clr", the pane's look, and the whole text of txtServer as
    // one "<Paste> " frame. Our side also sends it unasked after an edit
    // that the typing frames cannot carry.
    void resendWholeText();
    // Text cleared from the remote pane in this session.
    QString remoteHistory;
    // The ring file being fetched from the peer; "n/a" when none.
    QString ringWanted = QStringLiteral("n/a");
    // The answer to the last "^reFresh" has gone out.
    bool refreshAnswered = false;

    // Failures met while an arrival is taken apart, and their boxes.
    ArrivalFaults& faults() { return m_faults; }

Q_SIGNALS:
    // "^ff" ... "^>": the format message, through its closing marker.
    void formatReceived(const QString& format);
    // The "^reFresh" answer has reached the step where the format and the
    // speech settings go out.
    void refreshAnswerNeedsSettings();
    // "^g" name "^G^": a ring from the peer.
    void ringReceived(const QString& name);
    // "^rW": the peer lacks the ring file.
    void ringFileRequested();
    // "^s>" size name: the peer is about to send ringWanted with this size.
    void ringFileAnnounced(const QString& name, qint64 size);
    // "<URL> ": an address the peer saw, deciphered.
    void webCheck(const QString& address);
    // "<SPKSET> ": the peer's speech settings.
    void speakerSettingReceived(const QString& fields);
    // "<SPK> ": a line to speak, deciphered. behindControlCode: taken in
    // cControlCheck, right behind a "^" code, rather than by its own stage;
    // the two paths speak it a little differently.
    void speakReceived(const QString& line, bool behindControlCode);
    // A "^reFresh" answer begins: the typing path drops its pending
    // follow-up, the whole text goes out again instead.
    void refreshAnswerStarts();
    // A version conflict was shown: the update page is to be offered.
    void updateRequested();
    // ... and then the session is to end, as by the Disconnect menu.
    void versionConflict();
    // A named sound is to be played ("Ring2" when the peer shuts down).
    void playRing(const QString& key);
    // The peer's key frame was taken in.

private:
    // The status panels, the passes and the clean-up for one arrival.
    void dispatchArrival(int index, QByteArray bytes, qint64 bytesTotal);
    // One dispatch pass. Returns false when the passes are to end at once.
    bool runPass(int index, QString& text, QByteArray& bytes);
    // The stages of a pass, in the order the table in runPass holds them.
    // Each looks at the start of what the pass has left; false ends the
    // passes of this arrival.
    struct Pass;
    bool versionStage(Pass& pass);
    bool keyFrameStage(Pass& pass);
    bool singleCharacterStage(Pass& pass);
    bool oldCipherStage(Pass& pass);
    bool keyStrokeStage(Pass& pass);
    bool controlStage(Pass& pass);
    bool pasteStage(Pass& pass);
    bool urlStage(Pass& pass);
    bool speakerSetStage(Pass& pass);
    bool speakStage(Pass& pass);
    bool messageStage(Pass& pass);
    bool fileStage(Pass& pass);
    bool dataStage(Pass& pass);
    bool boardStage(Pass& pass);
    void takeRecordLine(const QString& line);
    QString decipher(const QString& inner) const;
    // Deciphers the inner text of a stage's frame; a cipher text that
    // cannot be taken apart is the stage's failure, not a box of its own.
    QString decipherInStage(const QString& inner);
    void answerRefresh();
    void remoteShutDown();
    void refreshLengths();
    QString remoteName() const;
    // A read of "&" alone and what the next read does with it.
    void holdLoneAmpersand();
    void joinLoneAmpersand(QByteArray& bytes);
    void releaseLoneAmpersand();

    CopyContext& m_ctx;
    MainModel& m_model;
    Session& m_session;
    Sender& m_sender;
    Encryption& m_cipher;
    JoinedText<qint64, qint64> m_lengthsText{QLatin1StringView(" - ")};  // panel 3
    Connection& m_connection;
    RemotePane* m_pane;
    ArrivalFaults m_faults;
    // The position of the last typed character frame of this arrival; a
    // frame that carries no number leaves it as it was.
    int m_keyPosition = 0;
    // A read of "&" alone may be a board message cut after its first
    // character. It waits for the next read, at most kLoneHoldMs: a read
    // that goes on with the message gets it in front, anything else (or the
    // time) lets it go by the lone-character rule.
    static constexpr int kLoneHoldMs = 200;
    bool m_loneAmpersand = false;
    QTimer m_loneTimer;
};

}  // namespace vonnel
