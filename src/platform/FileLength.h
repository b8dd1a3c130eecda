#pragma once
// The length of a file being appended to through a buffered QFile.

#include <QFile>

namespace vonnel {

// What the file system holds plus what waits in the file's write buffer:
// the file's true length without a flush. A change made to the file behind
// the QFile's back (another writer, a truncation) is counted as well.
// -1 when the file is not open or cannot be asked.
qint64 bufferedFileLength(const QFile& file);

}  // namespace vonnel
