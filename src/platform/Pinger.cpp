#include "platform/Pinger.h"

#include <QElapsedTimer>
#include <QHostAddress>

#include <cstring>

#ifdef Q_OS_UNIX
#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/ip_icmp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace vonnel {

bool Pinger::echo(const QString& address, int timeoutMs)
{
#if defined(Q_OS_UNIX) && defined(ICMP_ECHO)
    QHostAddress target;
    if (!target.setAddress(address) || target.protocol() != QAbstractSocket::IPv4Protocol)
        return false;
    // A datagram ICMP socket needs no privileges where the system allows it
    // (net.ipv4.ping_group_range); the kernel fills in id and checksum.
    const int fd = ::socket(AF_INET, SOCK_DGRAM, IPPROTO_ICMP);
    if (fd < 0)
        return false;
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_addr.s_addr = htonl(target.toIPv4Address());

    unsigned char packet[8 + 4] = {};
    packet[0] = ICMP_ECHO;
    packet[6] = 0;
    packet[7] = 1;  // sequence 1
    std::memcpy(packet + 8, "Echo", 4);
    bool answered = false;
    if (::sendto(fd, packet, sizeof packet, 0, reinterpret_cast<sockaddr*>(&to), sizeof to) ==
        ssize_t(sizeof packet)) {
        QElapsedTimer t;
        t.start();
        while (!answered && t.elapsed() < timeoutMs) {
            pollfd p{fd, POLLIN, 0};
            if (::poll(&p, 1, int(timeoutMs - t.elapsed())) <= 0)
                break;
            unsigned char reply[256];
            const ssize_t n = ::recv(fd, reply, sizeof reply, 0);
            answered = n >= 8 && reply[0] == ICMP_ECHOREPLY;
        }
    }
    ::close(fd);
    return answered;
#else
    Q_UNUSED(address);
    Q_UNUSED(timeoutMs);
    return false;
#endif
}

}  // namespace vonnel
