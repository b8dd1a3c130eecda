#pragma once
// A copy whose session is a raw socket in the test's hand, so tests read
// exactly what the copy writes.

#include "support/Session.h"
#include "wire/LiveTyping.h"

#include <QTcpSocket>

namespace vonnel::test {

using Settings = QList<QPair<QString, QString>>;

class TypingPeer {
public:
    explicit TypingPeer(const QList<QPair<QString, QString>>& settings = {}, bool connect = true)
        : copy(0, settings)
    {
        started = copy.start();
        if (connect) {
            acceptRawPeer(copy, peer);
            readFor(peer, 30);
        }
    }
    FrmMain& frm() { return copy.frm(); }
    LiveTyping& typing() { return copy.frm().typing(); }
    // What the copy wrote: at least as much as expected, and whatever
    // follows within a short while.
    QByteArray wire(qsizetype expected = 0)
    {
        QByteArray got = readAtLeast(peer, int(expected), 2000);
        got += readFor(peer, 40);
        return got;
    }

    TestCopy copy;
    QTcpSocket peer;
    bool started = false;
};

// The format message of the shipped settings.
inline const QByteArray kPresetFormat = "^ffDejaVu Sans^fbFalse^fiFalse^fs11^fc0^bc16777215^>";
// The speaker's voice of a test copy with the shipped settings: the first
// of testVoices() at normal speed and pitch. It follows the format wherever
// that goes out.
inline const QByteArray kPresetVoice =
    "<SPKSET> <L>2057</L><PN>flite</PN><E>flite</E><N>awb</N><S>200</S><P>150</P> </SPKSET>";
inline const QByteArray kPresetSettings = kPresetFormat + kPresetVoice;

}  // namespace vonnel::test
