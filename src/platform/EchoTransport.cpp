#include "platform/EchoTransport.h"

#include <QRandomGenerator>

#include <cerrno>
#include <cstring>

#ifdef Q_OS_LINUX
#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace vonnel {

QString echoUnavailableText(const QString& detail)
{
    return QStringLiteral(
               "Ping is not available: this program may open neither an unprivileged "
               "ICMP socket nor a raw one (%1). Allow it with "
               "\"sysctl -w net.ipv4.ping_group_range='0 2147483647'\" (a range that holds "
               "your group), or grant raw sockets with \"setcap cap_net_raw+ep\" on the "
               "program. Until then every station counts as offline.")
        .arg(detail);
}

#ifdef Q_OS_LINUX
namespace {

class SocketTransport : public EchoTransport {
public:
    SocketTransport(int fd, EchoSocketKind kind, quint16 identifier)
        : m_fd(fd), m_kind(kind), m_identifier(identifier)
    {
    }
    ~SocketTransport() override { ::close(m_fd); }
    EchoSocketKind kind() const override { return m_kind; }
    int descriptor() const override { return m_fd; }
    quint16 identifier() const override { return m_identifier; }
    EchoFraming framing() const override
    {
        return m_kind == EchoSocketKind::Raw ? EchoFraming::WithIpHeader : EchoFraming::IcmpOnly;
    }
    bool send(quint32 target, const QByteArray& packet) override
    {
        sockaddr_in to{};
        to.sin_family = AF_INET;
        to.sin_addr.s_addr = htonl(target);
        const ssize_t n = ::sendto(m_fd, packet.constData(), size_t(packet.size()), 0,
                                   reinterpret_cast<sockaddr*>(&to), sizeof to);
        return n == ssize_t(packet.size());
    }
    bool receive(QByteArray& datagram, quint32& from) override
    {
        char buffer[1500];
        sockaddr_in source{};
        socklen_t length = sizeof source;
        const ssize_t n = ::recvfrom(m_fd, buffer, sizeof buffer, MSG_DONTWAIT,
                                     reinterpret_cast<sockaddr*>(&source), &length);
        if (n < 0)
            return false;
        datagram = QByteArray(buffer, int(n));
        from = ntohl(source.sin_addr.s_addr);
        return true;
    }

private:
    int m_fd;
    EchoSocketKind m_kind;
    quint16 m_identifier;
};

int openSocket(int type)
{
    const int fd = ::socket(AF_INET, type | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_ICMP);
    return fd;
}

}  // namespace

std::unique_ptr<EchoTransport> SystemEchoPlatform::open(QString* whyNot)
{
    QStringList why;
    if (m_tryDatagram) {
        const int fd = openSocket(SOCK_DGRAM);
        if (fd >= 0) {
            // Bound now, so the identifier the kernel gives our requests
            // (the socket's port) is known before the first one goes.
            sockaddr_in self{};
            self.sin_family = AF_INET;
            socklen_t length = sizeof self;
            if (::bind(fd, reinterpret_cast<sockaddr*>(&self), sizeof self) == 0 &&
                ::getsockname(fd, reinterpret_cast<sockaddr*>(&self), &length) == 0)
                return std::make_unique<SocketTransport>(fd, EchoSocketKind::Datagram,
                                                         ntohs(self.sin_port));
            why << QStringLiteral("ICMP datagram socket: bind: %1")
                       .arg(QString::fromLocal8Bit(std::strerror(errno)));
            ::close(fd);
        } else {
            why << QStringLiteral("ICMP datagram socket: %1")
                       .arg(QString::fromLocal8Bit(std::strerror(errno)));
        }
    }
    if (m_tryRaw) {
        const int fd = openSocket(SOCK_RAW);
        if (fd >= 0) {
            // Every raw ICMP socket on the machine sees every reply; a
            // random identifier keeps two copies in one process apart.
            const auto id = quint16(QRandomGenerator::global()->bounded(1, 0x10000));
            return std::make_unique<SocketTransport>(fd, EchoSocketKind::Raw, id);
        }
        why << QStringLiteral("raw ICMP socket: %1")
                   .arg(QString::fromLocal8Bit(std::strerror(errno)));
    }
    if (whyNot)
        *whyNot = echoUnavailableText(why.join(QStringLiteral("; ")));
    return nullptr;
}
#else
std::unique_ptr<EchoTransport> SystemEchoPlatform::open(QString* whyNot)
{
    if (whyNot)
        *whyNot = echoUnavailableText(QStringLiteral("no ICMP socket on this system"));
    return nullptr;
}
#endif

}  // namespace vonnel
