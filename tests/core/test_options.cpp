// The options without their window: what each number box becomes when it
// is left, the Advanced tab's defaults, Apply's order, and a file whose
// every key goes through load and Apply untouched.

#include "core/Logs.h"
#include "core/options/OptionsModel.h"
#include "core/options/OptionsRules.h"
#include "core/options/OptionsTable.h"
#include "core/OptionsBench.h"

#include <QSet>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

// A value for the row that no start or preset would give.
QString sample(const OptRow& row, int i)
{
    switch (row.kind) {
    case OptKind::Check:
    case OptKind::CheckOne:
        // Desktop Notification is on when absent; every other flag is off.
        return row.absent ? QStringLiteral("0") : QStringLiteral("1");
    case OptKind::Number:
        return QString::number(10 + i);
    case OptKind::Text:
        return QStringLiteral("text %1 of %2").arg(i).arg(QLatin1String(row.key));
    case OptKind::Thousands:
        return QStringLiteral("45000");
    case OptKind::Slider:
        return QString::number(60 + i);
    case OptKind::Colour:
        return QString::number(0x102030 + i);
    case OptKind::Choice:
        return QStringLiteral("2");
    case OptKind::FontStyle:
        return QStringLiteral("True");
    case OptKind::Ring:
        return QStringLiteral("bell%1.wav").arg(i);
    }
    return QString();
}

TEST(OptionsRules, EachNumberBoxKeepsItsRuleWhenLeft)
{
    struct Case { Opt box; const char* typed; const char* left; };
    const Case cases[] = {
        {Opt::txtBytePerSend, "9000", "8000"},
        {Opt::txtBytePerSend, "-7999", "7999"},
        {Opt::txtBytePerSend, "12.9", "12"},
        {Opt::txtBytePerSend, "abc", "0"},
        {Opt::txtEncryptTextLimit, "-40000", "32000"},
        {Opt::txtEncryptTextLimit, "31999", "31999"},
        {Opt::txtOverallTextLimit, "70000", "64000"},
        {Opt::txtOverallTextLimit, "-5", "5"},
        {Opt::txtMemLimit, "150", "99"},
        {Opt::txtMemLimit, "-5", "-5"},  // a ceiling only
        {Opt::txtMemLimit, "98.7", "98"},
        {Opt::txtTimeout, "-5", "5"},
        {Opt::txtTimeout, "0", "0"},
        {Opt::txtCaptTime, "-3", "3"},
        {Opt::txtCmlInterval, "-100", "100"},
        {Opt::txtCmlInterval, "99999", "99999"},  // no ceiling
        {Opt::txtOverflow, "-30", "30"},
        {Opt::txtPasteTextLimit, "-1.5", "1"},
        {Opt::txtSelfRepairCount, "7x", "7"},
        {Opt::txtSize, "-5", "-5"},  // no rule
        {Opt::txtAwayMsg, "-5", "-5"},
    };
    OptionsBench b;
    RecordingStore store;
    OptionsModel model(*b.ctx, store, b.autostart);
    for (const Case& c : cases) {
        model.setValue(c.box, QLatin1String(c.typed));
        EXPECT_EQ(model.value(c.box), QLatin1String(c.typed)) << "changed before it was left";
        model.leaveBox(c.box);
        EXPECT_EQ(model.value(c.box), QLatin1String(c.left)) << optName(c.box).toStdString() << " "
                                                              << c.typed;
    }
    EXPECT_TRUE(store.writes.isEmpty());
}

