#pragma once
// The network sweep behind frmNetView: which networks are swept, the lines
// the list gets, the texts of the two status boxes and the single ping of
// the address box. The probes run side by side (SweepEngine), so the window
// keeps answering while a whole network is tried; lines still come in
// address order.

#include "nettools/NetToolsPorts.h"
#include "nettools/SweepEngine.h"
#include "platform/OwnAddresses.h"

#include <QObject>
#include <QStringList>
#include <QTime>
#include <functional>

namespace vonnel {

class NetViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QStringList lstPing READ lstPing NOTIFY lstPingChanged)
    Q_PROPERTY(QString txtPing READ txtPing NOTIFY txtPingChanged)
    Q_PROPERTY(QString txtInfo READ txtInfo NOTIFY txtInfoChanged)
    Q_PROPERTY(bool sweeping READ sweeping NOTIFY sweepingChanged)
public:
    // mnuIPAdr, mnuIPHost, mnuHostOnly.
    enum class View { IPAdr, IPHost, HostOnly };
    // mnuAllStations, mnuNetIPAdr, mnuSpecific.
    enum class Scope { AllStations, NetIPAdr, Specific };
    // A range value above this means "not given": the whole 0..255.
    static constexpr int kRangeNotGiven = 65534;
    static constexpr int kNetAddresses = 6;

    NetViewModel(EchoProber& prober, OwnAddresses& own, NameLookup& names, SessionQuery& session,
            QObject* parent = nullptr);

    QStringList lstPing() const { return m_lines; }
    QString txtPing() const { return m_txtPing; }
    QString txtInfo() const { return m_txtInfo; }
    bool sweeping() const { return m_sweeping; }
    View view() const { return m_view; }
    Scope scope() const { return m_scope; }
    QStringList netAddresses() const { return m_netAddresses; }

    void setView(View v) { m_view = v; }
    // What the user typed into the address box.
    void setTxtPing(const QString& text) { setPing(text); }
    // The time of day the "Updated: " line shows; tests pin it.
    void setTimeSource(std::function<QTime()> now) { m_now = std::move(now); }
    // The language lookup the status texts go through.
    void setTranslate(std::function<QString(const QString&)> translate)
    {
        if (translate)
            m_translate = std::move(translate);
    }

    // The sweep: over every own network (address "") or the network of the
    // address or name given, addresses rangeFrom..rangeTo of it.
    void NetView(QString address, int rangeFrom = 65535, int rangeTo = 65535);
    void cmdAbort_Click();
    void cmdPing_Click();
    void NetViewCheck();
    void mnuAllStations_Click();
    void mnuNetIPAdr_Click(const QString& address);
    // cmdRangeView of the range window.
    void viewRange(const QString& network, int rangeFrom, int rangeTo);
    void mnuViewClear_Click();

    // The list actions.
    void popMnuChat(int row);
    QString popMnuCopy(int row) const;
    QString popMnuCopyAll() const;
    // The text of a saved list, lines ended by CR LF.
    QString listFileText() const;
    // The hint for the line under the mouse, also kept in txtInfo; "" when
    // the line is no address.
    QString hostHint(int row);

    // The own addresses as the range window offers them.
    QStringList networkChoices();

Q_SIGNALS:
    void lstPingChanged();
    void txtPingChanged(const QString& text);
    void txtInfoChanged(const QString& text);
    void sweepingChanged(bool sweeping);
    // A message box for the user.
    void notice(const QString& text);
    // The address box wants the focus.
    void focusPing();
    // Connect to this line (the Connect routine of the connection).
    void connectRequested(const QString& address);
    // The whole sweep is over, aborted or not.
    void sweepDone(bool aborted);

private:
    struct Round {
        QString network;
        QStringList targets;
    };
    void setPing(const QString& t);
    void setInfo(const QString& t);
    void setSweeping(bool on);
    void addLine(const QString& line);
    void nextRound();
    void onResult(int index, const QString& target, bool answered);
    void onRoundFinished(bool aborted);
    QString timeText() const;

    EchoProber& m_prober;
    OwnAddresses& m_own;
    NameLookup& m_names;
    SessionQuery& m_session;
    SweepEngine m_engine;
    View m_view = View::IPAdr;
    Scope m_scope = Scope::AllStations;
    QStringList m_lines;
    QString m_txtPing;
    QString m_txtInfo;
    bool m_sweeping = false;
    bool m_abortSweep = false;
    QStringList m_netAddresses;
    QStringList m_ownNow;  // own addresses of the sweep that runs
    QList<Round> m_rounds;
    QDate m_sweepDate;
    quint64 m_singleTicket = 0;
    QString m_singleAddress;
    std::function<QString(const QString&)> m_translate = [](const QString& t) { return t; };
    QString tr(const QString& key) const { return m_translate(key); }
    // Whether the address box holds a status text: the pattern on the
    // text as it stands, or the key's text in the language in use.
    bool pingShows(const QString& text, const QString& pattern, const QString& key) const;
    std::function<QTime()> m_now;
};

}  // namespace vonnel
