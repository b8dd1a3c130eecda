// Session records: the remote shut-down ends the session on this side and
// leaves its record; the Save As forms.

#include "core/Cp1252.h"
#include "core/IniStore.h"
#include "shell/SessionRecords.h"
#include "support/Session.h"
#include "connection/Connection.h"
#include "connection/PrivateLink.h"
#include "wire/LiveTyping.h"
#include "wire/Receiver.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "platform/Winsock.h"

#include <QDir>
#include <QRegularExpression>
#include <QFile>
#include "connection/Connection.h"

#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

QString readText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return fromCp1252(file.readAll());
}

QStringList records(const QString& folder)
{
    QStringList out;
    for (const QString& n : QDir(folder).entryList({"*.txt"}, QDir::Files))
        if (QRegularExpression("^\\d{8}\\.txt$").match(n).hasMatch())
            out << n;
    return out;
}

TEST(SessionRecord, PeerShutDownEndsTheSessionAndWritesTheRecord)
{
    TestCopy copy(0, {{"SmartSave Folder", ""}, {"No SmartSave", "0"}, {"Connection Count", "4"}});
    ASSERT_TRUE(copy.start());
    QTcpSocket peer;
    acceptRawPeer(copy, peer);
    FrmMain& f = copy.frm();
    ASSERT_TRUE(f.session().IsConnected());
    f.session().PeerHostName = "buddy";

    peer.write("<MSG> first line </MSG>");
    ASSERT_TRUE(waitUntil([&] { return f.model().txtTextMsg.text().contains("first line"); }));
    peer.write("<MSG> second line </MSG>");
    ASSERT_TRUE(waitUntil([&] { return f.model().txtTextMsg.text().contains("second line"); }));
    const QDateTime before = QDateTime::currentDateTime();
    peer.write("^SD");
    ASSERT_TRUE(waitUntil([&] { return !f.session().IsConnected(); }));
    const QDateTime after = QDateTime::currentDateTime();

    EXPECT_EQ(f.session().winsock(0).State(), Winsock::sckListening);
    EXPECT_FALSE(f.session().RemoteResponded);
    EXPECT_TRUE(f.model().txtClient(0).text().endsWith("\r\n[  Closed  ]"));
    EXPECT_FALSE(f.model().txtClient(0).enabled());
    EXPECT_TRUE(f.model().controls.enabled(Control::mnuSave));
    EXPECT_TRUE(waitUntil([&] { return peer.state() != QAbstractSocket::ConnectedState; }));
    EXPECT_EQ(copy.get("Connection Count"), "5");

    const QStringList found = records(copy.appPath());
    ASSERT_EQ(found.size(), 1);
    const QStringList expected = {before.toString("MMddhhmm") + ".txt",
                                  after.toString("MMddhhmm") + ".txt"};
    EXPECT_TRUE(expected.contains(found[0])) << found[0].toStdString();
    const QString text = readText(copy.file(found[0]));
    // The date in the user's short form.
    const QString today = QLocale().toString(QDate::currentDate(), QLocale::ShortFormat);
    EXPECT_TRUE(text.startsWith("Vonnel Free " + today + " ")) << text.toStdString();
    const QStringList lines = text.split("\r\n");
    ASSERT_GE(lines.size(), 4);
    EXPECT_EQ(lines[1], "");
    EXPECT_TRUE(lines[2].startsWith("BUDDY ") && lines[2].endsWith(": first line"));
    EXPECT_TRUE(lines[3].startsWith("BUDDY ") && lines[3].endsWith(": second line"));
}

TEST(SessionRecord, SmartSaveHonoursTheSwitchAndTheFolder)
{
    TestCopy copy(0, {{"No SmartSave", "1"}, {"Connection Count", "0"}});
    ASSERT_TRUE(copy.start());
    FrmMain& f = copy.frm();
    f.model().txtTextMsg.setText("LINE\r\n");
    f.records().SmartSave();
    EXPECT_EQ(copy.get("Connection Count"), "1") << "counted even when saving is off";
    EXPECT_TRUE(records(copy.appPath()).isEmpty());

    QDir(copy.appPath()).mkdir("rec");
    copy.set("No SmartSave", "0");
    copy.set("SmartSave Folder", "  " + copy.appPath() + "rec  ");
    f.records().SmartSave();
    EXPECT_EQ(copy.get("Connection Count"), "2");
    const QStringList found = records(copy.appPath() + "rec");
    ASSERT_EQ(found.size(), 1);
    EXPECT_TRUE(readText(copy.appPath() + "rec/" + found[0]).endsWith("\r\n\r\nLINE\r\n"));

    // A folder that can't be written loses only the record.
    copy.set("SmartSave Folder", copy.appPath() + "missing/deeper");
    f.records().SmartSave();
    EXPECT_TRUE(copy.prompter().asked("Save Chat Session Error: "));
}

