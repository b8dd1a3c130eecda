#pragma once
// Two sides of a session for the connection tests: a copy set up to call
// with a scripted echo, a copy that takes calls, and what they log.

#include "core/Cp1252.h"
#include "connection/Connection.h"
#include "connection/LoginDialog.h"
#include "connection/PropertyDialog.h"
#include "core/IniStore.h"
#include "platform/Pinger.h"
#include "support/Session.h"
#include "support/TestCopy.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "access/Encryption.h"
#include "core/Sender.h"
#include "platform/Winsock.h"
#include "core/MainModel.h"
#include "core/CopyContext.h"
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <gtest/gtest.h>

#include <QFile>
#include <QTcpSocket>

namespace vonnel::test {


const QByteArray kVersion = QStringLiteral("!ver. Vonnel %1.%2.%3 ver!")
                                .arg(MainModel::kMajor)
                                .arg(MainModel::kMinor)
                                .arg(MainModel::kRevision)
                                .toLatin1();

// A session opens with the version frame; the look of the pane follows it
// ("^ff" ... "^>"), then the speaker's voice ("<SPKSET> " ... " </SPKSET>").
// Reads them and returns them.
inline QByteArray readOpening(QTcpSocket& peer)
{
    QByteArray got;
    waitUntil([&] {
        got += peer.readAll();
        return got.size() > kVersion.size() && got.endsWith(" </SPKSET>");
    }, 3000);
    return got;
}

inline bool opensWithVersionFormatAndVoice(const QByteArray& got)
{
    const qsizetype format = kVersion.size();
    const qsizetype voice = got.indexOf("^><SPKSET> ", format);
    return got.startsWith(kVersion) && got.mid(format).startsWith("^ff") && voice > format &&
           got.indexOf(" </SPKSET>") == got.size() - 10;
}


class ScriptedPinger : public Pinger {
public:
    bool echo(const QString& address, int) override
    {
        asked << address;
        return answer;
    }
    bool answer = true;
    QStringList asked;
};

inline QString sessionLog(TestCopy& c)
{
    QFile f(c.file("vonnel.log"));
    if (!f.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromLatin1(f.readAll());
}

// A copy set up to call: short waits, a scripted ping.
struct Caller {
    explicit Caller(quint16 port = 0)
        : copy(port, {{"Incomming Connection Timeout", "1"}, {"No Recover Socket Error", "1"}})
    {
        started = copy.start();
        copy.frm().ctx().setPinger(&pinger);
        QObject::connect(&copy.frm().ctx(), &CopyContext::ringRequested,
                         [this](const QString& f) { rings << f; });
    }
    ~Caller() { copy.frm().ctx().setPinger(&copy.pinger()); }

    // The connect dialog with address and port, its OK pressed. The
    // dialog stays open (as the modal would) until endConnect.
    LoginDialog* call(const QString& address, quint16 port)
    {
        LoginDialog* d = copy.frm().connection().beginConnect();
        if (!d)
            return nullptr;
        d->cmbIPadr = address;
        d->txtConnectPort = QString::number(port);
        d->cmdOK_Click();
        return d;
    }
    void endCall() { copy.frm().connection().endConnect(); }

    TestCopy copy;
    ScriptedPinger pinger;
    QStringList rings;
    bool started = false;
};

struct Callee {
    explicit Callee(quint16 port = 0, const QList<QPair<QString, QString>>& settings = {})
        : copy(port, settings)
    {
        copy.set("Auto Accept Connection", "1");
        copy.set("No Recover Socket Error", "1");
        started = copy.start();
        QObject::connect(&copy.frm().ctx(), &CopyContext::ringRequested,
                         [this](const QString& f) { rings << f; });
    }
    TestCopy copy;
    QStringList rings;
    bool started = false;
};
}  // namespace vonnel::test
