#include "shell/LanguagePicker.h"

#include "core/CopyContext.h"
#include "core/IniStore.h"
#include "core/Translator.h"
#include "platform/Desktop.h"
#include "platform/Prompter.h"

#include <QCollator>
#include <QDir>
#include <QFileInfo>
#include <algorithm>

namespace vonnel {

LanguagePicker::LanguagePicker(CopyContext& ctx, QObject* parent) : QObject(parent), m_ctx(ctx)
{
    m_editCaption = m_ctx.translate(QStringLiteral("Edit"), QStringLiteral("&Edit"));
    fillLanguages();
    // The list opens on the language in use.
    m_selected = english();
    const QString inUse = QFileInfo(m_ctx.translator().langPath()).completeBaseName();
    if (m_ctx.TranslationOn)
        for (const QString& l : std::as_const(m_languages))
            if (l.compare(inUse, Qt::CaseInsensitive) == 0)
                m_selected = l;
}

QString LanguagePicker::caption() const
{
    return m_ctx.translate(QStringLiteral("Select a language:"));
}

QString LanguagePicker::cmdPopAbortCaption() const
{
    return m_ctx.translate(QStringLiteral("Apply"), QStringLiteral("&Apply"));
}

QString LanguagePicker::languageExtension() const
{
    const QString ext = m_ctx.setting(QStringLiteral("LangExt")).toLower();
    return ext.isEmpty() ? QStringLiteral(".lng") : ext;
}

void LanguagePicker::fillLanguages()
{
    m_languages = {english()};
    const QString ext = languageExtension();
    QStringList names;
    // The application's files are matched without regard to case.
    const QFileInfoList files = QDir(m_ctx.AppPath()).entryInfoList(QDir::Files);
    for (const QFileInfo& f : files) {
        const QString name = f.fileName();
        if (name.size() > ext.size() && name.endsWith(ext, Qt::CaseInsensitive))
            names << name.left(name.size() - ext.size());
    }
    QCollator order;
    order.setCaseSensitivity(Qt::CaseInsensitive);
    std::sort(names.begin(), names.end(), order);
    m_languages << names;
}

void LanguagePicker::cboLang_Change(const QString& language)
{
    m_selected = language;
    const QString caption = language == english() ? m_ctx.translate(QStringLiteral("New"))
                                                  : m_ctx.translate(QStringLiteral("Edit"));
    if (caption == m_editCaption)
        return;
    m_editCaption = caption;
    Q_EMIT cmdLangEditCaptionChanged(caption);
}

void LanguagePicker::cmdLangEdit_Click()
{
    const bool english = m_selected.trimmed() == LanguagePicker::english();
    const QString file = resolveCaseBlind(english ? m_ctx.appFile(QStringLiteral("Lang.txt"))
                                                  : m_ctx.appFile(m_selected + languageExtension()));
    if (english)
        m_ctx.prompter().msgBox(QStringLiteral("Steps:\r\n"
                                               " 1) Fill in entries (UNICODE not supported)\r\n"
                                               " 2) Save file as xxxxxx.lng (where xxxxxx = your language)\r\n"
                                               "\r\n"
                                               " Note:\r\n"
                                               " - Unfilled entries will be replaced by English."),
                                MsgStyle::Information, QStringLiteral("Create New Language"));
    // The user's own editor gets the file name as one argument, never
    // through a shell; without one, the desktop's editor for text.
    const QString editor = m_ctx.setting(QStringLiteral("Editor"));
    if (!editor.isEmpty())
        m_ctx.desktop().startProgram(editor, {file});
    else
        m_ctx.desktop().openFile(file);
}

void LanguagePicker::cmdPopAbort_Click()
{
    const QString name = m_selected.trimmed();
    Translator& t = m_ctx.translator();
    if (name != english()) {
        // Always ".lng", whatever LangExt says: a language listed under
        // another extension is applied as a file that may not be there.
        t.setLangFile(m_ctx.AppPath() + name + QStringLiteral(".lng"));
        m_ctx.writeSetting(QStringLiteral("LangFile"), t.langPath());
        m_ctx.writeSetting(QStringLiteral("Translation"), QStringLiteral("1"));
        m_ctx.TranslationOn = true;
    } else {
        m_ctx.writeSetting(QStringLiteral("Translation"), QStringLiteral("0"));
        m_ctx.writeSetting(QStringLiteral("LangFile"), t.langPath());
        m_ctx.TranslationOn = false;
    }
    t.setTranslationOn(m_ctx.TranslationOn);
    Q_EMIT applied();
}

}  // namespace vonnel
