// Caller lists, their wildcard matching, the properties dialog and the
// name services.

#include "connection/AddressServices.h"
#include "connection/Connection.h"
#include "connection/IpList.h"
#include "connection/PropertyDialog.h"
#include "core/IniStore.h"
#include "support/TestCopy.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "platform/Winsock.h"

#include <QTcpServer>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

struct LikeCase {
    const char* text;
    const char* pattern;
    bool match;
};

TEST(CallerPatterns, MatchAsTheLikeOperator)
{
    const LikeCase cases[] = {
        {"192.168.0.7", "192.168.0.*", true},
        {"192.168.1.7", "192.168.0.*", false},
        {"192.168.0.7", "192.168.0.7", true},
        {"192.168.0.71", "192.168.0.7", false},
        {"10.0.0.5", "10.0.0.?", true},
        {"10.0.0.15", "10.0.0.?", false},
        {"10.0.0.15", "10.0.0.#5", true},
        {"10.0.0.x5", "10.0.0.#5", false},
        {"10.0.0.3", "10.0.0.[1-4]", true},
        {"10.0.0.5", "10.0.0.[1-4]", false},
        {"10.0.0.5", "10.0.0.[!1-4]", true},
        {"10.0.0.3", "10.0.0.[!1-4]", false},
        {"10.0.0.7", "10.0.0.[379]", true},
        {"10.0.0.*", "10.0.0.[*]", true},
        {"10.0.0.1", "10.0.0.[*]", false},
        {"10.0.0.1", "*", true},
        {"", "*", true},
        {"", "?", false},
        {"1.2.3.4", "*.*.*.*", true},
        {"1.2.3.4", "1.2.*.9", false},
        {"10.20.30.40", "1*0.*0.*0.*0", true},
    };
    for (const LikeCase& c : cases)
        EXPECT_EQ(vbLike(QString::fromLatin1(c.text), QString::fromLatin1(c.pattern)), c.match)
            << c.text << " like " << c.pattern;
}

TEST(CallerPatterns, DottedAddressTest)
{
    EXPECT_TRUE(AddressServices::looksDotted("192.168.0.1"));
    EXPECT_TRUE(AddressServices::looksDotted("10.0.0.255"));
    EXPECT_FALSE(AddressServices::looksDotted("myhost"));
    EXPECT_FALSE(AddressServices::looksDotted("host.example.com"));
    EXPECT_FALSE(AddressServices::looksDotted("1.2.3."));
    EXPECT_FALSE(AddressServices::looksDotted("1.2.3"));
    EXPECT_FALSE(AddressServices::looksDotted("a1.b2.c3.d"));
}

class ListDialogs : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(copy.start()); }
    TestCopy copy;
    FrmMain& f() { return copy.frm(); }
    QString bad(const QString& key) { return ReadIni(kSection, key, copy.file("badip.txt")); }
};

TEST_F(ListDialogs, BlackListRoundTripsThroughItsFile)
{
    const QString file = copy.file("badip.txt");
    WriteIni(kSection, "Limit", "3", file);
    WriteIni(kSection, "Restricted IP 1", "10.0.0.*", file);
    WriteIni(kSection, "Restricted IP 2", "", file);  // removed earlier
    WriteIni(kSection, "Restricted IP 3", "172.16.*", file);
    copy.set("Detect Bad IP", "0");

    IpListDialog d(f().ctx(), IpListKind::Blocked);
    d.Form_Load();
    EXPECT_EQ(d.caption, "Black List");
    EXPECT_EQ(d.list, QStringList({"10.0.0.*", "172.16.*"}));
    EXPECT_FALSE(d.chkChecked);
    EXPECT_FALSE(d.listEnabled);
    EXPECT_FALSE(d.cmdAddEnabled);
    EXPECT_EQ(d.textToolTip, "IP Address / Host");

    d.chk_Click(true);
    EXPECT_TRUE(d.listEnabled);
    EXPECT_TRUE(d.textEnabled);
    d.txt_Change("192.168.0.*");
    EXPECT_TRUE(d.cmdAddEnabled);
    d.txt_KeyPress('\r');
    EXPECT_TRUE(d.text->isEmpty());
    d.lst_Click(0);
    EXPECT_TRUE(d.cmdRemoveEnabled);
    d.cmdRemove_Click();
    EXPECT_EQ(bad("Restricted IP 1"), "");  // the removed entry is blanked at once
    EXPECT_EQ(d.list, QStringList({"172.16.*", "192.168.0.*"}));

    d.OKButton_Click();
    EXPECT_TRUE(d.unloaded);
    EXPECT_EQ(bad("Limit"), "2");
    EXPECT_EQ(bad("Restricted IP 1"), "172.16.*");
    EXPECT_EQ(bad("Restricted IP 2"), "192.168.0.*");
    EXPECT_EQ(bad("Restricted IP 3"), "");  // left over from the longer list
    EXPECT_EQ(copy.get("Detect Bad IP"), "1");

    IpList list(f().ctx(), IpListKind::Blocked);
    const auto entries = list.readForCall();
    ASSERT_TRUE(entries.has_value());
    EXPECT_TRUE(IpList::anyMatches(*entries, "192.168.0.9"));
    EXPECT_FALSE(IpList::anyMatches(*entries, "192.168.1.9"));
}

