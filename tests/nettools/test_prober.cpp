// The probers: answers matched to their probes, forged replies ignored, a
// machine without ICMP sockets told once, and the real echo on loopback
// with each socket kind the machine allows.

#include "nettools/Echo.h"
#include "platform/EchoProber.h"
#include "platform/Pinger.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cstring>

using namespace vonnel;

namespace {

// A transport whose "network" is a socket pair: what the test writes to
// the far end arrives as a datagram from the address in its first 4 bytes.
class PairTransport : public EchoTransport {
public:
    int far = -1;
    QList<QPair<quint32, QByteArray>> sent;

    PairTransport()
    {
        int fds[2];
        ::socketpair(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK, 0, fds);
        m_near = fds[0];
        far = fds[1];
    }
    ~PairTransport() override
    {
        ::close(m_near);
        ::close(far);
    }
    EchoSocketKind kind() const override { return EchoSocketKind::Datagram; }
    int descriptor() const override { return m_near; }
    quint16 identifier() const override { return 4242; }
    EchoFraming framing() const override { return EchoFraming::IcmpOnly; }
    bool send(quint32 target, const QByteArray& packet) override
    {
        sent.append({target, packet});
        return true;
    }
    bool receive(QByteArray& datagram, quint32& from) override
    {
        char buffer[600];
        const ssize_t n = ::recv(m_near, buffer, sizeof buffer, 0);
        if (n < 4)
            return false;
        std::memcpy(&from, buffer, 4);
        datagram = QByteArray(buffer + 4, int(n - 4));
        return true;
    }
    // Lets a datagram arrive from an address.
    void arrive(quint32 from, const QByteArray& icmp)
    {
        QByteArray d(reinterpret_cast<const char*>(&from), 4);
        d += icmp;
        [[maybe_unused]] const auto n = ::send(far, d.constData(), size_t(d.size()), 0);
    }

private:
    int m_near = -1;
};

class PairPlatform : public EchoPlatform {
public:
    PairTransport* transport = nullptr;
    int opened = 0;
    std::unique_ptr<EchoTransport> open(QString*) override
    {
        ++opened;
        auto t = std::make_unique<PairTransport>();
        transport = t.get();
        return t;
    }
};

// A machine that allows neither socket kind.
class DeniedPlatform : public EchoPlatform {
public:
    int tries = 0;
    std::unique_ptr<EchoTransport> open(QString* whyNot) override
    {
        ++tries;
        *whyNot = echoUnavailableText(QStringLiteral("denied in this test"));
        return nullptr;
    }
};

QByteArray answer(quint16 id, quint16 seq, const QByteArray& data = "Echo")
{
    QByteArray p = buildEchoRequest(id, seq, data);
    p[0] = 0;
    return p;
}

quint16 sequenceOf(const QByteArray& packet)
{
    return quint16((quint8(packet[6]) << 8) | quint8(packet[7]));
}

struct Outcome {
    quint64 ticket;
    bool answered;
    quint32 status;
};

}  // namespace

