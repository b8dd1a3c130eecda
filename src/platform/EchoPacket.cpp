#include "platform/EchoPacket.h"

#include <QStringList>

namespace vonnel {

namespace {
constexpr quint8 kEchoRequest = 8;
constexpr quint8 kEchoReply = 0;
constexpr int kIcmpHeader = 8;

quint16 word(const QByteArray& b, int at)
{
    return quint16((quint8(b[at]) << 8) | quint8(b[at + 1]));
}
}  // namespace

quint16 icmpChecksum(const QByteArray& bytes)
{
    quint32 sum = 0;
    const int n = int(bytes.size());
    for (int i = 0; i + 1 < n; i += 2)
        sum += word(bytes, i);
    if (n % 2)
        sum += quint32(quint8(bytes[n - 1])) << 8;
    while (sum >> 16)
        sum = (sum & 0xffff) + (sum >> 16);
    return quint16(~sum);
}

QByteArray buildEchoRequest(quint16 identifier, quint16 sequence, const QByteArray& data)
{
    QByteArray p(kIcmpHeader, '\0');
    p[0] = char(kEchoRequest);
    p[4] = char(identifier >> 8);
    p[5] = char(identifier & 0xff);
    p[6] = char(sequence >> 8);
    p[7] = char(sequence & 0xff);
    p += data;
    const quint16 sum = icmpChecksum(p);
    p[2] = char(sum >> 8);
    p[3] = char(sum & 0xff);
    return p;
}

EchoReplyFields parseEchoReply(const QByteArray& datagram, EchoFraming framing)
{
    EchoReplyFields r;
    int at = 0;
    if (framing == EchoFraming::WithIpHeader) {
        if (datagram.size() < 20 || (quint8(datagram[0]) >> 4) != 4)
            return r;
        at = (quint8(datagram[0]) & 0x0f) * 4;
        if (at < 20 || quint8(datagram[9]) != 1)  // protocol ICMP
            return r;
    }
    if (datagram.size() < at + kIcmpHeader)
        return r;
    if (quint8(datagram[at]) != kEchoReply || quint8(datagram[at + 1]) != 0)
        return r;
    r.identifier = word(datagram, at + 4);
    r.sequence = word(datagram, at + 6);
    r.data = datagram.mid(at + kIcmpHeader);
    r.valid = true;
    return r;
}

bool isAnswerTo(const EchoReplyFields& reply, quint32 from, quint16 identifier,
                quint16 sequence, quint32 target)
{
    return reply.valid && from == target && reply.identifier == identifier &&
           reply.sequence == sequence && reply.data.startsWith(kEchoData);
}

std::optional<quint32> parseDottedQuad(const QString& text)
{
    const QStringList parts = text.trimmed().split(QLatin1Char('.'));
    if (parts.size() != 4)
        return std::nullopt;
    quint32 value = 0;
    for (const QString& part : parts) {
        if (part.isEmpty() || part.size() > 3)
            return std::nullopt;
        for (const QChar c : part)
            if (c < QLatin1Char('0') || c > QLatin1Char('9'))
                return std::nullopt;
        const uint n = part.toUInt();
        if (n > 255)
            return std::nullopt;
        value = (value << 8) | n;
    }
    return value;
}

}  // namespace vonnel
