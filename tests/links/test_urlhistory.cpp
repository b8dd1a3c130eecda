#include "links/UrlHistory.h"

#include <gtest/gtest.h>

using namespace vonnel;

namespace {

const QString kPrompt = QStringLiteral("Type your description here and press Enter to confirm");

void fill(UrlHistory& h, const QStringList& urls)
{
    for (const QString& u : urls)
        h.appendRemote(u);
}

}  // namespace

TEST(UrlHistory, AddurlKeepsOneEntryPerTrimmedAddress)
{
    UrlHistory h;
    EXPECT_EQ(h.addurl(" http://a.example\t", "Site A ", -1), UrlHistory::AddResult::Appended);
    EXPECT_EQ(h.lstURL(), QStringList{"http://a.example"});
    EXPECT_EQ(h.lstDescript(), QStringList{"Site A"});
    EXPECT_FALSE(h.promptShown()) << "a real description asks for nothing";

    EXPECT_EQ(h.addurl("http://a.example ", "other", -1), UrlHistory::AddResult::AlreadyListed);
    EXPECT_EQ(h.addurl("http://a.example", "other", 65535), UrlHistory::AddResult::AlreadyListed)
        << "65535 is the same no-index as -1";
    EXPECT_EQ(h.lstDescript(), QStringList{"Site A"}) << "the description stays";
    EXPECT_EQ(h.addurl("HTTP://A.EXAMPLE", "", -1), UrlHistory::AddResult::Appended)
        << "the comparison is exact apart from the trim";
}

TEST(UrlHistory, EmptyDescriptionTakesTheAddressAndOffersThePrompt)
{
    UrlHistory h;
    h.addurl("http://a.example", "A", -1);
    h.addurl("http://b.example", "", -1);
    EXPECT_EQ(h.lstDescript()[1], "http://b.example");
    EXPECT_EQ(h.selectedIndex(), 1);
    EXPECT_EQ(h.txtDescript(), kPrompt);
    EXPECT_TRUE(h.promptShown());

    h.txtDescript_GotFocus();
    EXPECT_EQ(h.txtDescript(), "") << "the prompt goes when the box gets the focus";
    h.setTxtDescript("Bee");
    h.txtDescript_Enter();
    EXPECT_EQ(h.lstDescript()[1], "Bee");
    h.txtDescript_GotFocus();
    EXPECT_EQ(h.txtDescript(), "Bee") << "a real description is not cleared";
}

TEST(UrlHistory, AddurlWithAnIndexReplacesThatEntry)
{
    UrlHistory h;
    fill(h, {"a", "b", "c"});
    h.markSaved();
    EXPECT_EQ(h.addurl(" x ", "X", 1), UrlHistory::AddResult::Replaced);
    EXPECT_EQ(h.lstURL(), (QStringList{"a", " x ", "c"})) << "an edit is not trimmed";
    EXPECT_EQ(h.lstDescript(), (QStringList{"a", "X", "c"}));
    EXPECT_TRUE(h.modified());
    EXPECT_EQ(h.addurl("y", "Y", 3), UrlHistory::AddResult::NoSuchIndex);
    EXPECT_EQ(h.count(), 3);
}

TEST(UrlHistory, RemovingEntries)
{
    UrlHistory h;
    fill(h, {"a", "b", "a", "", "", "b", "c", "a"});
    h.addurl("b", "Bee", 1);
    EXPECT_EQ(h.mnuRemoveDup_Click(), 3);
    EXPECT_EQ(h.lstURL(), (QStringList{"a", "b", "", "", "c"})) << "the first of equal ones stays; empties stay";
    EXPECT_EQ(h.lstDescript(), (QStringList{"a", "Bee", "", "", "c"}));

    h.select(4);
    h.mnuRemove_Click();
    EXPECT_EQ(h.selectedIndex(), 3) << "the last one's neighbour is the one before";
    h.select(1);
    h.mnuRemove_Click();
    EXPECT_EQ(h.lstURL(), (QStringList{"a", "", ""}));
    EXPECT_EQ(h.selectedIndex(), 1) << "the entry that moved up is selected";
    EXPECT_EQ(h.lstDescript().size(), 3);

    int counted = -1;
    QObject::connect(&h, &UrlHistory::countChanged, [&](int n) { counted = n; });
    h.mnuRemoveAll_Click();
    EXPECT_EQ(h.count(), 0);
    EXPECT_EQ(h.lstDescript().size(), 0);
    EXPECT_EQ(h.selectedIndex(), -1);
    EXPECT_EQ(counted, 0);
}

TEST(UrlHistory, CountCaptionAndSelection)
{
    UrlHistory h;
    EXPECT_EQ(h.countCaption(), "[0]");
    fill(h, {"u1", "u2", "u3"});
    h.addurl("u4", "four", -1);
    EXPECT_EQ(h.countCaption(), "[4]");
    EXPECT_EQ(h.countCaption(2 + 3 + 1), "[4]") << "fits";
    fill(h, QStringList(100, "x"));
    EXPECT_EQ(h.countCaption(4), "[...");
    h.select(3);
    EXPECT_EQ(h.txtDescript(), "four");
    EXPECT_EQ(h.selectedUrl(), "u4");
    h.select(500);
    EXPECT_EQ(h.selectedIndex(), -1);
}
