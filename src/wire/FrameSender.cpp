#include "wire/FrameSender.h"

#include "access/Encryption.h"
#include "connection/Session.h"
#include "core/IniStore.h"
#include "core/Logs.h"
#include "platform/Prompter.h"
#include "core/CopyContext.h"
#include "core/MainModel.h"
#include "core/Views.h"
#include "wire/LiveTyping.h"

#include <algorithm>
#include <array>

namespace vonnel {

namespace {

struct Wrapped {
    const char* open;
    const char* close;  // nullptr: one character, then the closing text
};

// The eight frames whose inner text is enciphered, in the order tested.
constexpr std::array<Wrapped, 8> kWrapped = {{
    {"<Paste> ", "</Paste>"},
    {"<KEY> ", " <:KEY>"},
    {"<e#", nullptr},
    {"&&<#> ", " <#>&&"},
    {"&&lbl", "$"},
    {"<URL> ", " </URL>"},
    {"<SPK> ", " </SPK>"},
    {"<MSG> ", " </MSG>"},
}};

// Where the unwrapped text in front of the next frame ends. Absent markers
// count as 0 and sort first, so the text is cut only when all eight are
// present further on; otherwise it goes out whole.
qsizetype cutPosition(const QString& text)
{
    static const std::array<const char*, 8> markers = {
        "<e#", "<Paste> ", "&&<#> ", "&&lbl", "<KEY> ", "<URL> ", "<SPK> ", "<MSG> "};
    std::array<qsizetype, 8> pos{};
    for (size_t i = 0; i < markers.size(); ++i)
        pos[i] = text.indexOf(QLatin1String(markers[i]), 2) + 1;  // 1-based, 0 = absent
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
        Q_EMIT m_ctx.drawStatus(1, QString(), StatePicture::picSend);

    if (!m_cipher.encryptOn) {
        if (data.startsWith(QLatin1String("^g")) && m_ctx.settingFlag(QStringLiteral("Disable Sound"))) {
            const qsizetype end = data.indexOf(QLatin1String("^G^"));
            data = end < 0 ? QString() : data.mid(end + 3);
            if (!data.isEmpty())
                xSendData(data);
            return;
        }
        sendRaw(data);
        return;
    }

    // The peer learns the key before the first text enciphered with it.
    if (std::any_of(kWrapped.begin(), kWrapped.end(),
                    [&data](const Wrapped& w) { return data.contains(QLatin1String(w.open)); }) &&
        m_cipher.announceKeyBeforeCipher())
        if (m_typing)
            m_typing->keySent = true;

    const QString all = data;
    while (!data.isEmpty()) {
        bool framed = false;
        for (const Wrapped& w : kWrapped) {
            const QLatin1String open(w.open);
            if (!data.startsWith(open))
                continue;
            framed = true;
            if (!w.close) {  // "<e#" + one character + "#e>"
                sendRaw(open + m_cipher.encipher(data.mid(3, 1)) + QStringLiteral("#e>"));
                data = data.mid(7);
                break;
            }
            const QLatin1String close(w.close);
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
            if (open == QLatin1String("<KEY> ")) {
                m_ctx.logs().eData(cipher);
                const qsizetype tail = data.indexOf(QLatin1String("</KEY>"), end);
                const qsizetype stop = tail < 0 ? data.size() : tail + 6;
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
