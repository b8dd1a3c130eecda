#pragma once
// How much of the machine's memory is in use and how much is free, as the
// system tells it (/proc/meminfo on Linux).

#include <QtGlobal>

namespace vonnel {

struct MemoryStatus {
    int loadPercent = 0;       // physical memory in use, 0 to 100
    qint64 availableBytes = 0;  // physical memory a program can still take
    bool known = false;         // false when the system did not say
};

MemoryStatus readMemoryStatus();

// The same from the text of /proc/meminfo, for tests.
MemoryStatus memoryStatusFromMeminfo(const QByteArray& text);

}  // namespace vonnel
