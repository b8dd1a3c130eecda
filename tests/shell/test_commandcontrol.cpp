#include "core/IniStore.h"
#include "shell/CommandControl.h"
#include "support/Session.h"
#include "wire/LiveTyping.h"
#include "wire/Receiver.h"
#include "wire/TypingPeer.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "platform/Winsock.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

void handOver(TestCopy& copy, const QString& command)
{
    WriteIni(kSection, "Command", command, copy.file("Command.ini"));
}

TEST(CommandIni, InputIsPastedAndTheFileDeleted)
{
    TypingPeer t;
    t.copy.clipboard().setText("mine");
    handOver(t.copy, "Input hello");
    t.frm().commands().tTimer2_Timer();
    EXPECT_EQ(t.wire(21), "<Paste> hello</Paste>");
    EXPECT_FALSE(QFile::exists(t.copy.file("Command.ini")));
    EXPECT_EQ(t.frm().model().txtServer.text(), "hello");
    EXPECT_EQ(t.copy.clipboard().text(), "mine");
}

TEST(CommandIni, PolledOnTheCommandTimer)
{
    TypingPeer t(Settings{{"Command Line Interval", "1000"}});
    handOver(t.copy, "input Two Words");
    ASSERT_TRUE(waitUntil([&] { return !QFile::exists(t.copy.file("Command.ini")); }, 4000));
    EXPECT_EQ(t.wire(25), "<Paste> Two Words</Paste>");
}

TEST(CommandIni, EmptyCommandLeavesTheFile)
{
    TypingPeer t({}, false);
    WriteIni(kSection, "Other", "1", t.copy.file("Command.ini"));
    t.frm().commands().tTimer2_Timer();
    EXPECT_TRUE(QFile::exists(t.copy.file("Command.ini")));
}

TEST(CommandIni, ExitInAnyCaseEndsTheCopy)
{
    for (const char* command : {"Cmd Exit", "CMD EXIT", "cmd exit"}) {
        SCOPED_TRACE(command);
        TypingPeer t({}, false);
        handOver(t.copy, command);
        t.frm().commands().tTimer2_Timer();
        EXPECT_TRUE(t.frm().ended());
    }
}

TEST(CommandIni, UnknownCommandDoesNothing)
{
    TypingPeer t;
    t.frm().model().txtServer.setText("before");
    handOver(t.copy, "Cmd Unknown");
    t.frm().commands().tTimer2_Timer();
    EXPECT_FALSE(QFile::exists(t.copy.file("Command.ini")));
    EXPECT_FALSE(t.frm().ended());
    EXPECT_TRUE(t.copy.prompter().records().isEmpty());
    EXPECT_EQ(t.frm().model().txtServer.text(), "before");
    EXPECT_EQ(t.frm().session().winsock(0).State(), Winsock::sckConnected);
    EXPECT_EQ(t.wire(), "");
}

TEST(CommandIni, HelpSwitchShowsTheHelpAndEnds)
{
    TypingPeer t({}, false);
    handOver(t.copy, "/x");
    t.frm().commands().tTimer2_Timer();
    EXPECT_TRUE(t.copy.prompter().asked("Vonnel.exe Key <Enter / Space / Backspace>"));
    EXPECT_TRUE(t.frm().ended());
    // What reaches the interpreter after a help switch is "NULL": nothing.
    TypingPeer u({}, false);
    int calls = 0;
    u.frm().commands().connectToAddress = [&](const QString&, const QString&) { ++calls; };
    u.frm().commands().runCommand("NULL");
    EXPECT_EQ(calls, 0);
    EXPECT_FALSE(u.frm().ended());
}

TEST(CommandIni, KeysRunThroughPasteAndTheKeyRoutines)
{
    TypingPeer t;
    t.frm().model().txtServer.setText("ab");
    CommandControl& c = t.frm().commands();
    c.runCommand("Key Space");
    EXPECT_EQ(t.wire(), "<Paste>  </Paste>^SPC3#SPC");
    c.runCommand("Key Backspace");
    EXPECT_EQ(t.frm().model().txtServer.text(), "ab");
    EXPECT_EQ(t.wire(), "^BK2#BK");
    c.runCommand("key ENTER");
    // The key's release is a frame of its own, as after a typed Return.
    EXPECT_EQ(t.wire(), "^RETURN2#RETURN<SPK> ab </SPK><MSG> ab </MSG>" + QByteArray("<KEY> ") + '\0' +
                            " <:KEY>4</KEY>");
    EXPECT_EQ(t.frm().model().txtServer.text(), "ab\r\n");
    pump(400);
    EXPECT_EQ(t.wire(), "") << "nothing follows it";
}

