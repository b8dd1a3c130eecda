// The transfer's messages and frames under arbitrary arrivals, with a
// transfer of this copy under way or none. One copy runs for the whole
// session, with no peer: what it sends goes nowhere. The first byte picks
// the state the arrival finds; the rest is the arrival.
//
//   fuzz_transfer -max_len=8192 corpus/transfer/
//
// What must hold whatever arrives: no file outside the copy's folders is
// named, the file being received never grows past what the arrivals
// carried, and with nothing under way no file is touched at all.

#include "core/IniStore.h"
#include "support/TestCopy.h"
#include "NoWaitClock.h"
#include "transfer/Transfer.h"
#include "wire/Receiver.h"
#include "platform/Prompter.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdint>
#include <cstdlib>

using namespace vonnel;

namespace {

QApplication* app = nullptr;
test::TestCopy* copy = nullptr;
QString target;
QString source;

enum State { Idle, Receiving, ReceivingPaused, Sending, Count };

void setUp(State state)
{
    Transfer& t = copy->frm().transfer();
    t.endSession();
    t.unloadProgress();
    copy->prompter().clearRecords();
    QFile::remove(target);
    switch (state) {
    case Receiving:
    case ReceivingPaused:
        copy->prompter().addAnswers({"yes", "file:" + target});
        t.getSaveFileName(QStringLiteral("C:\\in.bin>50000"));
        if (state == ReceivingPaused)
            t.pauseSendFile(true);
        break;
    case Sending:
        // Without a session the first frame goes nowhere; the send is
        // under way all the same.
        t.beginSendFile(source);
        break;
    default:
        break;
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    app = new QApplication(*argc, *argv);
    copy = new test::TestCopy(0, {{"No SmartSave", "1"}, {"Connect Idle", "0"},
                                  {"Byte Per Send", "2000"}});
    copy->useClock(new fuzz::NoWaitClock);
    if (!copy->start())
        std::abort();
    target = copy->file("in/in.bin");
    source = copy->file("out/out.bin");
    QDir().mkpath(copy->file("in"));
    QDir().mkpath(copy->file("out"));
    QFile f(source);
    if (!f.open(QIODevice::WriteOnly) || f.write(QByteArray(10000, 'o')) != 10000)
        std::abort();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const State state = State(data[0] % Count);
    setUp(state);
    const QByteArray arrival(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));
    copy->frm().receiver().handleArrival(0, arrival);

    const qint64 got = QFileInfo(target).size();
    if (state == Idle && QFileInfo::exists(target))
        std::abort();  // nothing under way: no file touched
    if (got > qint64(size))
        std::abort();  // never more than the arrival carried
    return 0;
}
