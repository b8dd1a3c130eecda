#include "platform/Winsock.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <QHostInfo>
#include <QNetworkInterface>
#include <QSslCertificate>
#include <QSslCipher>
#include <QSslConfiguration>
#include <QSslError>
#include <QSslSocket>
#include <QTcpServer>
#include <QTcpSocket>

#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace vonnel {

namespace {
constexpr int kMaxPending = 8;  // a flood of callers must not pile up sockets

// Every connection is a TLS socket that starts plain: it carries the wire
// as it is, and turns private only when both sides agree on it.
class PlainFirstServer : public QTcpServer {
public:
    using QTcpServer::QTcpServer;

protected:
    void incomingConnection(qintptr descriptor) override
    {
        auto* s = new QSslSocket(this);
        if (s->setSocketDescriptor(descriptor))
            addPendingConnection(s);
        else
            delete s;
    }
};
}  // namespace

int winsockErrorNumber(int e)
{
    switch (QAbstractSocket::SocketError(e)) {
    case QAbstractSocket::ConnectionRefusedError: return Winsock::errConnectionRefused;
    case QAbstractSocket::HostNotFoundError: return Winsock::errHostNotFound;
    case QAbstractSocket::SocketTimeoutError: return Winsock::errTimedOut;
    case QAbstractSocket::AddressInUseError: return Winsock::errAddressInUse;
    case QAbstractSocket::NetworkError: return Winsock::errNetworkUnreachable;
    case QAbstractSocket::RemoteHostClosedError: return Winsock::errConnectionReset;
    case QAbstractSocket::SocketAccessError: return 10013;
    default: return 10053;
    }
}

Winsock::Winsock(int index, QObject* parent) : QObject(parent), m_index(index) {}

Winsock::~Winsock()
{
    stopWatching();
    for (auto& p : m_pending)
        if (p)
            p->abort();
}

void Winsock::setState(int s)
{
    if (m_state == s)
        return;
    m_state = s;
    Q_EMIT stateChanged(m_index, s);
}

int Winsock::fail(int number, const QString& text)
{
    m_lastError = number;
    m_lastErrorText = text;
    return number;
}

namespace {
QString dottedAddress(const QHostAddress& a)
{
    bool ok = false;
    const quint32 v4 = a.toIPv4Address(&ok);
    return ok ? QHostAddress(v4).toString() : a.toString();
}
}  // namespace

QString Winsock::RemoteHostIP() const
{
    if (m_socket) {
        // Asked at every arrival: the text is made once per peer address.
        const QHostAddress peer = m_socket->peerAddress();
        if (!peer.isNull()) {
            if (peer != m_peerShown) {
                m_peerShown = peer;
                m_peerText = dottedAddress(peer);
            }
            return m_peerText;
        }
    }
    return m_remoteIP;
}

QString Winsock::LocalIP() const
{
    if (m_socket && m_socket->state() == QAbstractSocket::ConnectedState) {
        bool ok = false;
        const quint32 v4 = m_socket->localAddress().toIPv4Address(&ok);
        if (ok)
            return QHostAddress(v4).toString();
    }
    for (const QHostAddress& a : QNetworkInterface::allAddresses())
        if (a.protocol() == QAbstractSocket::IPv4Protocol && !a.isLoopback())
            return a.toString();
    return QStringLiteral("127.0.0.1");
}

QString Winsock::LocalHostName() const
{
    return QHostInfo::localHostName();
}

int Winsock::Listen()
{
    m_lastError = 0;
    if (m_state != sckClosed)
        return fail(errInvalidOperation, QStringLiteral("Wrong protocol or connection state for the requested transaction or request"));
    // Callers left undecided from an earlier round are refused now, with an
    // orderly close the caller can tell from a failure.
    // Taken out of the table first: the signals of a close may reach code
    // that changes it, and a socket may be gone once its close has run.
    const auto pending = std::exchange(m_pending, {});
    for (QPointer<QTcpSocket> p : pending) {
        if (!p)
            continue;
        p->disconnect(this);
        closeOrderly(p);
        if (p)
            p->deleteLater();
    }
    auto* server = new PlainFirstServer(this);
    if (!server->listen(QHostAddress::Any, m_localPort)) {
        const int n = server->serverError() == QAbstractSocket::AddressInUseError
                          ? errAddressInUse
                          : winsockErrorNumber(server->serverError());
        const QString text = n == errAddressInUse ? QStringLiteral("Address in use")
                                                  : server->errorString();
        delete server;
        return fail(n, text);
    }
    m_server = server;
    m_localPort = server->serverPort();
    connect(server, &QTcpServer::newConnection, this, &Winsock::onNewConnection);
    setState(sckListening);
    return 0;
}

