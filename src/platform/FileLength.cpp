#include "platform/FileLength.h"

#include <sys/stat.h>

namespace vonnel {

qint64 bufferedFileLength(const QFile& file)
{
    // One fstat: far cheaper than the write a flush would cost per frame.
    struct stat st;
    if (!file.isOpen() || file.handle() < 0 || ::fstat(file.handle(), &st) != 0)
        return -1;
    return qint64(st.st_size) + file.bytesToWrite();
}

}  // namespace vonnel
