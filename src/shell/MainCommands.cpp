// What the main window's menu entries, toolbar buttons and the panes'
// pop-up menu do: each is handed to the controller or to the dialog that
// owns it.

#include "shell/MainWindow.h"

#include "shell/ActionLook.h"

#include "board/Scrivet.h"

#include "wire/AwayNotice.h"
#include "wire/PresetMessages.h"

#include "access/LockForms.h"
#include "access/PasswordStore.h"
#include "access/Encryption.h"
#include "connection/AddressServices.h"
#include "connection/Connection.h"
#include "media/RingExchange.h"
#include "media/Speech.h"
#include "platform/Clipboard.h"
#include "platform/Desktop.h"
#include "shell/FrmMain.h"
#include "shell/SessionRecords.h"
#include "shell/TypingBinder.h"
#include "shell/WindowLook.h"
#include "shell/dialogs/AccessDialogs.h"
#include "shell/dialogs/OptionsDialog.h"
#include "shell/dialogs/UrlHistoryWindow.h"
#include "transfer/Transfer.h"
#include "wire/AwayNotice.h"
#include "wire/PaneFormat.h"
#include "wire/PresetMessages.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "core/CopyContext.h"

#include <QAction>
#include <QTabWidget>
#include <QTimer>
#include <QColorDialog>
#include <QApplication>
#include <QCoreApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QTextCursor>
#include <QKeyEvent>
#include <QMenu>
#include <QPlainTextEdit>

#include <array>
#include <optional>

namespace vonnel {

void MainWindow::showPopsFormat(QPlainTextEdit* pane, const QPoint& globalPos)
{
    // Each entry of the panes' pop-up is the twin of a menu entry or a
    // toolbar button and runs it. An entry without a key is a separator.
    struct PopEntry { Control c; const char* key; const char* fallback; };
    // Lang.txt keys: the first text of each line, to the closing "};".
    static const PopEntry kEntries[] = {
        {Control::popCopy, "Copy", "&Copy"},
        {Control::popCopyAll, "Copy All", "Copy &All"},
        {Control::popPaste, "Paste", "&Paste"},
        {Control::popCopy, nullptr, nullptr},
        {Control::popBold, "Bold", "&Bold"},
        {Control::popItalic, "Italic", "&Italic"},
        {Control::popFontUp, "Increase Font Size", "&Increase Font Size"},
        {Control::popFontDown, "Decrease Font Size", "&Decrease Font Size"},
        {Control::popFontColour, "Font Colour", "Font &Colour..."},
        {Control::popBackColour, "Background Colour", "Bac&kground Colour..."},
        {Control::popCopy, nullptr, nullptr},
        {Control::popOverride, "Override", "&Override"},
        {Control::popClrScr, "Clear Screen", "C&lear Screen"},
    };
    m_lastPane = pane;
    m_frm.speech().mnuVoice_Click();
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("popsFormat"));
    for (const PopEntry& e : kEntries) {
        if (!e.key) {
            menu.addSeparator();
            continue;
        }
        const Control twin = popupTwin(e.c);
        QAction* a = menu.addAction(m_frm.ctx().translate(QLatin1String(e.key), QLatin1String(e.fallback)));
        a->setObjectName(controlName(e.c));
        a->setIcon(actionIcon(twin));
        a->setEnabled(m_frm.model().controls.enabled(twin));
        if (twin == Control::mnuOverride) {
            a->setCheckable(true);
            a->setChecked(m_frm.model().controls.checked(twin));
        }
        connect(a, &QAction::triggered, this, [this, twin] { Q_EMIT triggered(twin); });
    }
    // Speak reads the selection of the pane the menu was opened on.
    menu.addSeparator();
    const Control speak = pane == m_client ? Control::popcSpeak : Control::popsSpeak;
    QAction* a = menu.addAction(m_frm.ctx().translate(QStringLiteral("Speak"), QStringLiteral("&Speak")));
    a->setObjectName(controlName(speak));
    a->setIcon(actionIcon(Control::mnuSpeak));
    a->setEnabled(m_frm.model().controls.enabled(speak));
    connect(a, &QAction::triggered, this, [this, speak] { Q_EMIT triggered(speak); });
    menu.exec(globalPos);
}

