#pragma once
// frmPopMsg as the language picker: the languages of the application
// folder, the editor for a language file, and Apply, which sets the
// language for this copy and for the next start. Holds no widgets; the
// window in dialogs/LanguagePickerDialog shows it.

#include <QObject>
#include <QString>
#include <QStringList>

namespace vonnel {

class CopyContext;

class LanguagePicker : public QObject {
    Q_OBJECT
public:
    explicit LanguagePicker(CopyContext& ctx, QObject* parent = nullptr);

    static QString english() { return QStringLiteral("English"); }

    QString caption() const;           // "Select a language:"
    QString cmdPopAbortCaption() const;  // "&Apply"
    QString cmdLangEditCaption() const { return m_editCaption; }

    // "English", then each language file of the application folder by its
    // name without the extension.
    const QStringList& cboLang() const { return m_languages; }
    // The extension of language files: LangExt in lower case, ".lng" when
    // it is empty.
    QString languageExtension() const;
    QString selected() const { return m_selected; }

    // A choice in the list: "New" for English, "Edit" for a language.
    void cboLang_Change(const QString& language);
    // Opens the chosen language file in the editor; for English, Lang.txt
    // after the help box on making a new language.
    void cmdLangEdit_Click();
    // Apply: the chosen language for the lookup and for the next start.
    void cmdPopAbort_Click();

Q_SIGNALS:
    void cmdLangEditCaptionChanged(const QString& caption);
    // Apply has set the language: the windows set their texts again.
    void applied();

private:
    void fillLanguages();

    CopyContext& m_ctx;
    QStringList m_languages;
    QString m_selected;
    QString m_editCaption;
};

}  // namespace vonnel
