#include "FakePrompter.h"
#include "links/Links.h"
#include "links/UrlHistory.h"
#include "links/UrlScan.h"

#include <QSet>
#include <gtest/gtest.h>

using namespace vonnel;

namespace {

// One copy's surroundings: settings, session state, the wire and the window.
struct Harness {
    QSet<QString> flagsOn;
    bool connected = true;
    int paneLength = 0;
    int urlScanned = -1;
    QStringList events;  // history and wire in the order they happened
    QStringList sent;
    QList<bool> shown;
    QList<QUrl> opened;
    test::FakePrompter prompter;
    UrlHistory history;
    Links links;

    Harness() : links(seams(), history)
    {
        QObject::connect(&history, &UrlHistory::listChanged, [this] {
            events << QStringLiteral("history ") + history.lstURL().value(history.count() - 1);
        });
    }

    LinkSeams seams()
    {
        LinkSeams s;
        s.settingFlag = [this](const QString& key) { return flagsOn.contains(key); };
        s.isConnected = [this] { return connected; };
        s.xSendData = [this](const QString& frame) {
            sent << frame;
            events << QStringLiteral("sent ") + frame;
        };
        s.localPaneLength = [this] { return paneLength; };
        s.setUrlScanned = [this](int n) { urlScanned = n; };
        s.showHistory = [this](bool focusBack) { shown << focusBack; };
        s.openUrl = [this](const QUrl& u) {
            opened << u;
            return true;
        };
        s.prompter = &prompter;
        return s;
    }
};

}  // namespace

TEST(LinkScan, TypedAddressGoesToHistoryThenToThePeer)
{
    Harness h;
    h.paneLength = 24;
    h.flagsOn = {"Show URL History"};
    h.links.scanLocalText("see www.example.org ");
    EXPECT_EQ(h.sent, QStringList{"<URL> www.example.org </URL>"});
    EXPECT_EQ(h.history.lstURL(), QStringList{"www.example.org"});
    EXPECT_EQ(h.events, (QStringList{"history www.example.org", "sent <URL> www.example.org </URL>"}));
    EXPECT_EQ(h.urlScanned, 24);
    EXPECT_EQ(h.shown, QList<bool>{true}) << "shown, with the focus back on the typing pane";
}

TEST(LinkScan, PastedTextWithThreeAddressesSendsThree)
{
    Harness h;
    h.links.scanLocalText("a http://one.example, www.two.example\r\nand joe@three.example.");
    EXPECT_EQ(h.sent, (QStringList{"<URL> http://one.example </URL>", "<URL> www.two.example </URL>",
                                   "<URL> joe@three.example. </URL>"}));
    EXPECT_EQ(h.history.count(), 3);
    EXPECT_TRUE(h.shown.isEmpty()) << "Show URL History is off";
}

TEST(LinkScan, SwitchesAndSessionStateDecideWhereAddressesGo)
{
    Harness off;
    off.flagsOn = {"No Local URL", "Show URL History"};
    off.links.scanLocalText("http://a.example");
    EXPECT_EQ(off.history.count(), 0);
    EXPECT_EQ(off.sent.size(), 1);
    EXPECT_TRUE(off.shown.isEmpty()) << "an empty history is not shown";

    Harness alone;
    alone.connected = false;
    alone.links.scanLocalText("http://a.example http://a.example");
    EXPECT_TRUE(alone.sent.isEmpty());
    EXPECT_EQ(alone.history.count(), 1) << "the second is a duplicate for addurl";

    Harness blank;
    blank.paneLength = 5;
    blank.links.scanLocalText(" \r\n\t ");
    EXPECT_EQ(blank.urlScanned, -1) << "a blank text leaves the mark alone";
    blank.links.scanLocalText("no address");
    EXPECT_EQ(blank.urlScanned, 5) << "a scan without a find still moves the mark";
}

TEST(LinkScan, MoreThan255AddressesIsAnErrorAndNothingIsHandled)
{
    Harness ok;
    ok.links.scanLocalText(QStringLiteral("http://a ").repeated(255));
    EXPECT_EQ(ok.sent.size(), 255);
    EXPECT_TRUE(ok.prompter.boxes.isEmpty());

    Harness over;
    over.paneLength = 9;
    over.links.scanLocalText(QStringLiteral("http://a ").repeated(256));
    EXPECT_TRUE(over.sent.isEmpty());
    EXPECT_EQ(over.history.count(), 0);
    EXPECT_EQ(over.urlScanned, -1);
    ASSERT_EQ(over.prompter.boxes.size(), 1);
    EXPECT_EQ(over.prompter.boxes[0].text, "Any URL Error: Subscript out of range");
    EXPECT_EQ(over.prompter.boxes[0].title, "Vonnel Error");
}

