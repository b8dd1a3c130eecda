#include "access/Pc1Cipher.h"

#include <algorithm>

namespace vonnel {

namespace {

// Generator state for one pass over a text. The register names follow the
// published PC1 code so the steps can be checked against it line by line.
struct Pc1Stream {
    std::array<std::uint8_t, Pc1Cipher::kKeyBytes> key{};
    std::array<std::uint16_t, 8> x1a0{};
    std::uint16_t x1a2 = 0;
    std::uint16_t si = 0;

    // 16-bit product; widened first so the multiply can't overflow int.
    static std::uint16_t mul(std::uint16_t a, std::uint16_t b)
    {
        return static_cast<std::uint16_t>(std::uint32_t(a) * std::uint32_t(b));
    }

    // One step of the generator on key word i.
    std::uint16_t code(int i)
    {
        constexpr std::uint16_t bx = 0x4e35;
        std::uint16_t dx = static_cast<std::uint16_t>(x1a2 + i);
        std::uint16_t ax = x1a0[i];
        std::uint16_t cx = 0x015a;

        std::swap(ax, si);
        std::swap(ax, dx);
        if (ax != 0)
            ax = mul(ax, bx);
        std::swap(ax, cx);
        if (ax != 0) {
            ax = mul(ax, si);
            cx = static_cast<std::uint16_t>(ax + cx);
        }
        std::swap(ax, si);
        ax = mul(ax, bx);
        dx = static_cast<std::uint16_t>(cx + dx);
        ax = static_cast<std::uint16_t>(ax + 1);

        x1a2 = dx;
        x1a0[i] = ax;
        return ax ^ dx;
    }

    // Runs the generator over all eight key words, each chained to the
    // previous word's new value, and returns the xor of the eight outputs.
    std::uint16_t assemble()
    {
        x1a0[0] = static_cast<std::uint16_t>((key[0] << 8) | key[1]);
        std::uint16_t inter = code(0);
        for (int i = 1; i < 8; ++i) {
            const auto word = static_cast<std::uint16_t>((key[2 * i] << 8) | key[2 * i + 1]);
            x1a0[i] = x1a0[i - 1] ^ word;
            inter ^= code(i);
        }
        return inter;
    }

    void mixIntoKey(std::uint8_t plain)
    {
        for (auto& k : key)
            k ^= plain;
    }
};

}  // namespace

Pc1Cipher::Pc1Cipher(const QByteArray& keyText)
{
    setKey(keyText);
}

void Pc1Cipher::setKey(const QByteArray& keyText)
{
    m_key.fill(0);
    const auto n = std::min<qsizetype>(keyText.size(), kKeyBytes);
    for (qsizetype i = 0; i < n; ++i)
        m_key[i] = static_cast<std::uint8_t>(keyText[i]);
}

QByteArray Pc1Cipher::encrypt(const QByteArray& plain) const
{
    return run(plain, true);
}

QByteArray Pc1Cipher::decrypt(const QByteArray& cipher) const
{
    return run(cipher, false);
}

QByteArray Pc1Cipher::run(const QByteArray& input, bool encrypting) const
{
    Pc1Stream s;
    s.key = m_key;
    QByteArray out(input.size(), Qt::Uninitialized);
    for (qsizetype n = 0; n < input.size(); ++n) {
        const std::uint16_t inter = s.assemble();
        const auto pad = static_cast<std::uint8_t>((inter >> 8) ^ (inter & 0xff));
        const auto in = static_cast<std::uint8_t>(input[n]);
        const auto result = static_cast<std::uint8_t>(in ^ pad);
        // The key always takes in the plain byte: the input when enciphering,
        // the result when deciphering.
        s.mixIntoKey(encrypting ? in : result);
        out[n] = static_cast<char>(result);
    }
    return out;
}

}  // namespace vonnel
