#pragma once
// frmOptions: the eleven tabs over the settings. A thin view on
// OptionsModel: each box shows the model's value and hands the user's
// changes back; the rules, the defaults and Apply are the model's.

#include "core/options/OptionsModel.h"
#include "platform/Autostart.h"

#include <QDialog>
#include <array>
#include <memory>

class QLabel;
class QPushButton;
class QGroupBox;
class QTabWidget;
class QVBoxLayout;
class QGridLayout;

namespace vonnel {

class FrmMain;

class OptionsDialog : public QDialog {
    Q_OBJECT
public:
    // autostartFolder: where the start-up entry goes; empty for the user's.
    explicit OptionsDialog(FrmMain& frm, QWidget* parent = nullptr,
                           const QString& autostartFolder = QString());
    ~OptionsDialog() override;

    OptionsModel& model() { return m_model; }
    QTabWidget* tabs() const { return m_tabs; }
    // The widget of a control that keeps a setting.
    QWidget* box(Opt control) const { return m_boxes[size_t(control)]; }

    void cmdOK_Click();
    void cmdApply_Click();

Q_SIGNALS:
    // cmdLang: the language picker is to be shown.
    void languageRequested();

private:
    // stbOptions changed its tab: fills what is filled late.
    void stbOptions_Click(int index);
    void getSystemRes();
    void fillVoicePage();
    // Shows the model's value in the control's box.
    void refresh(Opt control);

    // Page builders (OptionsPages.cpp).
    QWidget* buildGeneral();
    QWidget* buildFont();
    QWidget* buildSound();
    QWidget* buildApperance();
    QWidget* buildMessage();
    QWidget* buildMenu();
    QWidget* buildSession();
    QWidget* buildPictureUrl();
    QWidget* buildVoice();
    QWidget* buildSecurity();
    QGroupBox* buildPrivateFrame();
    QWidget* buildAdvanced();

    // Box makers: each makes the control's widget, binds it to the model
    // and returns it.
    QGroupBox* frame(const char* name, const QString& caption);
    QWidget* check(Opt control, const QString& text);
    QWidget* lineBox(Opt control);
    QWidget* slider(Opt control, int min, int max);
    QWidget* colourButton(Opt control, const QString& text);
    QPushButton* button(const char* name, const QString& text);
    void addRow(QGridLayout* grid, const QString& label, QWidget* box, QWidget* extra = nullptr);

    FrmMain& m_frm;
    CopyOptionsStore m_store;
    Autostart m_autostart;
    OptionsModel m_model;
    QTabWidget* m_tabs = nullptr;
    QLabel* m_status = nullptr;
    QLabel* m_language = nullptr;
    std::array<QWidget*, kOptCount> m_boxes{};
    bool m_fontsFilled = false;
    bool m_voiceFilled = false;
};

}  // namespace vonnel
