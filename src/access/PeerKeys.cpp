#include "access/PeerKeys.h"

#include "core/IniStore.h"

namespace vonnel {

namespace {
const QString kPeers = QStringLiteral("Peers");
// A fingerprint is 32 pairs of hex digits and their colons.
constexpr int kFingerprintLength = 95;

// An address in the file's key: '=' and ';' would end or hide it.
QString keyOf(const QString& peer)
{
    QString k = peer;
    k.replace(QLatin1Char('='), QLatin1Char('_')).replace(QLatin1Char(';'), QLatin1Char('_'));
    return k;
}
}  // namespace

std::optional<KnownPeer> PeerKeys::find(const QString& peer) const
{
    const QString value = ReadIni(kPeers, keyOf(peer), m_path);
    const QStringList parts = value.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (parts.isEmpty() || parts.first().size() != kFingerprintLength)
        return std::nullopt;
    return KnownPeer{parts.first(), parts.size() > 1 && parts.at(1) == QLatin1String("verified")};
}

void PeerKeys::remember(const QString& peer, const QString& fingerprint)
{
    const std::optional<KnownPeer> known = find(peer);
    if (known && known->fingerprint == fingerprint)
        return;
    write(peer, KnownPeer{fingerprint, false});
}

void PeerKeys::markVerified(const QString& peer, const QString& fingerprint)
{
    write(peer, KnownPeer{fingerprint, true});
}

void PeerKeys::write(const QString& peer, const KnownPeer& known)
{
    WriteIni(kPeers, keyOf(peer),
             known.fingerprint + (known.verified ? QStringLiteral(" verified") : QString()), m_path);
}

}  // namespace vonnel
