// Accessible names for controls without a text of their own, from what the
// window shows around them, and given to every control of a copy's windows
// as they are shown.

#include "shell/AccessibleNames.h"
#include "shell/MainWindow.h"
#include "support/TestCopy.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTextEdit>
#include <QToolButton>
#include <QVBoxLayout>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

TEST(AccessibleNames, ComeFromTheLabelTheLayoutPutsBeside)
{
    QWidget w;
    auto* form = new QFormLayout(&w);
    auto* port = new QLineEdit;
    form->addRow(QStringLiteral("&Port:"), port);
    auto* grid = new QGridLayout;
    form->addRow(grid);
    auto* host = new QComboBox;
    grid->addWidget(new QLabel(QStringLiteral("Remote host:")), 0, 0);
    grid->addWidget(host, 0, 1);
    // A column under its heading.
    auto* list = new QListWidget;
    grid->addWidget(new QLabel(QStringLiteral("Known stations")), 1, 2);
    grid->addWidget(list, 2, 2);
    auto* row = new QHBoxLayout;
    form->addRow(row);
    auto* seconds = new QSpinBox;
    row->addWidget(new QLabel(QStringLiteral("Wait")));
    row->addWidget(seconds);
    auto* after = new QLineEdit;
    row->addWidget(after);
    row->addWidget(new QLabel(QStringLiteral("after")));

    EXPECT_EQ(derivedAccessibleName(port), "Port");
    EXPECT_EQ(derivedAccessibleName(host), "Remote host");
    EXPECT_EQ(derivedAccessibleName(list), "Known stations");
    EXPECT_EQ(derivedAccessibleName(seconds), "Wait");
    // The widget before it is the spin box, not a label; a label after a
    // control does not name it.
    EXPECT_EQ(derivedAccessibleName(after), "");
}

TEST(AccessibleNames, ButtonsWithTextNeedNoneIconButtonsTakeTheirTip)
{
    QWidget w;
    auto* layout = new QHBoxLayout(&w);
    auto* ok = new QPushButton(QStringLiteral("&OK"));
    auto* icon = new QToolButton;
    icon->setToolTip(QStringLiteral("Send File"));
    auto* byAction = new QToolButton;
    byAction->setDefaultAction(new QAction(QStringLiteral("&Ring"), byAction));
    byAction->setText(QString());
    auto* bare = new QToolButton;
    auto* check = new QCheckBox(QStringLiteral("Mute"));
    for (QWidget* c : {static_cast<QWidget*>(ok), static_cast<QWidget*>(icon),
                       static_cast<QWidget*>(byAction), static_cast<QWidget*>(bare),
                       static_cast<QWidget*>(check)})
        layout->addWidget(c);
    // A label is not a control; a button with a text is named by Qt already.
    EXPECT_EQ(derivedAccessibleName(new QLabel(QStringLiteral("Port:"), &w)), "");
    EXPECT_EQ(derivedAccessibleName(ok), "");
    EXPECT_EQ(derivedAccessibleName(check), "");
    EXPECT_EQ(derivedAccessibleName(icon), "Send File");
    EXPECT_EQ(derivedAccessibleName(byAction), "Ring");
    EXPECT_EQ(derivedAccessibleName(bare), "");
}

TEST(AccessibleNames, BuddyPlaceholderAndGroupWhenNoLayoutSays)
{
    QWidget w;
    auto* buddy = new QLineEdit(&w);
    auto* label = new QLabel(QStringLiteral("&Nickname:"), &w);
    label->setBuddy(buddy);
    auto* pane = new QTextEdit(&w);
    pane->setPlaceholderText(QStringLiteral("Remote"));
    auto* group = new QGroupBox(QStringLiteral("Voice"), &w);
    auto* speed = new QSpinBox(group);
    EXPECT_EQ(derivedAccessibleName(buddy), "Nickname");
    EXPECT_EQ(derivedAccessibleName(pane), "Remote");
    EXPECT_EQ(derivedAccessibleName(speed), "Voice");
    // A spin box's own line edit is not shown to a screen reader; an
    // editable combo box's is, and is named as its box.
    for (QLineEdit* inner : speed->findChildren<QLineEdit*>())
        EXPECT_EQ(derivedAccessibleName(inner), "");
    auto* form = new QFormLayout(&w);
    auto* address = new QComboBox;
    address->setEditable(true);
    address->addItem(QStringLiteral("127.0.0.1"));
    form->addRow(QStringLiteral("&Address:"), address);
    EXPECT_EQ(derivedAccessibleName(address->lineEdit()), "Address");
}

TEST(AccessibleNames, AHandSetNameStaysADerivedOneFollowsTheLabel)
{
    QWidget w;
    auto* form = new QFormLayout(&w);
    auto* byHand = new QLineEdit;
    byHand->setAccessibleName(QStringLiteral("Chosen"));
    auto* derived = new QLineEdit;
    auto* label = new QLabel(QStringLiteral("Port:"));
    form->addRow(QStringLiteral("Host:"), byHand);
    form->addRow(label, derived);
    nameUnnamedControls(&w);
    EXPECT_EQ(byHand->accessibleName(), "Chosen");
    EXPECT_EQ(derived->accessibleName(), "Port");
    label->setText(QStringLiteral("Anschluss:"));
    nameUnnamedControls(&w);
    EXPECT_EQ(derived->accessibleName(), "Anschluss");
    EXPECT_EQ(byHand->accessibleName(), "Chosen");
}

TEST(AccessibleNames, EveryDialogOfTheCopyNamesItsControlsAtItsFirstShow)
{
    TestCopy copy;
    ASSERT_TRUE(copy.start());
    MainWindow main(copy.frm());
    auto* dialog = new QDialog(&main);
    auto* tabs = new QTabWidget(dialog);
    (new QVBoxLayout(dialog))->addWidget(tabs);
    auto* first = new QWidget;
    auto* second = new QWidget;
    auto* visible = new QLineEdit;
    auto* hidden = new QSpinBox;
    (new QFormLayout(first))->addRow(QStringLiteral("Local port:"), visible);
    (new QFormLayout(second))->addRow(QStringLiteral("Byte per send:"), hidden);
    tabs->addTab(first, QStringLiteral("General"));
    tabs->addTab(second, QStringLiteral("Advanced"));
    dialog->show();
    EXPECT_EQ(visible->accessibleName(), "Local port");
    // The page not shown yet is named too: a screen reader walks it.
    EXPECT_EQ(hidden->accessibleName(), "Byte per send");

    // A control added to a window already up is named when it shows.
    auto* later = new QToolButton(first);
    later->setToolTip(QStringLiteral("Clear"));
    later->show();
    EXPECT_EQ(later->accessibleName(), "Clear");

    // The main window's panes are named by what they show when empty.
    main.show();
    QStringList unnamed;
    for (QTextEdit* pane : main.findChildren<QTextEdit*>())
        if (pane->isVisible() && pane->accessibleName().isEmpty())
            unnamed << pane->objectName();
    EXPECT_TRUE(unnamed.isEmpty()) << unnamed.join(' ').toStdString();
}
