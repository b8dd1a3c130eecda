// Keystroke-to-remote latency: two copies joined over loopback in this
// process; one types N characters, each timed from the key press until the
// other side shows it in its remote pane. Where the other side's remote pane
// does not take the characters up (no receive path), the time runs until the
// frame's bytes have arrived at the peer's socket, and the output says so.
// Beside it, a raw TCP one-way trip of the same frame size on the same
// event loop.
//
// Usage: bench_latency [N]      (default 2000)

#include "support/Session.h"
#include "support/TestCopy.h"
#include "wire/LiveTyping.h"
#include "connection/Session.h"
#include "platform/Winsock.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <algorithm>
#include <cstdio>
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

}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int n = argc > 1 ? std::max(10, atoi(argv[1])) : 2000;

    TestCopy a, b;
    a.set("Text Limit", "64000");
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

    std::vector<double> typed;
    typed.reserve(size_t(n));
    const QString letters = QStringLiteral("abcdefghijklmnopqrstuvwxyz");
    QElapsedTimer clock;
    int frameSize = 0;
    for (int i = 0; i < n; ++i) {
        if (fa.model().txtServer.length() > 60000)
            break;
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
            frameSize = int(inB.GetData().size());
    }
    if (paneMeasured)
        frameSize = int(QByteArray("<KEY> a <:KEY>").size() +
                        QByteArray::number(fa.model().txtServer.length()).size() + 6);

    const std::vector<double> raw = rawOneWay(int(typed.size()), frameSize);
    const Figures t = figures(typed), r = figures(raw);
    std::printf("keystrokes: %zu, frame size: %d bytes\n", typed.size(), frameSize);
    std::printf("measured until: %s\n",
                paneMeasured ? "the remote pane shows the character"
                             : "the frame's bytes arrive at the peer socket (the peer's pane does not take them up)");
    std::printf("%-28s median %9.1f us   p99 %9.1f us\n", "keystroke to remote:", t.median, t.p99);
    std::printf("%-28s median %9.1f us   p99 %9.1f us\n", "raw TCP one way:", r.median, r.p99);
    if (r.median > 0 && r.p99 > 0)
        std::printf("ratio (keystroke / raw):     median %9.2f      p99 %9.2f\n", t.median / r.median,
                    t.p99 / r.p99);
    return 0;
}
