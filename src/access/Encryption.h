#pragma once
// The session key and enciphered text of a session, and the password store
// with its lock screens.
//
// Each direction of a session is separate: a side with Encrypted set
// enciphers its frames under its own key (the clock time when the session
// began) and announces that key in a "tt:=" frame; the other side takes the
// key in once and deciphers with it, whatever it does with its own text.

#include <QObject>
#include <QString>

#include <memory>

namespace vonnel {

class CopyContext;
class MainModel;
class PasswordStore;
class Sender;

class Encryption : public QObject {
    Q_OBJECT
public:
    Encryption(CopyContext& ctx, MainModel& model, Sender& sender, QObject* parent = nullptr);
    ~Encryption() override;

    // --- the cipher routines with their failure boxes -------------------------
    // Enciphers text under key. Characters the session's code page can't
    // hold are a failure: the box (unless No Encryption Error Warning is set)
    // and an empty result.
    QString genEPass(const QString& text, const QString& key);
    // Deciphers a cipher text. A damaged text gives the box (unless No
    // Encryption Error Warning is set) and what could be deciphered.
    QString getEPass(const QString& text, const QString& key);

    // --- keys -----------------------------------------------------------------
    // The present time of day as a key: "hh:mm AMPM", e.g. "03:25 PM".
    QString keyNow() const;
    // sessionKey becomes the present time, always (the calling side).
    void startSessionKey();
    // sessionKey becomes the present time only when there is none yet, so an
    // accepting side keeps its key through later sessions of the run.
    void ensureSessionKey();
    // "tt:=" + sessionKey + "=:tt".
    QString keyFrame() const;
    static QString keyFrameFor(const QString& key);

    // A new session: the peer's key is forgotten, Encrypted is read afresh
    // and the two E panels are emptied.
    void beginSession();
    // Reads Encrypted into encryptOn (also at each change of the local pane).
    void readEncryptedSetting();

    // The calling side, after its version frame: a new key, and the key frame
    // raw when this side enciphers. True when the frame went out.
    bool sendKeyOnConnect();
    // The accepting side, after its version frame: when this side enciphers,
    // a key if it has none, and the key frame through xSendData.
    bool sendKeyOnAccept();
    // First typing: the key frame raw, once per session, when this side
    // enciphers and has a key. keySent belongs to the typing path.
    bool sendFirstKey(bool& keySent);
    // Answer to "^reFresh": the same frame under the same condition, without
    // marking it sent.
    bool sendKeyForRefresh(bool keySent);
    // Before the first enciphered frame of a session: when this side's key
    // has not gone out yet (encryption switched on after the session began,
    // or an accepting side that had no key), a key is made if there is none
    // and the key frame goes out raw, so the peer never shows cipher text.
    // True when the frame went out now.
    bool announceKeyBeforeCipher();
    // This side's key frame has gone out in this session.
    bool keyAnnounced() const { return m_keyAnnounced; }

    // --- the peer's key ---------------------------------------------------------
    // At the start of the remaining text of an arrival: a "tt:=" frame while
    // the peer's key is unknown is taken in and cut out of data (what stood
    // before and after it is kept); returns true. With the key known already
    // a whole frame is cut out too (the peer repeats it at its first typing
    // and in each resend), its key taken if it changed; only a frame without
    // its end is left where it is and stalls the text (returns false).
    bool takeRemoteKey(QString& data);
    // Inner text of "<KEY> ", "<Paste> ", "<URL> ", "<SPK> ", "<MSG> ":
    // deciphered with the peer's key once it is known, else as it stands.
    QString decipher(const QString& inner);
    // The same, with a damaged cipher text said in error (empty when whole)
    // instead of a box: the caller reports it as its own failure.
    QString decipher(const QString& inner, QString* error);
    // The old "<e#" frame: always deciphered with the peer's key.
    QString decipherOld(const QString& inner);

    // --- status bar -------------------------------------------------------------
    void showLocalMark();   // panel 8
    void showRemoteMark();  // panel 9
    void clearMarks();
    // Tool tips of panels 8 and 9 from what they show.
    void refreshMarkTips();

    // Enciphers the inner text of a wrapped frame with this side's key.
    QString encipher(const QString& inner) { return genEPass(inner, sessionKey); }

    // --- the session's cipher state -------------------------------------------
    // This side enciphers its frames (Encrypted, read at each session).
    bool encryptOn = false;
    // The peer's frames come enciphered: its key frame has arrived.
    bool remoteEncrypted = false;
    QString sessionKey;
    QString remoteKey;

    // --- passwords --------------------------------------------------------------
    PasswordStore& passwords() const { return *m_passwords; }

private:
    bool sendKeyRaw();
    void failureBox(const QString& prefix, const QString& error, const QString& text);

    CopyContext& m_ctx;
    MainModel& m_model;
    Sender& m_sender;
    std::unique_ptr<PasswordStore> m_passwords;
    bool m_keyAnnounced = false;
};

}  // namespace vonnel