// Two copies, each with a line typed: one finishes it with the Return key,
// the other with the command. The other side of each receives the same
// bytes, and both panes end up the same.
TEST(CommandIni, KeyEnterSendsWhatTheReturnKeySends)
{
    struct Pair {
        TestCopy a, b;
        QByteArray arrived;  // every read b took, in order
    };
    auto run = [](Pair& p, const std::function<void()>& finish) {
        ASSERT_TRUE(p.a.start() && p.b.start());
        ASSERT_TRUE(connectCopies(p.a, p.b));
        Receiver& r = p.b.frm().receiver();
        auto join = r.joinArrival;
        r.joinArrival = [&p, join](const QByteArray& bytes, QList<QByteArray>& parts) {
            p.arrived += bytes;
            return join ? join(bytes, parts) : false;
        };
        p.a.frm().typing().typeText("good day");
        ASSERT_TRUE(waitUntil([&] { return p.b.frm().model().txtClient(0).text() == "good day"; }));
        pump(300);
        p.arrived.clear();
        finish();
        ASSERT_TRUE(waitUntil([&] { return p.b.frm().model().txtClient(0).text() == "good day\r\n"; }));
        pump(400);  // anything sent after the line, a repeat of the pane say
    };
    Pair keyboard, command;
    run(keyboard, [&] { keyboard.a.frm().typing().typeText("\r"); });
    run(command, [&] { command.a.frm().commands().runCommand("Key Enter"); });
    EXPECT_EQ(keyboard.arrived, "^RETURN8#RETURN<SPK> good day </SPK><MSG> good day </MSG>" +
                                    QByteArray("<KEY> ") + '\0' + " <:KEY>10</KEY>");
    EXPECT_EQ(command.arrived, keyboard.arrived);
    for (const char* extra : {"^Clr", "^ff", "<SPKSET>", "<Paste>"})
        EXPECT_FALSE(command.arrived.contains(extra)) << extra;
    EXPECT_EQ(command.a.frm().model().txtServer.text(), "good day\r\n");
    EXPECT_EQ(command.b.frm().model().txtClient(0).text(), command.a.frm().model().txtServer.text());
    EXPECT_TRUE(command.b.frm().model().txtTextMsg.text().contains(": good day"));
}

TEST(CommandIni, CmdWordsReachTheirRoutines)
{
    TypingPeer t;
    CommandControl& c = t.frm().commands();
    int mutes = 0;
    c.mnuMute_Click = [&] { ++mutes; };
    t.frm().model().txtServer.setText("x");
    c.runCommand("Cmd ClearScreen");
    EXPECT_EQ(t.wire(), "^Clr");
    EXPECT_EQ(t.frm().model().txtServer.text(), "");
    c.runCommand("Cmd Override");
    EXPECT_TRUE(t.frm().model().controls.checked(Control::mnuOverride));
    c.runCommand("cmd mute");
    EXPECT_EQ(mutes, 1);
    c.runCommand("Cmd Refresh");
    EXPECT_EQ(t.wire(), "^reFresh");
    // Send File: its Open dialog is answered like any other.
    const QString path = t.copy.file("batch.txt");
    {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("from a batch file");
    }
    t.copy.prompter().addAnswers({"file:" + path});
    c.runCommand("Cmd SendFile");
    const QByteArray request = "%%File Sending Request%%" + path.toUtf8().replace('/', '\\') +
                               ">17*fs*";
    EXPECT_EQ(t.wire(request.size()), request);
    EXPECT_EQ(t.copy.prompter().records().last().kind, "file");
}

TEST(CommandIni, AddressGoesToTheConnectKeysAndConnects)
{
    struct Case { QString given, host, portKey; };
    const QList<Case> cases = {
        {"192.168.0.1", "192.168.0.1", "2500"},
        {"10.0.0.5:2600", "10.0.0.5", "2600"},
        {"somehost", "somehost", "2500"},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.given.toStdString());
        TypingPeer t({}, false);
        QStringList calls;
        t.frm().commands().connectToAddress = [&](const QString& h, const QString& p) {
            calls << h + '|' + p;
        };
        handOver(t.copy, k.given);
        t.frm().commands().tTimer2_Timer();
        EXPECT_EQ(t.copy.get("Previous IP Address"), k.host);
        EXPECT_EQ(t.copy.get("Connect Port"), k.portKey);
        ASSERT_EQ(calls.size(), 1);
        EXPECT_EQ(calls[0], k.host + '|' + (k.portKey == "2500" ? QString() : k.portKey));
    }
    // Not while a session is up.
    TypingPeer up;
    int calls = 0;
    up.frm().commands().connectToAddress = [&](const QString&, const QString&) { ++calls; };
    up.frm().commands().runCommand("10.1.1.1:");
    EXPECT_EQ(calls, 0);
}

TEST(CommandIni, StartCommandIsObeyed)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start("Input from the start"));
    EXPECT_EQ(copy.frm().model().txtServer.text(), "from the start");
}

TEST(CommandIni, ParseAddsTheColonToABareHost)
{
    ScriptedPrompter p;
    EXPECT_EQ(parseCommandLine("192.168.0.1", p, nullptr), "192.168.0.1:");
    EXPECT_EQ(parseCommandLine("host:99", p, nullptr), "host:99");
    EXPECT_EQ(parseCommandLine("", p, nullptr), "NULL");
    EXPECT_EQ(parseCommandLine("Input hello", p, nullptr), "Input hello");
    EXPECT_EQ(parseCommandLine("Cmd Exit", p, nullptr), "Cmd Exit");
    EXPECT_TRUE(p.records().isEmpty());
}

}  // namespace
