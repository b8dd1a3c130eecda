// The echo's bytes: what we send, and which received datagrams count as
// the answer. Forged and stray replies must not.

#include "nettools/AddressToLong.h"
#include "nettools/LikePattern.h"
#include "platform/EchoPacket.h"

#include <QtEndian>
#include <gtest/gtest.h>

using namespace vonnel;

namespace {

QByteArray reply(quint16 id, quint16 seq, const QByteArray& data = "Echo", quint8 type = 0,
                 quint8 code = 0)
{
    QByteArray p = buildEchoRequest(id, seq, data);
    p[0] = char(type);
    p[1] = char(code);
    return p;
}

QByteArray withIpHeader(const QByteArray& icmp, int headerWords = 5, quint8 protocol = 1)
{
    QByteArray ip(headerWords * 4, '\0');
    ip[0] = char(0x40 | headerWords);
    ip[9] = char(protocol);
    return ip + icmp;
}

}  // namespace

TEST(EchoPacket, RequestCarriesTypeIdSequenceDataAndAValidChecksum)
{
    const QByteArray p = buildEchoRequest(0x1234, 0x0007);
    ASSERT_EQ(p.size(), 12);
    EXPECT_EQ(quint8(p[0]), 8);
    EXPECT_EQ(quint8(p[1]), 0);
    EXPECT_EQ(quint8(p[4]), 0x12);
    EXPECT_EQ(quint8(p[5]), 0x34);
    EXPECT_EQ(quint8(p[7]), 0x07);
    EXPECT_EQ(p.mid(8), QByteArray("Echo"));
    // A message with its checksum in place sums to zero.
    EXPECT_EQ(icmpChecksum(p), 0);
    // Known value: type 8, id 1, seq 1, data "Echo".
    const QByteArray q = buildEchoRequest(1, 1);
    EXPECT_EQ((quint8(q[2]) << 8) | quint8(q[3]), 0x4A2B);
}

TEST(EchoPacket, OnlyOurOwnAnswerCounts)
{
    const quint32 target = 0x7f000005;  // 127.0.0.5
    struct Case {
        const char* what;
        QByteArray datagram;
        EchoFraming framing;
        quint32 from;
        bool counts;
    };
    const Case cases[] = {
        {"our answer, datagram socket", reply(77, 9), EchoFraming::IcmpOnly, target, true},
        {"our answer, raw socket", withIpHeader(reply(77, 9)), EchoFraming::WithIpHeader, target,
         true},
        {"answer behind IP options", withIpHeader(reply(77, 9), 7), EchoFraming::WithIpHeader,
         target, true},
        {"longer data that begins with ours", reply(77, 9, "Echo and more"),
         EchoFraming::IcmpOnly, target, true},
        {"another prober's identifier", reply(78, 9), EchoFraming::IcmpOnly, target, false},
        {"an earlier sequence", reply(77, 8), EchoFraming::IcmpOnly, target, false},
        {"from another address", reply(77, 9), EchoFraming::IcmpOnly, target + 1, false},
        {"data not ours", reply(77, 9, "Ping"), EchoFraming::IcmpOnly, target, false},
        {"no data", reply(77, 9, ""), EchoFraming::IcmpOnly, target, false},
        {"our own request seen on loopback", reply(77, 9, "Echo", 8), EchoFraming::IcmpOnly,
         target, false},
        {"unreachable message", reply(77, 9, "Echo", 3, 1), EchoFraming::IcmpOnly, target, false},
        {"reply with a code", reply(77, 9, "Echo", 0, 5), EchoFraming::IcmpOnly, target, false},
        {"cut short", reply(77, 9).left(7), EchoFraming::IcmpOnly, target, false},
        {"raw without header", reply(77, 9), EchoFraming::WithIpHeader, target, false},
        {"header says not ICMP", withIpHeader(reply(77, 9), 5, 17), EchoFraming::WithIpHeader,
         target, false},
        {"header length past the end", withIpHeader(QByteArray(), 15),
         EchoFraming::WithIpHeader, target, false},
        {"header length below minimum", withIpHeader(reply(77, 9), 4),
         EchoFraming::WithIpHeader, target, false},
    };
    for (const Case& c : cases) {
        const EchoReplyFields r = parseEchoReply(c.datagram, c.framing);
        EXPECT_EQ(isAnswerTo(r, c.from, 77, 9, target), c.counts) << c.what;
    }
}

