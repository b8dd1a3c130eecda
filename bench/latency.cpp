// Keystroke-to-remote latency: two copies joined over loopback in this
// process; one types N characters, each timed from the key press until the
// other side shows it in its remote pane. Where the other side's remote pane
// does not take the characters up (no receive path), the time runs until the
// frame's bytes have arrived at the peer's socket, and the output says so.
// Beside it, a raw TCP one-way trip of the same frame size on the same
// event loop.
//
// The keys are typed twice in the same run: with the session idle, then
// while the other direction carries a file (from the side that reads the
// keys to the side that types them; a new send starts when one ends, so
// every key meets a transfer under way).
//
// Between two keys the event loop runs for a gap (as a typist leaves one),
// so each key meets the transfer in full flight; the idle run keeps the
// same gaps.
//
// Usage: bench_latency [N] [MB] [GAP_US]    (default 2000 keys, 200 MB, 2000 us)

#include "support/Session.h"
#include "support/TestCopy.h"
#include "transfer/Transfer.h"
#include "wire/LiveTyping.h"
#include "connection/Session.h"
#include "platform/Winsock.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTcpServer>
#include <QTcpSocket>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace vonnel;
using namespace vonnel::test;

namespace {

struct Figures {
    double median = 0, p99 = 0;
};

Figures figures(std::vector<double> us)
{
    Figures f;
    if (us.empty())
        return f;
    std::sort(us.begin(), us.end());
    f.median = us[us.size() / 2];
    f.p99 = us[std::min(us.size() - 1, size_t(double(us.size()) * 0.99))];
    return f;
}

std::vector<double> rawOneWay(int n, int frameSize)
{
    std::vector<double> out;
    QTcpServer server;
    server.listen(QHostAddress::LocalHost, 0);
    QTcpSocket a;
    a.connectToHost(QHostAddress::LocalHost, server.serverPort());
    QTcpSocket* b = nullptr;
    spin([&] { return (b = server.nextPendingConnection()) != nullptr && a.state() == QAbstractSocket::ConnectedState; });
    if (!b)
        return out;
    b->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    a.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    const QByteArray frame(frameSize, 'k');
    QElapsedTimer clock;
    for (int i = 0; i < n; ++i) {
        clock.start();
        a.write(frame);
        qint64 got = 0;
        if (!spin([&] {
                got += b->read(1 << 16).size();
                return got >= frameSize;
            }))
            break;
        out.push_back(double(clock.nsecsElapsed()) / 1000.0);
    }
    return out;
}

// Types up to n characters into a, each timed until b shows it (or its
// bytes reach b's socket). Stops early, with what it has, when the pane's
// limit is near or a character does not arrive. Before each key, between()
// runs (it keeps a transfer going).
std::vector<double> typeKeys(FrmMain& fa, FrmMain& fb, int n, bool paneMeasured, qint64& arrivals,
                             int* frameSize, int gapUs, const std::function<void()>& between = {})
{
    QElapsedTimer gap;
    Winsock& inB = fb.session().winsock(0);
    TextPane& remote = fb.model().txtClient(0);
    std::vector<double> typed;
    typed.reserve(size_t(n));
    const QString letters = QStringLiteral("abcdefghijklmnopqrstuvwxyz");
    QElapsedTimer clock;
    for (int i = 0; i < n; ++i) {
        if (fa.model().txtServer.length() > 60000)
            break;
        gap.start();
        while (gap.nsecsElapsed() < qint64(gapUs) * 1000)
            QCoreApplication::processEvents(QEventLoop::AllEvents);
        if (between)
            between();
        const QString c = letters.mid(i % letters.size(), 1);
        const int want = remote.length() + 1;
        const qint64 seen = arrivals;
        clock.start();
        fa.typing().typeText(c);
        const bool ok = paneMeasured ? spin([&] { return remote.length() >= want; })
                                     : spin([&] { return arrivals > seen; });
        if (!ok) {
            std::fprintf(stderr, "character %d did not arrive\n", i);
            break;
        }
        typed.push_back(double(clock.nsecsElapsed()) / 1000.0);
        if (!paneMeasured)
            *frameSize = int(inB.GetData().size());
    }
    return typed;
}

}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int n = argc > 1 ? std::max(10, atoi(argv[1])) : 2000;
    const qint64 megabytes = argc > 2 ? std::max(1, atoi(argv[2])) : 200;
    const int gapUs = argc > 3 ? std::max(0, atoi(argv[3])) : 2000;

    // The file the reading side sends back while the keys are typed.
    QTemporaryDir dir;
    const QString source = dir.filePath(QStringLiteral("load.bin"));
    if (!writeRandomFile(source, megabytes << 20, 7))
        return 1;

    TestCopy a, b;
    a.set("Text Limit", "64000");
    for (TestCopy* c : {&a, &b})
        c->set(QStringLiteral("Close Progress"), QStringLiteral("1"));
    if (!a.start() || !b.start() || !connectCopies(a, b)) {
        std::fprintf(stderr, "the two copies did not connect\n");
        return 1;
    }
    FrmMain& fa = a.frm();
    FrmMain& fb = b.frm();
    Winsock& inB = fb.session().winsock(0);
    TextPane& remote = fb.model().txtClient(0);

    qint64 arrivals = 0;
    QObject::connect(&inB, &Winsock::DataArrival, [&](int, qint64) { ++arrivals; });

    // The first key brings the format message; after it, does the remote
    // pane take characters up?
    fa.typing().typeText(QStringLiteral("a"));
    spin([&] { return remote.length() > 0; }, 1000);
    const bool paneMeasured = remote.length() > 0;
    inB.GetData();

    int frameSize = 0;
    const std::vector<double> typed = typeKeys(fa, fb, n, paneMeasured, arrivals, &frameSize, gapUs);
    if (paneMeasured)
        frameSize = int(QByteArray("<KEY> a <:KEY>").size() +
                        QByteArray::number(fa.model().txtServer.length()).size() + 6);

    // Under load: b sends the file to a, again whenever a send has ended.
    Transfer& ta = fa.transfer();
    Transfer& tb = fb.transfer();
    const QString target = a.file(QStringLiteral("received.bin"));
    int sends = 0;
    qint64 carried = 0;
    auto startSend = [&] {
        QFile::remove(target);
        b.prompter().addAnswers({QStringLiteral("file:") + source});
        a.prompter().addAnswers({QStringLiteral("yes"), QStringLiteral("file:") + target});
        tb.mnuSendFile_Click();
        ++sends;
        // Under way once the first frames have reached a's file.
        spin([&] { return ta.fileReceiving() && QFileInfo(target).size() > 0; }, 10000);
    };
    QElapsedTimer loadClock;
    startSend();
    loadClock.start();
    const std::vector<double> loaded = typeKeys(fa, fb, n, paneMeasured, arrivals, &frameSize, gapUs,
                                                [&] {
                                                    if (!ta.fileReceiving() || !tb.fileSending()) {
                                                        carried += megabytes * 1024 * 1024;
                                                        startSend();
                                                    }
                                                });
    const double loadSeconds = double(loadClock.nsecsElapsed()) / 1e9;
    const bool stillUnderWay = ta.fileReceiving() && tb.fileSending();
    carried += QFileInfo(target).size();

    const std::vector<double> raw = rawOneWay(int(typed.size()), frameSize);
    const Figures t = figures(typed), l = figures(loaded), r = figures(raw);
    std::printf("keystrokes: %zu idle, %zu under load, %d us apart; frame size: %d bytes\n",
                typed.size(), loaded.size(), gapUs, frameSize);
    std::printf("measured until: %s\n",
                paneMeasured ? "the remote pane shows the character"
                             : "the frame's bytes arrive at the peer socket (the peer's pane does not take them up)");
    std::printf("load: %lld MB files from the reading side, %d send(s), %.1f MB carried in %.2f s while typing%s\n",
                static_cast<long long>(megabytes), sends, double(carried) / (1024.0 * 1024.0), loadSeconds,
                stillUnderWay ? " (a send still under way at the last key)" : " (NO send under way at the last key)");
    std::printf("%-28s median %9.1f us   p99 %9.1f us\n", "keystroke to remote, idle:", t.median, t.p99);
    std::printf("%-28s median %9.1f us   p99 %9.1f us\n", "keystroke to remote, load:", l.median, l.p99);
    std::printf("%-28s median %9.1f us   p99 %9.1f us\n", "raw TCP one way:", r.median, r.p99);
    if (t.median > 0)
        std::printf("load / idle:                 median %9.2f      p99 %9.2f\n", l.median / t.median,
                    l.p99 / t.p99);
    if (r.median > 0 && r.p99 > 0)
        std::printf("ratio idle / raw:            median %9.2f      p99 %9.2f\n", t.median / r.median,
                    t.p99 / r.p99);
    std::printf("goal under load: p99 < 2000 us %s, median within 3x of idle %s\n",
                l.p99 < 2000 ? "met" : "MISSED", l.median <= 3 * t.median ? "met" : "MISSED");
    return 0;
}
