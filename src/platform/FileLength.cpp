#include "platform/FileLength.h"

#include <sys/stat.h>
#include <unistd.h>

namespace vonnel {

qint64 bufferedFileLength(const QFile& file)
{
    if (!file.isOpen() || file.handle() < 0)
        return -1;
    qint64 onDisk;
    if (file.openMode() & QIODevice::Append) {
        // A file opened for appending writes at its end whatever its offset,
        // so the offset may be moved there: a seek costs a third of an
        // fstat, and this runs once a frame.
        onDisk = ::lseek(file.handle(), 0, SEEK_END);
    } else {
        struct stat st;
        onDisk = ::fstat(file.handle(), &st) == 0 ? qint64(st.st_size) : -1;
    }
    return onDisk < 0 ? -1 : onDisk + file.bytesToWrite();
}

}  // namespace vonnel
