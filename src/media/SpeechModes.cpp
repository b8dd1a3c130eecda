#include "media/SpeechModes.h"

#include <QLocale>

namespace vonnel {

namespace {

struct KnownLocale {
    const char* name;
    int id;
};

// Windows locale ids of the locales speech engines commonly offer.
constexpr KnownLocale kKnownLocales[] = {
    {"ar_SA", 1025}, {"zh_TW", 1028}, {"cs_CZ", 1029}, {"da_DK", 1030}, {"de_DE", 1031},
    {"el_GR", 1032}, {"en_US", 1033}, {"fi_FI", 1035}, {"fr_FR", 1036}, {"he_IL", 1037},
    {"hu_HU", 1038}, {"it_IT", 1040}, {"ja_JP", 1041}, {"ko_KR", 1042}, {"nl_NL", 1043},
    {"nb_NO", 1044}, {"pl_PL", 1045}, {"pt_BR", 1046}, {"ru_RU", 1049}, {"sv_SE", 1053},
    {"tr_TR", 1055}, {"hi_IN", 1081}, {"zh_CN", 2052}, {"en_GB", 2057}, {"es_MX", 2058},
    {"pt_PT", 2070}, {"en_AU", 3081}, {"es_ES", 3082}, {"fr_CA", 3084}, {"en_CA", 4105},
    {"en_IN", 16393},
};

// The text between the marker and the next one (or the end).
QString field(const QString& text, const QString& marker, const QString& next)
{
    const qsizetype a = text.indexOf(marker);
    if (a < 0)
        return QString();
    const qsizetype from = a + marker.size();
    const qsizetype b = next.isEmpty() ? -1 : text.indexOf(next, from);
    return b < 0 ? text.mid(from) : text.mid(from, b - from);
}

}  // namespace

int languageIdOf(const QString& localeName)
{
    const QLocale locale(localeName);
    const QString name = locale.name();
    for (const KnownLocale& k : kKnownLocales)
        if (name == QLatin1String(k.name))
            return k.id;
    return 0x10000 * (int(locale.territory()) + 1) + int(locale.language());
}

SpeechMode modeOf(const SpeechVoice& voice)
{
    return SpeechMode{languageIdOf(voice.locale), voice.engine, voice.engine, voice.name};
}

QString findText(int languageId, const QString& engineId, const QString& modeName)
{
    return QStringLiteral("LanguageID=") + QString::number(languageId) +
           QStringLiteral(";EngineID=") + engineId + QStringLiteral(";ModeName=") + modeName;
}

int findMode(const QList<SpeechVoice>& modes, const QString& text, int current)
{
    const QString language = field(text, QStringLiteral("LanguageID="), QStringLiteral(";EngineID="));
    const QString engine = field(text, QStringLiteral(";EngineID="), QStringLiteral(";ModeName="));
    // The name is the last field: it runs to the end, whatever it holds.
    const QString name = field(text, QStringLiteral(";ModeName="), QString());
    bool numeric = false;
    const int languageId = language.toInt(&numeric);
    int best = current, bestScore = 0;
    for (qsizetype i = 0; i < modes.size(); ++i) {
        const SpeechMode m = modeOf(modes[i]);
        const int score = (m.modeName == name ? 4 : 0) +
                          (numeric && m.languageId == languageId ? 2 : 0) +
                          (m.engineId == engine ? 1 : 0);
        if (score > bestScore) {
            bestScore = score;
            best = int(i) + 1;
        }
    }
    return best;
}

}  // namespace vonnel
