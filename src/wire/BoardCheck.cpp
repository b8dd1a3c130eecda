// The board's messages as the receive loop meets them. The board itself
// lives elsewhere: this takes each message off the text in the board's
// order of tests, keeps the remote drawing parameters, and reports the
// message through Receiver::boardMessage.

#include "core/Cp1252.h"
#include "access/CipherText.h"
#include "core/IniStore.h"
#include "platform/Prompter.h"
#include "access/Encryption.h"
#include "core/CopyContext.h"
#include "core/MainModel.h"
#include "wire/FrameText.h"
#include "wire/Receiver.h"
#include "core/WireCodec.h"

namespace vonnel {

namespace {

// A field cut with a negative length fails; the
// routine's error tail then takes over.
struct CutFailed {};

// The text before the first token, which must be there.
QString cutBefore(const QString& data, const QString& token)
{
    const qsizetype p = data.indexOf(token);
    if (p < 0)
        throw CutFailed{};
    return data.left(p);
}

int toShort(const QString& t)
{
    int v = 0;
    readPosition(t, v);
    return qBound(-32768, v, 32767);
}

}  // namespace

QString Receiver::cDrawcheck(QString& data)
{
    m_model.stStatusbar.setPicture(1, StatePicture::picRec);
    BoardState& b = m_board;

    // Reads "x,y$" pairs up to the closing "%".
    auto points = [&](QString& d) {
        QStringList pts;
        while (!d.startsWith(QLatin1Char('%'))) {
            const QString x = cutBefore(d, QStringLiteral(","));
            d = d.mid(x.size() + 1);
            const QString y = cutBefore(d, QStringLiteral("$"));
            d = d.mid(y.size() + 1);
            pts << x + QLatin1Char(',') + y;
        }
        d = d.mid(1);
        return pts;
    };
    // "head" + field + "$": the field, data behind the "$".
    auto field = [&](const QString& head) {
        const QString v = cutBefore(data.mid(head.size()), QStringLiteral("$"));
        data = data.mid(head.size() + v.size() + 1);
        return v;
    };
    auto plain = [&](const QString& head) {
        if (!data.startsWith(head))
            return false;
        data = data.mid(head.size());
        Q_EMIT boardMessage(head, {});
        return true;
    };

    try {
        // The board's tests run one after the other, each on what the ones
        // before left; a round that takes nothing ends the matter (this is
        // what the guard against re-entry comes to).
        for (int round = 0; round < 10000; ++round) {
            const qsizetype before = data.size();

            // The request is taken only when it is the whole of data.
            if (data == QLatin1String("&& Scrivet Request &&")) {
                data.clear();
                Q_EMIT boardMessage(QStringLiteral("&& Scrivet Request &&"), {});
            }
            if (data.startsWith(QLatin1String("&&-g"))) {
                // The name stays in data and goes back as ordinary text.
                data = data.mid(4);
                Q_EMIT boardMessage(QStringLiteral("&&-g"), {data});
            }
            plain(wire::text(wire::kNotReady));
            plain(wire::text(wire::kReady));
            if (data.startsWith(wire::text(wire::kBoardChatOpen))) {
                QString t = data.mid(6);
                qsizetype i = t.indexOf(QLatin1Char('\r'));
                if (i >= 0)
                    t += QStringLiteral("123456");
                else
                    i = t.indexOf(wire::text(wire::kBoardChatClose));
                if (i < 0)
                    throw CutFailed{};
                QString line = t.left(i);
                if (m_cipher.remoteEncrypted)
                    line = fromCp1252(getEPass(toCp1252(line), toCp1252(m_cipher.remoteKey)));
                data = t.mid(i + 6);
                Q_EMIT boardMessage(wire::text(wire::kBoardChatOpen), {line});
                Q_EMIT webCheck(line);
            }
            if (data.startsWith(QLatin1String("&&fc"))) {
                b.foreColor = field(QStringLiteral("&&fc"));
                Q_EMIT boardMessage(QStringLiteral("&&fc"), {b.foreColor});
            }
            if (data.startsWith(QLatin1String("&&bc"))) {
                b.backColor = field(QStringLiteral("&&bc"));
                Q_EMIT boardMessage(QStringLiteral("&&bc"), {b.backColor});
            }
            if (data.startsWith(QLatin1String("&&font"))) {
                QStringList fields;
                fields << field(QStringLiteral("&&font"));
                for (int i = 0; i < 5; ++i)
                    fields << field(QString());
                b.fontName = fields[0];
                b.fontSize = toShort(QString::number(int(iniNumber(fields[1]))));
                b.bold = flagByText(fields[2]).value_or(false);
                b.italic = flagByText(fields[3]).value_or(false);
                b.underline = flagByText(fields[4]).value_or(false);
                b.strikethrough = flagByText(fields[5]).value_or(false);
                Q_EMIT boardMessage(QStringLiteral("&&font"), fields);
            }
            if (data.startsWith(QLatin1String("&&lt"))) {
                const QString v = field(QStringLiteral("&&lt"));
                b.thickness = toShort(v);
                Q_EMIT boardMessage(QStringLiteral("&&lt"), {v});
            }
            for (const char* head : {"&&sp", "&&ep"}) {
                const QString h = QLatin1String(head);
                if (!data.startsWith(h))
                    continue;
                const QString x = cutBefore(data.mid(4), QStringLiteral(","));
                data = data.mid(4 + x.size() + 1);
                const QString y = field(QString());
                if (h == QLatin1String("&&sp")) {
                    b.startX = toShort(x);
                    b.startY = toShort(y);
                } else {
                    b.endX = toShort(x);
                    b.endY = toShort(y);
                }
                Q_EMIT boardMessage(h, {x, y});
            }
            if (data.startsWith(wire::text(wire::kBoardLabelOpen))) {
                QString label = field(wire::text(wire::kBoardLabelOpen));
                if (m_cipher.remoteEncrypted)
                    label = fromCp1252(getEPass(toCp1252(label), toCp1252(m_cipher.remoteKey)));
                Q_EMIT boardMessage(wire::text(wire::kBoardLabelOpen), {label});
            }
            plain(QStringLiteral("&&rec$"));
            plain(QStringLiteral("&&cir$"));
            plain(QStringLiteral("&&lin$"));
            if (data.startsWith(QLatin1String("&&st"))) {
                data = data.mid(4);
                QStringList pts = points(data);
                // A pair is drawn only when both numbers are there.
                pts.removeIf([](const QString& p) {
                    return p.startsWith(QLatin1Char(',')) || p.endsWith(QLatin1Char(','));
                });
                Q_EMIT boardMessage(QStringLiteral("&&st"), pts);
            }
            if (data.startsWith(QLatin1String("&&et"))) {
                data = data.mid(4);
                Q_EMIT boardMessage(QStringLiteral("&&et"), points(data));
            }
            for (const char* head : {"&&e-p", "&&e-l"}) {
                const QString h = QLatin1String(head);
                if (data.startsWith(h))
                    Q_EMIT boardMessage(h, {field(h)});
            }
            plain(QStringLiteral("&&eee$"));
            plain(QStringLiteral("&&showPic$"));
            plain(QStringLiteral("&& Scrivet Closed &&"));

            const bool more = data.startsWith(QLatin1String("&&")) &&
                              (data.size() < 3 || data.at(2) != QLatin1Char('&'));
            if (!more || data.size() == before)
                break;
        }
    } catch (const CutFailed&) {
        boardError(data);
        return QString();
    }
    return data;
}

void Receiver::boardError(const QString& data)
{
    m_ctx.prompter().msgBox(QStringLiteral("Receiving - DrawCheck Protocol Error \r"
                                       "Invalid procedure call or argument\r\n\r\n"
                                       "Data causing problem:  ") +
                            data.left(1000),
                        MsgStyle::Exclamation);
}

}  // namespace vonnel