TEST(EchoPacket, OnlyCleanDottedAddressesAreSentTo)
{
    const struct {
        const char* text;
        std::optional<quint32> value;
    } cases[] = {
        {"127.0.0.1", 0x7f000001},
        {" 10.0.0.255 ", 0x0a0000ff},
        {"0.0.0.0", 0},
        {"10.0.0.256", std::nullopt},
        {"10.0.0.300", std::nullopt},
        {"10.0.0.-1", std::nullopt},
        {"10.0.0", std::nullopt},
        {"10.0.0.1.5", std::nullopt},
        {"10.0..1", std::nullopt},
        {"x1.y2.z3.4", std::nullopt},
        {"10.0.0.1x", std::nullopt},
        {"1000.0.0.1", std::nullopt},
        {"::1", std::nullopt},
        {"", std::nullopt},
        {"- - - - - - ", std::nullopt},
    };
    for (const auto& c : cases)
        EXPECT_EQ(parseDottedQuad(QString::fromLatin1(c.text)), c.value) << c.text;
}

TEST(AddressToLong, HexadecimalAssemblyWithItsQuirks)
{
    const struct {
        const char* text;
        qint32 value;
    } cases[] = {
        {"1.2.3.4", 0x04030201},
        {"127.0.0.1", 0x0100007f},
        {"10.0.0.200", qint32(0xc800000a)},  // negative
        {"10.0.0.300", 0x2c00000a},          // 300 keeps its last two digits: 0x2C
        {"10.1", 0x0000010a},                // missing parts are 0
        {"1.2.3.4.5", 0x04030201},           // a fifth part is ignored
        {"1 0.0.0.1", 0x0100000a},           // blanks inside a number vanish
        {"12abc.0.0.1", 0x0100000c},         // a number as far as it goes
        {"&H10.0.0.1", 0x01000010},          // hexadecimal prefix
        {"-1.0.0.0", 0x000000ff},            // two's complement, last two digits
        {"1.99999999999.3.4", 0x00040301},   // unwritable part leaves its digits out
        {"", 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(addressToLong(QString::fromLatin1(c.text)), c.value) << c.text;
}

TEST(AddressToLong, AgreesWithTheAddressSentToForEveryCleanAddress)
{
    for (const char* text : {"127.0.0.1", "192.168.1.254", "10.20.30.40", "255.255.255.255"}) {
        const quint32 sent = *parseDottedQuad(QString::fromLatin1(text));
        EXPECT_EQ(qbswap(quint32(addressToLong(QString::fromLatin1(text)))), sent)
            << text;
    }
}

TEST(LikePattern, TheBoxTestsOfTheTools)
{
    const struct {
        const char* text;
        const char* pattern;
        bool match;
    } cases[] = {
        {"10.0.0.1", "*#.*#.*#.*#", true},
        {"x1.y2.z3.4", "*#.*#.*#.*#", true},
        {"1.2.3", "*#.*#.*#.*#", false},
        {"host.example", "*#.*#.*#.*#", false},
        {"10.0.0.1a", "*#.*#.*#.*#", false},
        {"1.2.3.4", "#.#.#.#", true},
        {"192.168.1.1", "#.#.#.#", false},
        {"No reply: 10.0.0.1", "*No reply:*", true},
        {"Ping: 10.0.0.1 replied.", "*replied.*", true},
        {"Ping: 10.0.0.1 replied", "*replied.*", false},
        {"3: Online", "*Online*", true},
        {"fe80::1", "*:*", true},
        {"Echo", "Echo*", true},
        {"Ech", "Echo*", false},
        {"echo", "Echo*", false},
        {"a.b.c.d", "*.*.*.*", true},
        {"abc", "a?c", true},
        {"abc", "a[b-d]c", true},
        {"abc", "a[!b]c", false},
        {"", "*", true},
        {"", "?", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(likeMatch(QString::fromLatin1(c.text), QString::fromLatin1(c.pattern)), c.match)
            << c.text << " like " << c.pattern;
}
