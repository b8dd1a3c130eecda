#include "wire/FrameSender.h"

#include "core/Cp1252.h"
#include "access/Encryption.h"
#include "connection/Session.h"
#include "core/IniStore.h"
#include "core/Logs.h"
#include "platform/Prompter.h"
#include "core/CopyContext.h"
#include "core/MainModel.h"
#include "core/Views.h"
#include "core/WireCodec.h"
#include "wire/LiveTyping.h"

#include <algorithm>
#include <array>

namespace vonnel {

namespace {

// Where the unwrapped text in front of the next frame ends. Absent markers
// count as 0 and sort first, so the text is cut only when all eight are
// present further on; otherwise it goes out whole.
qsizetype cutPosition(const QString& text)
{
    std::array<qsizetype, wire::kEnciphered.size()> pos{};
    for (size_t i = 0; i < pos.size(); ++i)  // 1-based, 0 = absent
        pos[i] = text.indexOf(wire::text(wire::kEnciphered[i].open), 2) + 1;
    std::sort(pos.begin(), pos.end());
    return pos[0] == 0 ? text.size() : pos[0] - 1;
}

}  // namespace

FrameSender::FrameSender(CopyContext& ctx, MainModel& model, Session& session, Encryption& cipher)
    : m_ctx(ctx), m_model(model), m_session(session), m_cipher(cipher)
{
}

bool FrameSender::IsConnected() const
{
    return m_session.IsConnected();
}

void FrameSender::sendRaw(const QString& text)
{
    sendRawBytes(toCp1252(text));
}

void FrameSender::sendRawBytes(const QByteArray& bytes)
{
    m_session.winsock(0).SendData(bytes);
}

void FrameSender::xSendData(QString data)
{
    if (!IsConnected())
        return;
    m_model.stStatusbar.setPicture(1, StatePicture::picSend);
    if (m_ctx.views().isVisible(Form::frmDraw))
        m_ctx.showDrawStatus(1, QString(), StatePicture::picSend);

    if (!m_cipher.encryptOn) {
        if (data.startsWith(wire::text(wire::kRingOpen)) && m_ctx.settingFlag(QStringLiteral("Disable Sound"))) {
            const qsizetype end = data.indexOf(wire::text(wire::kRingClose));
            data = end < 0 ? QString() : data.mid(end + 3);
            if (!data.isEmpty())
                xSendData(data);
            return;
        }
        sendRaw(data);
        return;
    }

    // The peer learns the key before the first text enciphered with it.
    if (std::any_of(wire::kEnciphered.begin(), wire::kEnciphered.end(),
                    [&data](const wire::EncipheredFrame& w) {
                        return data.contains(wire::text(w.open));
                    }) &&
        m_cipher.announceKeyBeforeCipher())
        if (m_typing)
            m_typing->keySent = true;

    const QString all = data;
    while (!data.isEmpty()) {
        bool framed = false;
        for (const wire::EncipheredFrame& w : wire::kEnciphered) {
            const QLatin1String open = wire::text(w.open);
            if (!data.startsWith(open))
                continue;
            framed = true;
            if (w.close.isEmpty()) {  // "<e#" + one character + "#e>"
                sendRaw(open + m_cipher.encipher(data.mid(3, 1)) +
                        wire::text(wire::kOldCipherClose));
                data = data.mid(wire::kOldCipherOpen.size() + 1 + wire::kOldCipherClose.size());
                break;
            }
            const QLatin1String close = wire::text(w.close);
            const qsizetype end = data.indexOf(close, open.size());
            if (end < 0) {
                // The inner length turns negative: nothing of this goes out.
                m_ctx.prompter().msgBox(QStringLiteral("xSendData Error: Invalid procedure call or "
                                                 "argument\r\n caused by data <") +
                                      all + QLatin1Char('>'),
                                  MsgStyle::Exclamation);
                return;
            }
            const QString cipher = m_cipher.encipher(data.mid(open.size(), end - open.size()));
            if (w.open == wire::kKeyOpen) {
                m_ctx.logs().eData(cipher);
                const qsizetype tail = data.indexOf(wire::text(wire::kKeyClose), end);
                const qsizetype stop = tail < 0 ? data.size() : tail + wire::kKeyClose.size();
                sendRaw(open + cipher + data.mid(end, stop - end));
                data = data.mid(stop);
            } else {
                sendRaw(open + cipher + close);
                data = data.mid(end + close.size());
            }
            break;
        }
        if (framed)
            continue;
        const qsizetype cut = cutPosition(data);
        sendRaw(data.left(cut));
        data = data.mid(cut);
    }
}

}  // namespace vonnel
