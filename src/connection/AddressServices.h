#pragma once
// Names and addresses: forward and reverse lookups for the connect dialog,
// the network tools and the caller prompt, and the local identity (name,
// addresses) shown in the local pane. Every failure gives "- - - - - - ".

#include <QObject>
#include <QString>
#include <QStringList>

namespace vonnel {

class CopyContext;
class MainModel;

class AddressServices : public QObject {
    Q_OBJECT
public:
    static inline const QString kFailed = QStringLiteral("- - - - - - ");
    static constexpr int kMaxLocalAddresses = 10;

    AddressServices(CopyContext& ctx, MainModel& model, QObject* parent = nullptr);

    // The dotted address of a host name (or of a dotted text, itself).
    QString ResolveName(const QString& host, bool showStatus = true);
    // The host name of a dotted address; "" for "".
    QString ResolveAddress(const QString& address);
    // The computer's own name.
    QString ComputerName() const;
    // Fills localHostName and localAddresses.
    void GetLocalHost();

    QString localHostName;
    QStringList localAddresses;  // at most ten, dotted
    int localCount() const { return int(localAddresses.size()); }

    // True while a lookup runs; a second one is not to be started then.
    bool busy() const { return m_busy; }

    // True when the text is a dotted address of four digit groups, each
    // ending in a digit ("*#.*#.*#.*#").
    static bool looksDotted(const QString& text);

Q_SIGNALS:
    // A lookup began or ended: windows disable their lookup buttons.
    void lookupRunning(bool running);

private:
    // Runs the lookup while the window keeps painting; user input waits.
    QString lookup(const QString& text, bool reverse, const QString& word, bool showStatus);

    CopyContext& m_ctx;
    MainModel& m_model;
    bool m_busy = false;
};

}  // namespace vonnel
