#include "connection/PrivateLink.h"

#include "connection/Session.h"
#include "core/CopyContext.h"
#include "core/Cp1252.h"
#include "core/IniStore.h"
#include "core/WireCodec.h"
#include "platform/Prompter.h"

#include <QRegularExpression>
#include <QSslConfiguration>
#include <QSslSocket>

namespace vonnel {

namespace {
const QString kPrivateKey = QStringLiteral("Private Sessions");
const QString kPrivateOnlyKey = QStringLiteral("Private Sessions Only");
const QString kTitle = QStringLiteral("Private Session");
}  // namespace

PrivateLink::PrivateLink(CopyContext& ctx, Session& session, QObject* parent)
    : QObject(parent),
      m_ctx(ctx),
      m_session(session),
      m_identity(ctx.AppPath()),
      m_peers(ctx.AppPath())
{
    m_wait.setSingleShot(true);
    connect(&m_wait, &QTimer::timeout, this, &PrivateLink::timedOut);
    Winsock& ws = m_session.winsock(0);
    connect(&ws, &Winsock::privateUp, this, &PrivateLink::onPrivateUp);
    connect(&ws, &Winsock::privateFailed, this, &PrivateLink::onPrivateFailed);
    connect(&ws, &Winsock::stateChanged, this, [this](int, int state) {
        if (state != Winsock::sckConnected && m_step != Step::Idle)
            sessionClosed();
    });
}

bool PrivateLink::loadIdentity(QString* error)
{
    return m_identity.load(error);
}

bool PrivateLink::enabled() const
{
    // On unless switched off: a missing key is the preset's "1".
    const QString v = m_ctx.setting(kPrivateKey);
    return (v.isEmpty() || flagByNumber(v)) && m_identity.isValid();
}

bool PrivateLink::privateOnly() const
{
    return m_ctx.settingFlag(kPrivateOnlyKey);
}

void PrivateLink::setWaits(int answerMs, int offerMs, int handshakeMs)
{
    m_answerMs = answerMs;
    m_offerMs = offerMs;
    m_handshakeMs = handshakeMs;
}

bool PrivateLink::canGoPrivate(const QString& versionText)
{
    static const QRegularExpression ours(QStringLiteral("^Vonnel (\\d{1,4})\\.\\d{1,4}\\.\\d{1,4}$"));
    const QRegularExpressionMatch m = ours.match(versionText.trimmed());
    return m.hasMatch() && m.captured(1).toInt() >= 3;
}

QString PrivateLink::privacyText(Privacy p)
{
    switch (p) {
    case Privacy::NoSession: return {};
    case Privacy::Agreeing: return QStringLiteral("Going private...");
    case Privacy::OldWire: return QStringLiteral("Not private (old wire)");
    case Privacy::Private: return QStringLiteral("Private, not verified");
    case Privacy::Verified: return QStringLiteral("Private, verified");
    }
    return {};
}

void PrivateLink::setPrivacy(Privacy p)
{
    if (m_privacy == p)
        return;
    m_privacy = p;
    if (p != Privacy::NoSession && p != Privacy::Agreeing)
        m_ctx.announce(m_ctx.translate(privacyText(p)));
    Q_EMIT privacyChanged(p);
}

void PrivateLink::hold(bool on)
{
    m_session.winsock(0).holdSends(on);
}

QString PrivateLink::peerAddress() const
{
    return m_session.winsock(0).RemoteHostIP();
}

// --- the start ---------------------------------------------------------------------

void PrivateLink::beginSession(bool callee)
{
    m_wait.stop();
    m_callee = callee;
    m_lastPrivacy = Privacy::NoSession;
    m_peer = peerAddress();
    m_shortString.clear();
    m_peerFingerprint.clear();
    m_suite.clear();
}

void PrivateLink::calleeOpened()
{
    beginSession(true);
    m_step = Step::CalleeOpen;
    m_sawVersion = false;
    if (!enabled()) {
        goPlain();
        return;
    }
    setPrivacy(Privacy::Agreeing);
    // A caller's version comes with its first data; one that sends none is
    // taken for a peer of the old wire after a while.
    m_wait.start(m_answerMs);
}

void PrivateLink::calleeOpeningSent()
{
    // A peer that went private before must not get typed text in the
    // clear before it has shown what it is; the opening itself is what it
    // waits for.
    if (m_step == Step::CalleeOpen && m_peers.find(m_peer))
        hold(true);
}

void PrivateLink::callerOpened()
{
    beginSession(false);
    // The callee's version came with its first data, before the opening.
    if (!enabled() || !m_sawVersion || !canGoPrivate(m_peerVersion)) {
        goPlain();
        return;
    }
    m_step = Step::CallerWaitsAnswer;
    setPrivacy(Privacy::Agreeing);
    m_session.winsock(0).sendNow(wire::kPrivateOffer.toByteArray());
    hold(true);
    m_wait.start(m_answerMs);
}

void PrivateLink::peerVersion(const QString& text)
{
    if (m_sawVersion)
        return;
    m_sawVersion = true;
    m_peerVersion = text;
    if (m_step != Step::CalleeOpen)
        return;
    if (enabled() && canGoPrivate(text)) {
        // The caller's offer follows its opening at once; until it came or
        // the wait is over, nothing more goes out.
        m_step = Step::CalleeWaitsOffer;
        hold(true);
        m_wait.start(m_offerMs);
        return;
    }
    goPlain();
}

QByteArray PrivateLink::takeWord(QByteArray bytes)
{
    // Each word is the last thing its sender writes before the answer, so
    // it ends the read it comes in; anywhere else it is no word of ours.
    switch (m_step) {
    case Step::CalleeOpen:
    case Step::CalleeWaitsOffer:
    case Step::Decided:
        if (!m_callee || !bytes.endsWith(wire::kPrivateOffer))
            return bytes;
        bytes.chop(wire::kPrivateOffer.size());
        if (m_step != Step::Decided && enabled()) {
            m_session.winsock(0).sendNow(wire::kPrivateAccept.toByteArray());
            startHandshake(false);
        } else if (m_privacy != Privacy::Private && m_privacy != Privacy::Verified) {
            // Too late, or switched off: the caller goes on plain at once.
            m_session.winsock(0).sendNow(wire::kPrivateDecline.toByteArray());
            if (m_step != Step::Decided)
                goPlain();
        }
        return bytes;
    case Step::CallerWaitsAnswer:
        if (bytes.endsWith(wire::kPrivateAccept)) {
            bytes.chop(wire::kPrivateAccept.size());
            startHandshake(true);
        } else if (bytes.endsWith(wire::kPrivateDecline)) {
            bytes.chop(wire::kPrivateDecline.size());
            goPlain();
        }
        return bytes;
    case Step::Idle:
    case Step::Handshake:
        return bytes;
    }
    return bytes;
}

QSslConfiguration PrivateLink::tlsConfiguration(const Identity& identity)
{
    QSslConfiguration c = QSslConfiguration::defaultConfiguration();
    c.setProtocol(QSsl::TlsV1_3);
    c.setLocalCertificate(identity.certificate());
    c.setPrivateKey(identity.key());
    // Both sides show a certificate; whose it is, the users settle.
    c.setPeerVerifyMode(QSslSocket::QueryPeer);
    c.setCaCertificates({});
    return c;
}

void PrivateLink::startHandshake(bool asClient)
{
    m_wait.stop();
    m_step = Step::Handshake;
    setPrivacy(Privacy::Agreeing);
    hold(true);
    if (!m_session.winsock(0).startPrivate(tlsConfiguration(m_identity), asClient)) {
        fail(m_ctx.translate(QStringLiteral("The connection could not be turned private.")));
        return;
    }
    m_wait.start(m_handshakeMs);
}

void PrivateLink::onPrivateUp(int index)
{
    if (index != 0 || m_step != Step::Handshake)
        return;
    m_wait.stop();
    Winsock& ws = m_session.winsock(0);
    const QSslCertificate peerCert = ws.peerCertificate();
    if (peerCert.isNull()) {
        fail(m_ctx.translate(QStringLiteral("The peer showed no key.")));
        return;
    }
    m_step = Step::Decided;
    m_peerFingerprint = Identity::fingerprintOf(peerCert);
    m_shortString = shortAuthString(m_identity.certificate(), peerCert);
    m_suite = ws.privateSuite();
    m_ctx.prompter().notice(m_ctx.translate(kTitle),
                            m_ctx.translate(QStringLiteral("Short string")) + QStringLiteral(": ") + m_shortString +
                                QLatin1Char('\n') + m_ctx.translate(QStringLiteral("Peer key")) +
                                QStringLiteral(": ") + m_peerFingerprint);
    const std::optional<KnownPeer> known = m_peers.find(m_peer);
    if (!peerStillTrusted(known, m_peerFingerprint)) {
        Q_EMIT endSession();
        return;
    }
    const bool verified = known && known->verified && known->fingerprint == m_peerFingerprint;
    if (!known || known->fingerprint != m_peerFingerprint)
        m_peers.remember(m_peer, m_peerFingerprint);
    setPrivacy(verified ? Privacy::Verified : Privacy::Private);
    hold(false);
}

void PrivateLink::onPrivateFailed(int index, const QString& reason)
{
    if (index == 0 && m_step == Step::Handshake)
        fail(reason);
}

void PrivateLink::timedOut()
{
    // A read already waiting on the socket may hold the word: it is read
    // before the wait is given up.
    if (m_step != Step::Handshake && m_session.winsock(0).bytesAvailable() > 0) {
        m_wait.start(50);
        return;
    }
    switch (m_step) {
    case Step::CalleeOpen:
    case Step::CallerWaitsAnswer:
    case Step::CalleeWaitsOffer:
        goPlain();
        break;
    case Step::Handshake:
        fail(m_ctx.translate(QStringLiteral("The handshake did not finish in time.")));
        break;
    default:
        break;
    }
}

void PrivateLink::goPlain()
{
    m_wait.stop();
    m_step = Step::Decided;
    setPrivacy(Privacy::OldWire);
    if (enabled() && privateOnly()) {
        m_ctx.prompter().msgBox(
            m_peer + QLatin1Char(' ') +
                m_ctx.translate(QStringLiteral("offers only the old wire, and only private sessions are taken "
                                               "(Tools > Options > Security).")) +
                QLatin1Char('\r') + m_ctx.translate(QStringLiteral("The session ends.")),
            MsgStyle::Exclamation, m_ctx.translate(kTitle));
        Q_EMIT endSession();
        return;
    }
    if (!plainStillWanted()) {
        Q_EMIT endSession();
        return;
    }
    hold(false);
}

bool PrivateLink::plainStillWanted()
{
    if (!enabled() || !m_peers.find(m_peer))
        return true;
    const Answer a = m_ctx.prompter().msgBox(
        m_peer + QLatin1Char(' ') +
            m_ctx.translate(QStringLiteral("has had private sessions with you before and now offers only the old "
                                           "wire: someone between you may be reading along.")) +
            QLatin1Char('\r') + m_ctx.translate(QStringLiteral("Nothing you typed has gone out yet.")) +
            QStringLiteral("\r\r") + m_ctx.translate(QStringLiteral("Go on without privacy?")),
        MsgStyle::YesNo + MsgStyle::Exclamation + MsgStyle::DefaultButton2 + MsgStyle::Foreground,
        m_ctx.translate(QStringLiteral("Warning: not private")));
    return a == Answer::Yes;
}

bool PrivateLink::peerStillTrusted(const std::optional<KnownPeer>& known, const QString& fingerprint)
{
    // Only a verified key is known to be the peer's: one merely seen before
    // (many peers may share an address behind a router) gives way quietly.
    if (!known || !known->verified || known->fingerprint == fingerprint)
        return true;
    const Answer a = m_ctx.prompter().msgBox(
        m_ctx.translate(QStringLiteral("The key of this peer is not the one you verified:")) + QLatin1Char(' ') +
            m_peer + QStringLiteral("\r\r") + m_ctx.translate(QStringLiteral("Verified key")) + QStringLiteral(":\r") +
            Identity::inTwoLines(known->fingerprint) + QStringLiteral("\r\r") +
            m_ctx.translate(QStringLiteral("Key now")) + QStringLiteral(":\r") + Identity::inTwoLines(fingerprint) +
            QStringLiteral("\r\r") +
            m_ctx.translate(QStringLiteral("Someone between you may be reading the session. Nothing you typed has "
                                           "gone out yet.")) +
            QStringLiteral("\r\r") + m_ctx.translate(QStringLiteral("Go on with the new key?")),
        MsgStyle::YesNo + MsgStyle::Exclamation + MsgStyle::DefaultButton2 + MsgStyle::Foreground,
        m_ctx.translate(QStringLiteral("Warning: the peer's key has changed")));
    return a == Answer::Yes;
}

void PrivateLink::fail(const QString& reason, bool endIt)
{
    m_wait.stop();
    m_step = Step::Decided;
    m_ctx.prompter().msgBox(
        m_ctx.translate(QStringLiteral("The private session could not be set up:")) + QLatin1Char(' ') + reason +
            QLatin1Char('\r') +
            m_ctx.translate(QStringLiteral("The session ends; nothing went out as plain text.")),
        MsgStyle::Exclamation, m_ctx.translate(kTitle));
    if (endIt)
        Q_EMIT endSession();
}

void PrivateLink::sessionClosed()
{
    const bool wasHandshaking = m_step == Step::Handshake;
    m_wait.stop();
    m_step = Step::Idle;
    if (wasHandshaking)
        fail(m_ctx.translate(QStringLiteral("The peer closed the connection during the handshake.")), false);
    m_step = Step::Idle;
    m_sawVersion = false;
    m_peerVersion.clear();
    if (m_privacy != Privacy::NoSession)
        m_lastPrivacy = m_privacy;
    setPrivacy(Privacy::NoSession);
}

bool PrivateLink::markVerified()
{
    if (m_privacy != Privacy::Private && m_privacy != Privacy::Verified)
        return false;
    m_peers.markVerified(m_peer, m_peerFingerprint);
    setPrivacy(Privacy::Verified);
    return true;
}

}  // namespace vonnel
