// The voice on the wire: the exact "<SPKSET> " bytes, what the peer's
// fields convert to and when they do not, and which local mode a peer's
// voice finds.

#include "media/SpeakerSetting.h"
#include "media/SpeechModes.h"
#include "support/TestCopy.h"

#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

TEST(SpeakerSettingFrame, IsBuiltExactlyAndReadBack)
{
    const QString frame = speakerSettingFrame(1033, "flite", "flite", "kal", 275, -3);
    EXPECT_EQ(frame, "<SPKSET> <L>1033</L><PN>flite</PN><E>flite</E><N>kal</N><S>275</S><P>-3</P> "
                     "</SPKSET>");
    const QString fields = frame.mid(9, frame.size() - 9 - 10);
    const SpeakerSettingParse p = parseSpeakerSetting(fields);
    EXPECT_EQ(p.error, 0);
    EXPECT_EQ(p.voice, (RemoteVoice{1033, "flite", "flite", "kal", 275, -3}));
}

TEST(SpeakerSettingParse, NumberFieldsConvertOrFailWithTheirNumber)
{
    struct Case {
        const char* fields;
        int error;
        RemoteVoice voice;
    };
    const Case cases[] = {
        // Blanks around a number and a fraction (half to even) convert.
        {"<L> 2057 </L><PN>p</PN><E>e</E><N>m</N><S>2.5</S><P>3.5</P>", 0, {2057, "p", "e", "m", 2, 4}},
        // Text fields are taken as they stand, tags in them and all.
        {"<L>0</L><PN></PN><E>a<b</E><N>x y</N><S>0</S><P>0</P>", 0, {0, "", "a<b", "x y", 0, 0}},
        {"<L>1033</L><PN>p</PN><E>e</E><N>m</N><S>fast</S><P>0</P>", 13, {}},
        {"<L></L><PN>p</PN><E>e</E><N>m</N><S>1</S><P>1</P>", 13, {}},
        {"<L>0x10</L><PN>p</PN><E>e</E><N>m</N><S>1</S><P>1</P>", 13, {}},
        {"<L>1</L><PN>p</PN><E>e</E><N>m</N><S>inf</S><P>1</P>", 13, {}},
        {"<L>1</L><PN>p</PN><E>e</E><N>m</N><S>1</S><P>99999999999</P>", 6, {}},
        {"<L>-2147483649</L><PN>p</PN><E>e</E><N>m</N><S>1</S><P>1</P>", 6, {}},
        // A missing tag leaves its number empty.
        {"<L>1033</L>", 13, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.fields);
        const SpeakerSettingParse p = parseSpeakerSetting(QString::fromLatin1(c.fields));
        EXPECT_EQ(p.error, c.error);
        EXPECT_EQ(p.description, c.error == 0 ? "" : c.error == 6 ? "Overflow" : "Type mismatch");
        EXPECT_EQ(p.voice, c.voice);
    }
}

TEST(SpeechModes, FieldsComeFromTheVoice)
{
    const SpeechMode m = modeOf({"flite", "en_US", "kal"});
    EXPECT_EQ(m.languageId, 1033);
    EXPECT_EQ(m.product, "flite");
    EXPECT_EQ(m.engineId, "flite");
    EXPECT_EQ(m.modeName, "kal");
    EXPECT_EQ(languageIdOf("en_GB"), 2057);
    EXPECT_EQ(languageIdOf("de_DE"), 1031);
    // A locale without a Windows id gets one no Windows id reaches, the
    // same every time, and a different one for a different locale.
    const int welsh = languageIdOf("cy_GB");
    EXPECT_GE(welsh, 0x10000);
    EXPECT_EQ(languageIdOf("cy_GB"), welsh);
    EXPECT_NE(languageIdOf("ga_IE"), welsh);
    EXPECT_EQ(findText(1033, "flite", "kal"), "LanguageID=1033;EngineID=flite;ModeName=kal");
}

TEST(SpeechModes, FindWeighsNameThenLanguageThenEngine)
{
    const QList<SpeechVoice> modes = testVoices();  // awb en_GB, kal en_US, slt en_US, male1 de_DE
    struct Case {
        QString text;
        int current;
        int found;
    };
    const Case cases[] = {
        {findText(1033, "flite", "slt"), 1, 3},
        {findText(2057, "other", "slt"), 1, 3},      // the name beats language and engine
        {findText(1031, "flite", "nobody"), 1, 4},   // then the language
        {findText(1033, "speechd", "nobody"), 4, 2}, // the first of equals
        {findText(7, "speechd", "nobody"), 1, 4},    // then the engine
        {findText(7, "none", "nobody"), 2, 2},       // nothing fits: the mode stays
        {"LanguageID=x;EngineID=;ModeName=", 3, 3},
        {"", 1, 1},
        // The name runs to the end, separators and all.
        {findText(1033, "flite", "kal;EngineID=speechd"), 1, 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text.toStdString());
        EXPECT_EQ(findMode(modes, c.text, c.current), c.found);
    }
    EXPECT_EQ(findMode({}, findText(1033, "flite", "kal"), 1), 1);
}

}  // namespace
}  // namespace vonnel::test
