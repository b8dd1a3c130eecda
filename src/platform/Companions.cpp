#include "platform/Companions.h"

#include "platform/Prompter.h"

#include <QImageReader>
#include <QMediaPlayer>
#include <QTextToSpeech>

namespace vonnel {

QList<CompanionProbe> companionProbes()
{
    return {
        {QStringLiteral("Qt multimedia backend"), QStringLiteral("rings and sounds are not played"),
         [] {
             QMediaPlayer probe;
             return probe.isAvailable();
         }},
        {QStringLiteral("Text-to-speech engine"), QStringLiteral("received text is not spoken"),
         [] { return !QTextToSpeech::availableEngines().isEmpty(); }},
        {QStringLiteral("JPEG image plugin"),
         QStringLiteral("board pictures cannot be saved or loaded"),
         [] { return QImageReader::supportedImageFormats().contains("jpeg"); }},
    };
}

QStringList reportMissingCompanions(Prompter& prompter, const QList<CompanionProbe>& probes)
{
    QStringList missing;
    for (const CompanionProbe& p : probes) {
        if (p.present && p.present())
            continue;
        missing << p.name;
        prompter.msgBox(QStringLiteral("Missing component: ") + p.name + QStringLiteral("\r\r") +
                            QStringLiteral("The program goes on, but ") + p.loss + QLatin1Char('.'),
                        MsgStyle::Exclamation, QStringLiteral("Component Check"));
    }
    return missing;
}

}  // namespace vonnel
