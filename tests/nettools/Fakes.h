#pragma once
// Stand-ins for the network tools' collaborators.

#include "nettools/NetToolsPorts.h"
#include "platform/EchoProber.h"

#include <QHash>
#include <QMap>
#include <QTimer>
#include <QSet>
#include <ostream>
#include "nettools/LikePattern.h"

QT_BEGIN_NAMESPACE
// Readable failures.
inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}
inline void PrintTo(const QStringList& l, std::ostream* os)
{
    *os << '[' << l.join(QStringLiteral(", ")).toStdString() << ']';
}
QT_END_NAMESPACE

namespace vonnel::test {

// Answers after a set delay for the addresses it knows; the rest run out
// after their time-out, as silent stations do.
class FakeProber : public EchoProber {
public:
    QHash<QString, int> answerAfterMs;  // address -> delay of its answer
    QStringList probed;
    int inFlight = 0;
    int maxInFlight = 0;

    void probe(quint64 ticket, const QString& address, int timeoutMs) override
    {
        probed << address;
        ++inFlight;
        maxInFlight = qMax(maxInFlight, inFlight);
        const bool answers = answerAfterMs.contains(address);
        const int after = answers ? answerAfterMs.value(address) : timeoutMs;
        const quint64 generation = m_generation;
        QTimer::singleShot(after, this, [=, this] {
            if (generation != m_generation)
                return;
            --inFlight;
            Q_EMIT probeDone(ticket, answers, answers ? EchoStatus::Success : EchoStatus::TimedOut,
                             after);
        });
    }
    void cancelAll() override
    {
        ++m_generation;
        inFlight = 0;
    }

private:
    quint64 m_generation = 0;
};

class FakeNames : public NameLookup {
public:
    QHash<QString, QString> forward;  // name -> address
    QHash<QString, QString> reverse;  // address -> name
    QStringList asked;
    QString resolveName(const QString& host) override
    {
        asked << host;
        if (looksAddress(host))
            return host;
        return forward.value(host, QStringLiteral("- - - - - - "));
    }
    QString resolveAddress(const QString& address) override
    {
        asked << address;
        return reverse.value(address, QStringLiteral("- - - - - - "));
    }

private:
    static bool looksAddress(const QString& t)
    {
        return t.split(QLatin1Char('.')).size() == 4 && !t.isEmpty() && t[0].isDigit();
    }
};

class MemorySettings : public SettingsStore {
public:
    QMap<QString, QString> values;
    QString read(const QString& key) override { return values.value(key); }
    void write(const QString& key, const QString& value) override { values[key] = value; }
};

class FakeSession : public SessionQuery {
public:
    bool connected = false;
    bool locked = false;
    bool closing = false;
    QString peer;
    bool isConnected() const override { return connected; }
    bool isLocked() const override { return locked; }
    bool isClosing() const override { return closing; }
    QString peerAddress() const override { return peer; }
};

}  // namespace vonnel::test