TEST_F(ListDialogs, WhiteListHasItsOwnFileAndNoLimitOnSaving)
{
    IpListDialog d(f().ctx(), IpListKind::Permitted);
    d.Form_Load();
    EXPECT_EQ(d.caption, "White List");
    EXPECT_TRUE(d.lblMsg->isEmpty());
    d.chk_Click(true);
    for (int i = 1; i <= 21; ++i) {
        d.txt_Change(QStringLiteral("10.0.0.%1").arg(i));
        d.cmdAdd_Click();
    }
    d.OKButton_Click();
    EXPECT_EQ(ReadIni(kSection, "Limit", copy.file("safeip.txt")), "21");
    EXPECT_EQ(ReadIni(kSection, "Safe IP 21", copy.file("safeip.txt")), "10.0.0.21");
    EXPECT_EQ(copy.get("Detect Safe IP"), "1");
    // A call can read only twenty.
    EXPECT_FALSE(IpList(f().ctx(), IpListKind::Permitted).readForCall().has_value());

    IpListDialog cancelled(f().ctx(), IpListKind::Permitted);
    cancelled.Form_Load();
    EXPECT_EQ(cancelled.list->size(), 21);
    cancelled.chk_Click(false);
    cancelled.CancelButton_Click();
    EXPECT_EQ(copy.get("Detect Safe IP"), "1");
}

TEST_F(ListDialogs, PropertiesMoveToTheNextFreePortAndShowTheRange)
{
    const quint16 base = freePort();
    QTcpServer blocker;
    ASSERT_TRUE(blocker.listen(QHostAddress::Any, base));

    PropertyDialog& p = f().connection().propertyDialog();
    p.txtLocalPort = QString::number(base);
    p.txtRemotePort = "2600";
    p.cmdOK_Click();
    EXPECT_TRUE(p.unloaded);
    EXPECT_EQ(f().session().winsock(0).State(), Winsock::sckListening);
    EXPECT_EQ(f().session().winsock(0).LocalPort(), base + 1);
    EXPECT_EQ(p.txtLocalPort, QString::number(base + 1));
    EXPECT_EQ(p.txtLocalPort5, QString::number(base + 6));
    EXPECT_EQ(p.txtRemotePort5, "2605");
    EXPECT_EQ(copy.get("LocalPort"), QString::number(base + 1));
    EXPECT_EQ(copy.get("RemotePort"), "2600");
    ASSERT_TRUE(copy.prompter().asked("is used by another application,"));
    EXPECT_EQ(copy.prompter().records().last().title, "Port Setting");
    f().connection().unloadProperty();

    PropertyDialog& q = f().connection().propertyDialog();
    q.txtLocalPort.clear();
    q.cmdApply_Click();  // an empty port gives the box and the defaults
    EXPECT_TRUE(copy.prompter().asked("Local Port and Remote Port must be filled in"));
    EXPECT_EQ(q.txtRemotePort5, "2505");
    f().connection().unloadProperty();
}

TEST_F(ListDialogs, HostsFileIsOpenedThroughTheDesktop)
{
    PropertyDialog& p = f().connection().propertyDialog();
    EXPECT_EQ(p.HostsPath(), "/etc/hosts");
    copy.set("HostsPath", "/srv/hosts.local");
    p.cmdHostConfig_Click();
    ASSERT_EQ(copy.desktop().opened.size(), 1);
    EXPECT_EQ(copy.desktop().opened.last(), "/srv/hosts.local");
    f().connection().unloadProperty();
}

TEST_F(ListDialogs, LocalPortRuleMovesOnAndKeepsTheNewPort)
{
    const quint16 port = copy.port();
    f().session().winsock(0).Close();
    QTcpServer blocker;
    ASSERT_TRUE(blocker.listen(QHostAddress::Any, port));
    f().connection().ListenOnLocalPort();
    EXPECT_EQ(f().session().winsock(0).State(), Winsock::sckListening);
    EXPECT_EQ(f().session().winsock(0).LocalPort(), port + 1);
    EXPECT_EQ(copy.get("LocalPort"), QString::number(port + 1));
    EXPECT_EQ(f().model().stStatusbar.text(2), "Local Port = " + QString::number(port + 1));
    ASSERT_TRUE(copy.prompter().asked("it will automatically change to"));
    EXPECT_EQ(copy.prompter().records().last().title, "Port Setting " + QString::number(port + 1));
}

TEST_F(ListDialogs, LocalInfoListsNameAddressesAndPort)
{
    f().model().txtServer.clear();
    f().connection().ShowLocalInfo();
    const QStringList lines = f().model().txtServer.text().split("\r\n");
    ASSERT_GE(lines.size(), 3);
    EXPECT_TRUE(lines.first().startsWith("Computer Name: "));
    EXPECT_TRUE(lines.at(1).startsWith("Address    IP : "));
    EXPECT_EQ(lines.last(), "Port\t : " + QString::number(copy.port()));
    EXPECT_FALSE(f().model().txtServer.text().contains("0.0.0.0"));
}

TEST_F(ListDialogs, ResolversGiveTheFailedMarkOnEveryFailure)
{
    AddressServices& a = f().connection().address();
    EXPECT_EQ(a.ResolveName("localhost"), "127.0.0.1");
    EXPECT_EQ(a.ResolveName("127.0.0.1"), "127.0.0.1");
    EXPECT_EQ(a.ResolveName("no-such-host.invalid"), "- - - - - - ");
    EXPECT_EQ(a.ResolveName(""), "- - - - - - ");
    EXPECT_EQ(a.ResolveAddress(""), "");
    EXPECT_EQ(a.ResolveAddress("not an address"), "- - - - - - ");
    EXPECT_EQ(a.ResolveAddress("127.0.0.1"), "localhost");
    EXPECT_EQ(a.ResolveAddress("10.11.12.13"), "- - - - - - ");  // no reverse entry
    EXPECT_FALSE(a.busy());
}

}  // namespace