TEST(EchoProber, ForgedAndStrayRepliesDoNotAnswerAProbe)
{
    PairPlatform platform;
    SocketEchoProber prober(&platform);
    QList<Outcome> done;
    QObject::connect(&prober, &EchoProber::probeDone,
                     [&](quint64 t, bool a, quint32 s, int) { done.append({t, a, s}); });
    prober.probe(1, QStringLiteral("10.9.8.7"), 150);
    prober.probe(2, QStringLiteral("10.9.8.6"), 150);
    ASSERT_EQ(platform.transport->sent.size(), 2);
    const quint32 first = 0x0a090807;
    const quint16 seq1 = sequenceOf(platform.transport->sent[0].second);
    const quint16 seq2 = sequenceOf(platform.transport->sent[1].second);
    PairTransport& net = *platform.transport;
    net.arrive(first, answer(4243, seq1));            // another process's identifier
    net.arrive(first, answer(4242, seq2));            // the other probe's sequence, wrong source
    net.arrive(first + 5, answer(4242, seq1));        // right numbers, wrong source
    net.arrive(first, answer(4242, seq1, "Hello"));   // not our data
    net.arrive(first, buildEchoRequest(4242, seq1));  // a request, not a reply
    QElapsedTimer t;
    t.start();
    while (done.size() < 2 && t.elapsed() < 2000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    ASSERT_EQ(done.size(), 2);
    for (const Outcome& o : done) {
        EXPECT_FALSE(o.answered) << o.ticket;
        EXPECT_EQ(o.status, EchoStatus::TimedOut);
    }
}

TEST(EchoProber, TheRightReplyAnswersItsOwnProbeOnly)
{
    PairPlatform platform;
    SocketEchoProber prober(&platform);
    QList<Outcome> done;
    QObject::connect(&prober, &EchoProber::probeDone,
                     [&](quint64 t, bool a, quint32 s, int) { done.append({t, a, s}); });
    prober.probe(7, QStringLiteral("10.0.0.1"), 150);
    prober.probe(8, QStringLiteral("10.0.0.2"), 150);
    PairTransport& net = *platform.transport;
    net.arrive(0x0a000002, answer(4242, sequenceOf(net.sent[1].second)));
    QElapsedTimer t;
    t.start();
    while (done.size() < 2 && t.elapsed() < 2000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    ASSERT_EQ(done.size(), 2);
    EXPECT_EQ(done[0].ticket, 8u);  // the answer comes before the other runs out
    EXPECT_TRUE(done[0].answered);
    EXPECT_EQ(done[1].ticket, 7u);
    EXPECT_FALSE(done[1].answered);
    EXPECT_EQ(prober.inFlight(), 0);
}

TEST(EchoProber, MalformedAddressesFailWithoutASendAndNeverInsideTheCall)
{
    PairPlatform platform;
    SocketEchoProber prober(&platform);
    QList<Outcome> done;
    QObject::connect(&prober, &EchoProber::probeDone,
                     [&](quint64 t, bool a, quint32 s, int) { done.append({t, a, s}); });
    const QStringList bad = {"10.0.0.300", "10.0.0.", "x1.y2.z3.4", "", "::1", "1.2.3.4.5"};
    for (int i = 0; i < bad.size(); ++i)
        prober.probe(quint64(i), bad[i]);
    EXPECT_TRUE(done.isEmpty());
    QCoreApplication::processEvents();
    ASSERT_EQ(done.size(), bad.size());
    for (const Outcome& o : done) {
        EXPECT_FALSE(o.answered);
        EXPECT_EQ(o.status, EchoStatus::BadDestination);
    }
    EXPECT_TRUE(platform.transport == nullptr || platform.transport->sent.isEmpty());
}

TEST(EchoProber, CancelledProbesStaySilent)
{
    PairPlatform platform;
    SocketEchoProber prober(&platform);
    int reports = 0;
    QObject::connect(&prober, &EchoProber::probeDone, [&] { ++reports; });
    prober.probe(1, QStringLiteral("10.0.0.1"), 30);
    prober.probe(2, QStringLiteral("bad"), 30);
    prober.cancelAll();
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < 120)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    EXPECT_EQ(reports, 0);
}

TEST(EchoUnavailable, TheProberTellsOnceAndEveryProbeCountsAsNoAnswer)
{
    DeniedPlatform platform;
    SocketEchoProber prober(&platform);
    QStringList told;
    int noAnswers = 0;
    QObject::connect(&prober, &EchoProber::unavailable, [&](const QString& m) { told << m; });
    QObject::connect(&prober, &EchoProber::probeDone, [&](quint64, bool a, quint32, int) {
        if (!a)
            ++noAnswers;
    });
    for (int i = 0; i < 5; ++i)
        prober.probe(quint64(i), QStringLiteral("127.0.0.1"));
    QCoreApplication::processEvents();
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told[0].contains(QLatin1String("net.ipv4.ping_group_range")));
    EXPECT_TRUE(told[0].contains(QLatin1String("setcap cap_net_raw")));
    EXPECT_EQ(noAnswers, 5);
}

TEST(EchoUnavailable, TheWaitingEchoTellsOnceAndCountsOffline)
{
    DeniedPlatform platform;
    Pinger pinger(&platform);
    QStringList told;
    pinger.setUnavailableNotice([&](const QString& m) { told << m; });
    EchoResult reply;
    EXPECT_FALSE(pingStation(pinger, QStringLiteral("127.0.0.1")));
    EXPECT_FALSE(pinger.echo(QStringLiteral("127.0.0.1")));
    EXPECT_EQ(sendEcho(pinger, QStringLiteral("127.0.0.1"), reply),
              -qint32(EchoStatus::GeneralFailure));
    EXPECT_EQ(told.size(), 1);
    EXPECT_EQ(pinger.kind(), EchoSocketKind::None);
}

