#include "shell/TypingBinder.h"

#include "shell/ColorScheme.h"

#include "platform/Clipboard.h"
#include "platform/Clock.h"
#include "shell/FrmMain.h"
#include "core/TextPane.h"
#include "wire/LiveTyping.h"
#include "wire/PaneFormat.h"
#include "core/CopyContext.h"

#include <QApplication>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTextCursor>

namespace vonnel {

TypingBinder::TypingBinder(FrmMain& frm, QPlainTextEdit* server, QPlainTextEdit* client)
    : QObject(server), m_frm(frm), m_server(server)
{
    // Read-only keeps the widget from editing; the caret and the keyboard
    // selection stay, and the events still come here first.
    server->setReadOnly(true);
    server->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    server->setAttribute(Qt::WA_InputMethodEnabled, true);
    server->setAcceptDrops(true);
    server->installEventFilter(this);
    server->viewport()->installEventFilter(this);

    TextPane& pane = frm.model().txtServer;
    connect(&pane, &TextPane::textChanged, server, [&pane, server] { showText(pane, server); });
    showText(pane, server);
    LiveTyping& typing = frm.typing();
    connect(&typing.serverFormat, &PaneFormat::changed, server,
            [&typing, server] { showFormat(typing.serverFormat, server); });
    showFormat(typing.serverFormat, server);
    if (client) {
        connect(&typing.clientFormat, &PaneFormat::changed, client,
                [&typing, client] { showFormat(typing.clientFormat, client); });
        showFormat(typing.clientFormat, client);
    }
}

int TypingBinder::keyCode(const QKeyEvent* e)
{
    const int k = e->key();
    if (k >= Qt::Key_A && k <= Qt::Key_Z)
        return k;  // the same codes: 65 to 90
    if (k >= Qt::Key_0 && k <= Qt::Key_9)
        return (e->modifiers() & Qt::KeypadModifier) ? 96 + (k - Qt::Key_0) : k;
    if (k >= Qt::Key_F1 && k <= Qt::Key_F24)
        return 112 + (k - Qt::Key_F1);
    switch (k) {
    case Qt::Key_Backspace: return 8;
    case Qt::Key_Tab:
    case Qt::Key_Backtab: return 9;
    case Qt::Key_Return:
    case Qt::Key_Enter: return 13;
    case Qt::Key_Shift: return 16;
    case Qt::Key_Control: return 17;
    case Qt::Key_Alt: return 18;
    case Qt::Key_Pause: return 19;
    case Qt::Key_CapsLock: return 20;
    case Qt::Key_Escape: return 27;
    case Qt::Key_Space: return 32;
    case Qt::Key_PageUp: return 33;
    case Qt::Key_PageDown: return 34;
    case Qt::Key_End: return 35;
    case Qt::Key_Home: return 36;
    case Qt::Key_Left: return 37;
    case Qt::Key_Up: return 38;
    case Qt::Key_Right: return 39;
    case Qt::Key_Down: return 40;
    case Qt::Key_Insert: return 45;
    case Qt::Key_Delete: return 46;
    case Qt::Key_NumLock: return 144;
    default: break;
    }
    // The punctuation keys have key codes of their own, the same shifted or
    // not; their characters' codes would collide with the navigation keys'
    // (a point is 46, the code of Delete, and its release would send a
    // deletion and reset the address scan).
    const bool keypad = e->modifiers() & Qt::KeypadModifier;
    switch (k) {
    case Qt::Key_Asterisk: return keypad ? 106 : 56;
    case Qt::Key_Plus: return keypad ? 107 : 187;
    case Qt::Key_Minus: return keypad ? 109 : 189;
    case Qt::Key_Period: return keypad ? 110 : 190;
    case Qt::Key_Slash: return keypad ? 111 : 191;
    case Qt::Key_Semicolon:
    case Qt::Key_Colon: return 186;
    case Qt::Key_Equal: return 187;
    case Qt::Key_Comma:
    case Qt::Key_Less: return 188;
    case Qt::Key_Underscore: return 189;
    case Qt::Key_Greater: return 190;
    case Qt::Key_Question: return 191;
    case Qt::Key_QuoteLeft:
    case Qt::Key_AsciiTilde: return 192;
    case Qt::Key_BracketLeft:
    case Qt::Key_BraceLeft: return 219;
    case Qt::Key_Backslash:
    case Qt::Key_Bar: return 220;
    case Qt::Key_BracketRight:
    case Qt::Key_BraceRight: return 221;
    case Qt::Key_Apostrophe:
    case Qt::Key_QuoteDbl: return 222;
    // Shifted digits: the digit's key.
    case Qt::Key_ParenRight: return '0';
    case Qt::Key_Exclam: return '1';
    case Qt::Key_At: return '2';
    case Qt::Key_NumberSign: return '3';
    case Qt::Key_Dollar: return '4';
    case Qt::Key_Percent: return '5';
    case Qt::Key_AsciiCircum: return '6';
    case Qt::Key_Ampersand: return '7';
    case Qt::Key_ParenLeft: return '9';
    default: break;
    }
    // Other keys (letters of other alphabets, dead keys) have no code of
    // their own here; below 128 would be taken for a control or navigation
    // key.
    return k >= 128 && k < 256 ? k : 0;
}

int TypingBinder::shiftState(Qt::KeyboardModifiers m)
{
    int s = 0;
    if (m & Qt::ShiftModifier)
        s |= LiveTyping::vbShiftMask;
    if (m & Qt::ControlModifier)
        s |= LiveTyping::vbCtrlMask;
    if (m & Qt::AltModifier)
        s |= LiveTyping::vbAltMask;
    return s;
}

int TypingBinder::panePosition(const QString& paneText, int widgetPosition)
{
    int shown = 0;
    qsizetype i = 0;
    for (; i < paneText.size() && shown < widgetPosition; ++i) {
        // CR LF shows as one line feed.
        if (paneText[i] == QLatin1Char('\r') && i + 1 < paneText.size() &&
            paneText[i + 1] == QLatin1Char('\n'))
            ++i;
        ++shown;
    }
    return int(i);
}

int TypingBinder::widgetPosition(const QString& paneText, int panePosition)
{
    const QString before = paneText.left(panePosition);
    return int(before.size() - before.count(QLatin1String("\r\n")));
}

void TypingBinder::showText(const TextPane& pane, QPlainTextEdit* view)
{
    QString shown = pane.text();
    shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    if (view->toPlainText() != shown)
        view->setPlainText(shown);
    // The caret stays where the pane's edit left it (the end, for typing).
    QTextCursor c = view->textCursor();
    c.setPosition(widgetPosition(pane.text(), pane.selStart()));
    view->setTextCursor(c);
    view->ensureCursorVisible();
}

void TypingBinder::takeSelection()
{
    const QTextCursor c = m_server->textCursor();
    TextPane& pane = m_frm.model().txtServer;
    const int from = panePosition(pane.text(), c.selectionStart());
    const int to = panePosition(pane.text(), c.selectionEnd());
    pane.setSelection(from, to - from);
}

void TypingBinder::showFormat(const PaneFormat& format, QPlainTextEdit* view)
{
    QFont font(format.fontName());
    font.setPointSizeF(format.size());
    font.setBold(format.bold());
    font.setItalic(format.italic());
    view->setFont(font);
    // Only the roles the pane holds are set; the rest, and both in the
    // preset colours, follow the window's palette as it changes.
    QPalette pal;
    if (const auto own = paneColours(format.foreColor(), format.backColor())) {
        pal.setColor(QPalette::Text, own->first);
        pal.setColor(QPalette::Base, own->second);
    }
    view->setPalette(pal);
}

int TypingBinder::physicalKey(const QKeyEvent* e)
{
    // The key's own code where the platform gives one: Qt's key can change
    // between press and release with the modifiers (Shift+1 is "!").
    return e->nativeScanCode() != 0 ? int(e->nativeScanCode()) : e->key();
}

bool TypingBinder::keyPress(QKeyEvent* e)
{
    // The X server repeats a held key as a release and a press at one
    // instant; Qt tells them apart only when the press has already come in.
    const int key = physicalKey(e);
    // A key event copied on its way through the accessibility bridge has
    // no time of its own: then the two arrive here within a few ms, which
    // no hand pressing a key again comes near.
    const qint64 arrived = m_frm.ctx().clock().steadyMs();
    const bool sameInstant =
        key == m_lastUp.key && (e->timestamp() != 0 ? e->timestamp() == m_lastUp.time
                                                    : arrived - m_lastUp.arrivedMs <= kRepeatGapMs);
    if (sameInstant && m_lastUp.wasDown)
        m_keysDown.insert(key);
    // The bridge also hands over, late, the press of a key that went down
    // in the window in front before: it comes as the pane takes the focus.
    const bool copied = e->timestamp() == 0 && e->nativeScanCode() == 0;
    const bool lateCopy = copied && arrived - m_focusAtMs <= kLateCopyMs;
    if ((e->isAutoRepeat() || sameInstant || lateCopy) && !m_keysDown.contains(key))
        return true;
    m_keysDown.insert(key);
    LiveTyping& typing = m_frm.typing();
    const int code = keyCode(e);
    const int shift = shiftState(e->modifiers());
    const bool ctrl = e->modifiers() & Qt::ControlModifier;

    if (ctrl && e->key() == Qt::Key_V) {
        takeSelection();
        typing.txtServer_KeyDown(code, shift);
        typing.mnuEditPaste_Click();
        return true;
    }
    switch (e->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        // Caret moves and selection are the widget's; nothing is sent.
        typing.txtServer_KeyDown(code, shift);
        return false;
    default:
        break;
    }
    if (ctrl && (e->key() == Qt::Key_C || e->key() == Qt::Key_A)) {
        typing.txtServer_KeyDown(code, shift);
        return false;  // copy and select all: the widget's
    }
    // The caret and the selection the user made in the widget are the
    // pane's: typing, Backspace and Delete work there.
    takeSelection();
    if (e->key() == Qt::Key_Delete) {
        typing.keyboardPress(code, shift, QString());
        return true;
    }
    QString chars = e->text();
    if (ctrl || (e->modifiers() & Qt::AltModifier))
        chars.clear();
    if (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter)
        chars = QStringLiteral("\r");
    typing.keyboardPress(code, shift, chars);
    return true;
}

bool TypingBinder::keyRelease(QKeyEvent* e)
{
    // A held key repeats its press; its release comes once, at the end.
    if (e->isAutoRepeat())
        return true;
    const int key = physicalKey(e);
    m_lastUp = {key, e->timestamp(), m_frm.ctx().clock().steadyMs(), m_keysDown.remove(key)};
    if (!m_lastUp.wasDown)
        return true;
    m_frm.typing().keyboardRelease(keyCode(e), shiftState(e->modifiers()));
    const int k = e->key();
    const bool navigation = k == Qt::Key_Left || k == Qt::Key_Right || k == Qt::Key_Up ||
                            k == Qt::Key_Down || k == Qt::Key_Home || k == Qt::Key_End ||
                            k == Qt::Key_PageUp || k == Qt::Key_PageDown;
    return !navigation;
}

bool TypingBinder::eventFilter(QObject* watched, QEvent* event)
{
    LiveTyping& typing = m_frm.typing();
    switch (event->type()) {
    case QEvent::KeyPress:
        if (watched == m_server)
            return keyPress(static_cast<QKeyEvent*>(event));
        break;
    case QEvent::KeyRelease:
        if (watched == m_server)
            return keyRelease(static_cast<QKeyEvent*>(event));
        break;
    case QEvent::ShortcutOverride:
        // Keys the pane takes itself are not menu shortcuts.
        if (watched == m_server) {
            auto* e = static_cast<QKeyEvent*>(event);
            if (!(e->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
                event->accept();
                return true;
            }
        }
        break;
    case QEvent::InputMethod:
        if (watched == m_server) {
            auto* e = static_cast<QInputMethodEvent*>(event);
            if (!e->commitString().isEmpty())
                typing.controlInput(e->commitString());
            return true;
        }
        break;
    case QEvent::FocusIn:
        if (watched == m_server) {
            // A key already down when the focus came went down elsewhere.
            m_keysDown.clear();
            m_lastUp = {};
            m_focusAtMs = m_frm.ctx().clock().steadyMs();
            typing.txtServer_GotFocus();
        }
        break;
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto* e = static_cast<QDropEvent*>(event);
        if (e->mimeData()->hasText()) {
            e->acceptProposedAction();
            return true;
        }
        break;
    }
    case QEvent::Drop: {
        // Text dropped from outside goes through the clipboard into a paste.
        auto* e = static_cast<QDropEvent*>(event);
        if (e->mimeData()->hasText()) {
            m_frm.ctx().clipboard().setText(e->mimeData()->text());
            m_frm.model().txtServer.caretToEnd();
            typing.mnuEditPaste_Click();
            e->acceptProposedAction();
            return true;
        }
        break;
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace vonnel
