#include "links/Links.h"

#include "links/UrlHistory.h"
#include "links/UrlScan.h"
#include "platform/Prompter.h"

namespace vonnel {

Links::Links(LinkSeams seams, UrlHistory& history) : m_seams(std::move(seams)), m_history(history)
{
    if (!m_seams.translate)
        m_seams.translate = untranslated;
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
    // Only an address that may be opened is offered; the flag is read anew
    // for each address.
    if (!r.target.isValid() || !flag("Web Check") || !m_seams.prompter)
        return;
    const Answer a = m_seams.prompter->box(
        BoxRequest{QStringLiteral("Web Check"), webCheckQuestion(r.shown, m_seams.translate),
                   MsgStyle::OkCancel + MsgStyle::Question});
    if (a == Answer::Ok && m_seams.openUrl)
        m_seams.openUrl(r.target);
}

}  // namespace vonnel