TEST(Echo, WaitingEchoAnswersFromTheFakeNetworkAndRefusesMalformedTargets)
{
    PairPlatform platform;
    Pinger pinger(&platform);
    EchoResult reply;
    // Nothing comes back: minus the time-out status, after about the wait.
    QElapsedTimer t;
    t.start();
    EXPECT_EQ(sendEcho(pinger, QStringLiteral("10.0.0.9"), reply), -qint32(EchoStatus::TimedOut));
    EXPECT_GE(t.elapsed(), 190);
    EXPECT_EQ(sendEcho(pinger, QStringLiteral("10.0.0.999"), reply),
              -qint32(EchoStatus::BadDestination));
    EXPECT_EQ(platform.transport->sent.size(), 1);
}

// --- the real echo, towards loopback only ---

namespace {

bool rawAllowed()
{
    QString why;
    return SystemEchoPlatform(false, true).open(&why) != nullptr;
}

bool bringLoopbackUp()
{
    const int s = ::socket(AF_INET, SOCK_DGRAM, 0);
    if (s < 0)
        return false;
    ifreq r{};
    std::strncpy(r.ifr_name, "lo", IFNAMSIZ - 1);
    bool ok = ::ioctl(s, SIOCGIFFLAGS, &r) == 0;
    if (ok) {
        r.ifr_flags = short(r.ifr_flags | IFF_UP);
        ok = ::ioctl(s, SIOCSIFFLAGS, &r) == 0;
    }
    ::close(s);
    return ok;
}

}  // namespace

TEST(RealEcho, RawSocketOnLoopback)
{
    if (!rawAllowed())
        GTEST_SKIP() << "this process may not open a raw ICMP socket (no cap_net_raw)";
    SystemEchoPlatform rawOnly(false, true);
    Pinger pinger(&rawOnly);
    EXPECT_TRUE(pingStation(pinger, QStringLiteral("127.0.0.1")));
    EXPECT_TRUE(pingStation(pinger, QStringLiteral("127.0.0.77")));
    EXPECT_EQ(pinger.kind(), EchoSocketKind::Raw);
    EchoResult reply;
    EXPECT_GE(sendEcho(pinger, QStringLiteral("127.0.0.1"), reply), 0);
    EXPECT_EQ(reply.data, QByteArray("Echo"));

    SocketEchoProber prober(&rawOnly);
    QList<Outcome> done;
    QObject::connect(&prober, &EchoProber::probeDone,
                     [&](quint64 t, bool a, quint32 s, int) { done.append({t, a, s}); });
    for (int i = 1; i <= 10; ++i)
        prober.probe(quint64(i), QStringLiteral("127.0.0.%1").arg(i));
    QElapsedTimer t;
    t.start();
    while (done.size() < 10 && t.elapsed() < 2000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    ASSERT_EQ(done.size(), 10);
    for (const Outcome& o : done)
        EXPECT_TRUE(o.answered) << o.ticket;
}

// The datagram socket where the machine's group range allows it; else in a
// network namespace of a child process, whose range the child may widen.
TEST(RealEcho, DatagramSocketOnLoopback)
{
    {
        QString why;
        auto direct = SystemEchoPlatform(true, false).open(&why);
        if (direct) {
            SystemEchoPlatform datagramOnly(true, false);
            Pinger p(&datagramOnly);
            EXPECT_TRUE(pingStation(p, QStringLiteral("127.0.0.1")));
            EXPECT_EQ(p.kind(), EchoSocketKind::Datagram);
            return;
        }
    }
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (::unshare(CLONE_NEWNET) != 0 || !bringLoopbackUp())
            ::_exit(77);
        const int fd = ::open("/proc/sys/net/ipv4/ping_group_range", O_WRONLY);
        if (fd < 0)
            ::_exit(77);
        const char range[] = "0 2147483647";
        const bool wrote = ::write(fd, range, sizeof range - 1) == ssize_t(sizeof range - 1);
        ::close(fd);
        if (!wrote)
            ::_exit(77);
        SystemEchoPlatform datagramOnly(true, false);
        Pinger p(&datagramOnly);
        const bool ok = pingStation(p, QStringLiteral("127.0.0.1")) &&
                        pingStation(p, QStringLiteral("127.0.0.9")) &&
                        p.kind() == EchoSocketKind::Datagram;
        ::_exit(ok ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == 77)
        GTEST_SKIP() << "net.ipv4.ping_group_range leaves our group out, and no network "
                        "namespace with a wider range could be made";
    EXPECT_EQ(WEXITSTATUS(status), 0);
}
