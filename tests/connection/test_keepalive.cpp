// The session socket carries keep-alive probes and a limit on data left
// unacknowledged, so a peer that vanishes without a word is noticed.

#include "support/Session.h"
#include "connection/Session.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

int option(qintptr fd, int level, int name)
{
    int value = -1;
    socklen_t size = sizeof value;
    return ::getsockopt(int(fd), level, name, &value, &size) == 0 ? value : -1;
}

TEST(KeepAlive, BothEndsOfASessionProbeAfterThirtySecondsFivePlusFiveTimesFive)
{
    TestCopy a, b;
    ASSERT_TRUE(a.start());
    ASSERT_TRUE(b.start());
    ASSERT_TRUE(connectCopies(a, b));
    for (TestCopy* c : {&a, &b}) {
        const qintptr fd = c->frm().session().winsock(0).connectionDescriptor();
        ASSERT_GE(fd, 0);
        EXPECT_EQ(option(fd, SOL_SOCKET, SO_KEEPALIVE), 1);
        EXPECT_EQ(option(fd, IPPROTO_TCP, TCP_KEEPIDLE), 30);
        EXPECT_EQ(option(fd, IPPROTO_TCP, TCP_KEEPINTVL), 5);
        EXPECT_EQ(option(fd, IPPROTO_TCP, TCP_KEEPCNT), 5);
        EXPECT_EQ(option(fd, IPPROTO_TCP, TCP_USER_TIMEOUT), 55000);
    }
}

}  // namespace
