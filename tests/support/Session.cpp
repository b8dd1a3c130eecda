#include "support/Session.h"
#include "connection/Session.h"
#include "platform/Winsock.h"

#include <sys/socket.h>

namespace vonnel::test {

namespace {
// Waits for the callee to take the call on its own; takes it directly when
// the copy makes no decision of its own.
void takeCall(Winsock& in, const qintptr& request, int timeoutMs)
{
    waitUntil([&] { return request != 0 || in.State() == Winsock::sckConnected; }, timeoutMs);
    waitUntil([&] { return in.State() == Winsock::sckConnected; }, 300);
    if (in.State() != Winsock::sckConnected && request != 0) {
        in.Close();
        in.Accept(request);
    }
}
}  // namespace

QByteArray acceptRawPeer(TestCopy& copy, QTcpSocket& peer, int timeoutMs)
{
    copy.set(QStringLiteral("Auto Accept Connection"), QStringLiteral("1"));
    qintptr request = 0;
    auto c = QObject::connect(&copy.frm().session().winsock(0), &Winsock::ConnectionRequest,
                              [&](int, qintptr id) { request = id; });
    peer.connectToHost(QHostAddress::LocalHost, copy.port());
    takeCall(copy.frm().session().winsock(0), request, timeoutMs);
    QObject::disconnect(c);
    waitUntil([&] { return peer.state() == QAbstractSocket::ConnectedState; }, timeoutMs);
    return readFor(peer, 150);
}

bool connectCopies(TestCopy& caller, TestCopy& callee, int timeoutMs)
{
    callee.set(QStringLiteral("Auto Accept Connection"), QStringLiteral("1"));
    qintptr request = 0;
    Winsock& in = callee.frm().session().winsock(0);
    auto c = QObject::connect(&in, &Winsock::ConnectionRequest,
                              [&](int, qintptr id) { request = id; });
    Winsock& out = caller.frm().session().winsock(0);
    out.Close();
    out.setLocalPort(0);
    out.Connect(QStringLiteral("127.0.0.1"), callee.port());
    takeCall(in, request, timeoutMs);
    QObject::disconnect(c);
    const bool up = waitUntil([&] {
        return in.State() == Winsock::sckConnected && out.State() == Winsock::sckConnected;
    }, timeoutMs);
    pump(150);  // version frames and their answers settle
    return up;
}

void resetOnClose(qintptr descriptor)
{
    const linger l{1, 0};
    ::setsockopt(int(descriptor), SOL_SOCKET, SO_LINGER, &l, sizeof l);
}

QByteArray readAtLeast(QTcpSocket& peer, int n, int timeoutMs)
{
    QByteArray got;
    waitUntil([&] {
        got += peer.readAll();
        return got.size() >= n;
    }, timeoutMs);
    return got;
}

QByteArray readFor(QTcpSocket& peer, int ms)
{
    QByteArray got;
    waitUntil([&] {
        got += peer.readAll();
        return false;
    }, ms);
    got += peer.readAll();
    return got;
}

}  // namespace vonnel::test
