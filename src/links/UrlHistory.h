#pragma once
// The state behind frmURLHistory: addresses and their descriptions in two
// parallel lists, the selection, the description box and the count caption.
// A window binds to the signals; the file and dialog commands live in
// UrlHistoryCommands.

#include "links/LinkSeams.h"

#include <QObject>
#include <QString>
#include <QStringList>

namespace vonnel {

class UrlHistory : public QObject {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(int selectedIndex READ selectedIndex NOTIFY selectionChanged)
    Q_PROPERTY(QString txtDescript READ txtDescript NOTIFY txtDescriptChanged)
    Q_PROPERTY(bool modified READ modified NOTIFY modifiedChanged)

public:
    // The peer can send any number of "<URL>" messages, and each lands here.
    // The lists are indexed in 16 bits, and 65535 is "no index": they hold
    // at most 65535 entries, and at most kMaxChars characters of addresses
    // and descriptions together, so a peer's long addresses cannot take the
    // memory either. Anything added beyond, from the peer, from local text
    // or from a file, is dropped; the first drop after the lists filled up
    // raises limitReached(), the next ones only once room was made again.
    static constexpr int kMaxEntries = 65535;
    static constexpr qsizetype kMaxChars = qsizetype(1) << 25;
    static constexpr int kNoIndex = 65535;

    explicit UrlHistory(TranslateFn translate = untranslated, QObject* parent = nullptr);

    const QStringList& lstURL() const { return m_urls; }
    const QStringList& lstDescript() const { return m_descripts; }
    int count() const { return int(m_urls.size()); }

    enum class AddResult { Appended, Replaced, AlreadyListed, Full, NoSuchIndex };
    // addurl: index -1 appends unless the trimmed address is listed already;
    // a real index replaces that entry. An empty description takes the
    // address, and then the description prompt is offered.
    AddResult addurl(const QString& url, const QString& description, int index);
    // webCheck's direct append: both lists, no duplicate handling, no trim.
    bool appendRemote(const QString& address);
    // mnuOpen's append of one read entry.
    bool appendLoaded(const QString& url, const QString& description);

    // mnuRemove_Click: the selected entry goes; its neighbour is selected.
    void mnuRemove_Click();
    void removeAt(int index);
    // mnuRemoveDup_Click: of equal non-empty addresses the first stays.
    int mnuRemoveDup_Click();
    void mnuRemoveAll_Click();

    // A click in lstURL: the same index in lstDescript, its text in txtDescript.
    void select(int index);
    int selectedIndex() const { return m_selected; }
    QString selectedUrl() const;

    // The description box: what it shows, whether it still holds the
    // prompt, the user's typing, Enter and gaining the focus.
    QString txtDescript() const { return m_txtDescript; }
    bool promptShown() const { return m_promptShown; }
    void setTxtDescript(const QString& text);
    void txtDescript_Enter();
    void txtDescript_GotFocus();
    QString descriptionPrompt() const;

    // mnuCount's caption: "[" + count + "]", cut with "..." beyond maxChars.
    QString countCaption(int maxChars = 12) const;

    // Changed since the last save or since empty.
    bool modified() const { return m_modified; }
    void markSaved();

Q_SIGNALS:
    // The lists changed in a way other than by entryAppended; a window
    // reloads them.
    void listChanged();
    // One entry was added at the end, at index: a window adds just that.
    void entryAppended(int index);
    void countChanged(int count);
    void selectionChanged(int index);
    void txtDescriptChanged(const QString& text);
    void modifiedChanged(bool modified);
    // An entry was dropped because the lists are full (once per filling).
    void limitReached();

private:
    bool roomFor(qsizetype chars);
    void append(const QString& url, const QString& description);
    void changed();
    void roomMade();
    void setSelected(int index);
    void setModified(bool on);
    void offerPrompt(int index);

    TranslateFn m_translate;
    QStringList m_urls;
    QStringList m_descripts;
    int m_selected = -1;
    QString m_txtDescript;
    bool m_promptShown = false;
    bool m_modified = false;
    // Characters both lists hold, kept up with every change.
    qsizetype m_chars = 0;
    // limitReached() was raised and no room was made since.
    bool m_fullTold = false;
};

// The shared trim: characters below code 33 go from both ends.
QString trimBelow33(const QString& text);

}  // namespace vonnel
