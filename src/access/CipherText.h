#pragma once
// The text routines over the PC1 cipher that the rest of the program uses.
//
// Cipher text travels inside unescaped frames, so each cipher byte is written
// as two lower-case letters, 'a' + high nibble then 'a' + low nibble. The
// letters a..p can't form any frame marker. All texts are wire bytes in the
// session's code page (cp1252); callers convert QString with toCp1252.

#include <QByteArray>
#include <QDate>
#include <QString>

namespace vonnel {

// Bytes to letter form and back. Reading skips anything outside 'a'..'p';
// a lone letter left at the end is dropped and reported through complete.
QByteArray toLetterForm(const QByteArray& bytes);
QByteArray fromLetterForm(const QByteArray& letters, bool* complete = nullptr);

// Enciphers plain under keyText and returns the letter form. An empty key is
// a key like any other (all zero bytes); refusing it is the caller's choice.
QByteArray genEPass(const QByteArray& plain, const QByteArray& keyText);

// Deciphers a letter-form text. A damaged text (odd number of letters) gives
// back what could be deciphered, and error names the fault; error is cleared
// on success.
QByteArray getEPass(const QByteArray& cipherText, const QByteArray& keyText,
                    QString* error = nullptr);

// Days since 30 December 1899, the date serial the password store keys on.
qint32 dayNumber(const QDate& date);
// A numeric key is used as its decimal text.
QByteArray numericKey(qint32 number);

// Enciphers a password under the day number of the given date; the store
// keeps the date beside the result so the same key can read it back.
QByteArray genpass(const QByteArray& plain, const QDate& today);

}  // namespace vonnel
