// Actions on whole texts of the local pane (paste, refresh, override,
// clear) and the format exchange that gives the other side's remote pane
// this side's font and colours.

#include "core/Views.h"
#include "core/Cp1252.h"
#include "access/Encryption.h"
#include "connection/Connection.h"
#include "core/IniStore.h"
#include "platform/Clipboard.h"
#include "platform/Cursor.h"
#include "platform/Prompter.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "core/Sender.h"
#include "wire/FrameText.h"
#include "core/MainModel.h"
#include "wire/LiveTyping.h"
#include "wire/Receiver.h"
#include "wire/RemotePane.h"
#include "core/WireCodec.h"

namespace vonnel {

// --- text helpers -------------------------------------------------------------

QString LiveTyping::removeFirst(const QString& text, const QString& token)
{
    if (text == token)
        return QString();
    if (token.isEmpty() || text.size() < token.size())
        return text;
    const qsizetype p = text.indexOf(token);
    if (p < 0)
        return text;
    return text.left(p) + text.mid(p + token.size());
}

QString LiveTyping::leftOf(const QString& text, const QString& token)
{
    if (text.isEmpty() || token.isEmpty())
        return text;
    const qsizetype p = text.indexOf(token);
    return p < 0 ? text : text.left(p);
}

// --- paste ------------------------------------------------------------------------

int LiveTyping::plainPasteLimit(bool writeBack)
{
    int limit = m_ctx.settingInt(QStringLiteral("Paste Text Limit"));
    if (limit > m_receiver.textLimit)
        limit = m_receiver.textLimit;
    if (limit < 2000)
        limit = 2000;
    if (writeBack)
        m_ctx.writeSetting(QStringLiteral("Paste Text Limit"), QString::number(limit));
    return limit;
}

int LiveTyping::encryptedPasteLimit(int upper, bool writeBack)
{
    int limit = m_ctx.settingInt(QStringLiteral("Paste Encrypted Text Limit"));
    if (limit > upper)
        limit = upper;
    if (limit < 500)
        limit = 500;
    if (writeBack)
        m_ctx.writeSetting(QStringLiteral("Paste Encrypted Text Limit"), QString::number(limit));
    return limit;
}

void LiveTyping::PasteText(bool ownInsert)
{
    TextPane& pane = m_model.txtServer;
    QString text = m_ctx.clipboard().text();
    if (text.isEmpty())
        return;
    m_model.stStatusbar.setPicture(1, StatePicture::picSend);
    const int plain = plainPasteLimit(true);
    const int encrypted = encryptedPasteLimit(10000, true);
    const QString kept = pane.text();
    const int selStart = pane.selStart();
    const int selLength = pane.selLength();

    int limit = 0;
    QString label;
    if (pane.length() <= m_receiver.textLimit) {
        limit = m_cipher.encryptOn ? encrypted : plain;
        label = m_cipher.encryptOn ? QStringLiteral("[Encryption On]") : QStringLiteral("[Encryption Off]");
    }

    const bool connected = m_session.IsConnected();
    if (connected && m_cipher.encryptOn) {
        for (QChar c : text) {
            if (!isDoubleByte(c))
                continue;
            if (!m_pasteWarned) {
                refuseDoubleByte(c, false);
                m_pasteWarned = true;
            }
            m_model.stStatusbar.setPicture(1, StatePicture::picReady);
            return;
        }
    }

    if (text.size() <= limit || !connected) {
        if (connected) {
            pasting = true;
            // A long paste is one long write: the wait pointer shows for it
            // and the normal one comes back however the send ends.
            WaitPointer busy(m_ctx.cursor());
            send(wire::text(wire::kPasteOpen) + text + wire::text(wire::kPasteClose));
            scan(text);
            m_session.PasteInProgress = true;
        } else {
            scan(text);
        }
    } else {
        m_ctx.prompter().msgBox(
            m_ctx.translate(QStringLiteral("You are senting data over the limit of this program.")) +
                QLatin1Char(' ') + label + QLatin1Char('\r') +
                m_ctx.translate(QStringLiteral("Use 'Send File' in Tool menu instead.")) +
                QStringLiteral("\r\r") + QStringLiteral("Data: ") + QString::number(text.size()) +
                QLatin1Char('\t') + QStringLiteral("Max.: ") + QString::number(limit),
            MsgStyle::Exclamation, m_ctx.translate(QStringLiteral("Warning")));
        text.clear();
    }
    if (!ownInsert) {
        // Over a selection the text takes its place, and the whole text
        // follows; otherwise it goes on at the end, as the frame said.
        pasting = connected;
        if (selLength > 0)
            editRange(selStart, selLength, text, false);
        else
            editRange(int(kept.size()), 0, text, true);
        pasting = false;
    }
    pane.caretToEnd();
    noteRemoteHost();
}

// --- refresh, override, clear ---------------------------------------------------

void LiveTyping::mnuRefresh_Click()
{
    m_model.controls.setEnabled(Control::Toolbar1_3, false);
    m_model.controls.setEnabled(Control::mnuRefresh, false);
    const bool connected = m_session.IsConnected();
    if (!connected && !m_ctx.views().isVisible(Form::frmProgress) && localAddressUpdate)
        localAddressUpdate();
    Winsock& ws = m_session.winsock(m_session.sIdx);
    if (ws.State() == Winsock::sckConnected) {
        m_model.stStatusbar.setPicture(1, StatePicture::picSend);
        // The encrypted limit counts at most 2500 here, unlike a paste.
        const int plain = plainPasteLimit(false);
        const int encrypted = encryptedPasteLimit(2500, false);
        const int L = m_model.txtClient(m_session.sIdx).length();
        if ((!m_cipher.remoteEncrypted && L < plain) || (m_cipher.remoteEncrypted && L < encrypted)) {
            refreshAwaited = true;
            m_model.txtClient(m_session.sIdx).clear();
            m_receiver.remotePane().awaitResend();
            send(wire::text(wire::kRefresh));
        }
    }
    noteRemoteHost();
    if (ws.State() == Winsock::sckConnected)
        m_model.setCaption(m_model.titleWithVersion() + QStringLiteral(" - ") + m_session.PeerHostName +
                     QStringLiteral(" [") + ws.RemoteHostIP() + QLatin1Char(']'));
    m_model.controls.setEnabled(Control::mnuSendFile,
                          !m_ctx.views().isVisible(Form::frmProgress));
    if (!connected) {
        m_model.controls.setEnabled(Control::Toolbar1_3, true);
        m_model.controls.setEnabled(Control::mnuRefresh, true);
    }
}

void LiveTyping::mnuOverride_Click()
{
    const bool on = !m_model.controls.checked(Control::mnuOverride);
    m_model.controls.setChecked(Control::mnuOverride, on);
    m_model.controls.setChecked(Control::Toolbar1_13, on);
    if (on) {
        clientFormat.copyFrom(serverFormat);
    } else if (m_session.IsConnected()) {
        send(wire::text(wire::kRefresh));
    }
}

void LiveTyping::mnuClrScr_Click()
{
    keepCleared(localHistory, m_model.txtServer.text() + kCrLf);
    applyEdit(QString(), 0, true);  // "^Clr" below tells it
    urlScanned = 0;
    lineMark = 0;
    if (!m_session.IsConnected())
        m_model.txtClient(0).clear();
    if (m_session.winsock(0).State() == Winsock::sckConnected)
        send(wire::text(wire::kClear));
}

// --- format exchange ---------------------------------------------------------------

QString LiveTyping::formatMessage() const
{
    const PaneFormat& p = serverFormat;
    return wire::text(wire::kFormatOpen) + p.fontName() + wire::text(wire::kFormatBold) + p.boldText() +
           wire::text(wire::kFormatItalic) + p.italicText() + wire::text(wire::kFormatSize) + p.sizeText() +
           wire::text(wire::kFormatFore) + p.foreColorText() + wire::text(wire::kFormatBack) + p.backColorText() +
           wire::text(wire::kFormatClose);
}

void LiveTyping::sentSetting()
{
    if (m_session.winsock(0).State() == Winsock::sckConnected)
        m_sender.sendRaw(formatMessage());
}

void LiveTyping::receiveFormat(const QString& frameThroughMarker)
{
    if (m_session.IsConnected())
        m_session.RemoteResponded = true;
    if (m_model.controls.checked(Control::mnuOverride))
        return;
    m_model.txtClient(m_session.sIdx).caretToEnd();
    PaneFormat& pane = clientFormat;
    QString data = removeFirst(frameThroughMarker, wire::text(wire::kFormatOpen));

    // Each field is set, then taken out as the pane reports it: a value the
    // pane cannot take exactly leaves a piece in front of the next field.
    const QString name = leftOf(data, wire::text(wire::kFormatBold));
    pane.setFontName(name);
    data = removeFirst(data, pane.fontName());
    data = removeFirst(data, wire::text(wire::kFormatBold));

    if (const auto b = flagByText(leftOf(data, wire::text(wire::kFormatItalic))))
        pane.setBold(*b);
    data = removeFirst(data, pane.boldText());
    data = removeFirst(data, wire::text(wire::kFormatItalic));

    if (const auto i = flagByText(leftOf(data, wire::text(wire::kFormatSize))))
        pane.setItalic(*i);
    data = removeFirst(data, pane.italicText());
    data = removeFirst(data, wire::text(wire::kFormatSize));

    QString sizeText = leftOf(data, wire::text(wire::kFormatFore));
    sizeText.remove(wire::text(wire::kFormatSize));
    bool ok = false;
    const double size = sizeText.trimmed().toDouble(&ok);
    if (ok)
        pane.setSize(size);
    data = removeFirst(data, pane.sizeText());
    data = removeFirst(data, wire::text(wire::kFormatFore));

    const qint64 fore = leftOf(data, wire::text(wire::kFormatBack)).trimmed().toLongLong(&ok);
    if (ok)
        pane.setForeColor(fore);
    data = removeFirst(data, pane.foreColorText());
    data = removeFirst(data, wire::text(wire::kFormatBack));

    const qint64 back = leftOf(data, wire::text(wire::kFormatClose)).trimmed().toLongLong(&ok);
    if (ok)
        pane.setBackColor(back);
}

void LiveTyping::loadFormat()
{
    PaneFormat& p = serverFormat;
    const QString font = m_ctx.setting(QStringLiteral("Font"));
    if (!font.isEmpty())
        p.setFontName(font);
    const double size = m_ctx.settingNumber(QStringLiteral("Font Size"));
    if (size > 0)
        p.setSize(qBound(kMinFontSize, size, kMaxFontSize));
    if (const auto b = flagByText(m_ctx.setting(QStringLiteral("Font Bold"))))
        p.setBold(*b);
    if (const auto i = flagByText(m_ctx.setting(QStringLiteral("Font Italic"))))
        p.setItalic(*i);
    bool ok = false;
    const qint64 fore = m_ctx.setting(QStringLiteral("Font Colour")).trimmed().toLongLong(&ok);
    if (ok)
        p.setForeColor(fore);
    const qint64 back = m_ctx.setting(QStringLiteral("Background Colour")).trimmed().toLongLong(&ok);
    if (ok)
        p.setBackColor(back);
    // Until the other side's format comes in, the remote pane looks alike.
    clientFormat.copyFrom(p);
}

void LiveTyping::saveFormat() const
{
    const PaneFormat& p = serverFormat;
    m_ctx.writeSetting(QStringLiteral("Font"), p.fontName());
    m_ctx.writeSetting(QStringLiteral("Font Size"), p.sizeText());
    m_ctx.writeSetting(QStringLiteral("Font Bold"), p.boldText());
    m_ctx.writeSetting(QStringLiteral("Font Italic"), p.italicText());
    m_ctx.writeSetting(QStringLiteral("Font Colour"), p.foreColorText());
    m_ctx.writeSetting(QStringLiteral("Background Colour"), p.backColorText());
}

void LiveTyping::Toolbar1_FontClick(int button)
{
    PaneFormat& p = serverFormat;
    switch (button) {
    case 7:
        p.setBold(!p.bold());
        break;
    case 8:
        p.setItalic(!p.italic());
        break;
    case 9:
        p.setSize(qMin(kMaxFontSize, p.size() + 1));
        break;
    case 10:
        p.setSize(qMax(kMinFontSize, p.size() - 1));
        break;
    case 11:
    case 12: {
        if (!chooseColour)
            return;
        const bool fore = button == 11;
        const auto c = chooseColour(fore ? p.foreColor() : p.backColor(),
                                    m_ctx.translate(fore ? QStringLiteral("Font Colour")
                                                     : QStringLiteral("Background Colour")));
        if (!c)
            return;
        if (fore)
            p.setForeColor(*c);
        else
            p.setBackColor(*c);
        break;
    }
    default:
        return;
    }
    // Unticked, the change lasts for this run only.
    if (m_permanentToolbar)
        saveFormat();
    if (m_model.controls.checked(Control::mnuOverride))
        clientFormat.copyFrom(p);
    sentSetting();
}

bool LiveTyping::controlTriggered(Control c)
{
    switch (c) {
    case Control::mnuEditPaste:
    case Control::Toolbar1_6:
        mnuEditPaste_Click();
        return true;
    case Control::mnuClrScr:
    case Control::Toolbar1_4:
        mnuClrScr_Click();
        return true;
    case Control::mnuRefresh:
    case Control::Toolbar1_3:
        mnuRefresh_Click();
        return true;
    case Control::mnuOverride:
    case Control::Toolbar1_13:
        mnuOverride_Click();
        return true;
    case Control::Toolbar1_7:
    case Control::Toolbar1_8:
    case Control::Toolbar1_9:
    case Control::Toolbar1_10:
    case Control::Toolbar1_11:
    case Control::Toolbar1_12:
        Toolbar1_FontClick(toolbarNumber(c));
        return true;
    default:
        return false;
    }
}

}  // namespace vonnel
