#include "media/SpeakerSetting.h"

#include "core/WireCodec.h"
#include "wire/FrameText.h"

#include <cmath>
#include <limits>

namespace vonnel {

namespace {
constexpr int kOverflow = 6;
constexpr int kTypeMismatch = 13;

QString tagged(const char* tag, const QString& value)
{
    const QString name = QLatin1String(tag);
    return QLatin1Char('<') + name + QLatin1Char('>') + value + QStringLiteral("</") + name +
           QLatin1Char('>');
}

QString between(const QString& fields, const char* tag)
{
    const QString name = QLatin1String(tag);
    return getBetween(fields, QLatin1Char('<') + name + QLatin1Char('>'),
                      QStringLiteral("</") + name + QLatin1Char('>'));
}
}  // namespace

QString speakerSettingFrame(int language, const QString& product, const QString& engine,
                            const QString& mode, int speed, int pitch)
{
    return wire::text(wire::kSpeakerSetOpen) + tagged("L", QString::number(language)) +
           tagged("PN", product) + tagged("E", engine) + tagged("N", mode) +
           tagged("S", QString::number(speed)) + tagged("P", QString::number(pitch)) +
           wire::text(wire::kSpeakerSetClose);
}

int voiceNumber(const QString& text, int& error)
{
    error = 0;
    const QString t = text.trimmed();
    bool ok = false;
    const double v = t.toDouble(&ok);
    // Digits only: no "inf", "nan" or hex forms.
    if (!ok || t.isEmpty() || !std::isfinite(v) || t.contains(QLatin1Char('x'), Qt::CaseInsensitive)) {
        error = kTypeMismatch;
        return 0;
    }
    const double r = std::nearbyint(v);  // the default rounding is half to even
    if (r < double(std::numeric_limits<int>::min()) || r > double(std::numeric_limits<int>::max())) {
        error = kOverflow;
        return 0;
    }
    return int(r);
}

SpeakerSettingParse parseSpeakerSetting(const QString& fields)
{
    SpeakerSettingParse out;
    RemoteVoice& v = out.voice;
    int error = 0;
    v.remoteLanguage = voiceNumber(between(fields, "L"), error);
    if (!error) {
        v.remoteProduct = between(fields, "PN");
        v.remoteEngine = between(fields, "E");
        v.remoteMode = between(fields, "N");
        v.remoteSpeed = voiceNumber(between(fields, "S"), error);
    }
    if (!error)
        v.remotePitch = voiceNumber(between(fields, "P"), error);
    if (error) {
        out.error = error;
        out.description = error == kOverflow ? QStringLiteral("Overflow") : QStringLiteral("Type mismatch");
        out.voice = RemoteVoice{};
    }
    return out;
}

}  // namespace vonnel
