// Going private under arbitrary peers: the version text that decides
// whether to offer, and the reads that may carry the offer or its answer.
// The first byte picks the side (caller or callee) and whether private
// sessions are on; the rest is the peer's version text, then its reads,
// separated by 0xFF. A word is taken only whole and only off a read's end:
// whatever comes back is the read itself or the read less one word.
//
//   fuzz_private -max_len=1024 corpus/

#include "connection/Connection.h"
#include "connection/PrivateLink.h"
#include "core/WireCodec.h"
#include "support/TestCopy.h"

#include <QApplication>
#include <cstdint>
#include <cstdlib>

using namespace vonnel;

namespace {
QApplication* app = nullptr;
test::TestCopy* copy = nullptr;
}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    app = new QApplication(*argc, *argv);
    copy = new test::TestCopy(0, {{"No SmartSave", "1"}, {"Connect Idle", "0"}});
    if (!copy->start())
        std::abort();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    PrivateLink& link = copy->frm().connection().privateLink();
    const uint8_t flags = data[0];
    static int on = -1;  // the settings file is written only on a change
    if (on != (flags & 2)) {
        on = flags & 2;
        copy->set(QStringLiteral("Private Sessions"), on ? QStringLiteral("1") : QStringLiteral("0"));
    }
    const QList<QByteArray> parts =
        QByteArray(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1)).split('\xff');
    const QString version = QString::fromLatin1(parts.first());
    if (flags & 1) {
        link.calleeOpened();
        link.peerVersion(version);
    } else {
        link.peerVersion(version);
        link.callerOpened();
    }
    const qsizetype word = wire::kPrivateOffer.size();
    for (qsizetype i = 1; i < parts.size(); ++i) {
        const QByteArray& read = parts[i];
        const QByteArray rest = link.takeWord(read);
        if (!read.startsWith(rest) || (rest.size() != read.size() && rest.size() != read.size() - word))
            std::abort();
    }
    link.sessionClosed();
    copy->prompter().clearRecords();
    QCoreApplication::processEvents();
    return 0;
}
