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
    int urlScanned = -1;
    QStringList events;  // history and wire, in the order they happened
    QList<bool> shown;
    QList<QUrl> opened;
    test::FakePrompter prompter;
    UrlHistory history;
    Links links{seams(), history};

    explicit Harness(QSet<QString> on = {}) : flagsOn(std::move(on))
    {
        QObject::connect(&history, &UrlHistory::listChanged,
                         [this] { events << "history " + history.lstURL().value(history.count() - 1); });
        QObject::connect(&history, &UrlHistory::entryAppended,
                         [this](int i) { events << "history " + history.lstURL().value(i); });
    }
    LinkSeams seams()
    {
        LinkSeams s;
        s.settingFlag = [this](const QString& key) { return flagsOn.contains(key); };
        s.isConnected = [this] { return connected; };
        s.xSendData = [this](const QString& frame) { events << frame; };
        s.localPaneLength = [] { return 24; };
        s.setUrlScanned = [this](int n) { urlScanned = n; };
        s.showHistory = [this](bool focusBack) { shown << focusBack; };
        s.openUrl = [this](const QUrl& u) { opened << u; return true; };
        s.prompter = &prompter;
        return s;
    }
    QStringList sent() const { return events.filter("<URL> "); }
};

}  // namespace

TEST(LinkScan, LocalAddressesGoToHistoryThenToThePeer)
{
    Harness h({"Show URL History"});
    h.links.scanLocalText("see www.example.org ");
    EXPECT_EQ(h.events, (QStringList{"history www.example.org", "<URL> www.example.org </URL>"}));
    EXPECT_EQ(h.urlScanned, 24);
    EXPECT_EQ(h.shown, QList<bool>{true}) << "shown, with the focus back on the typing pane";

    Harness paste;
    paste.links.scanLocalText("a http://one.example, www.two.example\r\nand joe@three.example.");
    EXPECT_EQ(paste.sent(), (QStringList{"<URL> http://one.example </URL>", "<URL> www.two.example </URL>",
                                         "<URL> joe@three.example. </URL>"}));
    EXPECT_TRUE(paste.shown.isEmpty()) << "Show URL History is off";
}

TEST(LinkScan, SwitchesAndSessionStateDecideWhereAddressesGo)
{
    Harness off({"No Local URL", "Show URL History"});
    off.links.scanLocalText("http://a.example");
    EXPECT_EQ(off.history.count(), 0);
    EXPECT_EQ(off.sent().size(), 1);
    EXPECT_TRUE(off.shown.isEmpty()) << "an empty history is not shown";

    Harness alone;
    alone.connected = false;
    alone.links.scanLocalText("http://a.example http://a.example");
    EXPECT_TRUE(alone.sent().isEmpty());
    EXPECT_EQ(alone.history.count(), 1) << "the second is a duplicate for addurl";

    Harness blank;
    blank.links.scanLocalText(" \r\n\t ");
    EXPECT_EQ(blank.urlScanned, -1) << "a blank text leaves the mark alone";
    blank.links.scanLocalText("no address");
    EXPECT_EQ(blank.urlScanned, 24) << "a scan without a find still moves the mark";
}

TEST(LinkScan, MoreThan255AddressesIsAnErrorAndNothingIsHandled)
{
    Harness ok;
    ok.links.scanLocalText(QStringLiteral("http://a ").repeated(255));
    EXPECT_EQ(ok.sent().size(), 255);
    EXPECT_TRUE(ok.prompter.boxes.isEmpty());

    Harness over;
    over.links.scanLocalText(QStringLiteral("http://a ").repeated(256));
    EXPECT_TRUE(over.events.isEmpty());
    EXPECT_EQ(over.urlScanned, -1);
    ASSERT_EQ(over.prompter.boxes.size(), 1);
    EXPECT_EQ(over.prompter.boxes[0].text, "Any URL Error: Subscript out of range");
    EXPECT_EQ(over.prompter.boxes[0].title, "Vonnel Error");
}

