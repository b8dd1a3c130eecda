#pragma once
// Opening documents and addresses with the user's own programs. Peer text
// never reaches a shell: everything goes through QDesktopServices.

#include <QString>
#include <QStringList>
#include <utility>

namespace vonnel {

class Desktop {
public:
    virtual ~Desktop() = default;
    virtual bool openUrl(const QString& url);
    virtual bool openFile(const QString& path);
    // Starts a local program that the user configured (never peer text).
    virtual bool startProgram(const QString& program, const QStringList& args);
};

// Records what would have been opened; for tests and headless runs.
class RecordingDesktop : public Desktop {
public:
    bool openUrl(const QString& url) override { opened << url; return true; }
    bool openFile(const QString& path) override { opened << path; return true; }
    bool startProgram(const QString& program, const QStringList& args) override
    {
        opened << program + QLatin1Char(' ') + args.join(QLatin1Char(' '));
        started.append({program, args});
        return true;
    }
    QStringList opened;
    // Each program started, with its arguments as handed over.
    QList<std::pair<QString, QStringList>> started;
};

}  // namespace vonnel
