#include "links/UrlHistoryCommands.h"

#include "links/UrlHistory.h"
#include "links/UrlHistoryFile.h"
#include "links/UrlScan.h"
#include "platform/Prompter.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace vonnel {

namespace {

const QString kHistoryTitle = QStringLiteral("URL History");

}  // namespace

UrlHistoryCommands::UrlHistoryCommands(UrlHistory& history, Prompter& prompter,
                                       TranslateFn translate)
    : encode([](const QString& s) { return s.toLatin1(); }),
      decode([](const QByteArray& b) { return QString::fromLatin1(b); }),
      m_history(history),
      m_prompter(prompter),
      m_translate(translate ? std::move(translate) : TranslateFn(untranslated))
{
}

QString UrlHistoryCommands::tr(const char* text) const
{
    return m_translate(QString::fromLatin1(text));
}

void UrlHistoryCommands::showFileError(int number, const QString& description)
{
    m_prompter.box(BoxRequest{kHistoryTitle, QString::number(number) + QStringLiteral(": ") + description,
                              MsgStyle::Exclamation});
}

UrlHistoryCommands::SaveResult UrlHistoryCommands::mnuSave_Click()
{
    FileRequest request;
    request.save = true;
    request.title = tr("Save As");
    request.filter = fileFilter();
    QString name = m_prompter.file(request);
    if (name.isEmpty())
        return SaveResult::Cancelled;
    if (!QFileInfo(name).fileName().contains(QLatin1Char('.')))
        name += QStringLiteral(".txt");
    if (QFileInfo::exists(name)) {
        const Answer a = m_prompter.box(BoxRequest{
            tr("Save As"),
            name + QLatin1Char(' ') + tr("is already exist.") + QStringLiteral("\r\n") +
                tr("Do you want to overwrite it?"),
            MsgStyle::YesNo + MsgStyle::Question});
        if (a != Answer::Yes)
            return SaveResult::Cancelled;
    }
    return saveTo(name) ? SaveResult::Saved : SaveResult::Failed;
}

bool UrlHistoryCommands::saveTo(const QString& path)
{
    // The new list replaces the old file only once it is wholly written, so
    // a full disk does not cost the user the list saved before.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        showFileError(75, QStringLiteral("Path/File access error"));
        return false;
    }
    const QByteArray bytes = encode(urlListText(m_history.lstURL(), m_history.lstDescript()));
    if (file.write(bytes) != bytes.size() || !file.commit()) {
        showFileError(57, QStringLiteral("Device I/O error"));
        return false;
    }
    m_history.markSaved();
    return true;
}

int UrlHistoryCommands::mnuOpen_Click()
{
    FileRequest request;
    request.title = tr("Open");
    request.filter = fileFilter();
    if (aroundOpenDialog)
        aroundOpenDialog(true);
    const QString name = m_prompter.file(request);
    if (aroundOpenDialog)
        aroundOpenDialog(false);
    if (name.isEmpty())
        return 0;
    return openFrom(name);
}

int UrlHistoryCommands::openFrom(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (file.exists())
            showFileError(75, QStringLiteral("Path/File access error"));
        else
            showFileError(53, QStringLiteral("File not found"));
        return 0;
    }
    const QList<UrlListEntry> entries = urlListEntries(decode(file.readAll()));
    int added = 0;
    for (const UrlListEntry& e : entries) {
        if (!m_history.appendLoaded(e.url, e.description))
            break;
        ++added;
    }
    return added;
}

bool UrlHistoryCommands::Form_QueryUnload(bool saveReminder)
{
    if (!saveReminder || m_history.count() == 0)
        return true;
    const Answer a = m_prompter.box(BoxRequest{kHistoryTitle, tr("Do you want to save before quit?"),
                                               MsgStyle::YesNoCancel + MsgStyle::Question});
    if (a == Answer::Cancel)
        return false;
    if (a == Answer::Yes)
        // A save that was called off or failed keeps the window, and the
        // list with it, open.
        return mnuSave_Click() == SaveResult::Saved;
    return true;
}

bool UrlHistoryCommands::mnuVisit_Click()
{
    const QUrl url = openableUrl(m_history.selectedUrl());
    if (!url.isValid() || !openUrl)
        return false;
    return openUrl(url);
}

void UrlHistoryCommands::mnuCopy_Click()
{
    if (m_history.selectedIndex() >= 0 && setClipboardText)
        setClipboardText(m_history.selectedUrl());
}

UrlEditForm UrlHistoryCommands::mnuAdd_Click() const
{
    return UrlEditForm{};
}

std::optional<UrlEditForm> UrlHistoryCommands::mnuEdit_Click() const
{
    const int i = m_history.selectedIndex();
    if (i < 0)
        return std::nullopt;
    return UrlEditForm{m_history.lstURL()[i], m_history.lstDescript()[i], QString::number(i)};
}

bool UrlHistoryCommands::cmdOK_Click(const UrlEditForm& form)
{
    if (form.txtURL.isEmpty())
        return false;
    bool ok = false;
    const int index = form.txtEditIndex.trimmed().toInt(&ok);
    m_history.addurl(form.txtURL, form.txtDescript, ok ? index : -1);
    return true;
}

}  // namespace vonnel
