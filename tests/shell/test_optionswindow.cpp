// frmOptions on screen: eleven tabs in order, a box typed into and left
// keeps its rule, Apply writes the key, Help opens the shown tab's page,
// and the font list is filled when its tab is first shown.

#include "shell/dialogs/OptionsDialog.h"
#include "support/TestCopy.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <gtest/gtest.h>

namespace vonnel::test {
namespace {

void typeInto(QLineEdit* edit, const QString& text)
{
    edit->selectAll();
    for (QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QCoreApplication::sendEvent(edit, &press);
    }
    QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
    QCoreApplication::sendEvent(edit, &out);
}

TEST(OptionsWindow, TypedBoxIsCheckedWhenLeftAndApplyWritesIt)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    copy.frm().ctx().HelpPath = copy.appPath() + "help/";
    QTemporaryDir autostart;
    OptionsDialog dialog(copy.frm(), nullptr, autostart.path());
    dialog.show();

    QTabWidget* tabs = dialog.tabs();
    ASSERT_EQ(tabs->count(), 11);
    EXPECT_EQ(tabs->tabText(0), "&General");
    EXPECT_EQ(tabs->tabText(3), "&Apperance");
    EXPECT_EQ(tabs->tabText(10), "Advanced (&V)");
    for (const char* frame : {"fraStartup", "fraTTS", "fraSys", "fraLanguage"})
        EXPECT_NE(dialog.findChild<QGroupBox*>(frame), nullptr) << frame;

    auto* bytes = qobject_cast<QLineEdit*>(dialog.box(Opt::txtBytePerSend));
    ASSERT_NE(bytes, nullptr);
    typeInto(bytes, "9000");
    EXPECT_EQ(bytes->text(), "8000");
    auto* notify = qobject_cast<QCheckBox*>(dialog.box(Opt::chkDesktopNotify));
    ASSERT_NE(notify, nullptr);
    EXPECT_TRUE(notify->isChecked());  // on while the key is absent
    notify->click();

    int applied = 0;
    QObject::connect(&dialog.model(), &OptionsModel::applied, [&] { ++applied; });
    dialog.findChild<QPushButton*>("cmdApply")->click();
    EXPECT_EQ(applied, 1);
    EXPECT_EQ(copy.get("Byte Per Send"), "8000");
    EXPECT_EQ(copy.get("Desktop Notification"), "0");

    tabs->setCurrentIndex(2);
    dialog.findChild<QPushButton*>("cmdHelp")->click();
    EXPECT_EQ(copy.desktop().opened.last(), copy.appPath() + "help/sound_setting.htm");

    auto* fonts = qobject_cast<QComboBox*>(dialog.box(Opt::txtFont));
    EXPECT_EQ(fonts->count(), 0);
    tabs->setCurrentIndex(1);
    EXPECT_GT(fonts->count(), 0);
    EXPECT_EQ(fonts->currentText(), copy.get("Font"));

    int language = 0;
    QObject::connect(&dialog, &OptionsDialog::languageRequested, [&] { ++language; });
    dialog.findChild<QPushButton*>("cmdLang")->click();
    EXPECT_EQ(language, 1);
}

}  // namespace
}  // namespace vonnel::test
