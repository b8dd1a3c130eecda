// The remote pane is always right: random typing scripts, played on one
// side, leave the other side's remote pane equal to the local pane. Against
// a second copy of the program, and against a peer that types by the
// sending rules alone. A failing script is cut down and printed.

#include "support/Session.h"
#include "wire/LiveTyping.h"
#include "wire/Receiver.h"
#include "wire/RemotePane.h"
#include "wire/RulesPeer.h"
#include "wire/TypingScript.h"
#include "connection/Session.h"
#include "access/Encryption.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

// Scripts per run; VONNEL_PROPERTY_SCRIPTS raises it for a longer search.
int scriptCount(int normal)
{
    const int n = qEnvironmentVariableIntValue("VONNEL_PROPERTY_SCRIPTS");
    return n > 0 ? n : normal;
}

QString visible(QString s)
{
    s.replace(QLatin1String("\r\n"), QLatin1String("\\r\\n"));
    return QLatin1Char('"') + s + QLatin1Char('"');
}

void turn()
{
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

// True once same() has held over a few turns of the event loop with
// nothing left to send.
bool settle(const std::function<bool()>& quiet, const std::function<bool()>& same, int ms = 1500)
{
    QElapsedTimer t;
    t.start();
    int held = 0;
    while (t.elapsed() < ms) {
        turn();
        held = quiet() && same() ? held + 1 : 0;
        if (held >= 3)
            return true;
    }
    return false;
}

QString keyText(int code)
{
    switch (code) {
    case kBack: return QStringLiteral("\b");
    case kReturn: return QStringLiteral("\r");
    case kDelete: return QString();
    default: return QString(QChar(code));
    }
}

// Runs scripts until one fails, then cuts it down and reports it.
void checkProperty(const char* what, int count, quint32 seed, const ScriptOptions& options,
                   const std::function<std::optional<QString>(const Script&)>& run)
{
    ScriptMaker maker(seed);
    QElapsedTimer t;
    t.start();
    int steps = 0;
    for (int i = 0; i < count; ++i) {
        const Script script = maker.make(options);
        steps += int(script.size());
        const std::optional<QString> failure = run(script);
        if (!failure)
            continue;
        const Script small = shrink(script, run);
        const std::optional<QString> smallFailure = run(small);
        ADD_FAILURE() << what << ": script " << i << " of seed " << seed << " fails\n  script: "
                      << describe(script).toStdString() << "\n  " << failure->toStdString()
                      << "\n  shrunk: " << describe(small).toStdString() << "\n  "
                      << smallFailure.value_or(QStringLiteral("(passes alone)")).toStdString();
        return;
    }
    std::printf("[ property ] %s: %d scripts, %d steps, %lld ms\n", what, count, steps,
                static_cast<long long>(t.elapsed()));
}

// --- two copies -----------------------------------------------------------------------

class TwoCopies {
public:
    TwoCopies(bool encrypted, bool repair)
        : a(0, {{"Encrypted", encrypted ? "1" : "0"}}), b(0, {{"Encrypted", "0"}})
    {
        up = a.start() && b.start() && connectCopies(a, b);
        if (!up)
            return;
        a.frm().typing().followUpDelayMs = 1;
        b.frm().receiver().selfRepair = repair;
        b.frm().receiver().repairCountLimit = 1000;
    }

    std::optional<QString> run(const Script& script, bool noRepairs)
    {
        LiveTyping& t = a.frm().typing();
        reset();
        for (const Step& s : script) {
            apply(t, s);
            turn();
        }
        const bool ok = settle([&] { return !t.followUpPending(); },
                               [&] { return remote() == a.frm().model().txtServer.text(); });
        if (!ok)
            return QStringLiteral("local %1, remote %2")
                .arg(visible(a.frm().model().txtServer.text()), visible(remote()));
        RemotePane& rp = b.frm().receiver().remotePane();
        if (noRepairs && (rp.repairCount > 0 || rp.repairPending()))
            return QStringLiteral("a repair was asked (%1), pane %2")
                .arg(rp.repairCount)
                .arg(visible(remote()));
        return std::nullopt;
    }

    QString remote() { return b.frm().model().txtClient(0).text(); }

    TestCopy a;
    TestCopy b;
    bool up = false;

private:
    void reset()
    {
        a.frm().typing().mnuClrScr_Click();
        settle([] { return true; }, [&] { return remote().isEmpty(); });
        b.frm().receiver().remotePane().beginSession();
        a.frm().typing().followUpsSent = 0;
    }

    void apply(LiveTyping& t, const Step& s)
    {
        TextPane& pane = a.frm().model().txtServer;
        switch (s.kind) {
        case Step::Key:
            t.keyboardPress(s.keys[0], 0, keyText(s.keys[0]));
            t.keyboardRelease(s.keys[0], 0);
            break;
        case Step::Held:
            for (int i = 0; i < s.count; ++i)
                t.keyboardPress(s.keys[0], 0, keyText(s.keys[0]));
            t.keyboardRelease(s.keys[0], 0);
            break;
        case Step::Burst:
            for (int k : s.keys)
                t.keyboardPress(k, 0, keyText(k));
            for (int k : s.keys)
                t.keyboardRelease(k, 0);
            break;
        case Step::Caret:
            pane.setSelStart(positionIn(pane.text(), s.at));
            break;
        case Step::Select: {
            const int from = positionIn(pane.text(), s.at);
            const int to = positionIn(pane.text(), qMin(1000, s.at + s.span));
            pane.setSelection(from, to - from);
            break;
        }
        case Step::Paste:
            a.clipboard().setText(s.text);
            t.mnuEditPaste_Click();
            break;
        }
    }
};

TEST(LiveTextProperty, TwoCopiesRemotePaneEqualsLocalPane)
{
    for (const bool encrypted : {false, true}) {
        SCOPED_TRACE(encrypted ? "encrypted" : "plain");
        TwoCopies c(encrypted, false);
        ASSERT_TRUE(c.up);
        checkProperty(encrypted ? "two copies, encrypted" : "two copies, plain",
                      scriptCount(encrypted ? 300 : 1500), encrypted ? 7 : 3, ScriptOptions{},
                      [&](const Script& s) { return c.run(s, false); });
        if (encrypted)
            EXPECT_TRUE(c.b.frm().encryption().remoteEncrypted);
        EXPECT_EQ(c.b.frm().receiver().remotePane().repairCount, 0);
    }
}

TEST(LiveTextProperty, TypingAtTheEndNeverAsksForARepair)
{
    TwoCopies c(false, true);
    ASSERT_TRUE(c.up);
    ScriptOptions options;
    options.onlyAtEnd = true;
    checkProperty("two copies, self-repair on, typing at the end", scriptCount(800), 11,
                  options, [&](const Script& s) { return c.run(s, true); });
    EXPECT_FALSE(c.a.frm().receiver().refreshAnswered) << "no \"^reFresh\" reached the sender";
}

// --- a peer that types by the rules ------------------------------------------------------

class RulesSession {
public:
    RulesSession(const QString& key, bool repair)
    {
        up = copy.start();
        if (!up)
            return;
        acceptRawPeer(copy, socket);
        readFor(socket, 30);
        up = copy.frm().session().IsConnected();
        copy.frm().receiver().selfRepair = repair;
        copy.frm().receiver().repairCountLimit = 1000;
        copy.frm().receiver().remotePane().repairDelayMs = 20;
        peer.key = key;
        peer.write = [this](const QByteArray& frame) {
            socket.write(frame);
            socket.flush();
        };
    }

    std::optional<QString> run(const Script& script)
    {
        peer.text.clear();
        peer.write("^Clr");
        settle([] { return true; }, [&] { return remote().isEmpty(); });
        copy.frm().receiver().remotePane().beginSession();
        for (const Step& s : script) {
            apply(s);
            turn();
            peer.received(socket.readAll());
        }
        const bool ok = settle(
            [&] {
                peer.received(socket.readAll());
                return !copy.frm().receiver().remotePane().repairPending();
            },
            [&] { return remote() == peer.text; }, 3000);
        if (!ok)
            return QStringLiteral("local %1, remote %2 (repairs %3)")
                .arg(visible(peer.text), visible(remote()))
                .arg(copy.frm().receiver().remotePane().repairCount);
        return std::nullopt;
    }

    QString remote() { return copy.frm().model().txtClient(0).text(); }

    TestCopy copy;
    QTcpSocket socket;
    RulesPeer peer;
    bool up = false;

private:
    void apply(const Step& s)
    {
        switch (s.kind) {
        case Step::Key:
            peer.press(s.keys[0], keyText(s.keys[0]));
            peer.release(s.keys[0]);
            break;
        case Step::Held:
            for (int i = 0; i < s.count; ++i)
                peer.press(s.keys[0], keyText(s.keys[0]));
            peer.release(s.keys[0]);
            break;
        case Step::Burst:
            for (int k : s.keys)
                peer.press(k, keyText(k));
            for (int k : s.keys)
                peer.release(k);
            break;
        case Step::Caret:
            peer.caret = positionIn(peer.text, s.at);
            peer.selection = 0;
            break;
        case Step::Select: {
            peer.caret = positionIn(peer.text, s.at);
            peer.selection = positionIn(peer.text, qMin(1000, s.at + s.span)) - peer.caret;
            break;
        }
        case Step::Paste:
            peer.paste(s.text);
            break;
        }
    }
};

TEST(LiveTextProperty, APeerTypingByTheRulesIsShownAsItTypes)
{
    for (const QString key : {QString(), QStringLiteral("04:05 PM")}) {
        SCOPED_TRACE(key.isEmpty() ? "plain" : "encrypted");
        RulesSession r(key, false);
        ASSERT_TRUE(r.up);
        // A deletion between letters of one burst is beyond what the rules
        // can say (its number is no length); our sender follows it with its
        // whole text, a peer of the rules alone leaves it to the repair.
        ScriptOptions options;
        options.burstDeletions = false;
        checkProperty(key.isEmpty() ? "rules peer, plain" : "rules peer, encrypted",
                      scriptCount(800), key.isEmpty() ? 5 : 13, options,
                      [&](const Script& s) { return r.run(s); });
        EXPECT_EQ(r.copy.frm().receiver().remotePane().repairCount, 0);
    }
}

}  // namespace
