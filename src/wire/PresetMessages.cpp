#include "wire/PresetMessages.h"

#include "core/Controls.h"
#include "core/CopyContext.h"
#include "platform/Clipboard.h"
#include "wire/LiveTyping.h"

namespace vonnel {

void pasteThroughClipboard(Clipboard& clipboard, LiveTyping& typing, const QString& text)
{
    const std::unique_ptr<ClipboardContent> kept = clipboard.keep();
    clipboard.setText(QString());
    clipboard.setText(text);
    typing.mnuEditPaste_Click();
    clipboard.setText(QString());
    clipboard.restore(*kept);
}

PresetMessages::PresetMessages(CopyContext& ctx, Controls& controls, LiveTyping& typing)
    : m_ctx(ctx), m_controls(controls), m_typing(typing)
{
    Message[7] = QStringLiteral("Please wait a moment...");
    Message[8] = QStringLiteral("I am back.");
}

void PresetMessages::SetMsgMnu()
{
    for (int n = 1; n <= kUserPresets; ++n) {
        Menu[size_t(n)] = m_ctx.setting(QStringLiteral("Menu%1").arg(n));
        Message[size_t(n)] = m_ctx.setting(QStringLiteral("Message%1").arg(n));
        const Control c = entry(n);
        m_controls.setCaption(c, Menu[size_t(n)]);
        m_controls.setVisible(c, !Menu[size_t(n)].isEmpty());
    }
}

void PresetMessages::mnuMsg_Click(int n)
{
    if (n < 1 || n > kMessages)
        return;
    pasteThroughClipboard(m_ctx.clipboard(), m_typing, Message[size_t(n)] + QStringLiteral("\r\n"));
}

Control PresetMessages::entry(int n)
{
    return Control(int(Control::mnuMsg1) + n - 1);
}

int PresetMessages::messageOf(Control c)
{
    const int n = int(c) - int(Control::mnuMsg1) + 1;
    return n >= 1 && n <= kMessages ? n : 0;
}

}  // namespace vonnel
