#include "core/DesktopNotice.h"

#include "core/CopyContext.h"
#include "core/IniStore.h"
#include "core/MainModel.h"
#include "platform/Notifier.h"

namespace vonnel {

DesktopNotice::DesktopNotice(CopyContext& ctx, MainModel& model, QObject* parent)
    : QObject(parent), m_ctx(ctx), m_model(model)
{
    connect(&ctx, &CopyContext::noticeWanted, this,
            [this](NoticeKind kind, const QString& detail) { raise(kind, detail); });
}

bool DesktopNotice::due(bool windowVisible, int windowState, const QString& keyText)
{
    const bool on = keyText.trimmed().isEmpty() || iniNumber(keyText) != 0;
    return MainModel::isAway(windowVisible, windowState) && on;
}

QString DesktopNotice::title(NoticeKind kind) const
{
    QString what;
    switch (kind) {
    case NoticeKind::Call: what = m_ctx.translate(QStringLiteral("Connection Request")); break;
    case NoticeKind::FileOffer: what = m_ctx.translate(QStringLiteral("File Receiving Request")); break;
    case NoticeKind::Ring: what = m_ctx.translate(QStringLiteral("Ring")); break;
    }
    return what + QStringLiteral(" - ") + MainModel::kTitle;
}

bool DesktopNotice::raise(NoticeKind kind, const QString& detail)
{
    // A screen reader hears of it in sight or not: a ring shows no box.
    m_ctx.announce(title(kind) + QStringLiteral(": ") + detail);
    if (!due(m_model.isVisible(), m_model.windowState(), m_ctx.setting(QStringLiteral("Desktop Notification"))))
        return false;
    m_ctx.notifier().notify(title(kind), detail);
    return true;
}

}  // namespace vonnel
