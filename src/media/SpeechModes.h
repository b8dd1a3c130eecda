#pragma once
// The engine modes of the speech engine and how they look on the wire.
//
// A mode is one voice of the platform's engines, in the engine's own
// order (SpeechEngine::voices): mode n is voice n - 1, so the Speaker
// setting names the same voice from one start to the next. The four fields
// that say which mode a side speaks in are taken from the voice, here and
// nowhere else:
//
//   language id  <- the voice's locale: the Windows locale id where the
//                   locale has one (1033 for en_US, 2057 for en_GB ...);
//                   otherwise 0x10000 * (territory + 1) + language in Qt's
//                   numbering, which no Windows id reaches
//   product name <- the engine's name ("flite", "speechd")
//   engine id    <- the engine's name as well: an engine's voices are
//                   told apart by locale and name
//   mode name    <- the voice's name ("kal", "slt")
//
// Finding a mode for "LanguageID=..;EngineID=..;ModeName=.." weighs the
// mode name above the language and the language above the engine; among
// equals the first mode wins, and when nothing matches at all the current
// mode stays.

#include "platform/SpeechEngine.h"

#include <QList>
#include <QString>

namespace vonnel {

struct SpeechMode {
    int languageId = 0;
    QString product;
    QString engineId;
    QString modeName;
};

// The wire's fields of one voice.
SpeechMode modeOf(const SpeechVoice& voice);
// The language id of a locale name ("en_US", "de").
int languageIdOf(const QString& localeName);

// "LanguageID=" + id + ";EngineID=" + id + ";ModeName=" + name.
QString findText(int languageId, const QString& engineId, const QString& modeName);
// The mode (1-based) that best fits a find text among the modes; current
// when none fits at all or there are no modes.
int findMode(const QList<SpeechVoice>& modes, const QString& findText, int current);

}  // namespace vonnel