QString MainWindow::selectedText() const
{
    // The pane the user worked in last comes first, then the other one.
    QPlainTextEdit* first = m_lastPane ? m_lastPane : m_server;
    QPlainTextEdit* second = first == m_server ? m_client : m_server;
    for (QPlainTextEdit* pane : {first, second}) {
        QString text = pane->textCursor().selectedText();
        if (!text.isEmpty()) {
            text.replace(QChar::ParagraphSeparator, QStringLiteral("\r\n"));
            return text;
        }
    }
    return QString();
}

bool MainWindow::paneEvent(QPlainTextEdit* pane, QEvent* event)
{
    if (event->type() == QEvent::MouseMove && pane == m_server)
        m_frm.away().txtServer_MouseMove();
    if (event->type() == QEvent::MouseButtonPress) {
        // A press inside the selection may start a drag of it out of the pane.
        auto* mouse = static_cast<QMouseEvent*>(event);
        const QTextCursor sel = pane->textCursor();
        const int at = pane->cursorForPosition(mouse->position().toPoint()).position();
        m_dragFrom = (mouse->button() == Qt::LeftButton && sel.hasSelection() &&
                      at >= sel.selectionStart() && at <= sel.selectionEnd())
                         ? mouse->position().toPoint()
                         : QPoint(-1, -1);
        m_lastPane = pane;
        return m_dragFrom.x() >= 0;  // the selection stays while a drag may begin
    }
    if (event->type() == QEvent::MouseMove && m_dragFrom.x() >= 0) {
        auto* mouse = static_cast<QMouseEvent*>(event);
        if ((mouse->position().toPoint() - m_dragFrom).manhattanLength() <
            QApplication::startDragDistance())
            return true;
        m_dragFrom = QPoint(-1, -1);
        QString text = pane->textCursor().selectedText();
        text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
        auto* drag = new QDrag(pane);
        auto* data = new QMimeData;
        data->setText(text);
        drag->setMimeData(data);
        drag->exec(Qt::CopyAction);
        return true;
    }
    if (event->type() == QEvent::MouseButtonRelease && m_dragFrom.x() >= 0) {
        // A click in the selection without a drag: the caret goes there.
        m_dragFrom = QPoint(-1, -1);
        QTextCursor c = pane->textCursor();
        c.setPosition(pane->cursorForPosition(static_cast<QMouseEvent*>(event)->position().toPoint()).position());
        pane->setTextCursor(c);
        return true;
    }
    if (event->type() == QEvent::FocusIn) {
        m_lastPane = pane;
        return false;
    }
    if (pane != m_client || event->type() != QEvent::KeyPress)
        return false;
    auto* key = static_cast<QKeyEvent*>(event);
    if (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier))
        return false;  // Ctrl+C, Ctrl+A and the menus' keys stay where they are
    const bool typing = !key->text().isEmpty() || key->key() == Qt::Key_Return ||
                        key->key() == Qt::Key_Enter || key->key() == Qt::Key_Backspace;
    if (!typing || !m_server->isEnabled())
        return false;
    // The remote pane takes no typing: the key goes to the local pane, which
    // keeps the focus from here on, as the window's own focus does.
    m_server->setFocus(Qt::OtherFocusReason);
    m_lastPane = m_server;
    QKeyEvent copy(key->type(), key->key(), key->modifiers(), key->text(), key->isAutoRepeat(),
                   ushort(key->count()));
    QCoreApplication::sendEvent(m_server, &copy);
    return true;
}

void MainWindow::takeSelections()
{
    const auto take = [](QPlainTextEdit* view, TextPane& pane) {
        const QTextCursor c = view->textCursor();
        const int from = TypingBinder::panePosition(pane.text(), c.selectionStart());
        const int to = TypingBinder::panePosition(pane.text(), c.selectionEnd());
        pane.setSelection(from, to - from);
    };
    take(m_server, m_frm.model().txtServer);
    take(m_client, m_frm.model().txtClient(m_frm.session().sIdx));
}

