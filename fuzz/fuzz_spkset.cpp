// The peer's voice under arbitrary fields: the text between "<SPKSET> "
// and " </SPKSET>" as the peer sends it, read as single-byte text.
//
//   fuzz_spkset -max_len=1024 corpus/spkset/
//
// What must hold: a voice is taken whole or not at all (a failed field
// leaves every field empty), a failure is one of the two conversions, a
// voice whose texts hold no tag of their own comes back unchanged through
// the message we would build from it, and finding a local mode for it
// gives a mode that exists or the current one.

#include "media/SpeakerSetting.h"
#include "media/SpeechModes.h"

#include <QCoreApplication>
#include <cstdint>
#include <cstdlib>

using namespace vonnel;

namespace {

void check(bool ok)
{
    if (!ok)
        std::abort();
}

const QList<SpeechVoice> kModes = {{"flite", "en_GB", "awb"},
                                   {"flite", "en_US", "kal"},
                                   {"speechd", "de_DE", "male1"}};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    new QCoreApplication(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString fields =
        QString::fromLatin1(reinterpret_cast<const char*>(data), qsizetype(size));
    const SpeakerSettingParse p = parseSpeakerSetting(fields);
    const RemoteVoice& v = p.voice;
    if (p.error) {
        check(p.error == 6 || p.error == 13);
        check(v == RemoteVoice{});
        return 0;
    }
    check(p.description.isEmpty());

    const auto plain = [](const QString& s) { return !s.contains(QLatin1Char('<')); };
    if (plain(v.remoteProduct) && plain(v.remoteEngine) && plain(v.remoteMode)) {
        const QString frame = speakerSettingFrame(v.remoteLanguage, v.remoteProduct,
                                                  v.remoteEngine, v.remoteMode, v.remoteSpeed,
                                                  v.remotePitch);
        check(frame.startsWith(QLatin1String("<SPKSET> ")) &&
              frame.endsWith(QLatin1String(" </SPKSET>")));
        const SpeakerSettingParse again = parseSpeakerSetting(frame.mid(9, frame.size() - 19));
        check(again.error == 0 && again.voice == v);
    }

    for (int current : {1, 2, 3}) {
        const int m = findMode(kModes, findText(v.remoteLanguage, v.remoteEngine, v.remoteMode),
                               current);
        check(m >= 1 && m <= kModes.size());
    }
    check(findMode({}, fields, 1) == 1);
    return 0;
}
