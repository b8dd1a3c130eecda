#include "core/Logs.h"

#include "core/IniStore.h"
#include "platform/Clock.h"

#include <QLocale>

namespace vonnel {

QString Logs::stampKey(const QDateTime& when)
{
    // The short date of the user's settings; the time always carries its
    // seconds, which is what makes two events of one second share a key.
    return QLocale::system().toString(when.date(), QLocale::ShortFormat) + QLatin1Char(' ') +
           when.time().toString(QStringLiteral("HH:mm:ss")) + QStringLiteral(" - ");
}

void Logs::connection(const QString& text)
{
    WriteIni(kSection, stampKey(m_clock.now()), QStringLiteral("> ") + text, sessionLogPath());
}

void Logs::eData(const QString& data)
{
    ++m_eData;
    WriteIni(kSection, QStringLiteral("eData ") + QString::number(m_eData), data, errorLogPath());
}

void Logs::failure(const QString& location, const QString& description)
{
    ++m_failures;
    WriteIni(kSection, QString::number(m_failures) + QLatin1Char(' ') + location, description,
             errorLogPath());
}

void Logs::fatal(const QString& text)
{
    ++m_fatal;
    WriteIni(kSection, QStringLiteral("Error ") + QString::number(m_fatal), text, errorLogPath());
}

}  // namespace vonnel