TEST(LinkScan, RemoteAddressIsRecordedAndOpenedOnlyOnOk)
{
    Harness h({"Web Check", "Show URL History"});
    h.prompter.answers = {Answer::Ok, Answer::Cancel};
    QString text = QStringLiteral("www.example.org and ftp://b.example");
    h.links.webCheck(text);
    EXPECT_EQ(text, " and ftp://b.example") << "one address per call, the rest goes back";
    ASSERT_EQ(h.prompter.boxes.size(), 1);
    EXPECT_EQ(h.prompter.boxes[0].title, "Web Check");
    EXPECT_EQ(h.prompter.boxes[0].text, "Do you want to open?\r\n\r\nwww.example.org");
    EXPECT_EQ(h.prompter.boxes[0].buttons(), (QList<Answer>{Answer::Ok, Answer::Cancel}));
    EXPECT_EQ(h.prompter.boxes[0].defaultAnswer(), Answer::Cancel)
        << "the peer's address is not opened by Enter alone";
    EXPECT_EQ(h.opened, QList<QUrl>{QUrl("http://www.example.org")});
    EXPECT_EQ(h.shown, QList<bool>{false});

    const QString longUrl = "http://a.example/" + QString(100, 'p');
    text = longUrl;
    h.links.webCheck(text);
    EXPECT_EQ(h.prompter.boxes[1].text, "Do you want to open?\r\n\r\n" + longUrl.left(50));
    EXPECT_EQ(h.opened.size(), 1) << "Cancel opens nothing";
    EXPECT_EQ(h.prompter.boxes.size(), 2);
    text = QStringLiteral("www.example.org");
    h.prompter.answers = {Answer::Ok};
    h.links.webCheck(text);
    EXPECT_EQ(h.opened.size(), 2) << "asked again";
    EXPECT_EQ(h.history.count(), 3) << "remote addresses skip the duplicate rule";

    Harness quiet({"No Remote URL"});
    text = longUrl;
    quiet.links.webCheck(text);
    EXPECT_EQ(quiet.history.count(), 0);
    EXPECT_TRUE(quiet.prompter.boxes.isEmpty()) << "Web Check off asks nothing";
}

// Every address the scan finds is the peer's to record and the user's to
// be asked about; one that must not or cannot be opened is answered, after
// an OK, with a box that says so, and never reaches the user's program.
TEST(LinkScan, PeerAddressesThatCannotBeOpenedAreAskedAboutAndTold)
{
    const QString veryLong = "http://a.example/" + QString(3000, 'x');
    for (const QString& address :
         {QStringLiteral("http://bank.example@elsewhere.example/"),
          QStringLiteral("joe@a.example?attach=/x/.ssh/id"), QStringLiteral("mailto:x@a.example?Attach=x"),
          QStringLiteral("ab:c@d.example"), QStringLiteral("http://"), QStringLiteral("http://a\nb.example"),
          QStringLiteral("http://a.example/%zz"), veryLong}) {
        SCOPED_TRACE(address.left(60).toStdString());
        Harness h({"Web Check"});
        h.prompter.answers = {Answer::Ok};
        QString text = address;
        h.links.webCheck(text);
        ASSERT_EQ(h.history.count(), 1) << "recorded whatever it is";
        const QString found = h.history.lstURL()[0];
        EXPECT_TRUE(address.startsWith(found)) << qPrintable(found.left(60));
        ASSERT_EQ(h.prompter.boxes.size(), 2);
        EXPECT_EQ(h.prompter.boxes[0].text, "Do you want to open?\r\n\r\n" + found.left(50));
        EXPECT_EQ(h.prompter.boxes[1].text, "This address cannot be opened:\r\n\r\n" + found.left(50));
        EXPECT_TRUE(h.opened.isEmpty());
    }
    EXPECT_EQ(openableUrl("joe@a.example"), QUrl("mailto:joe@a.example"));
    EXPECT_EQ(openableUrl("mailto:x@a.example?subject=hi"), QUrl("mailto:x@a.example?subject=hi"));
    EXPECT_EQ(openableUrl("ftp://u@f.example/x"), QUrl("ftp://u@f.example/x"));

    // The user's program refuses an address: told the same way.
    Harness refused({"Web Check"});
    refused.prompter.answers = {Answer::Ok};
    LinkSeams seams = refused.seams();
    seams.openUrl = [](const QUrl&) { return false; };
    Links links(seams, refused.history);
    QString text = QStringLiteral("http://ok.example/");
    links.webCheck(text);
    ASSERT_EQ(refused.prompter.boxes.size(), 2);
    EXPECT_TRUE(refused.prompter.boxes[1].text.startsWith("This address cannot be opened:"));
    // Cancel says nothing more.
    Harness cancelled({"Web Check"});
    cancelled.prompter.answers = {Answer::Cancel};
    text = veryLong;
    cancelled.links.webCheck(text);
    EXPECT_EQ(cancelled.prompter.boxes.size(), 1);
}

