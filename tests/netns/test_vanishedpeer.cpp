// A peer that vanishes without a FIN or a RST: the process runs in a
// network namespace of its own, where the loopback link is taken down under
// a live session, so that nothing more reaches either end.

#include "support/Session.h"
#include "transfer/Transfer.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "platform/Winsock.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <cstring>

using namespace vonnel;
using namespace vonnel::test;

namespace {

bool g_isolated = false;

bool setLoopback(bool up)
{
    const int s = ::socket(AF_INET, SOCK_DGRAM, 0);
    if (s < 0)
        return false;
    ifreq r{};
    std::strncpy(r.ifr_name, "lo", IFNAMSIZ - 1);
    bool ok = ::ioctl(s, SIOCGIFFLAGS, &r) == 0;
    if (ok) {
        r.ifr_flags = short(up ? (r.ifr_flags | IFF_UP) : (r.ifr_flags & ~IFF_UP));
        ok = ::ioctl(s, SIOCSIFFLAGS, &r) == 0;
    }
    ::close(s);
    return ok;
}

void writeProc(const char* path, const QByteArray& text)
{
    const int fd = ::open(path, O_WRONLY);
    if (fd >= 0) {
        [[maybe_unused]] const auto n = ::write(fd, text.constData(), size_t(text.size()));
        ::close(fd);
    }
}

// A namespace of our own: directly as root, else inside a user namespace.
bool isolate()
{
    if (::unshare(CLONE_NEWNET) != 0) {
        const QByteArray uid = QByteArray::number(::getuid());
        const QByteArray gid = QByteArray::number(::getgid());
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0)
            return false;
        writeProc("/proc/self/setgroups", "deny");
        writeProc("/proc/self/uid_map", "0 " + uid + " 1");
        writeProc("/proc/self/gid_map", "0 " + gid + " 1");
    }
    return setLoopback(true);
}

TEST(VanishedPeer, ASessionWhosePeerVanishesEndsWithinTheKeepAliveTime)
{
    if (!g_isolated)
        GTEST_SKIP() << "no network namespace could be made here";
    const Winsock::KeepAlive probe{2, 1, 3};
    TestCopy a({}, {{"Byte Per Send", "2000"}});
    TestCopy b({}, {{"Close Progress", "0"}, {"No Recover Socket Error", "1"}});
    ASSERT_TRUE(a.start());
    ASSERT_TRUE(b.start());
    for (TestCopy* c : {&a, &b})
        c->frm().session().winsock(0).setKeepAlive(probe);
    ASSERT_TRUE(connectCopies(a, b));

    // A transfer is running when the link goes.
    const QString source = a.file("out/big.bin");
    const QString target = b.file("in/big.bin");
    QDir().mkpath(a.file("out"));
    QDir().mkpath(b.file("in"));
    {
        QFile f(source);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(randomBytes(64 << 20, 3));
    }
    a.prompter().addAnswers({"file:" + source});
    b.prompter().addAnswers({"yes", "file:" + target});
    a.frm().transfer().mnuSendFile_Click();
    ASSERT_TRUE(waitUntil([&] { return QFileInfo(target).size() > (1 << 20); }, 10000));

    ASSERT_TRUE(setLoopback(false));
    QElapsedTimer t;
    t.start();
    const bool ended = waitUntil(
        [&] { return !a.frm().session().IsConnected() && !b.frm().session().IsConnected(); },
        (probe.totalSeconds() + 10) * 1000);
    const qint64 took = t.elapsed();
    setLoopback(true);
    ASSERT_TRUE(ended) << "still connected after " << took << " ms";
    EXPECT_LE(took, (probe.totalSeconds() + 3) * 1000);
    std::printf("[ figures  ] session ended %lld ms after the link went down (limit %d s)\n",
                took, probe.totalSeconds());

    // Both listen again; the receiver keeps its partial file and says so.
    EXPECT_TRUE(waitUntil([&] {
        return a.frm().session().winsock(0).State() == Winsock::sckListening &&
               b.frm().session().winsock(0).State() == Winsock::sckListening;
    }, 5000)) << a.frm().session().winsock(0).State() << " " << b.frm().session().winsock(0).State() << " "
               << a.frm().session().winsock(0).lastErrorText().toStdString() << " / "
               << b.frm().session().winsock(0).lastErrorText().toStdString();
    EXPECT_GT(QFileInfo(target).size(), 1 << 20);
    EXPECT_EQ(b.frm().transfer().progress().lblProgress.text,
              "Connection closed: the partial file is kept");
    EXPECT_FALSE(b.frm().transfer().fileReceiving());
    EXPECT_FALSE(a.frm().transfer().fileSending());
}

}  // namespace

int main(int argc, char** argv)
{
    g_isolated = isolate();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
