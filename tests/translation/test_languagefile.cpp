// A language file at work: a copy started with Deutsch.lng shows German
// menus, tips and dialogs; a copy switched to it through the picker while
// running sets the texts again on the actions it already has, and back.

#include "shell/FrmMain.h"
#include "shell/MainWindow.h"
#include "shell/LanguagePicker.h"
#include "shell/dialogs/LanguagePickerDialog.h"
#include "shell/dialogs/NetRangeDialog.h"
#include "support/TestCopy.h"

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <gtest/gtest.h>

using namespace vonnel;
using namespace vonnel::test;

namespace {

const QString kSample = QStringLiteral(VONNEL_SOURCE_DIR "/tests/data/Deutsch.lng");

void placeSample(TestCopy& copy) { ASSERT_TRUE(QFile::copy(kSample, copy.file("Deutsch.lng"))); }

QStringList heads(MainWindow& w)
{
    QStringList titles;
    for (QAction* a : w.menuBar()->actions())
        titles << a->text();
    return titles;
}

const QStringList kGermanHeads = {"&Datei", "&Bearbeiten", "&Nachrichten", "&Stimme",
                                  "&Werkzeuge", "&Fenster", "E&xtras", "&Hilfe"};
const QStringList kEnglishHeads = {"&File", "&Edit", "&Messages", "&Voice",
                                   "&Tools", "&Window", "E&xtras", "&Help"};

// What the window shows of the menus and the toolbar that a language changes.
void expectGerman(MainWindow& w)
{
    EXPECT_EQ(heads(w), kGermanHeads);
    const struct {
        Control c;
        QString text, tip;
    } shown[] = {
        {Control::mnuConnect, "&Verbinden...", "Verbinden..."},
        {Control::mnuFileClose, QString::fromUtf8("S&chlie\u00dfen"), QString::fromUtf8("Schlie\u00dfen")},
        {Control::mnuEditPaste, QString::fromUtf8("&Einf\u00fcgen"), QString::fromUtf8("Einf\u00fcgen")},
        {Control::mnuMsg7, "&Bitte warten", "Bitte warten"},
        {Control::mnuAbout, QString::fromUtf8("&\u00dcber Vonnel"), QString::fromUtf8("\u00dcber Vonnel")},
        {Control::mnuSysShow, "&Zeigen", "Zeigen"},
        {Control::Toolbar1_1, "Verbinden...", "Verbinden..."},
        {Control::Toolbar1_7, "Fett", "Fett"},
        {Control::Toolbar1_9, QString::fromUtf8("Schrift gr\u00f6\u00dfer"), QString::fromUtf8("Schrift gr\u00f6\u00dfer")},
        {Control::Toolbar1_17, "Hilfe", "Hilfe"},
        {Control::Toolbar1_SendFile, "Datei senden...", "Datei senden..."},
    };
    for (const auto& s : shown) {
        EXPECT_EQ(w.action(s.c)->text(), s.text) << qPrintable(controlName(s.c));
        // A tip may name the entry's key after the text: "Hilfe (F1)".
        const QString tip = w.action(s.c)->toolTip();
        EXPECT_TRUE(tip == s.tip || (tip.startsWith(s.tip + " (") && tip.endsWith(')')))
            << qPrintable(controlName(s.c)) << ": " << qPrintable(tip);
    }
    EXPECT_EQ(w.serverPane()->placeholderText(), "Sie");
}

TEST(LanguageFile, AStartWithALanguageShowsItEverywhere)
{
    TestCopy copy(0, {{"Translation", "1"}, {"LangFile", "Deutsch.lng"}});
    placeSample(copy);
    ASSERT_TRUE(copy.start());
    ASSERT_TRUE(copy.frm().ctx().TranslationOn);
    // Bound before and after the form load alike.
    MainWindow late(copy.frm());
    expectGerman(late);

    // A dialog: frmNetRange's texts, its keys and fallbacks.
    NetRangeDialog range(copy.frm().ctx(), {"127.0.0.1"});
    EXPECT_EQ(range.windowTitle(), "Bestimmter Bereich");
    QStringList buttons;
    for (QPushButton* b : range.findChildren<QPushButton*>())
        buttons << b->text();
    EXPECT_EQ(buttons, QStringList({"&Anzeigen", "&Abbrechen"}));
    QStringList labels;
    for (QLabel* l : range.findChildren<QLabel*>())
        labels << l->text();
    EXPECT_TRUE(labels.contains("Von:") && labels.contains("Bis:")) << qPrintable(labels.join('|'));

    // And the picker itself.
    LanguagePickerDialog picker(copy.frm());
    EXPECT_EQ(picker.windowTitle(), QString::fromUtf8("Sprache w\u00e4hlen:"));
    EXPECT_EQ(picker.findChild<QPushButton*>("cmdPopAbort")->text(), QString::fromUtf8("\u00dc&bernehmen"));
    EXPECT_EQ(picker.findChild<QComboBox*>("cboLang")->currentText(), "Deutsch");
}

TEST(LanguageFile, TheMissingFileClearsTranslationAtStart)
{
    TestCopy copy(0, {{"Translation", "1"}, {"LangFile", "Deutsch.lng"}});
    ASSERT_TRUE(copy.start());
    EXPECT_FALSE(copy.frm().ctx().TranslationOn);
    MainWindow w(copy.frm());
    EXPECT_EQ(heads(w), kEnglishHeads);
}

TEST(LanguageFile, ApplyInThePickerSetsTheTextsAgain)
{
    TestCopy copy(0, {{"Translation", "0"}});
    placeSample(copy);
    ASSERT_TRUE(copy.start());
    // A window made before the form load, as the program makes it.
    MainWindow w(copy.frm());
    copy.frm().TransMenu();
    EXPECT_EQ(heads(w), kEnglishHeads);
    QAction* connect = w.action(Control::mnuConnect);
    int changed = 0;
    QObject::connect(&copy.frm(), &FrmMain::languageChanged, [&changed] { ++changed; });

    LanguagePickerDialog dialog(copy.frm(), &w);
    auto* list = dialog.findChild<QComboBox*>("cboLang");
    auto* edit = dialog.findChild<QPushButton*>("cmdLangEdit");
    ASSERT_TRUE(list && edit);
    EXPECT_EQ(list->currentText(), "English");
    list->setCurrentText("Deutsch");
    EXPECT_EQ(edit->text(), "Edit");
    list->setCurrentText("English");
    EXPECT_EQ(edit->text(), "New");
    list->setCurrentText("Deutsch");
    dialog.findChild<QPushButton*>("cmdPopAbort")->click();

    EXPECT_EQ(changed, 1);
    EXPECT_EQ(w.action(Control::mnuConnect), connect);  // the same actions, new texts
    expectGerman(w);
    EXPECT_EQ(copy.get("Translation"), "1");

    // Back to English through the picker: the program's own texts again.
    LanguagePicker picker(copy.frm().ctx());
    QObject::connect(&picker, &LanguagePicker::applied, &copy.frm(), &FrmMain::languageApplied);
    picker.cboLang_Change("English");
    picker.cmdPopAbort_Click();
    EXPECT_EQ(changed, 2);
    EXPECT_EQ(heads(w), kEnglishHeads);
    EXPECT_EQ(w.action(Control::mnuConnect)->text(), "&Connect...");
    EXPECT_EQ(w.action(Control::Toolbar1_1)->toolTip(), "Connect");
}

}  // namespace
