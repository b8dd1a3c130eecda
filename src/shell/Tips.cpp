#include "shell/Tips.h"

#include "core/Cp1252.h"
#include "core/IniStore.h"

#include <QFile>

namespace vonnel {

Tips::Tips(const QString& path, int start)
{
    QFile f(resolveCaseBlind(path));
    if (f.open(QIODevice::ReadOnly)) {
        const QString text = fromCp1252(f.readAll());
        for (QString line : text.split(QLatin1Char('\n'))) {
            line.remove(QLatin1Char('\r'));
            if (!line.trimmed().isEmpty())
                m_tips << line;
        }
    }
    if (!m_tips.isEmpty())
        m_index = ((start % count()) + count()) % count();
}

QString Tips::next()
{
    if (m_tips.isEmpty())
        return QString();
    m_index = (m_index + 1) % count();
    return current();
}

}  // namespace vonnel
