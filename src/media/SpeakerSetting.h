#pragma once
// The speaker's voice on the wire: "<SPKSET> <L>language</L><PN>product
// </PN><E>engine</E><N>mode</N><S>speed</S><P>pitch</P> </SPKSET>", built
// exactly and taken apart with the frames' own routines. Nothing in it is
// escaped, so a value that holds a closing tag breaks the message; the
// peer's fields are only ever compared, never run or opened.

#include <QString>

namespace vonnel {

// The peer's voice as it arrived (remoteVoice). An empty or 0 field means
// "this side's own value" when the voice is applied.
struct RemoteVoice {
    int remoteLanguage = 0;
    QString remoteProduct;
    QString remoteEngine;
    QString remoteMode;
    int remoteSpeed = 0;
    int remotePitch = 0;
    bool operator==(const RemoteVoice&) const = default;
};

// The whole message, with its opening and closing words.
QString speakerSettingFrame(int language, const QString& product, const QString& engine,
                            const QString& mode, int speed, int pitch);

// What the fields between "<SPKSET> " and " </SPKSET>" say. A number field
// that holds no number fails with 13 "Type mismatch", one beyond 32 bits
// with 6 "Overflow"; the voice is then not to be taken at all.
struct SpeakerSettingParse {
    RemoteVoice voice;
    int error = 0;
    QString description;
};
SpeakerSettingParse parseSpeakerSetting(const QString& fields);

// A number field as the conversion reads it: blanks around it allowed, a
// fraction rounded half to even. error is 0, 13 or 6.
int voiceNumber(const QString& text, int& error);

}  // namespace vonnel