void MainWindow::mnuCopy_Click()
{
    const QString text = selectedText();
    if (!text.isEmpty())
        m_frm.ctx().clipboard().setText(text);
}

void MainWindow::mnuCopyAll_Click()
{
    // The whole text of the pane last worked in, as the session holds it.
    const QString text = m_lastPane == m_client ? m_frm.model().txtClient(m_frm.session().sIdx).text() : m_frm.model().txtServer.text();
    if (!text.isEmpty())
        m_frm.ctx().clipboard().setText(text);
}

void MainWindow::mnuSecurity_Click()
{
    SecurityDialog dialog(m_frm, this);
    dialog.exec();
    // The check mark says whether a password applies, not that it was clicked.
    refreshControl(Control::mnuSecurity);
}

void MainWindow::mnuEncrypt_Click()
{
    if (!m_encrypt) {
        m_encrypt = new EncryptDialog(m_frm, this);
        m_encrypt->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_encrypt->show();
    m_encrypt->raise();
    m_encrypt->activateWindow();
}

std::optional<qint64> MainWindow::chooseColour(qint64 current, const QString& title)
{
    const QColor c = QColorDialog::getColor(PaneFormat::toColor(current), this, title);
    if (!c.isValid())
        return std::nullopt;
    return PaneFormat::fromColor(c);
}

void MainWindow::onTriggered(Control c)
{
    // Typing, paste, clear, refresh, override and the font buttons are the
    // typing logic's; it hears the same trigger.
    switch (c) {
    case Control::mnuFileExit:
    case Control::mnuSysClose:
        close();
        break;
    case Control::mnuFileClose:
        // Close puts the window away and the copy keeps listening: to the
        // tray, or minimised where there is none. Exit ends the program.
        m_frm.TrayOnly = 1;
        m_frm.model().setWindowState(MainModel::vbMinimized);
        break;
    case Control::mnuSysShow:
        m_frm.ShowMain();
        break;
    case Control::mnuConnect:
    case Control::Toolbar1_1:
        m_frm.connection().mnuConnect_Click();
        break;
    case Control::mnuFileProperties:
    case Control::mnuSysProperties:
        runModal(Form::frmProperty);
        break;
    case Control::mnuNetView:
    case Control::mnuSysNetView:
        showNetTool(Form::frmNetView);
        break;
    case Control::mnuNetResolve:
    case Control::mnuSysNetResolve:
        showNetTool(Form::frmNetResolve);
        break;
    case Control::mnuFileAutoConnect:
    case Control::mnuSysAutoConnect:
        // The station list is kept behind the away lock.
        if (m_frm.awayLockPassed())
            showNetTool(Form::frmAutoConnect);
        break;
    case Control::mnuAutoCheck:
        if (m_frm.awayLockPassed())
            showNetTool(Form::frmAutoIP);
        refreshControl(c);  // the check mark is the station check's, not the click's
        break;
    case Control::mnuDisconnect:
    case Control::Toolbar1_2:
        m_frm.connection().mnuDisconnect_Click();
        break;
    case Control::mnuRefresh:
    case Control::Toolbar1_3:
        // Not in a session and no transfer in the way: the local addresses
        // are read again (the pane's refresh is the typing logic's).
        if (!m_frm.session().IsConnected() && !m_frm.transfer().progress().loaded)
            m_frm.connection().address().GetLocalHost();
        break;
    case Control::mnuSave:
        m_frm.records().mnuSave_Click();
        break;
    case Control::mnuCopy:
    case Control::Toolbar1_5:
        mnuCopy_Click();
        break;
    case Control::mnuCopyAll:
        mnuCopyAll_Click();
        break;
    case Control::mnuSecurity:
        mnuSecurity_Click();
        break;
    case Control::mnuEncryption:
        mnuEncrypt_Click();
        break;
    case Control::mnuBeep:
    case Control::mnuRing:
    case Control::Toolbar1_14:
    case Control::Toolbar1_15:
        m_frm.rings().mnuBeep_Click();
        break;
    case Control::mnuURLHistory:
        showUrlHistory();
        break;
    case Control::mnuSpeak:
        takeSelections();
        m_frm.speech().mnuSpeak_Click();
        break;
    case Control::popsSpeak:
        takeSelections();
        m_frm.speech().popsSpeak_Click();
        break;
    case Control::popcSpeak:
        takeSelections();
        m_frm.speech().popcSpeak_Click();
        break;
    case Control::mnuMute:
    case Control::Toolbar1_16:
        m_frm.speech().mnuMute_Click();
        // The check marks are the speech state's, not the click's.
        refreshControl(Control::mnuMute);
        refreshControl(Control::Toolbar1_16);
        break;
    case Control::mnuVolUp:
        m_frm.speech().mnuVolumeUp_Click();
        break;
    case Control::mnuVolDown:
        m_frm.speech().mnuVolumeDown_Click();
        break;
    case Control::mnuDraw:
    case Control::Toolbar1_Scrivet:
        m_frm.scrivet().mnuDraw_Click();
        break;
    case Control::mnuMsg1:
    case Control::mnuMsg2:
    case Control::mnuMsg3:
    case Control::mnuMsg4:
    case Control::mnuMsg5:
    case Control::mnuMsg6:
    case Control::mnuMsg7:
    case Control::mnuMsg8:
        m_frm.presets().mnuMsg_Click(PresetMessages::messageOf(c));
        break;
    case Control::mnuHelpContents:
    case Control::Toolbar1_17:
        m_frm.ctx().desktop().openFile(m_frm.ctx().HelpPath + QStringLiteral("index.htm"));
        break;
    case Control::mnuUpdate:
        m_frm.mnuUpdate_Click();
        break;
    case Control::mnuHomePage:
    case Control::mnuSupport: {
        const QString key = c == Control::mnuHomePage ? QStringLiteral("HomePage") : QStringLiteral("Support");
        const QString url = m_frm.ctx().setting(key);
        if (!url.isEmpty())
            m_frm.ctx().desktop().openUrl(url);
        break;
    }
    case Control::mnuAbout:
        showAbout();
        break;
    case Control::mnuViewontop: {
        const bool on = !m_frm.model().controls.checked(c);
        m_frm.model().controls.setChecked(c, on);
        StayOnTop(this, m_frm);
        break;
    }
    case Control::mnuMin:
        showMinimized();
        break;
    case Control::mnuOptions:
        mnuOptions_Click();
        break;
    case Control::mnuSendFile:
    case Control::Toolbar1_SendFile:
        m_frm.transfer().mnuSendFile_Click();
        break;
    default:
        break;
    }
}

void MainWindow::mnuOptions_Click()
{
    // A language applied through the dialog's own button sets its texts
    // again: the dialog is made anew in that language, on the same tab,
    // with the values its boxes held.
    int tab = 0;
    std::optional<std::array<QString, kOptCount>> held;
    for (;;) {
        OptionsDialog dialog(m_frm, this);
        m_options = &dialog;
        if (held)
            for (int c = 0; c < kOptCount; ++c)
                if (dialog.model().value(Opt(c)) != (*held)[size_t(c)])
                    dialog.model().setValue(Opt(c), (*held)[size_t(c)]);
        dialog.tabs()->setCurrentIndex(tab);
        bool remade = false;
        connect(&dialog, &OptionsDialog::languageRequested, &m_frm, &FrmMain::showLanguagePicker);
        connect(&m_frm, &FrmMain::languageChanged, &dialog, [&dialog, &remade] {
            remade = true;
            // Once the picker is closed.
            QTimer::singleShot(0, &dialog, &QDialog::reject);
        });
        dialog.exec();
        if (!remade)
            return;
        tab = dialog.tabs()->currentIndex();
        held.emplace();
        for (int c = 0; c < kOptCount; ++c)
            (*held)[size_t(c)] = dialog.model().value(Opt(c));
    }
}

void MainWindow::showUrlHistory()
{
    if (!m_urlHistory) {
        m_urlHistory = new UrlHistoryWindow(m_frm, this);
        m_urlHistory->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_urlHistory->show();
    m_urlHistory->raise();
}

}  // namespace vonnel
