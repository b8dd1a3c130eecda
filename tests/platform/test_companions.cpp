// The component check at start: one box per missing piece, in order,
// naming it and what is lost; present pieces say nothing.

#include "platform/Companions.h"
#include "platform/ScriptedPrompter.h"

#include <QImageReader>
#include <gtest/gtest.h>

using namespace vonnel;

TEST(Companions, EachMissingPieceGetsItsOwnBoxAndTheStartGoesOn)
{
    const QList<CompanionProbe> probes = {
        {"Sound", "rings are not played", [] { return false; }},
        {"Speech", "nothing is spoken", [] { return true; }},
        {"Pictures", "no pictures", [] { return false; }},
    };
    ScriptedPrompter prompter;
    EXPECT_EQ(reportMissingCompanions(prompter, probes), QStringList({"Sound", "Pictures"}));
    ASSERT_EQ(prompter.records().size(), 2);
    EXPECT_EQ(prompter.records()[0].text,
              "Missing component: Sound\r\rThe program goes on, but rings are not played.");
    EXPECT_TRUE(prompter.records()[1].text.startsWith("Missing component: Pictures"));
    EXPECT_EQ(prompter.records()[1].title, "Component Check");
}

TEST(Companions, ThePlatformProbesMatchWhatIsInstalled)
{
    // The JPEG plugin is what board pictures use; its probe agrees with the
    // image reader, whatever this machine has.
    const bool jpeg = QImageReader::supportedImageFormats().contains("jpeg");
    for (const CompanionProbe& p : companionProbes()) {
        ASSERT_TRUE(p.present) << p.name.toStdString();
        EXPECT_FALSE(p.loss.isEmpty());
        if (p.name.contains("JPEG"))
            EXPECT_EQ(p.present(), jpeg);
    }
    EXPECT_EQ(companionProbes().size(), 3);
}
