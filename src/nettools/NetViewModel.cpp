#include "nettools/NetViewModel.h"

#include "nettools/LikePattern.h"
#include "platform/Clock.h"

namespace vonnel {

namespace {

const QString kZero = QStringLiteral("0.0.0.0");

// The network part of a dotted text: up to and including the last point.
QString prefixOf(const QString& address)
{
    const int dot = address.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? QString() : address.left(dot + 1);
}

// The address a list line stands for: "10.0.0.5 [host]" is 10.0.0.5.
QString addressOfLine(const QString& line)
{
    const int bracket = line.indexOf(QLatin1String(" ["));
    return bracket < 0 ? line : line.left(bracket);
}

}  // namespace

NetViewModel::NetViewModel(EchoProber& prober, OwnAddresses& own, NameLookup& names,
                           SessionQuery& session, QObject* parent)
    : QObject(parent), m_prober(prober), m_own(own), m_names(names), m_session(session),
      m_engine(prober, 1), m_now([] { return Clock().timeOfDay(); })
{
    connect(&m_engine, &SweepEngine::result, this, &NetViewModel::onResult);
    connect(&m_engine, &SweepEngine::finished, this, &NetViewModel::onRoundFinished);
    connect(&m_prober, &EchoProber::probeDone, this,
            [this](quint64 ticket, bool answered, quint32, int) {
                if (m_singleTicket == 0 || ticket != m_singleTicket)
                    return;
                m_singleTicket = 0;
                if (answered) {
                    setPing(tr(QStringLiteral("Ping: ")) + m_singleAddress + tr(QStringLiteral(" replied.")));
                    if (!m_lines.contains(m_singleAddress))
                        addLine(m_singleAddress);
                } else {
                    setPing(tr(QStringLiteral("No reply: ")) + m_singleAddress);
                }
            });
}

bool NetViewModel::pingShows(const QString& text, const QString& pattern, const QString& key) const
{
    if (likeMatch(text, pattern))
        return true;
    const QString shown = tr(key).trimmed();
    return !shown.isEmpty() && text.contains(shown);
}

void NetViewModel::setPing(const QString& t)
{
    if (t == m_txtPing)
        return;
    m_txtPing = t;
    Q_EMIT txtPingChanged(t);
}

void NetViewModel::setInfo(const QString& t)
{
    if (t == m_txtInfo)
        return;
    m_txtInfo = t;
    Q_EMIT txtInfoChanged(t);
}

void NetViewModel::setSweeping(bool on)
{
    if (on == m_sweeping)
        return;
    m_sweeping = on;
    Q_EMIT sweepingChanged(on);
}

void NetViewModel::addLine(const QString& line)
{
    m_lines << line;
    Q_EMIT lstPingChanged();
}

QString NetViewModel::timeText() const
{
    return m_now().toString(QStringLiteral("HH:mm:ss"));
}

void NetViewModel::NetView(QString address, int rangeFrom, int rangeTo)
{
    if (m_sweeping)  // every starting control is off meanwhile
        return;
    m_abortSweep = false;
    const bool given = !address.isEmpty();
    const QStringList own = m_own.ownAddresses().mid(0, OwnAddresses::kMax);
    int highest = int(own.size()) - 1;
    if (given) {
        if (likeMatch(address, QStringLiteral("*:*")))
            return;
        if (!looksDotted(address)) {
            setInfo(tr(QStringLiteral("Please wait....")));
            setPing(tr(QStringLiteral("Resolving ")) + address + QStringLiteral("..."));
            address = m_names.resolveName(address);
            setInfo(QString());
            setPing(address != kLookupFailed ? address + QStringLiteral(" OK.") : QString());
        }
        highest = 0;
    }
    if (rangeFrom > kRangeNotGiven || rangeTo > kRangeNotGiven) {
        rangeFrom = 0;
        rangeTo = 255;
    }
    setPing(QString());

    m_ownNow = own;
    m_netAddresses = QStringList();
    for (int i = 0; i < kNetAddresses; ++i)
        m_netAddresses << QString();
    m_rounds.clear();
    for (int i = 0; i <= highest && i < kNetAddresses; ++i) {
        QString network = i < own.size() ? own[i] : QString();
        if (given) {
            network = address;
            if (network == kZero || network == kLookupFailed)
                continue;
        } else {
            if (network == kZero || network.isEmpty())
                continue;
            bool seen = false;
            for (int j = 0; j < i && !seen; ++j)
                seen = own[j] == network || prefixOf(own[j]) == prefixOf(network);
            if (seen)
                continue;
        }
        m_netAddresses[i] = network;
        // Only the last place varies. A number outside 0..255 makes a text
        // that is no address, which the prober fails without sending.
        Round round{network, {}};
        const QString prefix = prefixOf(network);
        for (int n = rangeFrom; n <= rangeTo; ++n)
            round.targets << prefix + QString::number(n);
        m_rounds << round;
    }
    m_sweepDate = Clock().today();
    setSweeping(true);
    nextRound();
}

void NetViewModel::nextRound()
{
    if (m_abortSweep || m_rounds.isEmpty()) {
        m_rounds.clear();
        setSweeping(false);
        Q_EMIT sweepDone(m_abortSweep);
        return;
    }
    const Round round = m_rounds.takeFirst();
    m_engine.start(round.targets);
}

void NetViewModel::onResult(int, const QString& target, bool answered)
{
    setPing(tr(QStringLiteral("Ping ")) + target + QStringLiteral("..."));
    // The machine answers for itself; that answer does not count.
    if (!answered || m_ownNow.contains(target))
        return;
    setPing(tr(QStringLiteral("Ping: ")) + target + tr(QStringLiteral(" replied")));
    if (m_view == View::IPHost) {
        setInfo(tr(QStringLiteral("Please wait: Resolving hostname....")));
        const QString host = m_names.resolveAddress(target);
        addLine(target + QStringLiteral(" [") + host + QStringLiteral("]"));
    } else if (m_view == View::HostOnly) {
        setInfo(tr(QStringLiteral("Please wait: Resolving hostname....")));
        const QString host = m_names.resolveAddress(target);
        if (host != kLookupFailed)
            addLine(host);
    } else {
        addLine(target);
    }
    setInfo(tr(QStringLiteral("Please wait....")));
}

void NetViewModel::onRoundFinished(bool aborted)
{
    if (!m_sweeping)
        return;
    if (aborted) {
        m_abortSweep = true;
    } else {
        setPing(QString::number(m_lines.size()) + tr(QStringLiteral(": Online")));
        setInfo(tr(QStringLiteral("Updated: ")) + timeText());
    }
    nextRound();
}

void NetViewModel::cmdAbort_Click()
{
    if (!m_sweeping)
        return;
    m_abortSweep = true;
    m_engine.abort();
}

void NetViewModel::cmdPing_Click()
{
    const QString text = m_txtPing;
    if (pingShows(text, QStringLiteral("*No reply:*"), QStringLiteral("No reply: ")) ||
        pingShows(text, QStringLiteral("*replied.*"), QStringLiteral(" replied.")) || text.isEmpty() ||
        pingShows(text, QStringLiteral("*Online*"), QStringLiteral(": Online"))) {
        setPing(QString());
        Q_EMIT focusPing();
        return;
    }
    QString address = text.trimmed();
    if (!looksDotted(text)) {
        setPing(tr(QStringLiteral("Resolving...")));
        address = m_names.resolveName(address);
        if (address == kLookupFailed) {
            Q_EMIT notice(QStringLiteral("Please enter IP address"));
            setPing(QString());
            return;
        }
    }
    setPing(tr(QStringLiteral("Ping: ")) + address + QStringLiteral("..."));
    m_singleAddress = address;
    // Tag 0 keeps the single ping apart from the sweep's tickets.
    m_singleTicket = (m_singleTicket + 1) & 0xffffffffu;
    if (m_singleTicket == 0)
        m_singleTicket = 1;
    m_prober.probe(m_singleTicket, address);
}

void NetViewModel::NetViewCheck()
{
    const QString text = m_txtPing;
    if (pingShows(text, QStringLiteral("*No reply:*"), QStringLiteral("No reply: ")) ||
        pingShows(text, QStringLiteral("*replied.*"), QStringLiteral(" replied."))) {
        NetView(QString(), 65535, 65535);
    } else if (looksDotted(text)) {
        m_lines.clear();
        Q_EMIT lstPingChanged();
        NetView(text.trimmed(), 65535, 65535);
    } else {
        mnuViewClear_Click();
    }
}

void NetViewModel::mnuAllStations_Click()
{
    mnuViewClear_Click();
    m_scope = Scope::AllStations;
    NetView(QString(), 65535, 65535);
}

void NetViewModel::mnuNetIPAdr_Click(const QString& address)
{
    mnuViewClear_Click();
    m_scope = Scope::NetIPAdr;
    NetView(address, 65535, 65535);
}

void NetViewModel::viewRange(const QString& network, int rangeFrom, int rangeTo)
{
    mnuViewClear_Click();
    m_scope = Scope::Specific;
    NetView(network, rangeFrom, rangeTo);
}

void NetViewModel::mnuViewClear_Click()
{
    if (m_lines.isEmpty())
        return;
    m_lines.clear();
    Q_EMIT lstPingChanged();
}

void NetViewModel::popMnuChat(int row)
{
    if (row < 0 || row >= m_lines.size())
        return;
    if (m_session.isConnected()) {
        Q_EMIT notice(QStringLiteral("You have to disconnect before make another session."));
        return;
    }
    if (m_session.isLocked()) {
        Q_EMIT notice(QStringLiteral("You have to unlock it first."));
        return;
    }
    Q_EMIT connectRequested(addressOfLine(m_lines[row]));
}

QString NetViewModel::popMnuCopy(int row) const
{
    return row >= 0 && row < m_lines.size() ? m_lines[row] : QString();
}

QString NetViewModel::popMnuCopyAll() const
{
    return m_lines.join(QStringLiteral("\r\n"));
}

QString NetViewModel::listFileText() const
{
    const QString title = QStringLiteral("List of available computers in the network / Internet");
    QString text = title + QStringLiteral("\r\n") + QString(title.size(), QLatin1Char('=')) +
                   QStringLiteral("\r\n");
    for (const QString& line : m_lines)
        text += line + QStringLiteral("\r\n");
    return text;
}

QString NetViewModel::hostHint(int row)
{
    if (row < 0 || row >= m_lines.size())
        return QString();
    const QString address = addressOfLine(m_lines[row]);
    if (!address.contains(QLatin1String("::")) && !(looksDotted(address) && address.size() >= 9))
        return QString();
    setInfo(tr(QStringLiteral("Please wait...")));
    const QString host = m_names.resolveAddress(address);
    setInfo(tr(QStringLiteral(" Host: ")) + host);
    return QStringLiteral("Host: ") + host;
}

QStringList NetViewModel::networkChoices()
{
    QStringList out;
    for (const QString& a : m_own.ownAddresses())
        if (a != kZero && !a.isEmpty())
            out << a;
    return out;
}

}  // namespace vonnel
