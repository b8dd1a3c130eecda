#include "connection/IpList.h"

#include "core/IniStore.h"
#include "core/CopyContext.h"
#include "core/MainModel.h"

#include <QFileInfo>

namespace vonnel {

namespace {

// Matches pattern[pi..] against text[ti..].
bool likeFrom(const QString& t, qsizetype ti, const QString& p, qsizetype pi)
{
    while (pi < p.size()) {
        const QChar c = p.at(pi);
        if (c == QLatin1Char('*')) {
            while (pi < p.size() && p.at(pi) == QLatin1Char('*'))
                ++pi;
            if (pi == p.size())
                return true;
            for (qsizetype k = ti; k <= t.size(); ++k)
                if (likeFrom(t, k, p, pi))
                    return true;
            return false;
        }
        if (ti >= t.size())
            return false;
        const QChar ch = t.at(ti);
        if (c == QLatin1Char('?')) {
            ++pi;
        } else if (c == QLatin1Char('#')) {
            if (ch < QLatin1Char('0') || ch > QLatin1Char('9'))
                return false;
            ++pi;
        } else if (c == QLatin1Char('[')) {
            const qsizetype close = p.indexOf(QLatin1Char(']'), pi + 1);
            if (close < 0)
                return false;  // an open bracket list matches nothing
            QString set = p.mid(pi + 1, close - pi - 1);
            bool negate = false;
            if (set.startsWith(QLatin1Char('!'))) {
                negate = true;
                set.remove(0, 1);
            }
            bool in = false;
            for (qsizetype k = 0; k < set.size() && !in; ++k) {
                if (k + 2 < set.size() && set.at(k + 1) == QLatin1Char('-')) {
                    in = ch >= set.at(k) && ch <= set.at(k + 2);
                    k += 2;
                } else {
                    in = ch == set.at(k);
                }
            }
            if (in == negate)
                return false;
            pi = close + 1;
        } else {
            if (ch != c)
                return false;
            ++pi;
        }
        ++ti;
    }
    return ti == t.size();
}

}  // namespace

bool vbLike(const QString& text, const QString& pattern)
{
    return likeFrom(text, 0, pattern, 0);
}

// --- the list files ---------------------------------------------------------

IpList::IpList(CopyContext& ctx, IpListKind kind) : m_ctx(ctx), m_kind(kind) {}

QString IpList::fileName() const
{
    return m_kind == IpListKind::Blocked ? QStringLiteral("badip.txt")
                                         : QStringLiteral("safeip.txt");
}

QString IpList::path() const
{
    return resolveCaseBlind(m_ctx.appFile(fileName()));
}

QString IpList::entryStem() const
{
    return m_kind == IpListKind::Blocked ? QStringLiteral("Restricted IP ")
                                         : QStringLiteral("Safe IP ");
}

QString IpList::enableKey() const
{
    return m_kind == IpListKind::Blocked ? QStringLiteral("Detect Bad IP")
                                         : QStringLiteral("Detect Safe IP");
}

bool IpList::exists() const
{
    return QFileInfo(path()).isFile();
}

std::optional<QStringList> IpList::readForCall() const
{
    const QString file = path();
    const int limit = iniInt(ReadIni(kSection, QStringLiteral("Limit"), file));
    if (limit > kMaxEntries)
        return std::nullopt;
    QStringList entries;
    for (int n = 1; n <= limit; ++n)
        entries << ReadIni(kSection, entryStem() + QString::number(n), file);
    return entries;
}

bool IpList::anyMatches(const QStringList& entries, const QString& address)
{
    for (const QString& e : entries)
        if (vbLike(address, e))
            return true;
    return false;
}

// --- the dialogs ------------------------------------------------------------

IpListDialog::IpListDialog(CopyContext& ctx, IpListKind kind, QObject* parent)
    : QObject(parent), m_ctx(ctx), m_file(ctx, kind), m_kind(kind)
{
}

void IpListDialog::Form_Load()
{
    const bool blocked = m_kind == IpListKind::Blocked;
    caption = m_ctx.translate(blocked ? QStringLiteral("Black List") : QStringLiteral("White List"));
    checkCaption = m_ctx.translate(blocked ? QStringLiteral("Enable IP address(es) to be blocked")
                                       : QStringLiteral("Enable safe IP address list"));
    hint = m_ctx.translate(QStringLiteral("e.g. 192.168.0.* = 192.168.0.0/24"));
    lblMsg = blocked ? m_ctx.translate(QStringLiteral("Incoming connection from the above IP "
                                                  "address(es) will be blocked automatically."))
                     : QString();
    cmdAddEnabled = false;
    cmdRemoveEnabled = false;
    const QString file = m_file.path();
    const int limit = iniInt(ReadIni(kSection, QStringLiteral("Limit"), file));
    QStringList entries;
    for (int n = 1; n <= limit; ++n) {
        const QString e = ReadIni(kSection, m_file.entryStem() + QString::number(n), file);
        if (!e.isEmpty())
            entries << e;
    }
    list = entries;
    chkChecked = m_ctx.settingFlag(m_file.enableKey());
    textToolTip = m_ctx.translate(QStringLiteral("IP Address")) + QStringLiteral(" / ") +
                  m_ctx.translate(QStringLiteral("Host"));
    chk_Click(chkChecked);
}

void IpListDialog::chk_Click(bool checked)
{
    chkChecked = checked;
    listEnabled = checked;
    textEnabled = checked;
    cmdAddEnabled = checked;
    cmdRemoveEnabled = checked;
}

void IpListDialog::txt_Change(const QString& newText)
{
    text = newText;
    cmdAddEnabled = true;
}

void IpListDialog::txt_KeyPress(QChar key)
{
    if (key == QLatin1Char('\r') || key == QLatin1Char('\n'))
        cmdAdd_Click();
}

void IpListDialog::cmdAdd_Click()
{
    const QString entry = text->trimmed();
    if (!entry.isEmpty())
        list.edit([&entry](QStringList& l) { l << entry; });
    text.clear();
    if (!list->isEmpty())
        okEnabled = true;
}

void IpListDialog::lst_Click(int index)
{
    listIndex = index;
    cmdRemoveEnabled = true;
}

void IpListDialog::cmdRemove_Click()
{
    if (listIndex < 0 || listIndex >= list->size())
        return;
    WriteIni(kSection, m_file.entryStem() + QString::number(listIndex + 1), QString(),
             m_file.path());
    list.edit([this](QStringList& l) { l.removeAt(listIndex); });
    listIndex = -1;
    cmdRemoveEnabled = false;
}

void IpListDialog::OKButton_Click()
{
    const QString file = m_file.path();
    int oldLimit = 0;
    if (m_file.exists())
        oldLimit = iniInt(ReadIni(kSection, QStringLiteral("Limit"), file));
    for (int i = 0; i < list->size(); ++i)
        WriteIni(kSection, m_file.entryStem() + QString::number(i + 1), list->at(i), file);
    for (int n = int(list->size()) + 1; n <= oldLimit; ++n)
        WriteIni(kSection, m_file.entryStem() + QString::number(n), QString(), file);
    WriteIni(kSection, QStringLiteral("Limit"), QString::number(list->size()), file);
    m_ctx.writeSetting(m_file.enableKey(), chkChecked ? QStringLiteral("1") : QStringLiteral("0"));
    unloaded = true;
}

void IpListDialog::CancelButton_Click()
{
    unloaded = true;
}

}  // namespace vonnel
