#pragma once
// A copy that has taken a raw TCP peer on as its session: the peer writes
// and reads the transfer's bytes exactly as they stand on the wire.

#include "core/Cp1252.h"
#include "core/IniStore.h"
#include "support/Session.h"
#include "transfer/Transfer.h"
#include "transfer/TransferText.h"
#include "wire/Receiver.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "core/CopyContext.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace vonnel::test {

inline QByteArray frame(const QByteArray& payload)
{
    return QByteArrayLiteral("<*> ") + payload + QByteArrayLiteral(" </*>");
}

inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
}

class RawPeer : public ::testing::Test {
public:
    void SetUp() override
    {
        copy.set("Byte Per Send", "2000");
        copy.set("Close Progress", "0");
        ASSERT_TRUE(copy.start());
        acceptRawPeer(copy, peer);
        ASSERT_TRUE(f().session().IsConnected());
        readFor(peer, 50);
        QDir().mkpath(copy.file("in"));
        QObject::connect(&f().ctx(), &CopyContext::ringRequested, [this](const QString& s) { rings << s; });
        QObject::connect(&t(), &Transfer::beep, [this] { ++beeps; });
    }
    FrmMain& f() { return copy.frm(); }
    Transfer& t() { return f().transfer(); }
    ProgressModel& w() { return t().progress(); }
    void send(const QByteArray& bytes)
    {
        peer.write(bytes);
        peer.flush();
    }
    // Reads exactly what is expected, or whatever came within the time.
    QByteArray expectBytes(qsizetype n) { return readAtLeast(peer, int(n), 3000); }

    // The peer offers a file of the given size; the copy's user says yes
    // and saves it under target. Returns the copy's answer.
    QByteArray offer(const QString& wireName, qint64 size, const QString& target)
    {
        copy.prompter().addAnswers({"yes", "file:" + target});
        send("%%File Sending Request%%" + toCp1252(wireName) + '>' + QByteArray::number(size) +
             "*fs*");
        const QByteArray ok = "%%FS Request OK%%" + toCp1252(deriveOfferName(
                                  wireName + '>' + QString::number(size)).okPath) + "*fs*";
        return expectBytes(ok.size());
    }

    // The copy offers the given bytes as the file at path and the peer
    // accepts the offer. Returns the first frame the copy sends.
    QByteArray sendAccepted(const QString& path, const QByteArray& data, qsizetype firstPayload)
    {
        EXPECT_TRUE(writeFile(path, data));
        copy.prompter().addAnswers({"file:" + path});
        t().mnuSendFile_Click();
        readFor(peer, 100);
        send("%%FS Request OK%%" + toCp1252(wirePath(path)) + "*fs*");
        return expectBytes(firstPayload + 9);
    }

    TestCopy copy;
    QTcpSocket peer;
    QStringList rings;
    int beeps = 0;
};

}  // namespace vonnel::test
