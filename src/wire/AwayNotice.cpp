#include "wire/AwayNotice.h"
#include "core/Cp1252.h"

#include "connection/Session.h"
#include "core/CopyContext.h"
#include "core/MainModel.h"
#include "core/Sender.h"
#include "core/WireCodec.h"
#include "platform/ScreenSaver.h"
#include "wire/LiveTyping.h"
#include "wire/PresetMessages.h"

namespace vonnel {

namespace {

const QString kAwayOn = QStringLiteral("Away Message On");
const QString kAwayText = QStringLiteral("Away Message");
const QString kWhenMinimized = QStringLiteral("Away Message When Minimized");
const QString kAutoMinimize = QStringLiteral("Automatic Minimize (Screen Saver)");

QString bracketed(const QString& text)
{
    return QStringLiteral("[ ") + text + QStringLiteral(" ]");
}

}  // namespace

AwayNotice::AwayNotice(CopyContext& ctx, MainModel& model, Session& session, Sender& sender, LiveTyping& typing,
                       QObject* parent)
    : QObject(parent), m_ctx(ctx), m_model(model), m_session(session), m_sender(sender), m_typing(typing)
{
}

QString AwayNotice::noticeText() const
{
    const QString text = m_ctx.setting(kAwayText);
    return text.isEmpty() ? QStringLiteral("User is away...") : text;
}

bool AwayNotice::active() const
{
    return m_session.IsConnected() && m_ctx.settingFlag(kAwayOn);
}

void AwayNotice::tTimer2_Timer()
{
    if (!active())
        return;
    const bool saverOn = m_ctx.screenSaver().running();
    if (!awayShown && saverOn) {
        if (m_ctx.settingFlag(kAutoMinimize)) {
            m_model.setWindowState(MainModel::vbMinimized);
            // Minimising may have set the notice already (Form_Resize):
            // it stands once.
            if (awayShown)
                return;
        }
        setNotice();
    } else if (awayShown && !saverOn) {
        if (boardInUse && boardInUse()) {
            // The empty chat line of the take-back has one blank between
            // its markers: "&&<#> <#>&&".
            m_sender.xSendData(wire::text(wire::kBoardChatOpen) + wire::text(wire::kBoardChatEmptyClose));
            awayShown = false;
            m_model.setLblStealth(QString());
            return;
        }
        takeBack();
    }
}

void AwayNotice::Form_Resize()
{
    if (m_model.windowState() != MainModel::vbMinimized || awayShown || !active())
        return;
    if (m_ctx.settingFlag(kWhenMinimized))
        setNotice();
}

void AwayNotice::txtServer_MouseMove()
{
    if (awayShown && active())
        takeBack();
}

void AwayNotice::boardMouseMove()
{
    if (!awayShown || !active())
        return;
    m_sender.xSendData(wire::text(wire::kBoardChatOpen) + wire::text(wire::kBoardChatClose));
    awayShown = false;
    m_model.setLblStealth(QString());
}

void AwayNotice::sessionEnded()
{
    awayShown = false;
    m_model.setLblStealth(QString());
}

void AwayNotice::setNotice()
{
    const QString text = noticeText();
    if (boardInUse && boardInUse())
        m_sender.xSendData(wire::text(wire::kBoardChatOpen) + bracketed(text) + wire::text(wire::kBoardChatClose));
    else
        pasteThroughClipboard(m_ctx.clipboard(), m_typing, kCrLf + bracketed(text) + kCrLf);
    awayShown = true;
    m_model.setLblStealth(m_ctx.translate(QStringLiteral("Away")));
}

void AwayNotice::takeBack()
{
    const QString notice = bracketed(noticeText());
    const QString text = m_model.txtServer.text();
    const qsizetype at = text.lastIndexOf(notice);
    if (at < 0)
        return;
    const QString after = text.mid(at + notice.size());
    if (after.isEmpty() || after == kCrLf) {
        // The notice is the pane's end: both sides cut back to the same
        // length, the character before the notice going with it.
        const QString kept = text.left(qMax<qsizetype>(0, at - 1));
        m_model.txtServer.setText(kept, int(kept.size()));
        m_typing.urlScanned = qMin(m_typing.urlScanned, int(kept.size()));
        m_typing.lineMark = qMin(m_typing.lineMark, int(kept.size()));
        m_sender.xSendData(QString::fromLatin1(wire::numbered(wire::Numbered::Deletion, int(kept.size()))));
    } else {
        // The user typed behind the notice: a cut from the end would take
        // their words too. Only the notice line goes, and the whole text
        // follows to the peer.
        QString kept = text;
        kept.remove(at, notice.size() + (after.startsWith(kCrLf) ? kCrLf.size() : 0));
        m_typing.setServerText(kept);
    }
    awayShown = false;
    m_model.setLblStealth(QString());
}

}  // namespace vonnel
