#pragma once
// The peers this copy has had private sessions with: by peer (the address
// called or the caller's address), the fingerprint of the key it showed
// and whether the user verified it. Kept in peerkeys.txt in the
// application folder, so that a changed key or a peer that suddenly
// offers only the old wire is noticed at the next session.

#include <QString>
#include <optional>

namespace vonnel {

struct KnownPeer {
    QString fingerprint;
    bool verified = false;
};

class PeerKeys {
public:
    explicit PeerKeys(QString folder) : m_path(folder + QStringLiteral("peerkeys.txt")) {}

    std::optional<KnownPeer> find(const QString& peer) const;
    // Notes the key a peer showed. A key other than the one known takes its
    // place unverified (the caller asks the user first when the known one
    // was verified).
    void remember(const QString& peer, const QString& fingerprint);
    // The user compared the short string: this key is the peer's.
    void markVerified(const QString& peer, const QString& fingerprint);


private:
    void write(const QString& peer, const KnownPeer& known);

    QString m_path;
};

}  // namespace vonnel
