#include "platform/MemoryStatus.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>

namespace vonnel {

MemoryStatus memoryStatusFromMeminfo(const QByteArray& text)
{
    qint64 total = -1, available = -1;
    for (const QByteArray& line : text.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon < 0)
            continue;
        const QByteArray key = line.left(colon);
        // "MemTotal:       16318412 kB"
        QByteArray value = line.mid(colon + 1).trimmed();
        const bool kb = value.endsWith(" kB");
        if (kb)
            value.chop(3);
        bool ok = false;
        const qint64 n = value.trimmed().toLongLong(&ok) * (kb ? 1024 : 1);
        if (!ok)
            continue;
        if (key == "MemTotal")
            total = n;
        else if (key == "MemAvailable")
            available = n;
    }
    MemoryStatus s;
    if (total <= 0 || available < 0)
        return s;
    s.known = true;
    s.availableBytes = available;
    s.loadPercent = int(std::clamp<qint64>(100 - available * 100 / total, 0, 100));
    return s;
}

MemoryStatus readMemoryStatus()
{
    QFile f(QStringLiteral("/proc/meminfo"));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return memoryStatusFromMeminfo(f.readAll());
}

}  // namespace vonnel
