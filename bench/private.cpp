// Private sessions beside plain ones, in the same run and process: two
// copies over loopback, once on the old wire (the callee does not go
// private) and once private (TLS 1.3). For each: the connection's set-up
// until the session is settled (median of R calls), keystroke to the
// remote pane (median and p99 of N keys), and a file of MB megabytes at
// 2000 and 8000 bytes per send (best of 2). The rounds alternate plain and
// private so that the machine's drift falls on both.
//
// Usage: bench_private [N] [MB] [R]    (default 1000 keys, 50 MB, 10 calls)

#include "connection/Connection.h"
#include "connection/PrivateLink.h"
#include "connection/Session.h"
#include "platform/Winsock.h"
#include "support/Session.h"
#include "support/TestCopy.h"
#include "transfer/ProgressModel.h"
#include "transfer/Transfer.h"
#include "wire/LiveTyping.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

using namespace vonnel;
using namespace vonnel::test;

namespace {

using Settings = QList<QPair<QString, QString>>;

Settings sideSettings(bool privately, int perSend)
{
    return {{QStringLiteral("Private Sessions"), privately ? QStringLiteral("1") : QStringLiteral("0")},
            {QStringLiteral("Byte Per Send"), QString::number(perSend)},
            {QStringLiteral("Close Progress"), QStringLiteral("1")},
            {QStringLiteral("Text Limit"), QStringLiteral("64000")}};
}

bool settled(TestCopy& c)
{
    const Privacy p = c.frm().connection().privateLink().privacy();
    return p != Privacy::Agreeing && p != Privacy::NoSession;
}

// Two copies in a settled session; false when they did not get there or
// did not get the privacy asked for.
bool join(TestCopy& a, TestCopy& b, bool privately, double* ms = nullptr)
{
    if (!a.start() || !b.start())
        return false;
    QElapsedTimer clock;
    clock.start();
    b.set(QStringLiteral("Auto Accept Connection"), QStringLiteral("1"));
    Winsock& out = a.frm().session().winsock(0);
    out.Close();
    out.setLocalPort(0);
    out.Connect(QStringLiteral("127.0.0.1"), b.port());
    if (!spin([&] { return settled(a) && settled(b); }, 10000))
        return false;
    if (ms)
        *ms = double(clock.nsecsElapsed()) / 1e6;
    const Privacy p = a.frm().connection().privateLink().privacy();
    return privately == (p == Privacy::Private);
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

double p99(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[std::min(v.size() - 1, size_t(double(v.size()) * 0.99))];
}

double setupMs(bool privately)
{
    TestCopy a(0, sideSettings(privately, 2000)), b(0, sideSettings(privately, 2000));
    double ms = -1;
    return join(a, b, privately, &ms) ? ms : -1;
}

std::vector<double> keysUs(bool privately, int n)
{
    TestCopy a(0, sideSettings(privately, 2000)), b(0, sideSettings(privately, 2000));
    std::vector<double> out;
    if (!join(a, b, privately))
        return out;
    TextPane& remote = b.frm().model().txtClient(0);
    const QString letters = QStringLiteral("abcdefghijklmnopqrstuvwxyz");
    QElapsedTimer clock;
    for (int i = 0; i < n; ++i) {
        pump(1);
        const int want = remote.length() + 1;
        clock.start();
        a.frm().typing().typeText(letters.mid(i % letters.size(), 1));
        if (!spin([&] { return remote.length() >= want; }))
            break;
        out.push_back(double(clock.nsecsElapsed()) / 1e3);
    }
    return out;
}

double transferMBps(bool privately, int perSend, const QString& source, qint64 bytes)
{
    TestCopy a(0, sideSettings(privately, perSend)), b(0, sideSettings(privately, perSend));
    if (!join(a, b, privately))
        return -1;
    const QString target = b.file(QStringLiteral("received.bin"));
    a.prompter().addAnswers({QStringLiteral("file:") + source});
    b.prompter().addAnswers({QStringLiteral("yes"), QStringLiteral("file:") + target});
    Transfer& tb = b.frm().transfer();
    QElapsedTimer clock;
    clock.start();
    a.frm().transfer().mnuSendFile_Click();
    if (!spin([&] { return tb.progress().cmdCancel.tag == QLatin1String("Finish"); }, 600000))
        return -1;
    const double s = double(clock.nsecsElapsed()) / 1e9;
    const bool whole = QFile(target).size() == bytes;
    QFile::remove(target);
    return whole ? double(bytes) / 1e6 / s : -1;
}

}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int n = argc > 1 ? std::max(20, atoi(argv[1])) : 1000;
    const qint64 megabytes = argc > 2 ? std::max(1, atoi(argv[2])) : 50;
    const int rounds = argc > 3 ? std::max(1, atoi(argv[3])) : 10;

    QTemporaryDir dir;
    const QString source = dir.filePath(QStringLiteral("load.bin"));
    if (!writeRandomFile(source, megabytes * 1000 * 1000, 11))
        return 1;

    std::vector<double> setup[2];
    for (int r = 0; r < rounds; ++r)
        for (const bool p : {false, true})
            setup[p].push_back(setupMs(p));
    std::vector<double> keys[2];
    for (const bool p : {false, true})
        keys[p] = keysUs(p, n);
    double mbps[2][2] = {{0, 0}, {0, 0}};
    const int sizes[2] = {2000, 8000};
    for (int round = 0; round < 2; ++round)
        for (int s = 0; s < 2; ++s)
            for (const bool p : {false, true})
                mbps[p][s] = std::max(mbps[p][s], transferMBps(p, sizes[s], source, megabytes * 1000 * 1000));

    std::printf("%-34s %14s %14s %8s\n", "figure", "plain (base)", "private", "ratio");
    const auto row = [](const char* what, double plain, double priv) {
        std::printf("%-34s %14.1f %14.1f %7.2fx\n", what, plain, priv, plain > 0 ? priv / plain : 0.0);
    };
    row("set-up until settled, ms (median)", median(setup[0]), median(setup[1]));
    row("keystroke to pane, us (median)", median(keys[0]), median(keys[1]));
    row("keystroke to pane, us (p99)", p99(keys[0]), p99(keys[1]));
    row("transfer MB/s, 2000 B per send", mbps[0][0], mbps[1][0]);
    row("transfer MB/s, 8000 B per send", mbps[0][1], mbps[1][1]);
    std::printf("(%zu and %zu keys, %lld MB, %d calls each)\n", keys[0].size(), keys[1].size(),
                static_cast<long long>(megabytes), rounds);
    return 0;
}