// The lists are indexed in 16 bits: 65535 entries, and a bound on their
// characters. The first address dropped says so once; a later drop says
// nothing until room was made again.
TEST(LinkScan, PeerCannotGrowTheHistoryWithoutBound)
{
    static_assert(UrlHistory::kMaxEntries == 65535);
    Harness h;
    int limitSignals = 0;
    QObject::connect(&h.history, &UrlHistory::limitReached, [&] { ++limitSignals; });
    for (int i = 0; i < UrlHistory::kMaxEntries + 50; ++i) {
        QString text = "http://a.example/" + QString::number(i);
        h.links.webCheck(text);
    }
    EXPECT_EQ(h.history.count(), UrlHistory::kMaxEntries);
    EXPECT_EQ(h.history.lstDescript().size(), UrlHistory::kMaxEntries);
    EXPECT_EQ(h.history.lstURL().last(), "http://a.example/65534");
    EXPECT_EQ(limitSignals, 1);
    ASSERT_EQ(h.prompter.boxes.size(), 1);
    EXPECT_EQ(h.prompter.boxes[0].title, "URL History");
    EXPECT_EQ(h.prompter.boxes[0].text,
              "The URL History is full: no more addresses are kept until some are removed.");
    // Local text and a list file meet the same bound, silently now.
    h.links.scanLocalText("www.local.example ");
    EXPECT_EQ(h.history.count(), UrlHistory::kMaxEntries);
    EXPECT_FALSE(h.history.appendLoaded("x", "y"));
    EXPECT_EQ(h.prompter.boxes.size(), 1);
    // Room made: the next filling is told again.
    h.history.select(0);
    h.history.mnuRemove_Click();
    QString text = QStringLiteral("http://b.example/");
    h.links.webCheck(text);
    EXPECT_EQ(h.history.lstURL().last(), "http://b.example/");
    text = QStringLiteral("http://c.example/");
    h.links.webCheck(text);
    EXPECT_EQ(limitSignals, 2);
    EXPECT_EQ(h.prompter.boxes.size(), 2);

    // Long addresses are kept whole, until their characters reach the bound.
    Harness big;
    const QString huge = "http://a.example/" + QString(1 << 20, 'x');
    int kept = 0;
    for (int i = 0; i < 40; ++i) {
        QString t = huge;
        big.links.webCheck(t);
        kept = big.history.count();
    }
    EXPECT_EQ(big.history.lstURL().value(0), huge) << "an address over 2048 characters is kept";
    EXPECT_GE(kept, 10);
    EXPECT_LT(kept, 40);
    qsizetype chars = 0;
    for (int i = 0; i < big.history.count(); ++i)
        chars += big.history.lstURL()[i].size() + big.history.lstDescript()[i].size();
    EXPECT_LE(chars, UrlHistory::kMaxChars);
    EXPECT_EQ(big.prompter.boxes.size(), 1);
}
