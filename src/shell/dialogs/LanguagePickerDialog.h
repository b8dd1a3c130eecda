#pragma once
// frmPopMsg as the language picker: cboLang, cmdLangEdit and cmdPopAbort
// (Apply) over a LanguagePicker.

#include <QDialog>

class QComboBox;
class QPushButton;

namespace vonnel {

class FrmMain;
class LanguagePicker;

class LanguagePickerDialog : public QDialog {
    Q_OBJECT
public:
    LanguagePickerDialog(FrmMain& frm, QWidget* parent = nullptr);
    ~LanguagePickerDialog() override;

    LanguagePicker& picker() const { return *m_picker; }

private:
    LanguagePicker* m_picker;
    QComboBox* m_cboLang;
    QPushButton* m_edit;
};

}  // namespace vonnel
