#include "access/Identity.h"

#include <QCryptographicHash>
#include <QFile>
#include <QSaveFile>

#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509.h>

#include <algorithm>
#include <memory>
#include <sys/stat.h>

namespace vonnel {

namespace {

template <typename T, void (*F)(T*)>
struct Free {
    void operator()(T* p) const { F(p); }
};
using KeyPtr = std::unique_ptr<EVP_PKEY, Free<EVP_PKEY, EVP_PKEY_free>>;
using CertPtr = std::unique_ptr<X509, Free<X509, X509_free>>;
using BioPtr = std::unique_ptr<BIO, Free<BIO, BIO_free_all>>;

QByteArray bioBytes(BIO* bio)
{
    char* data = nullptr;
    const long n = BIO_get_mem_data(bio, &data);
    return QByteArray(data, int(n));
}

// Writes the file whole or not at all; the key file is never readable by
// anyone else, not even for the moment before it is complete.
bool writeFile(const QString& path, const QByteArray& bytes, bool secret, QString* error)
{
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly)) {
        if (error)
            *error = f.errorString();
        return false;
    }
    if (secret)
        ::fchmod(f.handle(), S_IRUSR | S_IWUSR);
    f.write(bytes);
    if (!f.commit()) {
        if (error)
            *error = f.errorString();
        return false;
    }
    return true;
}

// The key is a private key and the certificate is the one made for it.
bool pairMatches(const QByteArray& keyPem, const QByteArray& certPem)
{
    BioPtr keyBio(BIO_new_mem_buf(keyPem.constData(), int(keyPem.size())));
    BioPtr certBio(BIO_new_mem_buf(certPem.constData(), int(certPem.size())));
    KeyPtr key(PEM_read_bio_PrivateKey(keyBio.get(), nullptr, nullptr, nullptr));
    CertPtr cert(PEM_read_bio_X509(certBio.get(), nullptr, nullptr, nullptr));
    return key && cert && X509_check_private_key(cert.get(), key.get()) == 1;
}

}  // namespace

Identity::Identity(QString folder) : m_folder(std::move(folder)) {}

bool Identity::load(QString* error)
{
    QFile keyFile(keyPath());
    QFile certFile(certificatePath());
    if (keyFile.open(QIODevice::ReadOnly) && certFile.open(QIODevice::ReadOnly)) {
        // Key files are small; anything larger is not ours.
        const QByteArray keyPem = keyFile.read(64 * 1024);
        const QByteArray certPem = certFile.read(64 * 1024);
        if (pairMatches(keyPem, certPem)) {
            m_key = QSslKey(keyPem, QSsl::Ec, QSsl::Pem, QSsl::PrivateKey);
            m_certificate = QSslCertificate(certPem, QSsl::Pem);
            if (isValid())
                return true;
        }
    }
    return make(error);
}

bool Identity::renew(QString* error)
{
    return make(error);
}

bool Identity::make(QString* error)
{
    KeyPtr key(EVP_EC_gen("P-256"));
    CertPtr cert(X509_new());
    if (!key || !cert) {
        if (error)
            *error = QStringLiteral("No key pair could be made");
        return false;
    }
    X509_set_version(cert.get(), 2);
    unsigned char serial[16];
    RAND_bytes(serial, sizeof serial);
    serial[0] &= 0x7f;
    BIGNUM* bn = BN_bin2bn(serial, sizeof serial, nullptr);
    BN_to_ASN1_INTEGER(bn, X509_get_serialNumber(cert.get()));
    BN_free(bn);
    X509_gmtime_adj(X509_getm_notBefore(cert.get()), -24 * 3600);
    X509_gmtime_adj(X509_getm_notAfter(cert.get()), 30L * 365 * 24 * 3600);
    X509_NAME* name = X509_get_subject_name(cert.get());
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>("Vonnel"), -1, -1, 0);
    X509_set_issuer_name(cert.get(), name);
    X509_set_pubkey(cert.get(), key.get());
    if (X509_sign(cert.get(), key.get(), EVP_sha256()) == 0) {
        if (error)
            *error = QStringLiteral("The certificate could not be signed");
        return false;
    }
    BioPtr keyBio(BIO_new(BIO_s_mem()));
    BioPtr certBio(BIO_new(BIO_s_mem()));
    if (!PEM_write_bio_PrivateKey(keyBio.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) ||
        !PEM_write_bio_X509(certBio.get(), cert.get())) {
        if (error)
            *error = QStringLiteral("The key pair could not be written out");
        return false;
    }
    const QByteArray keyPem = bioBytes(keyBio.get());
    const QByteArray certPem = bioBytes(certBio.get());
    if (!writeFile(keyPath(), keyPem, true, error) || !writeFile(certificatePath(), certPem, false, error))
        return false;
    m_key = QSslKey(keyPem, QSsl::Ec, QSsl::Pem, QSsl::PrivateKey);
    m_certificate = QSslCertificate(certPem, QSsl::Pem);
    return isValid();
}

QString Identity::fingerprintOf(const QSslCertificate& certificate)
{
    if (certificate.isNull())
        return {};
    const QByteArray hex = certificate.digest(QCryptographicHash::Sha256).toHex().toUpper();
    QString out;
    for (qsizetype i = 0; i < hex.size(); i += 2) {
        if (i > 0)
            out += QLatin1Char(':');
        out += QLatin1StringView(hex.mid(i, 2));
    }
    return out;
}

QString Identity::inTwoLines(const QString& fingerprint)
{
    constexpr int kHalf = 16 * 3 - 1;  // sixteen pairs and their colons
    if (fingerprint.size() <= kHalf + 1)
        return fingerprint;
    return fingerprint.left(kHalf) + QLatin1Char('\n') + fingerprint.mid(kHalf + 1);
}

QString shortAuthString(const QSslCertificate& a, const QSslCertificate& b)
{
    if (a.isNull() || b.isNull())
        return {};
    QByteArray first = a.digest(QCryptographicHash::Sha256);
    QByteArray second = b.digest(QCryptographicHash::Sha256);
    if (second < first)
        std::swap(first, second);
    const QByteArray h = QCryptographicHash::hash(QByteArrayLiteral("vonnel short string\0") + first + second,
                                                  QCryptographicHash::Sha256);
    // 16 decimal digits from 64 bits: the bias of the reduction is below
    // one part in a thousand, and 53 bits leave no room to search for a
    // key pair that would give both sides the same string.
    quint64 v = 0;
    for (int i = 0; i < 8; ++i)
        v = (v << 8) | quint8(h[i]);
    const QString digits = QStringLiteral("%1").arg(v % 10000000000000000ULL, 16, 10, QLatin1Char('0'));
    return digits.mid(0, 4) + QLatin1Char(' ') + digits.mid(4, 4) + QLatin1Char(' ') + digits.mid(8, 4) +
           QLatin1Char(' ') + digits.mid(12, 4);
}

}  // namespace vonnel
