#pragma once
// Two copies joined over loopback, a ready to send a file to b.

#include "support/Session.h"
#include "transfer/Transfer.h"
#include "platform/Prompter.h"
#include "core/CopyContext.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace vonnel::test {

class TwoCopies : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (TestCopy* c : {&a, &b}) {
            c->set("Byte Per Send", "3200");
            c->set("Close Progress", "0");
        }
        ASSERT_TRUE(a.start());
        ASSERT_TRUE(b.start());
        ASSERT_TRUE(connectCopies(a, b));
        for (TestCopy* c : {&a, &b}) {
            QObject::connect(&c->frm().transfer(), &Transfer::beep, [this, c] { ++beeps[c == &b]; });
            QObject::connect(&c->frm().ctx(), &CopyContext::ringRequested,
                             [this, c](const QString& s) { rings[c == &b] << s; });
        }
    }
    Transfer& ta() { return a.frm().transfer(); }
    Transfer& tb() { return b.frm().transfer(); }
    qint64 received() const { return QFileInfo(target).size(); }

    // a offers a file of the given size; b accepts it under target.
    void startTransfer(qsizetype size, quint32 seed)
    {
        data = randomBytes(size, seed);
        source = a.file("out/source.bin");
        target = b.file("in/target.bin");
        QDir().mkpath(QFileInfo(source).path());
        QDir().mkpath(QFileInfo(target).path());
        QFile f(source);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        ASSERT_EQ(f.write(data), data.size());
        f.close();
        // A file left by an earlier transfer would satisfy the waits on
        // the new one's first bytes.
        QFile::remove(target);
        a.prompter().addAnswers({"file:" + source});
        b.prompter().addAnswers({"yes", "file:" + target});
        ta().mnuSendFile_Click();
        ASSERT_TRUE(waitUntil([&] { return received() > 0; }));
    }
    bool finished(int ms = 20000)
    {
        return waitUntil([&] {
            return ta().progress().cmdCancel.tag == "Finish" &&
                   tb().progress().cmdCancel.tag == "Finish";
        }, ms);
    }
    // The length b's file stays at for a while.
    bool standsStill(int ms = 300)
    {
        const qint64 before = received();
        pump(ms);
        return received() == before;
    }

    TestCopy a;
    TestCopy b;
    QByteArray data;
    QString source, target;
    int beeps[2] = {0, 0};
    QStringList rings[2];
};

}  // namespace vonnel::test