void Winsock::onNewConnection()
{
    while (m_server && m_server->hasPendingConnections()) {
        QTcpSocket* s = m_server->nextPendingConnection();
        if (m_pending.size() >= kMaxPending) {
            s->abort();
            s->deleteLater();
            continue;
        }
        s->setParent(this);
        const qintptr id = m_nextRequest++;
        m_pending.insert(id, s);
        m_remoteIP = dottedAddress(s->peerAddress());
        connect(s, &QTcpSocket::disconnected, s, [this, id] {
            if (auto p = m_pending.take(id))
                p->deleteLater();
        });
        Q_EMIT ConnectionRequest(m_index, id);
    }
}

int Winsock::Connect(const QString& host, quint16 port)
{
    m_lastError = 0;
    if (m_state != sckClosed)
        return fail(errInvalidOperation, QStringLiteral("Wrong protocol or connection state for the requested transaction or request"));
    m_remoteHost = host;
    m_remotePort = port;
    // An IPv6 address is called over IPv6; anything else as before, over
    // IPv4 (a name is resolved to its IPv4 address).
    QHostAddress literal;
    const bool v6 = literal.setAddress(host) && literal.protocol() == QAbstractSocket::IPv6Protocol;
    auto* s = new QSslSocket(this);
    if (m_localPort != 0 &&
        !s->bind(v6 ? QHostAddress::AnyIPv6 : QHostAddress::AnyIPv4, m_localPort,
                 QAbstractSocket::ReuseAddressHint)) {
        const int n = s->error() == QAbstractSocket::AddressInUseError ? errAddressInUse
                                                                        : winsockErrorNumber(s->error());
        delete s;
        return fail(n, QStringLiteral("Address in use"));
    }
    adopt(s);
    setState(sckResolvingHost);
    connect(s, &QTcpSocket::hostFound, this, [this] {
        if (m_state == sckResolvingHost)
            setState(sckConnecting);
    });
    connect(s, &QTcpSocket::connected, this, [this, s] {
        // A call from a bound port to that very port of this machine meets
        // itself (TCP's simultaneous open): nobody listens there.
        if (s->localPort() == s->peerPort() && s->localAddress() == s->peerAddress()) {
            fail(errConnectionRefused, QStringLiteral("Connection is forcefully rejected"));
            setState(sckError);
            Q_EMIT Error(m_index, errConnectionRefused, m_lastErrorText);
            return;
        }
        // Options set before the connection exists do not reach it.
        s->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        applyKeepAlive(s);
        m_remoteIP = dottedAddress(s->peerAddress());
        watchPeer(s);
        setState(sckConnected);
        Q_EMIT Connect_(m_index);
    });
    s->connectToHost(host, port, QIODevice::ReadWrite,
                     v6 ? QAbstractSocket::IPv6Protocol : QAbstractSocket::IPv4Protocol);
    return 0;
}

int Winsock::Accept(qintptr requestId)
{
    m_lastError = 0;
    QPointer<QTcpSocket> s = m_pending.take(requestId);
    if (!s || s->state() != QAbstractSocket::ConnectedState) {
        if (s)
            s->deleteLater();
        return fail(errInvalidOperation, QStringLiteral("The connection was closed by the caller"));
    }
    disconnect(s, &QTcpSocket::disconnected, s, nullptr);
    if (m_server) {
        m_server->close();
        m_server->deleteLater();
        m_server = nullptr;
    }
    dropConnection();
    adopt(s);
    watchPeer(s);
    setState(sckConnected);
    // Anything the caller sent before the accept is announced at once.
    if (s->bytesAvailable() > 0)
        QMetaObject::invokeMethod(this, [this] { announceArrival(); }, Qt::QueuedConnection);
    return 0;
}

