// The sending half of live text: key presses are gathered in pressedKeys
// and each key up turns them into frames. A single key goes out as a
// "<KEY> " frame with the pane's length; a run of different keys that came
// before one release goes out as "<Paste> " blocks.

#include "wire/LiveTyping.h"

#include "core/Cp1252.h"
#include "access/Encryption.h"

#include "core/IniStore.h"
#include "platform/Clipboard.h"
#include "platform/Prompter.h"
#include "connection/Session.h"
#include "core/CopyContext.h"
#include "platform/Clock.h"
#include "core/Sender.h"
#include "core/MainModel.h"
#include "wire/Receiver.h"
#include "core/WireCodec.h"

namespace vonnel {

namespace {

// Characters below 33 off both ends.
QString trim33(const QString& s)
{
    qsizetype a = 0, b = s.size();
    while (a < b && s[a].unicode() < 33)
        ++a;
    while (b > a && s[b - 1].unicode() < 33)
        --b;
    return s.mid(a, b - a);
}

// 1-based position of the last CR LF, 0 when there is none.
int lastCrLf(const QString& s)
{
    return int(s.lastIndexOf(kCrLf) + 1);
}
}  // namespace

LiveTyping::LiveTyping(CopyContext& ctx, MainModel& model, Session& session, Sender& sender,
                       Encryption& cipher, Receiver& receiver, QObject* parent)
    : QObject(parent),
      serverFormat(this),
      clientFormat(this),
      m_ctx(ctx),
      m_model(model),
      m_session(session),
      m_sender(sender),
      m_cipher(cipher),
      m_receiver(receiver)
{
    connect(&ctx, &CopyContext::initialized, this, &LiveTyping::loadFormat);
    m_followUpTimer.setSingleShot(true);
    connect(&m_followUpTimer, &QTimer::timeout, this, &LiveTyping::followUpDue);
    connect(&session, &Session::sessionOpened, this, &LiveTyping::cancelFollowUp);
    connect(&session, &Session::sessionEnded, this, &LiveTyping::cancelFollowUp);
}

LiveTyping::~LiveTyping() = default;

void LiveTyping::send(const QString& frame)
{
    m_sender.xSendData(frame);
}

void LiveTyping::scan(const QString& text)
{
    if (scanLocalText)
        scanLocalText(text);
}

void LiveTyping::refreshLengthsPanel()
{
    m_model.stStatusbar.setText(3, QString::number(m_model.txtServer.length()) +
                                     QStringLiteral(" - ") +
                                     QString::number(m_model.txtClient(m_session.sIdx).length()));
}

void LiveTyping::noteRemoteHost()
{
    remoteHostNoted = m_session.winsock(m_session.sIdx).RemoteHost();
}

int LiveTyping::keyAt(int index) const
{
    if (index < 0 || index > kPressedKeysBound)
        return 0;
    return pressedKeys[size_t(index)];
}

bool LiveTyping::isDoubleByte(QChar c)
{
    if (c.isNull())
        return false;
    // A character of the session's code page is one byte; anything else
    // counts by its own code.
    const QString s(c);
    if (fromCp1252(toCp1252(s)) == s)
        return false;
    return c.unicode() >= 0x1000;
}

// --- key events ------------------------------------------------------------------

void LiveTyping::firstTyping()
{
    const bool connected = m_session.winsock(0).State() == Winsock::sckConnected;
    if (connected)
        m_cipher.sendFirstKey(keySent);
    if (m_model.txtServer.length() == 0 && connected) {
        sentSetting();
        if (sendSpeakerSetting)
            sendSpeakerSetting();
    }
    m_model.txtServer.setLocked(false);
    m_session.checkStatus();
}

void LiveTyping::txtServer_GotFocus()
{
    if (m_model.txtServer.length() == 0 && !keySent)
        firstTyping();
}

void LiveTyping::txtServer_KeyDown(int keyCode, int shift)
{
    // Shift+Insert: the control pastes by itself, the text goes out here.
    if (keyCode == vbKeyInsert && (shift & vbShiftMask)) {
        PasteText(true);
        const QString clip = m_ctx.clipboard().text();
        if (!clip.isEmpty()) {
            pasting = true;
            controlInput(clip);
            pasting = false;
        }
    }
}

void LiveTyping::txtServer_KeyPress(int& keyAscii)
{
    TextPane& pane = m_model.txtServer;
    if (pane.length() == 0 && !keySent)
        firstTyping();
    // Typing goes in at the caret, over the selection if there is one. The
    // frames tell only typing at the end; anything else is followed by the
    // whole text (see followUp).
    keyTyping = true;
    if (keyAscii == vbKeyTab)
        scan(pane.text().mid(urlScanned));

    if (keyAscii != vbKeyEscape) {
        ++PressCount;
        if (PressCount >= kPressedKeysBound)
            m_ctx.prompter().msgBox(
                m_ctx.translate(QStringLiteral("Warning: You have reached the limit of sending the same character:")) +
                QLatin1Char(' ') + QString::number(PressCount));
        else
            pressedKeys[size_t(PressCount)] = keyAscii;
    }

    // The loop bound is taken once, as the count may drop to 0 inside.
    const int upTo = PressCount;
    const int first = keyAt(1);
    int same = 0;
    for (int i = 1; i <= upTo; ++i) {
        const int code = keyAt(i);
        if (code <= 0)
            PressCount = 0;
        else if (code == first)
            ++same;
    }
    sameKeys = same == PressCount;
    m_lastKeyAscii = keyAscii;

    if (pane.length() > m_receiver.textLimit - 2) {
        const Answer a = m_ctx.prompter().msgBox(
            m_ctx.translate(QStringLiteral("Warning: You are approaching the limit of this area.")) +
                kCrLf +
                m_ctx.translate(QStringLiteral("Do you want to clear your screen to erase the old text?")),
            MsgStyle::YesNo, m_ctx.translate(QStringLiteral("Warning")));
        if (a == Answer::Yes) {
            const QString tail = pane.text().right(100) + QStringLiteral("...");
            mnuClrScr_Click();
            const QString saved = m_ctx.clipboard().text();
            m_ctx.clipboard().setText(tail);
            PasteText(false);
            m_ctx.clipboard().setText(saved);
            pane.caretToEnd();
        }
    }

    if (keyAt(PressCount) == vbKeyReturn)
        txtServer_KeyUp(vbKeyReturn, 0);
}

void LiveTyping::txtServer_Change()
{
    TextPane& pane = m_model.txtServer;
    m_cipher.readEncryptedSetting();
    const QString text = pane.text();
    const QChar c = text.isEmpty() ? QChar() : text.back();
    const bool dbl = isDoubleByte(c);
    const bool connected = m_session.IsConnected();
    if (connected && !pasting && !keyTyping) {
        // Text that came in without a key press (an input method).
        if (dbl && m_cipher.encryptOn) {
            if (!m_changeWarned) {
                refuseDoubleByte(c, false);
                m_changeWarned = true;
            }
            pane.chopTo(pane.length() - 1);
        } else if (dbl) {
            send(wire::text(wire::kPasteOpen) + c + wire::text(wire::kPasteClose));
            m_changeSent = QString(c);
        }
    } else if (connected && m_cipher.encryptOn && dbl) {
        if (!m_changeWarned) {
            refuseDoubleByte(c, true);
            m_changeWarned = true;
        }
        pane.chopTo(pane.length() - 1);
    }
    pasting = false;
    refreshLengthsPanel();
}

void LiveTyping::refuseDoubleByte(QChar c, bool keyPressWording)
{
    QString text;
    if (keyPressWording)
        text = QStringLiteral("Encryption Error: generated by ") + c + kCrLf +
               QStringLiteral("Please note: Double bytes characters sets such as Chinese, Japenese, "
                              "Korean are not supported for encryption.");
    else
        text = QStringLiteral("Encryption Error: generated by < ") + c + QStringLiteral(" >") +
               kCrLf + kCrLf +
               QStringLiteral("Please note: Double bytes characters such as Chinese, Japenese, "
                              "Korean are not supported for encryption.") +
               kCrLf + kCrLf +
               QStringLiteral("Please disconnect, turn off encryption and reconnect again!");
    m_ctx.prompter().msgBox(text, MsgStyle::Exclamation);
}

void LiveTyping::txtServer_KeyUp(int keyCode, int shift)
{
    Q_UNUSED(shift);
    TextPane& pane = m_model.txtServer;
    if (m_session.IsConnected())
        m_model.stStatusbar.setPicture(1, StatePicture::picSend);
    noteRemoteHost();
    const int K = keyAt(PressCount);

    if (K == vbKeyDelete && PressCount == 0) {
        PressCount = 0;
        keyTyping = false;
        return;
    }

    const QString text = pane.text();
    const int length = int(text.size());
    const QString len = QString::number(length);

    if (sameKeys) {
        if (K == vbKeyBack || keyCode == vbKeyDelete) {
            send(wire::text(wire::words(wire::Numbered::Deletion).open) + len + wire::text(wire::words(wire::Numbered::Deletion).close));
            urlScanned = lineMark = lastCrLf(text);
        } else if (K == vbKeyReturn) {
            send(wire::text(wire::words(wire::Numbered::LineBreak).open) + len + wire::text(wire::words(wire::Numbered::LineBreak).close));
            scan(text.mid(urlScanned));
            const QString line = trim33(text.mid(lineMark));
            lineMark = pane.selStart();
            if (!m_ctx.settingFlag(QStringLiteral("Local Speaker Off")) && speakLocalLine)
                speakLocalLine(line);
            if (!m_ctx.settingFlag(QStringLiteral("Disable Auto TTS Signal")))
                send(wire::text(wire::kSpeakOpen) + line + wire::text(wire::kSpeakClose));
            send(wire::text(wire::kMessageOpen) + line + wire::text(wire::kMessageClose));
            m_model.txtTextMsg.append(m_session.winsock(m_session.sIdx).LocalHostName().toUpper() + QLatin1Char(' ') +
                                m_ctx.clock().timeOfDay().toString(QStringLiteral("h:mm:ss AP")) +
                                QStringLiteral(": ") + line + kCrLf);
        } else if (K == vbKeySpace) {
            send(wire::text(wire::words(wire::Numbered::Space).open) + len + wire::text(wire::words(wire::Numbered::Space).close));
            scan(text.mid(urlScanned));
        } else if (K == vbKeyEscape) {
            // Esc sends nothing.
        } else {
            send(wire::text(wire::kKeyOpen) + QChar(char16_t(K)) + wire::text(wire::kKeyCharClose) + len +
                 wire::text(wire::kKeyClose));
        }
    } else {
        // Different keys before one release: in the order typed, letters
        // gathered into blocks, Returns and deletions as positions.
        QString block;
        int returns = 0, deletions = 0;
        const QString behind = QString::number(length - PressCount);
        auto flush = [&] {
            if (!block.isEmpty()) {
                send(wire::text(wire::kPasteOpen) + block + wire::text(wire::kPasteClose));
                block.clear();
            }
        };
        for (int i = 1; i <= PressCount; ++i) {
            const int code = keyAt(i);
            if (code == vbKeyReturn) {
                flush();
                ++returns;
            } else if (code == vbKeyBack || code == vbKeyDelete) {
                flush();
                ++deletions;
            } else if (code == vbKeyEscape) {
                continue;
            } else {
                // The number these two carry is no length of the pane:
                // the whole text follows the burst.
                if (returns > 0) {
                    send(wire::text(wire::words(wire::Numbered::LineBreak).open) + behind + wire::text(wire::words(wire::Numbered::LineBreak).close));
                    returns = 0;
                    followUp();
                }
                if (deletions > 0) {
                    send(wire::text(wire::words(wire::Numbered::Deletion).open) + behind + wire::text(wire::words(wire::Numbered::Deletion).close));
                    deletions = 0;
                    followUp();
                }
                block += QChar(char16_t(code));
            }
        }
        // Both at the end: the deletion goes out after the Return whatever
        // the order they were typed in.
        if (returns > 0 && deletions > 0)
            followUp();
        if (returns > 0)
            send(wire::text(wire::words(wire::Numbered::LineBreak).open) + len + wire::text(wire::words(wire::Numbered::LineBreak).close));
        if (deletions > 0) {
            send(wire::text(wire::words(wire::Numbered::Deletion).open) + len + wire::text(wire::words(wire::Numbered::Deletion).close));
            urlScanned = lineMark = lastCrLf(text) + 1;
        }
        if (!block.isEmpty())
            send(wire::text(wire::kPasteOpen) + block + wire::text(wire::kPasteClose));
    }
    PressCount = 0;
    keyTyping = false;
}

// --- the text control's own part -------------------------------------------------

void LiveTyping::setServerText(const QString& text)
{
    const QString before = m_model.txtServer.text();
    // Assignments that only add or take off at the end are told by the
    // frames their callers send.
    applyEdit(text, int(text.size()), text.startsWith(before) || before.startsWith(text));
}

void LiveTyping::applyEdit(const QString& text, int caret, bool expressed)
{
    TextPane& pane = m_model.txtServer;
    const QString before = pane.text();
    if (text == before) {
        pane.setSelStart(caret);
        // A selection typed or pasted over with the same text: the frames
        // went out all the same.
        if (!expressed)
            followUp();
        return;
    }
    pane.setText(text, caret);
    m_changeSent.clear();
    txtServer_Change();
    if (!m_changeSent.isEmpty() && pane.text() == before + m_changeSent)
        expressed = true;
    if (!expressed && pane.text() != before)
        followUp();
}

void LiveTyping::editRange(int start, int length, const QString& insert, bool expressed)
{
    TextPane& pane = m_model.txtServer;
    const QString text = pane.text();
    start = qBound(0, start, int(text.size()));
    length = qBound(0, length, int(text.size()) - start);
    QString add = insert;
    if (pane.maxLength() > 0) {
        const int room = pane.maxLength() - (int(text.size()) - length);
        add = room > 0 ? add.left(room) : QString();
    }
    if (length == 0 && add.isEmpty())
        return;
    // The change handler refuses a double-byte character under encryption
    // by cutting the pane's last one; before the end that would be another
    // character, so it is refused here, before it goes in.
    if (start + length < text.size() && m_session.IsConnected() && m_cipher.encryptOn) {
        for (QChar c : add) {
            if (!isDoubleByte(c))
                continue;
            if (!m_changeWarned) {
                refuseDoubleByte(c, keyTyping);
                m_changeWarned = true;
            }
            return;
        }
    }
    // Only an edit that ends at the end of the pane can be one the frames
    // tell.
    expressed = expressed && start + length == text.size() && (length == 0 || add.isEmpty());
    applyEdit(text.left(start) + add + text.mid(start + length), start + int(add.size()),
              expressed);
}

void LiveTyping::controlKey(int keyAscii)
{
    TextPane& pane = m_model.txtServer;
    const QString text = pane.text();
    const int caret = qBound(0, pane.selStart(), int(text.size()));
    const int selected = pane.selLength();
    switch (keyAscii) {
    case 0:
    case vbKeyEscape:
        return;
    case vbKeyBack: {
        if (selected > 0) {
            editRange(caret, selected, QString(), false);
            return;
        }
        if (caret == 0)
            return;
        // A line break goes as one, CR and LF together.
        const int width = caret >= 2 && text.mid(caret - 2, 2) == kCrLf ? 2 : 1;
        editRange(caret - width, width, QString(), true);
        return;
    }
    default: {
        // The key's own frames tell a character added at the end; the
        // Return's went out already, at its press.
        const QString add = keyAscii == vbKeyReturn ? kCrLf : QString(QChar(char16_t(keyAscii)));
        editRange(caret, selected, add, true);
    }
    }
}

void LiveTyping::controlInput(const QString& input)
{
    TextPane& pane = m_model.txtServer;
    const int caret = qBound(0, pane.selStart(), pane.length());
    // A key press or a paste tells what it adds at the end; an input
    // method's text only when the change handler sends it as a block.
    editRange(caret, pane.selLength(), input, keyTyping || pasting);
}

void LiveTyping::controlDeleteRange(int start, int length)
{
    editRange(start, length, QString(), false);
}

void LiveTyping::controlDeleteForward()
{
    TextPane& pane = m_model.txtServer;
    const QString text = pane.text();
    if (pane.selLength() > 0) {
        controlDeleteRange(pane.selStart(), pane.selLength());
        return;
    }
    const int caret = qBound(0, pane.selStart(), int(text.size()));
    if (caret >= text.size())
        return;
    controlDeleteRange(caret, text.mid(caret, 2) == kCrLf ? 2 : 1);
}

// --- the whole text after an edit the frames cannot carry -------------------------

void LiveTyping::followUp()
{
    if (!m_session.IsConnected())
        return;
    m_followUpTimer.start(followUpDelayMs);
}

void LiveTyping::cancelFollowUp()
{
    m_followUpTimer.stop();
}

void LiveTyping::followUpDue()
{
    if (!m_session.IsConnected())
        return;
    ++followUpsSent;
    m_receiver.resendWholeText();
}

void LiveTyping::keyboardPress(int keyCode, int shift, const QString& text)
{
    txtServer_KeyDown(keyCode, shift);
    // Delete has no character: no key press, only the control's deletion.
    if (keyCode == vbKeyDelete && !(shift & (vbShiftMask | vbCtrlMask | vbAltMask)))
        controlDeleteForward();
    for (QChar ch : text) {
        int ascii = ch.unicode();
        if (ascii == '\n')
            ascii = vbKeyReturn;
        txtServer_KeyPress(ascii);
        controlKey(ascii);
    }
}

void LiveTyping::keyboardRelease(int keyCode, int shift)
{
    txtServer_KeyUp(keyCode, shift);
}

void LiveTyping::typeText(const QString& text)
{
    for (QChar ch : text) {
        const char16_t u = ch.unicode();
        int keyCode = u;
        QString chars(ch);
        switch (u) {
        case '\r':
        case '\n':
            keyCode = vbKeyReturn;
            chars = QStringLiteral("\r");
            break;
        case 0x7f:
            keyCode = vbKeyDelete;
            chars.clear();
            break;
        default:
            if (ch.isLetter() && u < 0x80)
                keyCode = ch.toUpper().unicode();
        }
        keyboardPress(keyCode, 0, chars);
        keyboardRelease(keyCode, 0);
    }
}

}  // namespace vonnel
