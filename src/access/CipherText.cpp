#include "access/CipherText.h"

#include "access/Pc1Cipher.h"

namespace vonnel {

QByteArray toLetterForm(const QByteArray& bytes)
{
    QByteArray out;
    out.reserve(bytes.size() * 2);
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        out.append(char('a' + (b >> 4)));
        out.append(char('a' + (b & 0x0f)));
    }
    return out;
}

QByteArray fromLetterForm(const QByteArray& letters, bool* complete)
{
    QByteArray out;
    out.reserve(letters.size() / 2);
    int high = -1;
    for (const char c : letters) {
        if (c < 'a' || c > 'p')
            continue;  // line breaks or blanks a user pasted into the text
        const int nibble = c - 'a';
        if (high < 0) {
            high = nibble;
        } else {
            out.append(char((high << 4) | nibble));
            high = -1;
        }
    }
    if (complete)
        *complete = high < 0;
    return out;
}

QByteArray genEPass(const QByteArray& plain, const QByteArray& keyText)
{
    return toLetterForm(Pc1Cipher(keyText).encrypt(plain));
}

QByteArray getEPass(const QByteArray& cipherText, const QByteArray& keyText, QString* error)
{
    bool complete = true;
    const QByteArray bytes = fromLetterForm(cipherText, &complete);
    if (error) {
        if (complete)
            error->clear();
        else
            *error = QStringLiteral("Incomplete cipher text: a letter is missing at the end");
    }
    return Pc1Cipher(keyText).decrypt(bytes);
}

qint32 dayNumber(const QDate& date)
{
    static const QDate epoch(1899, 12, 30);
    return static_cast<qint32>(epoch.daysTo(date));
}

QByteArray numericKey(qint32 number)
{
    return QByteArray::number(number);
}

QByteArray genpass(const QByteArray& plain, const QDate& today)
{
    return genEPass(plain, numericKey(dayNumber(today)));
}

}  // namespace vonnel
