// The connection dialogs' windows follow their logic: a list dialog
// closed from the window leaves its file alone, one confirmed writes it.

#include "core/IniStore.h"
#include "shell/dialogs/ConnectionDialogs.h"
#include "support/TestCopy.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

TEST(DialogWindows, ListWindowBindsToItsLogic)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    EXPECT_FALSE(runConnectionDialog(copy.frm(), Form::frmDraw, nullptr).has_value());

    bool typed = false;
    QTimer::singleShot(100, [&] {
        QWidget* w = QApplication::activeModalWidget();
        if (!w)
            return;
        auto* check = w->findChild<QCheckBox*>();
        auto* text = w->findChild<QLineEdit*>();
        if (!check || !text)
            return;
        check->click();
        text->setText("10.9.*");
        Q_EMIT text->textEdited("10.9.*");
        Q_EMIT text->returnPressed();
        for (QPushButton* b : w->findChildren<QPushButton*>())
            if (b->text() == "OK")
                b->click();
        typed = true;
    });
    QTimer::singleShot(3000, [] {
        if (QWidget* w = QApplication::activeModalWidget())
            w->close();
    });
    const auto result = runConnectionDialog(copy.frm(), Form::frmIPBlocking, nullptr);
    ASSERT_TRUE(result.has_value());
    EXPECT_TRUE(typed);
    EXPECT_EQ(ReadIni(kSection, "Restricted IP 1", copy.file("badip.txt")), "10.9.*");
    EXPECT_EQ(ReadIni(kSection, "Limit", copy.file("badip.txt")), "1");
    EXPECT_EQ(copy.get("Detect Bad IP"), "1");
}

}  // namespace
