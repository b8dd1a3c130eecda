#pragma once
// A copy's context without windows over a scratch folder, for the options
// model: scripted boxes, recorded desktop, an autostart folder of its own.

#include "core/CopyContext.h"
#include "core/IniStore.h"
#include "core/options/OptionsModel.h"
#include "platform/Autostart.h"
#include "platform/Clipboard.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/ScriptedPrompter.h"
#include "core/Views.h"
#include "support/TestCopy.h"

#include <QFile>
#include <QHash>
#include <QTemporaryDir>
#include <memory>

namespace vonnel::test {

// A settings store in memory that records every write in order.
class RecordingStore : public OptionsStore {
public:
    QString read(const QString& key) const override { return values.value(key); }
    void write(const QString& key, const QString& value) override
    {
        writes << key;
        values[key] = value;
    }
    QHash<QString, QString> values;
    QStringList writes;
};

class OptionsBench {
public:
    OptionsBench()
    {
        app = dir.path() + QStringLiteral("/app/");
        QDir().mkpath(app);
        CopyEnvironment env;
        env.appPath = app;
        env.headless = true;
        env.prompter = &prompter;
        env.clock = &clock;
        env.clipboard = &clipboard;
        env.desktop = &desktop;
        env.views = &views;
        env.pinger = &pinger;
        ctx = std::make_unique<CopyContext>(env);
        ctx->HelpPath = app + QStringLiteral("help/");
        fileStore = std::make_unique<CopyOptionsStore>(*ctx);
    }

    QString ini() const { return app + QStringLiteral("vonnel.ini"); }
    void set(const QString& key, const QString& value) { WriteIni(kSection, key, value, ini()); }
    QString get(const QString& key) const { return ReadIni(kSection, key, ini()); }
    QByteArray iniBytes() const { return readFile(ini()); }
    QString autostartFolder() const { return dir.path() + QStringLiteral("/autostart"); }

    // A model over the copy's vonnel.ini.
    std::unique_ptr<OptionsModel> fileModel()
    {
        return std::make_unique<OptionsModel>(*ctx, *fileStore, autostart);
    }

    QTemporaryDir dir;
    QString app;
    ManualClock clock{QDateTime(QDate(2024, 5, 1), QTime(12, 0))};
    ScriptedPrompter prompter;
    MemoryClipboard clipboard;
    RecordingDesktop desktop;
    Views views;
    LoopbackPinger pinger;
    std::unique_ptr<CopyContext> ctx;
    std::unique_ptr<CopyOptionsStore> fileStore;
    Autostart autostart{dir.path() + QStringLiteral("/autostart")};
};

}  // namespace vonnel::test
