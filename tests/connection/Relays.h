#pragma once
// Relays between a calling copy and the copy it calls, for the tests of
// private sessions: one that passes every byte on and keeps what passed,
// and a man in the middle that plays along with going private and ends the
// TLS on each side with a key pair of its own, keeping the plain text.

#include "access/Identity.h"
#include "connection/PrivateLink.h"
#include "core/WireCodec.h"

#include <QSslConfiguration>
#include <QSslSocket>
#include <QTcpServer>
#include <QTemporaryDir>

namespace vonnel::test {

class Relay : public QObject {
public:
    // With man = true the relay goes private with each side on its own.
    Relay(quint16 target, bool man) : m_target(target), m_man(man)
    {
        m_server.listen(QHostAddress::LocalHost, 0);
        connect(&m_server, &QTcpServer::newConnection, this, [this] { takeCaller(); });
        if (m_man) {
            m_towardCaller.load();
            m_towardCallee.load();
        }
    }
    quint16 port() const { return m_server.serverPort(); }
    // The bytes as they went over the wire, each way.
    QByteArray toCallee;
    QByteArray toCaller;
    // What the man in the middle read in the clear once both sides were
    // private with him.
    QByteArray plainToCallee;
    QByteArray plainToCaller;
    QString callerSideFingerprint() const { return m_towardCaller.fingerprint(); }

private:
    class Server : public QTcpServer {
    protected:
        void incomingConnection(qintptr d) override
        {
            auto* s = new QSslSocket(this);
            s->setSocketDescriptor(d);
            addPendingConnection(s);
        }
    };

    void takeCaller()
    {
        m_in = static_cast<QSslSocket*>(m_server.nextPendingConnection());
        connect(m_in, &QSslSocket::readyRead, this, [this] {
            const QByteArray d = m_in->readAll();
            if (m_private)
                plainToCallee += d;
            else
                toCallee += d;
            m_out.write(d);
        });
        connect(&m_out, &QSslSocket::readyRead, this, [this] {
            const QByteArray d = m_out.readAll();
            if (m_private) {
                plainToCaller += d;
            } else {
                toCaller += d;
            }
            m_in->write(d);
            if (m_man && !m_private && d.endsWith(wire::kPrivateAccept.toByteArray()))
                goPrivate();
        });
        m_out.connectToHost(QHostAddress::LocalHost, m_target);
    }
    // The acceptance has gone on to the caller: the caller now opens its
    // handshake with us, and we open ours with the callee.
    void goPrivate()
    {
        m_private = true;
        for (QSslSocket* s : {m_in, &m_out})
            connect(s, &QSslSocket::sslErrors, s, [s](const QList<QSslError>&) { s->ignoreSslErrors(); });
        m_in->setSslConfiguration(PrivateLink::tlsConfiguration(m_towardCaller));
        m_out.setSslConfiguration(PrivateLink::tlsConfiguration(m_towardCallee));
        m_in->startServerEncryption();
        m_out.startClientEncryption();
    }
    quint16 m_target;
    bool m_man;
    bool m_private = false;
    Server m_server;
    QSslSocket* m_in = nullptr;
    QSslSocket m_out;
    QTemporaryDir m_dir;
    Identity m_towardCaller{m_dir.path() + QStringLiteral("/a-")};
    Identity m_towardCallee{m_dir.path() + QStringLiteral("/b-")};
};

}  // namespace vonnel::test
