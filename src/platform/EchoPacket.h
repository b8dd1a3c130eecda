#pragma once
// The bytes of one ICMP echo: the request we send and the test a received
// datagram must pass before it counts as the answer to it. Pure functions,
// so forged and stray replies can be tried without a network.

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <optional>

namespace vonnel {

// The request data every probe carries; an answer must bring it back.
inline constexpr char kEchoData[] = "Echo";

// How the datagram reached us: a raw socket hands over the IP header too,
// an unprivileged ICMP datagram socket only the ICMP message.
enum class EchoFraming { WithIpHeader, IcmpOnly };

// Internet checksum (one's complement sum of 16-bit words).
quint16 icmpChecksum(const QByteArray& bytes);

// Type 8, code 0, identifier, sequence, the data; checksum filled in.
QByteArray buildEchoRequest(quint16 identifier, quint16 sequence,
                            const QByteArray& data = QByteArray(kEchoData));

struct EchoReplyFields {
    bool valid = false;  // an echo reply (type 0, code 0) of sane length
    quint16 identifier = 0;
    quint16 sequence = 0;
    QByteArray data;
};

// Takes a received datagram apart; anything that is not a well-formed echo
// reply comes back with valid false.
EchoReplyFields parseEchoReply(const QByteArray& datagram, EchoFraming framing);

// The answer to the probe (identifier, sequence) sent to `target` (host
// order): an echo reply from that very address with our identifier and
// sequence that brings our request data back.
bool isAnswerTo(const EchoReplyFields& reply, quint32 from, quint16 identifier,
                quint16 sequence, quint32 target);

// Four dot-separated decimal numbers 0..255 and nothing else (blanks round
// it allowed), in host order. Anything else is no address to send to.
std::optional<quint32> parseDottedQuad(const QString& text);

// Status of one echo, in the numbers the connect report and the tools know.
namespace EchoStatus {
constexpr quint32 Success = 0;
constexpr quint32 TimedOut = 11010;
constexpr quint32 BadDestination = 11018;
constexpr quint32 GeneralFailure = 11050;
}  // namespace EchoStatus

// The wait for an answer every probe gets.
inline constexpr int kEchoTimeoutMs = 200;

}  // namespace vonnel
