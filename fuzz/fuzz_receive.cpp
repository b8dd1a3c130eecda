// The receive path under arbitrary arrivals. One copy runs for the whole
// session; each input is one arrival handed to it as if the socket had
// delivered it. The first byte picks the receiving side's switches, the
// rest is the arrival. Boxes are answered with their default button.
//
//   fuzz_receive -max_len=4096 corpus/

#include "core/IniStore.h"
#include "support/TestCopy.h"
#include "NoWaitClock.h"
#include "wire/Receiver.h"
#include "wire/RemotePane.h"
#include "platform/Prompter.h"
#include "access/Encryption.h"
#include "core/CopyContext.h"

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
    copy = new test::TestCopy(0, {{"No SmartSave", "1"}, {"Connect Idle", "0"}, {"Test", "0"}});
    copy->useClock(new fuzz::NoWaitClock);
    if (!copy->start())
        std::abort();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    FrmMain& f = copy->frm();
    Receiver& r = f.receiver();
    const uint8_t flags = data[0];
    f.receiver().selfRepair = flags & 1;
    f.receiver().acceptIncompatible = flags & 2;
    f.encryption().remoteEncrypted = flags & 4;
    f.encryption().remoteKey = (flags & 4) ? QStringLiteral("03:25 PM") : QString();
    f.receiver().overflowLimit = (flags & 8) ? 1 : 50;
    f.receiver().repairCountLimit = 50;
    r.remotePane().repairCount = 0;
    f.ctx().unloading = false;
    f.model().txtClient(0).setText((flags & 16) ? QStringLiteral("abc") : QString());
    f.model().txtTextMsg.clear();
    r.remoteHistory.clear();
    copy->prompter().clearRecords();

    const QByteArray arrival(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));
    r.handleArrival(0, arrival);

    // Nothing one arrival does may grow the pane beyond the arrival and
    // the fill-up ceiling.
    if (f.model().txtClient(0).length() > (1 << 20) + 8 + int(size) * 2)
        std::abort();
    return 0;
}
