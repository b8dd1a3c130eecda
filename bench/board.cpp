// The board under a peer's strokes: 100,000 dots arriving as "&&st"
// messages of 500 points go through a copy's whole receive path, are kept
// as objects and painted. Prints points per second, the time to paint the
// full surface from all its objects and to bring the kept raster up to
// date, and the memory the objects take; beside each a raw figure from the
// same run: a bare loop that only splits the same text into numbers, and
// one that only fills the same squares into an image.
//
// Usage: bench_board [points] [points per message]   (default 100000 500)

#include "board/BoardPaint.h"
#include "board/BoardCodec.h"
#include "board/Scrivet.h"
#include "support/TestCopy.h"
#include "wire/Receiver.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QPainter>
#include <cstdio>

using namespace vonnel;
using namespace vonnel::test;

namespace {

// Resident memory of the process in kB, as the system tells it.
qint64 residentKb()
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong();
    return -1;
}

}  // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const int points = argc > 1 ? std::atoi(argv[1]) : 100000;
    const int perMessage = argc > 2 ? std::atoi(argv[2]) : 500;

    // The messages, as a peer's strokes would come: points spread over the
    // surface, each message one read.
    QList<QByteArray> messages;
    for (int made = 0; made < points; made += perMessage) {
        QList<QPoint> stroke;
        for (int k = 0; k < perMessage && made + k < points; ++k) {
            const int i = made + k;
            stroke << QPoint((i * 37) % 11900, (i * 53) % 8900);
        }
        messages << board::stroke(stroke).toLatin1();
    }

    TestCopy copy;
    if (!copy.start())
        return 1;
    Scrivet& s = copy.frm().scrivet();
    s.mnuDraw_Click();
    copy.frm().receiver().handleArrival(0, "&&fc255$&&lt1$");

    const qint64 before = residentKb();
    QElapsedTimer t;
    t.start();
    for (const QByteArray& m : messages)
        copy.frm().receiver().handleArrival(0, m);
    const double ourParse = t.nsecsElapsed() / 1e9;
    const qint64 after = residentKb();
    const int kept = s.board().shapeCount;

    // Raw: the same text split into numbers and nothing else.
    t.start();
    qint64 sum = 0;
    for (const QByteArray& m : messages) {
        const QByteArray body = m.mid(4, m.size() - 5);
        for (const QByteArray& pair : body.split('$')) {
            const qsizetype comma = pair.indexOf(',');
            if (comma > 0)
                sum += pair.left(comma).toInt() + pair.mid(comma + 1).toInt();
        }
    }
    const double rawParse = t.nsecsElapsed() / 1e9;

    // The full surface from its objects, a few times, the best one counted.
    double ourPaint = 1e9;
    for (int i = 0; i < 5; ++i) {
        t.start();
        const QImage img = BoardPaint::render(s.board());
        ourPaint = std::min(ourPaint, t.nsecsElapsed() / 1e6);
    }
    // The kept raster: one stroke more on a board already painted.
    BoardPaint raster;
    raster.image(s.board());
    copy.frm().receiver().handleArrival(0, messages.first());
    t.start();
    raster.image(s.board());
    const double ourUpdate = t.nsecsElapsed() / 1e6;

    // Raw: the same number of 3 x 3 squares filled into an image.
    double rawPaint = 1e9;
    for (int i = 0; i < 5; ++i) {
        t.start();
        QImage img(BoardPaint::pixelSize(s.board()), QImage::Format_RGB32);
        img.fill(Qt::white);
        QPainter p(&img);
        for (int k = 0; k < points; ++k)
            p.fillRect(QRectF(((k * 37) % 11900) / 15.0, ((k * 53) % 8900) / 15.0, 3.33, 3.33),
                       Qt::red);
        p.end();
        rawPaint = std::min(rawPaint, t.nsecsElapsed() / 1e6);
    }

    std::printf("board: %d points in %lld messages, %d kept (checksum %lld)\n", points,
                qlonglong(messages.size()), kept, qlonglong(sum % 1000));
    std::printf("  parse+store   ours %10.0f points/s   raw split %10.0f points/s\n",
                points / ourParse, points / rawParse);
    std::printf("  full repaint  ours %8.2f ms            raw squares %8.2f ms\n", ourPaint,
                rawPaint);
    std::printf("  kept raster, one stroke added: %.2f ms\n", ourUpdate);
    std::printf("  memory: %lld kB resident more after the arrivals (%.0f bytes per object)\n",
                qlonglong(after - before), kept ? (after - before) * 1024.0 / kept : 0.0);
    return kept == points ? 0 : 2;
}
