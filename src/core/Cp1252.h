#pragma once
// The single-byte code page of every file and wire text. Each byte maps to
// one character and back, the holes of the code page included (they stand
// for the C1 controls of the same number), so text taken from the wire and
// sent on again keeps its bytes. A character the code page lacks goes out
// as '?'.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace vonnel {

QString fromCp1252(QByteArrayView bytes);
inline QString fromCp1252(const QByteArray& bytes) { return fromCp1252(QByteArrayView(bytes)); }
QByteArray toCp1252(const QString& text);

// The line break of every text the program writes, shows or sends.
inline const QString kCrLf = QStringLiteral("\r\n");

}  // namespace vonnel
