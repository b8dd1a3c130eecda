#include "core/Translator.h"

#include "core/IniStore.h"

#include <QDir>

namespace vonnel {

void Translator::setLangFile(const QString& langFile)
{
    if (langFile.isEmpty() || QDir::isAbsolutePath(langFile))
        m_langPath = langFile;
    else
        m_langPath = m_appPath + langFile;
}

QString Translator::translate(const QString& key, const QString& fallback) const
{
    if (m_recorder)
        m_recorder(key);
    if (m_on) {
        const QString v = ReadIni(kSection, key, m_langPath, kReadBuffer);
        if (!v.isEmpty())
            return v;
    }
    return fallback.isEmpty() ? key : fallback;
}

}  // namespace vonnel