TEST(SessionRecord, SaveAsWritesTheChosenForm)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    FrmMain& f = copy.frm();
    f.model().txtTextMsg.setText("ME 1:00:00 PM: hi\r\n");
    f.model().txtServer.setText("local text");
    f.model().txtClient(0).setText("remote text");

    const QString msg = copy.appPath() + "msg";
    copy.prompter().addAnswers({"file2:" + msg});
    f.records().mnuSave_Click();
    const QString m = readText(msg + ".txt");
    EXPECT_TRUE(m.startsWith("Vonnel Free "));
    EXPECT_TRUE(m.endsWith("\r\n\r\nME 1:00:00 PM: hi\r\n"));

    const QString chat = copy.appPath() + "chat.txt";
    copy.prompter().addAnswers({"file3:" + chat});
    f.records().mnuSave_Click();
    const QString c = readText(chat);
    const QString stars = "*===============*";
    EXPECT_EQ(c.count(stars), 3);
    EXPECT_TRUE(c.contains("local text\r\n\r\n" + stars + "\r\nremote text"));

    const QString all = copy.appPath() + "all.txt";
    copy.prompter().addAnswers({"file1:" + all});
    f.records().mnuSave_Click();
    EXPECT_FALSE(QFile::exists(all));

    // An existing file is kept when the user says No.
    copy.prompter().addAnswers({"file2:" + msg + ".txt", "No"});
    f.model().txtTextMsg.setText("changed");
    f.records().mnuSave_Click();
    EXPECT_TRUE(copy.prompter().asked("is already exist."));
    EXPECT_EQ(readText(msg + ".txt"), m);
}

}  // namespace

namespace {

QString headerOf(const QString& folder)
{
    const QStringList found = records(folder);
    return found.size() == 1 ? readText(folder + found[0]).section("\r\n", 0, 0) : QString();
}

TEST(SessionRecord, OnlyAnOpenedSessionLeavesARecordAndOnlyOne)
{
    TestCopy copy(0, {{"SmartSave Folder", ""}, {"No SmartSave", "0"}, {"Connection Count", "0"}});
    ASSERT_TRUE(copy.start());
    FrmMain& f = copy.frm();
    // A call that never connected ends without a session.
    Q_EMIT f.session().sessionEnded();
    EXPECT_TRUE(records(copy.appPath()).isEmpty());
    EXPECT_EQ(copy.get("Connection Count"), "0");

    // A session whose end is reported twice, neither time with its end time.
    Q_EMIT f.session().sessionOpened();
    f.model().txtTextMsg.setText("ME 1:00:00 PM: hi\r\n");
    Q_EMIT f.session().sessionEnded();
    Q_EMIT f.session().sessionEnded();
    EXPECT_EQ(copy.get("Connection Count"), "1");
    const QString header = headerOf(copy.appPath());
    EXPECT_TRUE(QRegularExpression(" - \\d{1,2}:\\d\\d:\\d\\d [AP]M$").match(header).hasMatch())
        << header.toStdString();
}

TEST(SessionRecord, BothSidesStampTheEndAndKeepPlainLinesUnderEncryption)
{
    TestCopy a(0, {{"No SmartSave", "0"}});
    // The old wire between two copies: this one does not go private.
    TestCopy b(0, {{"No SmartSave", "0"}, {"Encrypted", "1"}, {"Private Sessions", "0"}});
    ASSERT_TRUE(QDir(a.appPath()).mkdir("rec") && QDir(b.appPath()).mkdir("rec"));
    a.set("SmartSave Folder", a.appPath() + "rec");
    b.set("SmartSave Folder", b.appPath() + "rec");
    ASSERT_TRUE(a.start());
    ASSERT_TRUE(b.start());
    ASSERT_TRUE(connectCopies(a, b));
    // b took the call with encryption on: its key went out then, and again
    // with its first key, right in front of its first typed frames.
    b.frm().typing().typeText("first secret line\r");
    ASSERT_TRUE(waitUntil([&] { return a.frm().model().txtTextMsg.text().contains(": first secret line"); }))
        << a.frm().model().txtTextMsg.text().toStdString();
    EXPECT_EQ(a.frm().model().txtClient(0).text(), "first secret line\r\n");
    a.frm().typing().typeText("reply\r");
    ASSERT_TRUE(waitUntil([&] { return b.frm().model().txtTextMsg.text().contains(": reply"); }));

    a.frm().connection().mnuDisconnect_Click();
    ASSERT_TRUE(waitUntil([&] { return !b.frm().session().IsConnected() && !a.frm().session().IsConnected(); }));
    ASSERT_TRUE(waitUntil([&] { return records(b.appPath() + "rec/").size() == 1; }));
    for (TestCopy* c : {&a, &b}) {
        const QString folder = c->appPath() + "rec/";
        ASSERT_EQ(records(folder).size(), 1) << c->appPath().toStdString();
        const QString text = readText(folder + records(folder)[0]);
        EXPECT_TRUE(QRegularExpression(" - \\d{1,2}:\\d\\d:\\d\\d [AP]M\r\n")
                        .match(text.section("\r\n", 0, 0) + "\r\n")
                        .hasMatch())
            << text.toStdString();
        EXPECT_TRUE(text.contains(": first secret line\r\n")) << text.toStdString();
        EXPECT_TRUE(text.contains(": reply\r\n"));
    }
}

}  // namespace

