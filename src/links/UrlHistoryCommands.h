#pragma once
// The commands of frmURLHistory and its edit dialog frmURL that ask the
// user or touch files: save, open, the save reminder on close, visit, copy,
// add and edit. Every question goes through the Prompter.

#include "links/LinkSeams.h"

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <functional>
#include <optional>

namespace vonnel {

class Prompter;
class UrlHistory;

// The fields of frmURL; txtEditIndex is "-1" for a new entry.
struct UrlEditForm {
    QString txtURL;
    QString txtDescript;
    QString txtEditIndex = QStringLiteral("-1");
};

class UrlHistoryCommands {
public:
    UrlHistoryCommands(UrlHistory& history, Prompter& prompter, TranslateFn translate = untranslated);

    // The list file is in the session's single-byte code page; Latin-1 until
    // the copy hands in its own conversion.
    std::function<QByteArray(const QString&)> encode;
    std::function<QString(const QByteArray&)> decode;
    // The window gives up its top-most state while the Open dialog is up.
    std::function<void(bool dialogUp)> aroundOpenDialog;
    // The user's default program for an address (QDesktopServices).
    std::function<bool(const QUrl&)> openUrl;
    std::function<void(const QString&)> setClipboardText;

    static QString fileFilter() { return QStringLiteral("All Files|*.*|Text Files|*.txt"); }

    enum class SaveResult { Saved, Cancelled, Failed };
    SaveResult mnuSave_Click();
    // Writes the lists to path; a failure is shown and the lists stay.
    bool saveTo(const QString& path);

    // Returns the number of entries added; the lists are added to.
    int mnuOpen_Click();
    int openFrom(const QString& path);

    // Form_QueryUnload: true when the window may close.
    bool Form_QueryUnload(bool saveReminder);

    // Opens the selected address; false when there is none or it may not be opened.
    bool mnuVisit_Click();
    void mnuCopy_Click();

    UrlEditForm mnuAdd_Click() const;
    // The selected entry; nothing when none is selected.
    std::optional<UrlEditForm> mnuEdit_Click() const;
    // frmURL's OK: nothing with an empty address, else addurl. True when the dialog closes.
    bool cmdOK_Click(const UrlEditForm& form);

private:
    void showFileError(int number, const QString& description);
    QString tr(const char* text) const;

    UrlHistory& m_history;
    Prompter& m_prompter;
    TranslateFn m_translate;
};

}  // namespace vonnel
