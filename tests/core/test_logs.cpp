// The failure record takes each entry at its end and never grows past its
// cap, so a peer that makes the program record a flood of failures costs a
// constant amount per entry and a bounded file.

#include "core/IniStore.h"
#include "core/Logs.h"
#include "platform/Clock.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vonnel;

namespace {

TEST(ErrorLog, EntriesAreReadLikeIniLinesAndTheLogStaysUnderItsCap)
{
    QTemporaryDir dir;
    Clock clock;
    Logs logs(dir.path() + QLatin1Char('/'), clock);
    logs.eData(QStringLiteral("<KEY> x"));
    logs.failure(QStringLiteral("cSendFileCheck"), QStringLiteral("Type mismatch"));
    logs.fatal(QStringLiteral("Segmentation fault"));
    const QString path = logs.errorLogPath();
    EXPECT_EQ(ReadIni(kSection, "eData 1", path), "<KEY> x");
    EXPECT_EQ(ReadIni(kSection, "1 cSendFileCheck", path), "Type mismatch");
    EXPECT_EQ(ReadIni(kSection, "Error 1", path), "Segmentation fault");

    const QString detail(120, QLatin1Char('d'));
    const int entries = 30000;  // about four megabytes of entries
    for (int i = 0; i < entries; ++i)
        logs.failure(QStringLiteral("SendFileCheck-Stray Frame"), detail + QString::number(i));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray all = f.readAll();
    EXPECT_LE(all.size(), Logs::kErrorLogCap);
    EXPECT_GT(all.size(), Logs::kErrorLogCap / 3);
    EXPECT_TRUE(all.startsWith("[Vonnel]\r\n"));
    // The newest entry is there and reads back; the oldest went first.
    const QString last = QString::number(entries + 1) + " SendFileCheck-Stray Frame";
    EXPECT_EQ(ReadIni(kSection, last, path), detail + QString::number(entries - 1));
    EXPECT_EQ(ReadIni(kSection, "1 cSendFileCheck", path), "");
    // Only whole lines are kept.
    for (const QByteArray& line : all.split('\n').mid(1, all.count('\n') - 1))
        EXPECT_TRUE(line.endsWith('\r') && line.contains('=')) << line.constData();
}

TEST(ErrorLog, AnEntryLargerThanTheCapIsCut)
{
    QTemporaryDir dir;
    Clock clock;
    Logs logs(dir.path() + QLatin1Char('/'), clock);
    logs.eData(QString(2 * Logs::kErrorLogCap, QLatin1Char('x')));
    logs.eData(QStringLiteral("after"));
    EXPECT_LE(QFile(logs.errorLogPath()).size(), Logs::kErrorLogCap);
    EXPECT_EQ(ReadIni(kSection, "eData 2", logs.errorLogPath()), "after");
}

}  // namespace
