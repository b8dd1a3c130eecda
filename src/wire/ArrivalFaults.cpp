#include "wire/ArrivalFaults.h"

#include "core/Logs.h"
#include "platform/Prompter.h"

namespace vonnel {

void ArrivalFaults::raise(int number, const QString& description)
{
    if (m_number != 0 || number == 0)
        return;
    m_number = number;
    m_description = description;
}

void ArrivalFaults::clear()
{
    m_number = 0;
    m_description.clear();
}

void ArrivalFaults::reportStage(const QString& prefix)
{
    if (!pending())
        return;
    const QString text = prefix + QString::number(m_number) + QLatin1Char(' ') + m_description;
    clear();
    show(prefix.trimmed(), text);
}

void ArrivalFaults::reportArrival(const QString& remaining)
{
    if (!pending())
        return;
    const bool quiet = m_number == fault::kInvalidCall;
    const QString description = m_description;
    clear();
    if (quiet)
        return;
    show(QStringLiteral("DataArrival Error"),
         QStringLiteral("DataArrival Error\r") + description + QStringLiteral("\rData: \r") +
             remaining);
}

void ArrivalFaults::show(const QString& kind, const QString& text)
{
    // Once per kind and session: the handlers go on either way, and what
    // a hostile peer sends after the first one is not shown again.
    if (m_shown.contains(kind))
        return;
    m_shown.insert(kind);
    m_logs.failure(QStringLiteral("Winsock_DataArrival-") + kind, text);
    m_prompter.msgBox(text, MsgStyle::Exclamation);
}

}  // namespace vonnel
