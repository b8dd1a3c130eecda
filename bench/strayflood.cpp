// A flood of data frames that belong to no transfer: each goes through the
// copy's receive path, is dropped and recorded in error.log. Prints the time
// of the first and the last ten thousand frames and the log's size, beside
// a raw loop that only appends one line of the same length to a file per
// frame (the least a recorded frame can cost).
//
// Usage: bench_strayflood [frames] [payload bytes]   (default 100000 2000)

#include "core/Logs.h"
#include "support/TestCopy.h"
#include "wire/Receiver.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <cstdio>

using namespace vonnel;
using namespace vonnel::test;

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const int frames = argc > 1 ? std::atoi(argv[1]) : 100000;
    const int payload = argc > 2 ? std::atoi(argv[2]) : 2000;
    const int block = 10000;

    TestCopy copy;
    if (!copy.start())
        return 1;
    const QByteArray frame = "<*> " + QByteArray(payload, 's') + " </*>";
    QList<double> ours;
    QElapsedTimer t;
    for (int i = 0; i < frames; i += block) {
        t.start();
        for (int k = 0; k < block && i + k < frames; ++k)
            copy.frm().receiver().handleArrival(0, frame);
        ours << t.nsecsElapsed() / 1e6;
    }
    const qint64 logSize = QFileInfo(copy.file("error.log")).size();

    // Raw: one appended line of the same length per frame, in a file kept open.
    QFile raw(copy.file("raw.log"));
    raw.open(QIODevice::WriteOnly | QIODevice::Append);
    const QByteArray line = "1 SendFileCheck-Stray Frame=2000 bytes dropped\r\n";
    QList<double> base;
    for (int i = 0; i < frames; i += block) {
        t.start();
        for (int k = 0; k < block && i + k < frames; ++k) {
            raw.write(line);
            raw.flush();
        }
        base << t.nsecsElapsed() / 1e6;
    }

    std::printf("stray frames: %d of %d payload bytes\n", frames, payload);
    std::printf("%-22s %12s %12s\n", "", "ours (ms)", "raw (ms)");
    std::printf("%-22s %12.1f %12.1f\n", "first 10,000 frames", ours.first(), base.first());
    std::printf("%-22s %12.1f %12.1f\n", "last 10,000 frames", ours.last(), base.last());
    std::printf("%-22s %12.2f %12.2f\n", "last / first", ours.last() / ours.first(),
                base.last() / base.first());
    std::printf("error.log: %lld bytes (cap %lld)\n", logSize, Logs::kErrorLogCap);
    return 0;
}