namespace {

TEST(SessionRecord, TheHeaderDateIsInTheUsersShortForm)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    const QLocale before;
    for (const auto& [language, country] : {std::pair{QLocale::German, QLocale::Germany},
                                            std::pair{QLocale::English, QLocale::UnitedKingdom}}) {
        QLocale::setDefault(QLocale(language, country));
        const QString date = QLocale().toString(QDate::currentDate(), QLocale::ShortFormat);
        EXPECT_TRUE(copy.frm().records().headerLine().startsWith("Vonnel Free " + date + " "))
            << copy.frm().records().headerLine().toStdString();
    }
    QLocale::setDefault(before);
}

// A private session's record says so in its first line, and whether this
// side verified the peer's key; the rest of the record is as always.
TEST(SessionRecord, APrivateSessionSaysSoInItsFirstLine)
{
    TestCopy a(0, {{"No SmartSave", "0"}});
    TestCopy b(0, {{"No SmartSave", "0"}});
    ASSERT_TRUE(QDir(a.appPath()).mkdir("rec") && QDir(b.appPath()).mkdir("rec"));
    a.set("SmartSave Folder", a.appPath() + "rec");
    b.set("SmartSave Folder", b.appPath() + "rec");
    ASSERT_TRUE(a.start() && b.start());
    ASSERT_TRUE(connectCopies(a, b));
    ASSERT_TRUE(waitUntil([&] {
        return a.frm().connection().privateLink().privacy() == Privacy::Private &&
               b.frm().connection().privateLink().privacy() == Privacy::Private;
    }));
    ASSERT_TRUE(a.frm().connection().privateLink().markVerified());
    b.frm().typing().typeText("a line\r");
    ASSERT_TRUE(waitUntil([&] { return a.frm().model().txtTextMsg.text().contains(": a line"); }));
    a.frm().connection().mnuDisconnect_Click();
    ASSERT_TRUE(waitUntil([&] { return records(b.appPath() + "rec/").size() == 1; }));
    ASSERT_TRUE(waitUntil([&] { return records(a.appPath() + "rec/").size() == 1; }));
    const QString first = readText(a.appPath() + "rec/" + records(a.appPath() + "rec/")[0]).section("\r\n", 0, 0);
    const QString second = readText(b.appPath() + "rec/" + records(b.appPath() + "rec/")[0]).section("\r\n", 0, 0);
    EXPECT_TRUE(first.endsWith("M [Private, verified]")) << first.toStdString();
    EXPECT_TRUE(second.endsWith("M [Private, not verified]")) << second.toStdString();
}

}  // namespace
