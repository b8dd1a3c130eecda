// What the main window's menu entries, toolbar buttons and the panes'
// pop-up menu do: each is handed to the controller or to the dialog that
// owns it. Typing, paste, clear, refresh, override and the font buttons are
// the typing logic's (it hears the same trigger).

#include "shell/MainWindow.h"

#include "access/LockForms.h"
#include "access/PasswordStore.h"
#include "access/Encryption.h"
#include "connection/AddressServices.h"
#include "connection/Connection.h"
#include "platform/Clipboard.h"
#include "platform/Desktop.h"
#include "shell/FrmMain.h"
#include "shell/SessionRecords.h"
#include "shell/dialogs/AccessDialogs.h"
#include "transfer/Transfer.h"
#include "wire/PaneFormat.h"
#include "connection/Session.h"
#include "platform/Prompter.h"
#include "core/CopyContext.h"

#include <QAction>
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

namespace vonnel {

namespace {
// The pop-up of the panes: each entry is the twin of a menu entry or a
// toolbar button and runs it.
struct PopEntry {
    const char* name;
    const char* key;
    const char* fallback;
    QString twin;
};
const QList<PopEntry>& popsFormatEntries()
{
    static const QList<PopEntry> entries = {
        {"popCopy", "Copy", "&Copy", QStringLiteral("mnuCopy")},
        {"popCopyAll", "Copy All", "Copy &All", QStringLiteral("mnuCopyAll")},
        {"popPaste", "Paste", "&Paste", QStringLiteral("mnuEditPaste")},
        {"-", "", "", QString()},
        {"popBold", "Bold", "&Bold", toolbarButton(7)},
        {"popItalic", "Italic", "&Italic", toolbarButton(8)},
        {"popFontUp", "Increase Font Size", "&Increase Font Size", toolbarButton(9)},
        {"popFontDown", "Decrease Font Size", "&Decrease Font Size", toolbarButton(10)},
        {"popFontColour", "Font Colour", "Font &Colour...", toolbarButton(11)},
        {"popBackColour", "Background Colour", "Bac&kground Colour...", toolbarButton(12)},
        {"-", "", "", QString()},
        {"popOverride", "Override", "&Override", QStringLiteral("mnuOverride")},
        {"popClrScr", "Clear Screen", "C&lear Screen", QStringLiteral("mnuClrScr")},
    };
    return entries;
}
}  // namespace

QString MainWindow::popsFormatTwin(const QString& popEntry)
{
    for (const PopEntry& e : popsFormatEntries())
        if (popEntry == QLatin1String(e.name))
            return e.twin;
    return QString();
}

void MainWindow::showPopsFormat(QPlainTextEdit* pane, const QPoint& globalPos)
{
    m_lastPane = pane;
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("popsFormat"));
    for (const PopEntry& e : popsFormatEntries()) {
        if (QLatin1String(e.name) == QLatin1String("-")) {
            menu.addSeparator();
            continue;
        }
        QAction* a = menu.addAction(m_frm.ctx().translate(QLatin1String(e.key), QLatin1String(e.fallback)));
        a->setObjectName(QLatin1String(e.name));
        a->setEnabled(m_frm.model().controls.enabled(e.twin));
        if (e.twin == QLatin1String("mnuOverride")) {
            a->setCheckable(true);
            a->setChecked(m_frm.model().controls.checked(e.twin));
        }
        const QString twin = e.twin;
        connect(a, &QAction::triggered, this, [this, twin] { Q_EMIT triggered(twin); });
    }
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
    refreshControl(QStringLiteral("mnuSecurity"));
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

void MainWindow::onTriggered(const QString& name)
{
    const auto is = [&name](const char* n) { return name == QLatin1String(n); };
    if (is("mnuFileExit") || is("mnuFileClose")) {
        close();
    } else if (is("mnuConnect") || name == toolbarButton(1)) {
        m_frm.connection().mnuConnect_Click();
    } else if (is("mnuFileProperties")) {
        runModal(QStringLiteral("frmProperty"));
    } else if (is("mnuDisconnect") || name == toolbarButton(2)) {
        m_frm.connection().mnuDisconnect_Click();
    } else if (is("mnuRefresh") || name == toolbarButton(3)) {
        // Not in a session and no transfer in the way: the local addresses
        // are read again (the pane's refresh is the typing logic's).
        if (!m_frm.session().IsConnected() && !m_frm.transfer().progress().loaded)
            m_frm.connection().address().GetLocalHost();
    } else if (is("mnuSave")) {
        m_frm.records().mnuSave_Click();
    } else if (is("mnuCopy") || name == toolbarButton(5)) {
        mnuCopy_Click();
    } else if (is("mnuCopyAll")) {
        mnuCopyAll_Click();
    } else if (is("mnuSecurity")) {
        mnuSecurity_Click();
    } else if (is("mnuEncryption")) {
        mnuEncrypt_Click();
    } else if (is("mnuHelpContents") || name == toolbarButton(17)) {
        m_frm.ctx().desktop().openFile(m_frm.ctx().HelpPath + QStringLiteral("index.htm"));
    } else if (is("mnuUpdate")) {
        m_frm.mnuUpdate_Click();
    } else if (is("mnuHomePage") || is("mnuSupport")) {
        const QString key = is("mnuHomePage") ? QStringLiteral("HomePage")
                                              : QStringLiteral("Support");
        const QString url = m_frm.ctx().setting(key);
        if (!url.isEmpty())
            m_frm.ctx().desktop().openUrl(url);
    } else if (is("mnuAbout")) {
        m_frm.ctx().prompter().msgBox(m_frm.ctx().VersionString + QStringLiteral("\r\r") +
                                    m_frm.ctx().translate(QStringLiteral("Usage")) + QStringLiteral(": ") +
                                    m_frm.ctx().setting(QStringLiteral("Usage")) + QStringLiteral("\r") +
                                    m_frm.ctx().translate(QStringLiteral("Connection Count")) +
                                    QStringLiteral(": ") + m_frm.ctx().setting(QStringLiteral("Connection Count")),
                                MsgStyle::Information,
                                m_frm.ctx().translate(QStringLiteral("About")) + QStringLiteral(" ") +
                                    MainModel::kTitle);
    } else if (is("mnuViewontop")) {
        const bool on = !m_frm.model().controls.checked(name);
        m_frm.model().controls.setChecked(name, on);
        setWindowFlag(Qt::WindowStaysOnTopHint, on);
        show();
    } else if (is("mnuMin")) {
        showMinimized();
    } else if (is("mnuSendFile") || name == kSendFileButton) {
        m_frm.transfer().mnuSendFile_Click();
    }
}

}  // namespace vonnel
