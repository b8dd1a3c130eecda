#include "links/UrlHistory.h"

#include <QSet>

namespace vonnel {

QString trimBelow33(const QString& text)
{
    qsizetype from = 0, to = text.size();
    while (from < to && text[from].unicode() < 33)
        ++from;
    while (to > from && text[to - 1].unicode() < 33)
        --to;
    return text.mid(from, to - from);
}

UrlHistory::UrlHistory(TranslateFn translate, QObject* parent)
    : QObject(parent), m_translate(translate ? std::move(translate) : TranslateFn(untranslated))
{
}

QString UrlHistory::descriptionPrompt() const
{
    return m_translate(QStringLiteral("Type your description here and press Enter to confirm"));
}

bool UrlHistory::roomFor(qsizetype chars)
{
    if (count() < kMaxEntries && m_chars + chars <= kMaxChars)
        return true;
    if (!m_fullTold) {
        m_fullTold = true;
        Q_EMIT limitReached();
    }
    return false;
}

void UrlHistory::roomMade()
{
    m_fullTold = false;
}

void UrlHistory::append(const QString& url, const QString& description)
{
    m_urls.append(url);
    m_descripts.append(description);
    m_chars += url.size() + description.size();
    Q_EMIT entryAppended(count() - 1);
    Q_EMIT countChanged(count());
    setModified(true);
}

void UrlHistory::changed()
{
    Q_EMIT listChanged();
    Q_EMIT countChanged(count());
    setModified(true);
}

void UrlHistory::setModified(bool on)
{
    if (m_modified == on)
        return;
    m_modified = on;
    Q_EMIT modifiedChanged(on);
}

void UrlHistory::markSaved()
{
    setModified(false);
}

void UrlHistory::setSelected(int index)
{
    if (index < 0 || index >= count())
        index = -1;
    m_selected = index;
    m_txtDescript = index < 0 ? QString() : m_descripts[index];
    m_promptShown = false;
    Q_EMIT selectionChanged(index);
    Q_EMIT txtDescriptChanged(m_txtDescript);
}

void UrlHistory::offerPrompt(int index)
{
    m_selected = index;
    m_txtDescript = descriptionPrompt();
    m_promptShown = true;
    Q_EMIT selectionChanged(index);
    Q_EMIT txtDescriptChanged(m_txtDescript);
}

UrlHistory::AddResult UrlHistory::addurl(const QString& url, const QString& description, int index)
{
    const QString descript = description.isEmpty() ? url : description;
    // The index is a 16-bit list index: -1 and 65535 are the same "no index".
    const quint16 slot = quint16(index);
    int target;
    AddResult result;
    if (slot < kNoIndex) {
        if (slot >= count())
            return AddResult::NoSuchIndex;
        const qsizetype grows = url.size() + descript.size() - m_urls[slot].size() -
                                m_descripts[slot].size();
        if (grows > 0 && !roomFor(grows))
            return AddResult::Full;
        m_chars += grows;
        m_urls[slot] = url;
        m_descripts[slot] = descript;
        target = slot;
        result = AddResult::Replaced;
    } else {
        const QString wanted = trimBelow33(url);
        for (qsizetype i = m_urls.size() - 1; i >= 0; --i) {
            if (trimBelow33(m_urls[i]) == wanted)
                return AddResult::AlreadyListed;
        }
        const QString trimmed = trimBelow33(descript);
        if (!roomFor(wanted.size() + trimmed.size()))
            return AddResult::Full;
        append(wanted, trimmed);
        target = count() - 1;
        result = AddResult::Appended;
    }
    if (m_descripts.contains(url))
        offerPrompt(target);
    if (result == AddResult::Replaced)
        changed();
    return result;
}

bool UrlHistory::appendRemote(const QString& address)
{
    if (!roomFor(2 * address.size()))
        return false;
    append(address, address);
    return true;
}

bool UrlHistory::appendLoaded(const QString& url, const QString& description)
{
    if (!roomFor(url.size() + description.size()))
        return false;
    append(url, description);
    return true;
}

void UrlHistory::removeAt(int index)
{
    if (index < 0 || index >= count())
        return;
    m_chars -= m_urls[index].size() + m_descripts[index].size();
    m_urls.removeAt(index);
    m_descripts.removeAt(index);
    roomMade();
    if (m_selected == index)
        setSelected(-1);
    else if (m_selected > index) {
        --m_selected;
        Q_EMIT selectionChanged(m_selected);
    }
    changed();
}

void UrlHistory::mnuRemove_Click()
{
    const int index = m_selected;
    if (index < 0)
        return;
    removeAt(index);
    // The neighbour: the entry that moved up into the place, else the one before.
    setSelected(index < count() ? index : count() - 1);
}

int UrlHistory::mnuRemoveDup_Click()
{
    // Of equal addresses the first stays; empty entries are never taken for
    // duplicates. The comparison is exact.
    QSet<QString> seen;
    QStringList urls, descripts;
    qsizetype chars = 0;
    for (qsizetype i = 0; i < m_urls.size(); ++i) {
        const QString& u = m_urls[i];
        if (!u.isEmpty()) {
            if (seen.contains(u))
                continue;
            seen.insert(u);
        }
        urls.append(u);
        descripts.append(m_descripts[i]);
        chars += u.size() + m_descripts[i].size();
    }
    const int removed = int(m_urls.size() - urls.size());
    // The count is refreshed whether or not anything went.
    if (removed > 0) {
        m_urls = std::move(urls);
        m_descripts = std::move(descripts);
        m_chars = chars;
        roomMade();
        setSelected(-1);
        changed();
    } else {
        Q_EMIT countChanged(count());
    }
    return removed;
}

void UrlHistory::mnuRemoveAll_Click()
{
    if (m_urls.isEmpty())
        return;
    m_urls.clear();
    m_descripts.clear();
    m_chars = 0;
    roomMade();
    setSelected(-1);
    changed();
}

void UrlHistory::select(int index)
{
    setSelected(index);
}

QString UrlHistory::selectedUrl() const
{
    return m_selected < 0 ? QString() : m_urls[m_selected];
}

void UrlHistory::setTxtDescript(const QString& text)
{
    if (m_txtDescript == text)
        return;
    m_txtDescript = text;
    Q_EMIT txtDescriptChanged(text);
}

void UrlHistory::txtDescript_Enter()
{
    if (m_selected < 0)
        return;
    const qsizetype grows = m_txtDescript.size() - m_descripts[m_selected].size();
    if (grows > 0 && !roomFor(grows))
        return;
    m_chars += grows;
    m_descripts[m_selected] = m_txtDescript;
    m_promptShown = false;
    changed();
}

void UrlHistory::txtDescript_GotFocus()
{
    if (m_promptShown || m_txtDescript == descriptionPrompt()) {
        m_promptShown = false;
        setTxtDescript(QString());
    }
}

QString UrlHistory::countCaption(int maxChars) const
{
    const QString caption = QLatin1Char('[') + QString::number(count()) + QLatin1Char(']');
    if (caption.size() <= maxChars || maxChars < 4)
        return caption;
    return caption.left(maxChars - 3) + QStringLiteral("...");
}

}  // namespace vonnel
