#include "links/Links.h"

#include "links/UrlHistory.h"
#include "links/UrlScan.h"
#include "platform/Prompter.h"

namespace vonnel {

Links::Links(LinkSeams seams, UrlHistory& history) : m_seams(std::move(seams)), m_history(history)
{
    if (!m_seams.translate)
        m_seams.translate = untranslated;
    m_fullNotice = QObject::connect(&m_history, &UrlHistory::limitReached, [this] {
        if (m_seams.prompter)
            m_seams.prompter->box(BoxRequest{QStringLiteral("URL History"),
                                             historyFullText(m_seams.translate),
                                             MsgStyle::Exclamation});
    });
}

Links::~Links()
{
    QObject::disconnect(m_fullNotice);
}

bool Links::flag(const char* key) const
{
    return m_seams.settingFlag && m_seams.settingFlag(QString::fromLatin1(key));
}

void Links::scanLocalText(const QString& text)
{
    const LocalScan scan = planLocalScan(text);
    if (scan.blank)
        return;
    const bool noLocalUrl = flag("No Local URL");
    if (scan.tooMany) {
        // Nothing found so far is handled, and the scan mark stays.
        if (m_seams.prompter)
            m_seams.prompter->box(
                BoxRequest{linkErrorTitle(), anyUrlErrorText(), MsgStyle::Exclamation});
        return;
    }
    // Address by address, the history first, then the wire.
    for (const QString& address : scan.addresses) {
        if (!noLocalUrl)
            m_history.addurl(address, address, -1);
        if (m_seams.isConnected && m_seams.isConnected() && m_seams.xSendData)
            m_seams.xSendData(urlFrame(address));
    }
    if (m_seams.setUrlScanned && m_seams.localPaneLength)
        m_seams.setUrlScanned(m_seams.localPaneLength());
    if (flag("Show URL History") && m_history.count() >= 1 && m_seams.showHistory)
        m_seams.showHistory(true);
}

void Links::webCheck(QString& text)
{
    const RemoteUrl r = inspectRemote(text);
    text = r.rest;
    if (r.address.isEmpty())
        return;
    if (!flag("No Remote URL")) {
        m_history.appendRemote(r.address);
        if (flag("Show URL History") && m_seams.showHistory)
            m_seams.showHistory(false);
    }
    // The flag is read anew for each address. The address is the peer's
    // choice: Enter alone does not open it.
    if (!flag("Web Check") || !m_seams.prompter)
        return;
    const Answer a = m_seams.prompter->box(
        BoxRequest{QStringLiteral("Web Check"), webCheckQuestion(r.shown, m_seams.translate),
                   MsgStyle::OkCancel + MsgStyle::Question + MsgStyle::DefaultButton2});
    if (a != Answer::Ok)
        return;
    if (r.target.isValid() && m_seams.openUrl && m_seams.openUrl(r.target))
        return;
    m_seams.prompter->box(BoxRequest{QStringLiteral("Web Check"),
                                     notOpenedText(r.shown, m_seams.translate),
                                     MsgStyle::Exclamation});
}

}  // namespace vonnel