void Winsock::adopt(QTcpSocket* s)
{
    m_socket = s;
    if (!s->peerAddress().isNull())
        m_remoteIP = dottedAddress(s->peerAddress());
    s->setParent(this);
    s->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    if (s->state() == QAbstractSocket::ConnectedState)
        applyKeepAlive(s);
    m_unconfirmed = 0;
    m_tls = Tls::Plain;
    m_holding = false;
    m_held.clear();
    if (auto* t = qobject_cast<QSslSocket*>(s)) {
        connect(t, &QSslSocket::encrypted, this, [this, t] {
            if (m_socket != t || m_tls != Tls::Handshake)
                return;
            m_tls = Tls::Up;
            Q_EMIT privateUp(m_index);
        });
        // Whom we talk to is settled by the key's fingerprint and the
        // short string the two users compare, not by a certificate
        // authority: a self-signed certificate is what every copy has.
        connect(t, &QSslSocket::sslErrors, this, [t](const QList<QSslError>&) { t->ignoreSslErrors(); });
        connect(t, &QSslSocket::encryptedBytesWritten, this, [this, t](qint64) {
            if (m_socket != t)
                return;
            m_unconfirmed = t->bytesToWrite() + t->encryptedBytesToWrite();
            if (m_unconfirmed == 0)
                Q_EMIT SendComplete(m_index);
        });
    }
    connect(s, &QTcpSocket::readyRead, this, [this, s] {
        if (m_socket == s)
            announceArrival();
    });
    connect(s, &QTcpSocket::bytesWritten, this, [this, s](qint64 n) {
        if (m_socket != s)
            return;
        m_unconfirmed = s->bytesToWrite();
        if (m_tls == Tls::Up)
            m_unconfirmed += static_cast<QSslSocket*>(s)->encryptedBytesToWrite();
        Q_EMIT SendProgress(m_index, n, m_unconfirmed);
        if (m_unconfirmed == 0)
            Q_EMIT SendComplete(m_index);
    });
    connect(s, &QTcpSocket::disconnected, this, [this, s] {
        if (m_socket != s || m_state != sckConnected)
            return;
        stopWatching();
        setState(sckClosing);
        Q_EMIT Close_(m_index);
    });
    connect(s, &QTcpSocket::errorOccurred, this, [this, s] {
        if (m_socket == s)
            onSocketError();
    });
}

void Winsock::announceArrival()
{
    // An arrival is never announced inside the handling of another, as a
    // plain socket promises: a private socket decrypts what came whenever
    // it writes, so a frame sent from inside an arrival could bring the
    // next arrival in the middle of this one. It is announced as soon as
    // the handling of this one is over.
    if (m_announcing) {
        m_arrivalWaiting = true;
        return;
    }
    m_announcing = true;
    const QPointer<Winsock> alive(this);  // a handler may end the copy
    do {
        m_arrivalWaiting = false;
        if (m_socket && m_socket->bytesAvailable() > 0)
            Q_EMIT DataArrival(m_index, m_socket->bytesAvailable());
        if (!alive)
            return;
    } while (m_arrivalWaiting && m_socket);
    m_announcing = false;
}

void Winsock::applyKeepAlive(QTcpSocket* s)
{
    s->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    const int fd = int(s->socketDescriptor());
    if (fd < 0)
        return;
    const int idle = m_keepAlive.idleSeconds;
    const int interval = m_keepAlive.intervalSeconds;
    const int probes = m_keepAlive.probes;
    // Data left unacknowledged (a frame sent into a dead link) ends the
    // connection after the same time as the probes would.
    const unsigned int userTimeoutMs = unsigned(m_keepAlive.totalSeconds()) * 1000u;
    ::setsockopt(fd, IPPROTO_TCP, TCP_KEEPIDLE, &idle, sizeof idle);
    ::setsockopt(fd, IPPROTO_TCP, TCP_KEEPINTVL, &interval, sizeof interval);
    ::setsockopt(fd, IPPROTO_TCP, TCP_KEEPCNT, &probes, sizeof probes);
    ::setsockopt(fd, IPPROTO_TCP, TCP_USER_TIMEOUT, &userTimeoutMs, sizeof userTimeoutMs);
}

qintptr Winsock::connectionDescriptor() const
{
    return m_socket ? m_socket->socketDescriptor() : -1;
}

void Winsock::watchPeer(QTcpSocket* s)
{
    stopWatching();
    if (s->socketDescriptor() >= 0)
        m_watchFd = ::dup(int(s->socketDescriptor()));
}

void Winsock::stopWatching()
{
    if (m_watchFd >= 0)
        ::close(m_watchFd);
    m_watchFd = -1;
}

bool Winsock::peerReset() const
{
    if (m_watchFd < 0)
        return false;
    // A peer that closed in order leaves the socket waiting for our close.
    // A reset closes it outright; when the reset came first, the read that
    // met it took the pending error with it. A reset that only answered our
    // data after the peer's orderly close leaves its error pending: that
    // session still ended in order.
    tcp_info info{};
    socklen_t len = sizeof info;
    if (::getsockopt(m_watchFd, IPPROTO_TCP, TCP_INFO, &info, &len) != 0 ||
        info.tcpi_state != TCP_CLOSE)
        return false;
    int pending = 0;
    len = sizeof pending;
    ::getsockopt(m_watchFd, SOL_SOCKET, SO_ERROR, &pending, &len);
    return pending == 0;
}

