#pragma once
// One member of the socket array: a TCP endpoint that listens, connects or
// carries an accepted connection, and reports the states and events of the
// socket control the session code is written against.

#include <QByteArray>
#include <QHash>
#include <QHostAddress>
#include <QObject>
#include <QPointer>
#include <QString>

class QTcpServer;
class QTcpSocket;
class QSslSocket;
class QSslConfiguration;
class QSslCertificate;

namespace vonnel {

class Winsock : public QObject {
    Q_OBJECT
public:
    enum State {
        sckClosed = 0,
        sckOpen = 1,
        sckListening = 2,
        sckConnectionPending = 3,
        sckResolvingHost = 4,
        sckHostResolved = 5,
        sckConnecting = 6,
        sckConnected = 7,
        sckClosing = 8,
        sckError = 9,
    };
    // Error numbers as the session code knows them.
    static constexpr int errAddressInUse = 10048;
    static constexpr int errConnectionRefused = 10061;
    static constexpr int errTimedOut = 10060;
    static constexpr int errHostNotFound = 11001;
    static constexpr int errNetworkUnreachable = 10051;
    static constexpr int errInvalidOperation = 40006;
    static constexpr int errConnectionReset = 10054;

    explicit Winsock(int index, QObject* parent = nullptr);
    ~Winsock() override;

    int index() const { return m_index; }
    int State() const { return m_state; }

    quint16 LocalPort() const { return m_localPort; }
    void setLocalPort(quint16 port) { m_localPort = port; }
    quint16 RemotePort() const { return m_remotePort; }
    void setRemotePort(quint16 port) { m_remotePort = port; }
    QString RemoteHost() const { return m_remoteHost; }
    QString RemoteHostIP() const;
    QString LocalIP() const;
    QString LocalHostName() const;

    // Each operation returns 0 or the error number that the control would
    // raise; the text of the last error is kept in lastErrorText().
    int Listen();
    int Connect(const QString& host, quint16 port);
    int Accept(qintptr requestId);
    int SendData(const QByteArray& data);
    QByteArray GetData();
    qint64 bytesAvailable() const;
    void Close();

    // A session whose peer vanishes without a word (a cable pulled, a
    // machine gone) is noticed by probes the kernel sends while the link
    // is idle, and by a limit on data left unacknowledged: after idle
    // seconds of silence, probes every interval seconds, and probes
    // unanswered in a row, the connection ends with an error.
    struct KeepAlive {
        int idleSeconds = 30;
        int intervalSeconds = 5;
        int probes = 5;
        int totalSeconds() const { return idleSeconds + intervalSeconds * probes; }
    };
    void setKeepAlive(KeepAlive k) { m_keepAlive = k; }
    KeepAlive keepAlive() const { return m_keepAlive; }
    // The descriptor of the connection, or -1 (for checks of its options).
    qintptr connectionDescriptor() const;

    // --- a private connection ------------------------------------------
    // What SendData is given while the sends are held waits here and goes
    // out, in order, when they are let go. sendNow writes past the hold.
    void holdSends(bool on);
    int sendNow(const QByteArray& data);
    // Turns the connection private: TLS on the same socket, this side the
    // client or the server of the handshake. Nothing may be read past the
    // last plain word first, so each side starts only when the other has
    // gone quiet. privateUp or privateFailed tells how it went.
    bool startPrivate(const QSslConfiguration& config, bool asClient);
    QSslCertificate peerCertificate() const;
    // The protocol and cipher of a private connection, for the record.
    QString privateSuite() const;

    int lastError() const { return m_lastError; }
    QString lastErrorText() const { return m_lastErrorText; }

Q_SIGNALS:
    void Connect_(int index);
    void ConnectionRequest(int index, qintptr requestId);
    void DataArrival(int index, qint64 bytesTotal);
    void Close_(int index);
    void SendProgress(int index, qint64 bytesSent, qint64 bytesRemaining);
    void SendComplete(int index);
    void Error(int index, int number, const QString& description);
    // Any change of State(), for views that show it.
    void stateChanged(int index, int state);
    // The handshake begun by startPrivate ended: the connection is private,
    // or it failed (the connection is then of no further use).
    void privateUp(int index);
    void privateFailed(int index, const QString& reason);

private:
    void setState(int s);
    int fail(int number, const QString& text);
    void adopt(QTcpSocket* socket);
    void applyKeepAlive(QTcpSocket* socket);
    void dropConnection();
    static void closeOrderly(QTcpSocket* socket);
    void onNewConnection();
    void onSocketError();
    void announceArrival();
    QSslSocket* tlsSocket() const;
    void writeOut(const QByteArray& data);
    // A second descriptor of the session socket, kept so the socket's own
    // state can still be read after the library has closed its descriptor:
    // that is what tells a reset by the peer from its orderly close.
    void watchPeer(QTcpSocket* socket);
    void stopWatching();
    bool peerReset() const;

    int m_index;
    int m_state = sckClosed;
    quint16 m_localPort = 0;
    quint16 m_remotePort = 0;
    QString m_remoteHost;
    // The address of the latest caller or peer; kept after the connection
    // is gone, as the session's end still names it.
    QString m_remoteIP;
    mutable QHostAddress m_peerShown;
    mutable QString m_peerText;
    int m_lastError = 0;
    QString m_lastErrorText;
    int m_watchFd = -1;
    QTcpServer* m_server = nullptr;
    QPointer<QTcpSocket> m_socket;
    // Callers waiting for a decision, by request identifier. A caller that
    // is neither accepted nor refused lingers until the next Listen.
    QHash<qintptr, QPointer<QTcpSocket>> m_pending;
    qintptr m_nextRequest = 1;
    qint64 m_unconfirmed = 0;
    KeepAlive m_keepAlive;
    enum class Tls { Plain, Handshake, Up };
    Tls m_tls = Tls::Plain;
    bool m_holding = false;
    QByteArray m_held;
    bool m_announcing = false;
    bool m_arrivalWaiting = false;
};

int winsockErrorNumber(int qtSocketError);

}  // namespace vonnel
