#include "core/Logs.h"

#include "core/Cp1252.h"
#include "core/IniStore.h"
#include "platform/Clock.h"

#include <QFile>
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
    appendError(QStringLiteral("eData ") + QString::number(m_eData), data);
}

void Logs::failure(const QString& location, const QString& description)
{
    ++m_failures;
    appendError(QString::number(m_failures) + QLatin1Char(' ') + location, description);
}

void Logs::fatal(const QString& text)
{
    ++m_fatal;
    appendError(QStringLiteral("Error ") + QString::number(m_fatal), text);
}

void Logs::appendError(const QString& key, const QString& value)
{
    static const QByteArray header = "[" + kSection.toLatin1() + "]\r\n";
    const QByteArray line = toCp1252(key + QLatin1Char('=') + value) + "\r\n";
    QFile file(resolveCaseBlind(errorLogPath()));
    if (!file.open(QIODevice::ReadWrite))
        return;  // a log write that fails is silent
    if (file.size() + line.size() > kErrorLogCap) {
        // Keep the newer half: the lines after the middle of the file.
        const QByteArray all = file.readAll();
        qsizetype from = all.indexOf('\n', all.size() / 2);
        from = from < 0 ? all.size() : from + 1;
        QByteArray kept = header;
        kept += all.mid(from);
        if (kept.size() + line.size() > kErrorLogCap)
            kept = header;  // one entry alone near the cap
        file.resize(0);
        file.seek(0);
        file.write(kept);
    } else if (file.size() == 0) {
        file.write(header);
    }
    file.seek(file.size());
    file.write(line.left(kErrorLogCap - header.size() - 2));
    if (line.size() > kErrorLogCap - header.size() - 2)
        file.write("\r\n");
}

}  // namespace vonnel
