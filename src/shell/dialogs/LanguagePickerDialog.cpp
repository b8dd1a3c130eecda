#include "shell/dialogs/LanguagePickerDialog.h"

#include "core/Form.h"
#include "shell/FrmMain.h"
#include "shell/LanguagePicker.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace vonnel {

LanguagePickerDialog::LanguagePickerDialog(FrmMain& frm, QWidget* parent)
    : QDialog(parent), m_picker(new LanguagePicker(frm.ctx(), this)), m_cboLang(new QComboBox(this)),
      m_edit(new QPushButton(this))
{
    setObjectName(formName(Form::frmPopMsg));
    setWindowTitle(m_picker->caption());
    auto* label = new QLabel(m_picker->caption(), this);
    label->setObjectName(QStringLiteral("lblPopMsg"));
    m_cboLang->setObjectName(QStringLiteral("cboLang"));
    m_cboLang->addItems(m_picker->cboLang());
    m_cboLang->setCurrentText(m_picker->selected());
    m_edit->setObjectName(QStringLiteral("cmdLangEdit"));
    m_edit->setText(m_picker->cmdLangEditCaption());
    auto* apply = new QPushButton(m_picker->cmdPopAbortCaption(), this);
    apply->setObjectName(QStringLiteral("cmdPopAbort"));
    apply->setDefault(true);

    connect(m_cboLang, &QComboBox::currentTextChanged, m_picker, &LanguagePicker::cboLang_Change);
    connect(m_picker, &LanguagePicker::cmdLangEditCaptionChanged, m_edit, &QPushButton::setText);
    connect(m_edit, &QPushButton::clicked, m_picker, &LanguagePicker::cmdLangEdit_Click);
    connect(apply, &QPushButton::clicked, this, [this] {
        m_picker->cmdPopAbort_Click();
        accept();
    });
    connect(m_picker, &LanguagePicker::applied, &frm, &FrmMain::languageApplied);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_edit);
    buttons->addWidget(apply);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(m_cboLang);
    layout->addLayout(buttons);
    setMinimumWidth(280);
}

LanguagePickerDialog::~LanguagePickerDialog() = default;

}  // namespace vonnel