void Winsock::onSocketError()
{
    const auto e = m_socket->error();
    if (m_tls == Tls::Handshake) {
        // The session cannot go on as plain text: the peer agreed to go
        // private. Whoever started the handshake decides what follows.
        m_tls = Tls::Plain;
        fail(winsockErrorNumber(e), m_socket->errorString());
        Q_EMIT privateFailed(m_index, m_lastErrorText);
        return;
    }
    if (e == QAbstractSocket::RemoteHostClosedError && m_state == sckConnected) {
        const bool reset = peerReset();
        stopWatching();
        // An orderly close by the peer is a close, not an error; a reset is
        // an error, as the session knows it.
        if (!reset)
            return;
        fail(errConnectionReset, QStringLiteral("Connection is reset by remote side"));
        setState(sckError);
        Q_EMIT Error(m_index, errConnectionReset, m_lastErrorText);
        return;
    }
    if (m_state == sckClosing || m_state == sckClosed)
        return;
    const int n = winsockErrorNumber(e);
    fail(n, m_socket->errorString());
    setState(sckError);
    Q_EMIT Error(m_index, n, m_lastErrorText);
}

int Winsock::SendData(const QByteArray& data)
{
    m_lastError = 0;
    if (m_state != sckConnected || !m_socket)
        return fail(errInvalidOperation, QStringLiteral("Wrong protocol or connection state for the requested transaction or request"));
    if (data.isEmpty())
        return 0;
    if (m_holding) {
        m_held += data;
        return 0;
    }
    writeOut(data);
    return 0;
}

int Winsock::sendNow(const QByteArray& data)
{
    m_lastError = 0;
    if (m_state != sckConnected || !m_socket)
        return fail(errInvalidOperation, QStringLiteral("Wrong protocol or connection state for the requested transaction or request"));
    writeOut(data);
    return 0;
}

void Winsock::writeOut(const QByteArray& data)
{
    m_socket->write(data);
    // A TLS socket would encrypt what it was given on its next turn of the
    // event loop; a frame goes out now, as on a plain socket.
    if (m_tls == Tls::Up)
        m_socket->flush();
}

void Winsock::holdSends(bool on)
{
    m_holding = on;
    if (on || m_held.isEmpty())
        return;
    const QByteArray held = std::exchange(m_held, {});
    if (m_state == sckConnected && m_socket)
        writeOut(held);
}

QSslSocket* Winsock::tlsSocket() const
{
    return qobject_cast<QSslSocket*>(m_socket.data());
}

bool Winsock::startPrivate(const QSslConfiguration& config, bool asClient)
{
    QSslSocket* t = tlsSocket();
    if (!t || m_state != sckConnected || m_tls != Tls::Plain)
        return false;
    t->setSslConfiguration(config);
    m_tls = Tls::Handshake;
    if (asClient)
        t->startClientEncryption();
    else
        t->startServerEncryption();
    return true;
}

QSslCertificate Winsock::peerCertificate() const
{
    QSslSocket* t = tlsSocket();
    return t && m_tls == Tls::Up ? t->peerCertificate() : QSslCertificate();
}

QString Winsock::privateSuite() const
{
    QSslSocket* t = tlsSocket();
    if (!t || m_tls != Tls::Up)
        return {};
    const QSslCipher c = t->sessionCipher();
    return c.protocolString() + QLatin1Char(' ') + c.name();
}

QByteArray Winsock::GetData()
{
    return m_socket ? m_socket->readAll() : QByteArray();
}

qint64 Winsock::bytesAvailable() const
{
    return m_socket ? m_socket->bytesAvailable() : 0;
}

void Winsock::closeOrderly(QTcpSocket* s)
{
    // Bytes already handed over still go out before the close. What the
    // peer sent that nobody will read is taken off the socket first: a
    // socket closed with unread bytes ends in a reset, not a close.
    if (s->state() == QAbstractSocket::ConnectedState) {
        s->readAll();
        if (s->socketDescriptor() >= 0) {
            char sink[4096];
            while (::recv(int(s->socketDescriptor()), sink, sizeof sink, MSG_DONTWAIT) > 0) {
            }
        }
        s->flush();
        s->disconnectFromHost();
    } else {
        s->abort();
    }
}

void Winsock::dropConnection()
{
    stopWatching();
    m_tls = Tls::Plain;
    m_holding = false;
    m_held.clear();
    if (!m_socket)
        return;
    QTcpSocket* s = m_socket;
    m_socket = nullptr;
    s->disconnect(this);
    closeOrderly(s);
    s->deleteLater();
}

void Winsock::Close()
{
    m_lastError = 0;
    if (m_server) {
        m_server->close();
        m_server->deleteLater();
        m_server = nullptr;
    }
    dropConnection();
    setState(sckClosed);
}

}  // namespace vonnel
