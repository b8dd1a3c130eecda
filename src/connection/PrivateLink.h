#pragma once
// Private sessions between two copies of ours: recognising each other,
// agreeing on the same connection, the TLS handshake, and what the user
// is told of it.
//
// A copy of ours shows itself by its version text ("Vonnel" 3 or later).
// A caller that sees such a version sends, behind its opening, the offer
// as a write of its own and holds everything else; the callee answers
// with the acceptance (or the refusal) and then says nothing more. The
// callee that accepted is the server of the handshake, the caller its
// client, so neither side ever reads a byte of TLS as plain text. A peer
// of the old wire with another version text sees exactly the wire it
// knows; one with ours gets the offer alone and drops it, and the caller
// goes on plain after a time-out.
//
// Once agreed, private it is: a handshake that fails or stalls ends the
// session with a box, never a plain session.

#include "access/Identity.h"
#include "access/PeerKeys.h"

#include <QByteArray>
#include <QObject>
#include <QSslConfiguration>
#include <QString>
#include <QTimer>

namespace vonnel {

class CopyContext;
class Session;

enum class Privacy {
    NoSession,
    Agreeing,     // the offer or the handshake is under way
    OldWire,      // the session runs on the old wire, not private
    Private,      // private, the peer's key not verified
    Verified,     // private, and the user compared the short string
};

class PrivateLink : public QObject {
    Q_OBJECT
public:
    PrivateLink(CopyContext& ctx, Session& session, QObject* parent = nullptr);

    // Loads this copy's key pair, making it at the first start.
    bool loadIdentity(QString* error = nullptr);
    Identity& identity() { return m_identity; }
    PeerKeys& peerKeys() { return m_peers; }

    // --- the session's start ----------------------------------------------
    // The callee has taken the call: its opening (version, key frame, look)
    // goes out next, and the caller's version may come in at any time.
    void calleeOpened();
    // ... and its opening has gone out.
    void calleeOpeningSent();
    // The caller has sent its opening: the offer goes out now, if at all.
    void callerOpened();
    // The peer's version text, the first in a session.
    void peerVersion(const QString& text);
    // Takes the offer or its answer off the end of an arrival while one is
    // awaited, and returns the rest for the receive passes.
    QByteArray takeWord(QByteArray bytes);
    // The session socket closed or was reset.
    void sessionClosed();

    // --- what the user sees -------------------------------------------------
    Privacy privacy() const { return m_privacy; }
    // What the session that ended last was (for its record).
    Privacy lastSessionPrivacy() const { return m_lastPrivacy; }
    static QString privacyText(Privacy p);
    QString shortString() const { return m_shortString; }
    QString peerFingerprint() const { return m_peerFingerprint; }
    QString peer() const { return m_peer; }
    QString suite() const { return m_suite; }
    // The user compared the short string with the peer's: the key is
    // remembered as the peer's. False without a private session.
    bool markVerified();

    // Waits, in ms: for the answer to the offer, for the offer behind the
    // caller's version, and for the handshake.
    void setWaits(int answerMs, int offerMs, int handshakeMs);
    // Whether a version text is one of a copy that can go private.
    static bool canGoPrivate(const QString& versionText);
    // The TLS of a private session with this identity: TLS 1.3 only, our
    // certificate shown, the peer's asked for and not checked against any
    // authority (the users compare the short string).
    static QSslConfiguration tlsConfiguration(const Identity& identity);

Q_SIGNALS:
    void privacyChanged(Privacy privacy);
    // The session cannot go on: the box has been shown, the session is to
    // end now.
    void endSession();

private:
    enum class Step { Idle, CalleeOpen, CalleeWaitsOffer, CallerWaitsAnswer, Handshake, Decided };
    void beginSession(bool callee);
    bool enabled() const;
    bool privateOnly() const;
    void setPrivacy(Privacy p);
    void hold(bool on);
    void startHandshake(bool asClient);
    void onPrivateUp(int index);
    void onPrivateFailed(int index, const QString& reason);
    void goPlain();
    void fail(const QString& reason, bool endIt = true);
    void timedOut();
    // A remembered peer with another key, or going plain after it went
    // private before: asks before anything typed goes out. True to go on.
    bool peerStillTrusted(const std::optional<KnownPeer>& known, const QString& fingerprint);
    bool plainStillWanted();
    QString peerAddress() const;

    CopyContext& m_ctx;
    Session& m_session;
    Identity m_identity;
    PeerKeys m_peers;
    Step m_step = Step::Idle;
    Privacy m_privacy = Privacy::NoSession;
    Privacy m_lastPrivacy = Privacy::NoSession;
    bool m_sawVersion = false;
    QString m_peerVersion;
    bool m_callee = false;
    QTimer m_wait;
    int m_answerMs = 5000;
    int m_offerMs = 5000;
    int m_handshakeMs = 10000;
    QString m_peer;
    QString m_shortString;
    QString m_peerFingerprint;
    QString m_suite;
};

}  // namespace vonnel
