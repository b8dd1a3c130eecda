#pragma once
// PC1 stream cipher with a 128-bit key, over raw bytes.
//
// The key is the key text's bytes, cut or zero-padded to 16. A 16-bit
// multiply-and-xor generator runs over the key's eight words; each plain
// byte is xored with both bytes of the generator's output and then folded
// into every key byte, so the stream depends on all text before it.
//
// Every call starts afresh from the key: the same key and input always give
// the same output, whatever was enciphered before. The traffic code sets the
// key for each typed character and relies on that.

#include <QByteArray>

#include <array>
#include <cstdint>

namespace vonnel {

class Pc1Cipher {
public:
    static constexpr int kKeyBytes = 16;

    explicit Pc1Cipher(const QByteArray& keyText = {});

    void setKey(const QByteArray& keyText);
    const std::array<std::uint8_t, kKeyBytes>& key() const { return m_key; }

    QByteArray encrypt(const QByteArray& plain) const;
    QByteArray decrypt(const QByteArray& cipher) const;

private:
    QByteArray run(const QByteArray& input, bool encrypting) const;

    std::array<std::uint8_t, kKeyBytes> m_key{};
};

}  // namespace vonnel