TEST(OptionsRules, PresetCaptionsAreCutAndFollowTheirMessage)
{
    OptionsBench b;
    RecordingStore store;
    store.values["Menu2"] = "Mine";
    OptionsModel model(*b.ctx, store, b.autostart);
    model.GetINISetting();
    // An empty caption follows the message as it is typed, cut at 20.
    for (const QString& typed : {QStringLiteral("H"), QStringLiteral("Hello"),
                                 QStringLiteral("Hello there, how are you today?")})
        model.setValue(Opt::txtMsg1, typed);
    EXPECT_EQ(model.value(Opt::txtMnu1), "Hello there, how are...");
    // A caption of the user's own stays when the message changes.
    model.setValue(Opt::txtMsg2, "Something else");
    EXPECT_EQ(model.value(Opt::txtMnu2), "Mine");
    model.setValue(Opt::txtMnu1, "Short");
    model.setValue(Opt::txtMsg1, "Another text");
    EXPECT_EQ(model.value(Opt::txtMnu1), "Short");
    // A long caption is cut as it is typed and again when left.
    model.setValue(Opt::txtMnu3, "abcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(model.value(Opt::txtMnu3), "abcdefghijklmnopqrst...");
    model.leaveBox(Opt::txtMnu3);
    EXPECT_EQ(model.value(Opt::txtMnu3), "abcdefghijklmnopqrst...");
    EXPECT_EQ(cutCaption(QString(20, 'x')), QString(20, 'x'));
}

TEST(OptionsDefaults, SetOnlyTheAdvancedFieldsAndCancelWritesNothing)
{
    OptionsBench b;
    // Every Advanced field away from its default, and others set too.
    const QList<QPair<QString, QString>> file = {
        {"Version Check", "1"}, {"Incomming Connection Timeout", "9"},
        {"Paste Text Limit", "111"}, {"Paste Encrypted Text Limit", "222"},
        {"Byte Per Send", "333"}, {"SndMaxSize", "7000"}, {"Overflow", "44"},
        {"Character Self Repair", "0"}, {"Repair Count Limit", "55"},
        {"Command Line Interval", "6666"}, {"Capture Time", "8"}, {"Text Limit", "777"},
        {"No Resolve To Connect", "1"}, {"Memory Limit", "42"}, {"Confirm Exit", "1"}};
    for (const auto& [k, v] : file)
        b.set(k, v);
    const QByteArray before = b.iniBytes();
    auto model = b.fileModel();
    model->GetINISetting();
    model->cmdDefault_Click();
    const QList<QPair<Opt, QString>> expected = {
        {Opt::chkVerChk, "0"}, {Opt::txtTimeout, "2"}, {Opt::txtPasteTextLimit, "5000"},
        {Opt::txtEncryptTextLimit, "2500"}, {Opt::txtBytePerSend, "3200"},
        {Opt::txtSndFileSize, "50"}, {Opt::txtOverflow, "30"}, {Opt::chkSelfRepair, "1"},
        {Opt::txtSelfRepairCount, "100"}, {Opt::txtCmlInterval, "5000"}, {Opt::txtCaptTime, "4"},
        {Opt::txtOverallTextLimit, "64000"}};
    for (const auto& [box, v] : expected)
        EXPECT_EQ(model->value(box), v) << optName(box).toStdString();
    // The rest of the Advanced tab and other tabs keep the file's values.
    EXPECT_TRUE(model->checked(Opt::chkNoResolve));
    EXPECT_EQ(model->value(Opt::txtMemLimit), "42");
    EXPECT_TRUE(model->checked(Opt::chkExitConfirm));
    // Cancel: the model goes away unapplied and the file is as it was.
    model.reset();
    EXPECT_EQ(b.iniBytes(), before);

    // Applied, they are written; SndMaxSize in units.
    model = b.fileModel();
    model->GetINISetting();
    model->cmdDefault_Click();
    model->cmdApply_Click();
    EXPECT_EQ(b.get("SndMaxSize"), "50000");
    EXPECT_EQ(b.get("Byte Per Send"), "3200");
    EXPECT_EQ(b.get("Memory Limit"), "42");
}

TEST(OptionsApply, WritesEveryKeyOnceInPageOrderThenTheRings)
{
    OptionsBench b;
    RecordingStore store;
    int i = 0;
    for (const OptRow& row : optionRows())
        store.values[QLatin1String(row.loadKey ? row.loadKey : row.key)] = sample(row, i++);
    store.values["Font Italic"] = "False";
    OptionsModel model(*b.ctx, store, b.autostart);
    int applied = 0;
    QObject::connect(&model, &OptionsModel::applied, [&] { ++applied; });
    model.GetINISetting();
    model.cmdApply_Click();
    EXPECT_EQ(applied, 1);

    QStringList expected;  // the pages in the order shown, rings last
    QStringList rings;
    for (const OptionsTab& tab : optionsTabs()) {
        for (const OptRow& row : optionRows()) {
            if (row.page != tab.page)
                continue;
            QStringList& to = row.kind == OptKind::Ring ? rings : expected;
            to << QLatin1String(row.key);
            if (row.key2)
                to << QLatin1String(row.key2);
        }
    }
    EXPECT_EQ(store.writes, expected + rings);
    EXPECT_EQ(QSet<QString>(store.writes.begin(), store.writes.end()).size(), store.writes.size());
    EXPECT_EQ(store.writes.first(), "Load At Startup");
    EXPECT_EQ(store.writes.mid(store.writes.size() - 6),
              QStringList({"Ring", "Ring1", "Ring2", "Ring3", "Ring4", "Ring5"}));
    // A few landmarks of the page order, spelt out.
    const QStringList landmarks = {"Confirm Exit", "Font", "Disable Sound", "Settings-Transparent",
                                   "Menu1", "Save Menu Off", "No SmartSave", "Web Check",
                                   "Speaker", "Encrypted", "Byte Per Send", "Ring"};
    for (int k = 1; k < landmarks.size(); ++k)
        EXPECT_LT(store.writes.indexOf(landmarks[k - 1]), store.writes.indexOf(landmarks[k]))
            << landmarks[k].toStdString();
    EXPECT_EQ(store.values["SndMaxSize"], "45000");
    EXPECT_EQ(store.values["Font Bold"], "True");
    EXPECT_EQ(store.values["Font Italic"], "False");
    // Only the dialog's own key of the Options entry is written.
    EXPECT_TRUE(store.writes.contains("Option Menu Off"));
    EXPECT_FALSE(store.writes.contains("Options Menu Off"));
}

TEST(OptionsApply, EveryKeyRoundTripsThroughLoadAndApplyUnchanged)
{
    OptionsBench b;
    int i = 0;
    for (const OptRow& row : optionRows()) {
        const QString v = sample(row, i++);
        b.set(QLatin1String(row.key), v);
        if (row.loadKey)
            b.set(QLatin1String(row.loadKey), v);
        if (row.key2)
            b.set(QLatin1String(row.key2), v);
    }
    b.set("Font Italic", "False");
    const QByteArray before = b.iniBytes();
    auto model = b.fileModel();
    model->GetINISetting();
    EXPECT_EQ(model->value(Opt::txtSndFileSize), "45");
    EXPECT_EQ(model->value(Opt::txtStyle), "1");
    EXPECT_FALSE(model->checked(Opt::chkDesktopNotify));
    model->cmdApply_Click();
    EXPECT_EQ(b.iniBytes(), before);
    // Load At Startup was on: the entry is there.
    EXPECT_TRUE(b.autostart.exists());
}

TEST(OptionsApply, KeptMismatchesOfLoadAndApply)
{
    OptionsBench b;
    RecordingStore store;
    // The speaker boxes open from keys nothing writes, and go to others.
    store.values["Disable Local Speaker"] = "1";
    store.values["Local Speaker Off"] = "0";
    store.values["Remote Speaker Off"] = "1";
    // The sound limit is shown in whole thousands.
    store.values["SndMaxSize"] = "45678";
    OptionsModel model(*b.ctx, store, b.autostart);
    model.GetINISetting();
    EXPECT_TRUE(model.checked(Opt::chkDisableLocalTTS));
    EXPECT_FALSE(model.checked(Opt::chkDisableRemoteTTS));
    EXPECT_EQ(model.value(Opt::txtSndFileSize), "45");
    // An absent transparency is a solid window.
    EXPECT_EQ(model.value(Opt::slidTrans), "255");
    // Desktop notifications are on unless switched off.
    EXPECT_TRUE(model.checked(Opt::chkDesktopNotify));
    model.cmdApply_Click();
    EXPECT_EQ(store.values["Local Speaker Off"], "1");
    EXPECT_EQ(store.values["Remote Speaker Off"], "0");
    EXPECT_EQ(store.values["SndMaxSize"], "45000");
    EXPECT_EQ(store.values["Desktop Notification"], "1");
    EXPECT_FALSE(store.writes.contains("Disable Local Speaker"));
}

TEST(OptionsApply, LoadAtStartupWritesAndRemovesTheAutostartEntry)
{
    OptionsBench b;
    RecordingStore store;
    OptionsModel model(*b.ctx, store, b.autostart);
    model.programPath = "/opt/vonnel dir/vonnel";
    model.programArgs = {"--app-path", b.app};
    model.GetINISetting();
    model.setChecked(Opt::chkLoadAtStartUp, true);
    model.cmdApply_Click();
    ASSERT_TRUE(b.autostart.exists());
    const QByteArray entry = readFile(b.autostart.entryPath());
    EXPECT_TRUE(entry.contains("Exec=\"/opt/vonnel dir/vonnel\" --app-path "));
    EXPECT_EQ(store.values["Load At Startup"], "1");
    model.setChecked(Opt::chkLoadAtStartUp, false);
    model.cmdApply_Click();
    EXPECT_FALSE(b.autostart.exists());
    EXPECT_EQ(store.values["Load At Startup"], "0");
}

TEST(OptionsButtons, LogHelpManualEditAutoConnectAndRecentAddresses)
{
    OptionsBench b;
    auto model = b.fileModel();
    model->GetINISetting();

    model->cmdViewLog_Click();
    EXPECT_TRUE(b.prompter.asked("No Session Log File"));
    EXPECT_TRUE(b.desktop.opened.isEmpty());
    const QString log = b.ctx->logs().sessionLogPath();
    WriteIni(kSection, "1/5/2024 12:00:00 - ", "> Connection with 127.0.0.1", log);
    model->cmdViewLog_Click();
    EXPECT_EQ(b.desktop.opened, QStringList{log});

    b.prompter.addAnswers({"No", "Yes"});
    model->cmdClearLog_Click();
    EXPECT_TRUE(QFile::exists(log));
    model->cmdClearLog_Click();
    EXPECT_FALSE(QFile::exists(log));
    EXPECT_EQ(b.prompter.records().last().title, "Clear Session Log");
    EXPECT_EQ(b.prompter.records().last().text, "Are you sure you want to clear connection log?");

    b.desktop.opened.clear();
    b.prompter.addAnswers({"No", "Yes"});
    model->cmdManualEdit_Click();
    EXPECT_TRUE(b.desktop.opened.isEmpty());
    model->cmdManualEdit_Click();
    EXPECT_EQ(b.desktop.opened, QStringList{b.ini()});
    EXPECT_EQ(b.prompter.records().last().title, "Warning");
    EXPECT_EQ(b.prompter.records().last().text,
              "Warning: Any improper setting in vonnel.ini may prevent Vonnel from operating "
              "properly.\r\nContinue?");

    b.desktop.opened.clear();
    for (const OptionsTab& tab : optionsTabs())
        model->cmdHelp_Click(tab.page);
    ASSERT_EQ(b.desktop.opened.size(), kOptionsPageCount);
    EXPECT_EQ(b.desktop.opened.first(), b.app + "help/general_setting.htm");
    EXPECT_EQ(b.desktop.opened[int(OptionsPage::Voice)], b.app + "help/tts_setting.htm");
    EXPECT_EQ(b.desktop.opened.last(), b.app + "help/advanced_setting.htm");

    // AutoConnect is written at once from its box, nothing else is.
    b.set("AutoConnect", "0");
    b.set("Confirm Exit", "0");
    model->setChecked(Opt::chkAutoCheck, true);
    model->setChecked(Opt::chkExitConfirm, true);
    model->cmdAutoConnect_Click();
    EXPECT_EQ(b.get("AutoConnect"), "1");
    EXPECT_EQ(b.get("Confirm Exit"), "0");

    b.set("Previous IP Address", "127.0.0.9");
    b.set("Previous IP Address 0", "127.0.0.1");
    b.set("Previous IP Address 1", "localhost");
    b.prompter.addAnswers({"Yes"});
    model->cmdClearName_Click();
    for (const char* k : {"Previous IP Address", "Previous IP Address 0", "Previous IP Address 1"})
        EXPECT_EQ(b.get(k), "") << k;
}

TEST(OptionsTable, TabsAndControlsAreWhereTheyBelong)
{
    ASSERT_EQ(optionsTabs().size(), size_t(kOptionsPageCount));
    for (int p = 0; p < kOptionsPageCount; ++p)
        EXPECT_EQ(int(optionsTabs()[size_t(p)].page), p);
    // Every control has one row; rows run page by page, each in a frame of its tab.
    QSet<int> seen;
    int lastPage = 0;
    for (const OptRow& row : optionRows()) {
        EXPECT_FALSE(seen.contains(int(row.control))) << row.name;
        seen.insert(int(row.control));
        EXPECT_EQ(&optionRow(row.control), &row);
        EXPECT_GE(int(row.page), lastPage) << row.name;
        lastPage = int(row.page);
        EXPECT_TRUE(optionsTab(row.page).frames.contains(QLatin1String(row.frame))) << row.name;
    }
    EXPECT_EQ(seen.size(), kOptCount);
    // Every control the Advanced defaults name is on the Advanced tab.
    for (const auto& [box, v] : advancedDefaults())
        EXPECT_EQ(optionRow(box).page, OptionsPage::Advanced) << optName(box).toStdString();
}

}  // namespace
}  // namespace vonnel::test
