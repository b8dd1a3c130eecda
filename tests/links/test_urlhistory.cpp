#include "links/UrlHistory.h"

#include <gtest/gtest.h>

using namespace vonnel;

namespace {

void fill(UrlHistory& h, const QStringList& urls)
{
    for (const QString& u : urls)
        h.appendRemote(u);
}

}  // namespace

TEST(UrlHistory, AddurlAppendsOncePerTrimmedAddressOrReplacesAtAnIndex)
{
    using R = UrlHistory::AddResult;
    UrlHistory h;
    EXPECT_EQ(h.addurl(" http://a.example\t", "Site A ", -1), R::Appended);
    EXPECT_EQ(h.lstURL(), QStringList{"http://a.example"});
    EXPECT_EQ(h.lstDescript(), QStringList{"Site A"});
    EXPECT_FALSE(h.promptShown()) << "a real description asks for nothing";
    EXPECT_EQ(h.addurl("http://a.example ", "other", -1), R::AlreadyListed);
    EXPECT_EQ(h.addurl("http://a.example", "other", 65535), R::AlreadyListed) << "65535 is -1";
    EXPECT_EQ(h.lstDescript(), QStringList{"Site A"}) << "the description stays";
    EXPECT_EQ(h.addurl("HTTP://A.EXAMPLE", "B", -1), R::Appended) << "exact apart from the trim";

    h.markSaved();
    EXPECT_EQ(h.addurl(" x ", "X", 1), R::Replaced);
    EXPECT_EQ(h.lstURL(), (QStringList{"http://a.example", " x "})) << "an edit is not trimmed";
    EXPECT_EQ(h.lstDescript(), (QStringList{"Site A", "X"}));
    EXPECT_TRUE(h.modified());
    EXPECT_EQ(h.addurl("y", "Y", 2), R::NoSuchIndex);
}

TEST(UrlHistory, EmptyDescriptionTakesTheAddressAndOffersThePrompt)
{
    UrlHistory h;
    h.addurl("http://a.example", "A", -1);
    h.addurl("http://b.example", "", -1);
    EXPECT_EQ(h.lstDescript()[1], "http://b.example");
    EXPECT_EQ(h.selectedIndex(), 1);
    EXPECT_EQ(h.txtDescript(), "Type your description here and press Enter to confirm");

    h.txtDescript_GotFocus();
    EXPECT_EQ(h.txtDescript(), "") << "the prompt goes when the box gets the focus";
    h.setTxtDescript("Bee");
    h.txtDescript_Enter();
    EXPECT_EQ(h.lstDescript()[1], "Bee");
    h.txtDescript_GotFocus();
    EXPECT_EQ(h.txtDescript(), "Bee") << "a real description is not cleared";
}

TEST(UrlHistory, RemovingEntries)
{
    UrlHistory h;
    fill(h, {"a", "b", "a", "", "", "b", "c", "a"});
    h.addurl("b", "Bee", 1);
    EXPECT_EQ(h.mnuRemoveDup_Click(), 3);
    EXPECT_EQ(h.lstURL(), (QStringList{"a", "b", "", "", "c"})) << "first of equals stays; empties stay";
    EXPECT_EQ(h.lstDescript(), (QStringList{"a", "Bee", "", "", "c"}));

    h.select(4);
    h.mnuRemove_Click();
    EXPECT_EQ(h.selectedIndex(), 3) << "the last one's neighbour is the one before";
    h.select(1);
    h.mnuRemove_Click();
    EXPECT_EQ(h.lstURL(), (QStringList{"a", "", ""}));
    EXPECT_EQ(h.lstDescript().size(), 3);
    EXPECT_EQ(h.selectedIndex(), 1) << "the entry that moved up is selected";

    int counted = -1;
    QObject::connect(&h, &UrlHistory::countChanged, [&](int n) { counted = n; });
    h.mnuRemoveAll_Click();
    EXPECT_EQ(h.lstDescript().size(), 0);
    EXPECT_EQ(h.selectedIndex(), -1);
    EXPECT_EQ(counted, 0);
    EXPECT_EQ(h.countCaption(), "[0]");
    fill(h, QStringList(123, "x"));
    EXPECT_EQ(h.countCaption(), "[123]");
    EXPECT_EQ(h.countCaption(4), "[...");
}