TEST(LinkScan, RemoteAddressIsRecordedAndOpenedOnlyOnOk)
{
    Harness h;
    h.flagsOn = {"Web Check", "Show URL History"};
    h.prompter.answers = {Answer::Ok, Answer::Cancel};
    QString text = QStringLiteral("www.example.org and ftp://b.example");
    h.links.webCheck(text);
    EXPECT_EQ(text, " and ftp://b.example") << "one address per call, the rest goes back";
    ASSERT_EQ(h.prompter.boxes.size(), 1);
    EXPECT_EQ(h.prompter.boxes[0].title, "Web Check");
    EXPECT_EQ(h.prompter.boxes[0].text, "Do you want to open?\r\n\r\nwww.example.org");
    EXPECT_EQ(h.opened, QList<QUrl>{QUrl("http://www.example.org")});
    EXPECT_EQ(h.shown, QList<bool>{false});

    QString again = QStringLiteral("www.example.org");
    h.links.webCheck(again);
    EXPECT_EQ(h.history.lstURL(), (QStringList{"www.example.org", "www.example.org"}))
        << "remote addresses are appended without the duplicate rule";
    EXPECT_EQ(h.opened.size(), 1) << "Cancel opens nothing";
}

TEST(LinkScan, RemoteSwitchesAndTheShownCut)
{
    Harness h;
    h.flagsOn = {"No Remote URL", "Web Check"};
    const QString longUrl = QStringLiteral("http://a.example/") + QStringLiteral("p").repeated(100);
    QString text = longUrl;
    h.links.webCheck(text);
    EXPECT_EQ(h.history.count(), 0);
    ASSERT_EQ(h.prompter.boxes.size(), 1);
    EXPECT_EQ(h.prompter.boxes[0].text, "Do you want to open?\r\n\r\n" + longUrl.left(50));
    EXPECT_EQ(h.opened, QList<QUrl>{QUrl(longUrl)}) << "the whole address is opened";

    Harness quiet;
    QString t = QStringLiteral("http://a.example");
    quiet.links.webCheck(t);
    EXPECT_TRUE(quiet.prompter.boxes.isEmpty()) << "Web Check off asks nothing";
    EXPECT_EQ(quiet.history.count(), 1);
}

TEST(LinkScan, PeerAddressesThatMustNotBeOpenedAreNotOffered)
{
    const QStringList refused = {
        "http://bank.example@elsewhere.example/",
        "joe@a.example?attach=/home/joe/.ssh/id_rsa",
        "mailto:x@a.example?Attach=x",
        "ab:c@d.example",
        "http://",
        "http://a\nb.example",
        "@@ a@b.cd",
    };
    for (const QString& address : refused) {
        Harness h;
        h.flagsOn = {"Web Check"};
        QString text = address;
        h.links.webCheck(text);
        EXPECT_TRUE(h.prompter.boxes.isEmpty()) << address.toStdString();
        EXPECT_TRUE(h.opened.isEmpty()) << address.toStdString();
    }
    EXPECT_EQ(openableUrl("joe@a.example"), QUrl("mailto:joe@a.example"));
    EXPECT_EQ(openableUrl("mailto:x@a.example?subject=hi"), QUrl("mailto:x@a.example?subject=hi"));
    EXPECT_EQ(openableUrl("ftp://u@f.example/x"), QUrl("ftp://u@f.example/x"));
    EXPECT_EQ(openableUrl("https://a.example/x?y=1"), QUrl("https://a.example/x?y=1"));
}

TEST(LinkScan, PeerCannotGrowTheHistoryWithoutBound)
{
    Harness h;
    int limitSignals = 0;
    QObject::connect(&h.history, &UrlHistory::limitReached, [&] { ++limitSignals; });
    for (int i = 0; i < UrlHistory::kMaxEntries + 50; ++i) {
        QString text = QStringLiteral("http://a.example/") + QString::number(i);
        h.links.webCheck(text);
    }
    EXPECT_EQ(h.history.count(), UrlHistory::kMaxEntries);
    EXPECT_EQ(h.history.lstDescript().size(), UrlHistory::kMaxEntries);
    EXPECT_EQ(limitSignals, 50);

    Harness big;
    QString huge = QStringLiteral("http://a.example/") + QStringLiteral("x").repeated(5000);
    big.links.webCheck(huge);
    EXPECT_EQ(big.history.count(), 0) << "an over-long address is not kept";
}
