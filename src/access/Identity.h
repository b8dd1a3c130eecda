#pragma once
// This copy's identity for private sessions: a long-lived key pair and a
// self-signed certificate in the application folder, made at the first
// start. The private key file is readable by its owner only.

#include <QSslCertificate>
#include <QSslKey>
#include <QString>

namespace vonnel {

class Identity {
public:
    // The files live in folder (ending in '/').
    explicit Identity(QString folder);

    // Loads the key pair, making one when there is none or the files do
    // not hold a matching pair. Returns false, with the reason, when
    // neither works.
    bool load(QString* error = nullptr);
    // Makes a new key pair and certificate in place of the present ones.
    bool renew(QString* error = nullptr);
    bool isValid() const { return !m_certificate.isNull() && !m_key.isNull(); }

    const QSslCertificate& certificate() const { return m_certificate; }
    const QSslKey& key() const { return m_key; }
    // The certificate's SHA-256 fingerprint in pairs of hex digits.
    QString fingerprint() const { return fingerprintOf(m_certificate); }
    static QString fingerprintOf(const QSslCertificate& certificate);
    // A fingerprint as two lines of sixteen pairs, to be read aloud.
    static QString inTwoLines(const QString& fingerprint);

    QString keyPath() const { return m_folder + QStringLiteral("identity.key"); }
    QString certificatePath() const { return m_folder + QStringLiteral("identity.crt"); }

private:
    bool make(QString* error);

    QString m_folder;
    QSslCertificate m_certificate;
    QSslKey m_key;
};

// The short authentication string of a private session: made from both
// sides' certificates, the same on both sides whatever their order, four
// groups of four digits two people can read to each other. A man in the
// middle shows each side a certificate of his own, and the strings differ.
QString shortAuthString(const QSslCertificate& a, const QSslCertificate& b);

}  // namespace vonnel
