// The main window's menu bar, toolbar and tray menu, built from the menu
// table: one action per Control, named by controlName(), each click handed
// on as triggered(). Captions, shown and enabled follow the controls.

#include "shell/MainWindow.h"

#include "core/CopyContext.h"
#include "core/MainModel.h"
#include "shell/FrmMain.h"
#include "shell/ActionLook.h"
#include "shell/MenuTable.h"
#include "media/Speech.h"
#include "platform/Notifier.h"

#include <QCursor>

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QStyle>
#include <QSystemTrayIcon>
#include <QToolBar>

namespace vonnel {

QAction* MainWindow::bindAction(QAction* a, Control c)
{
    a->setObjectName(controlName(c));
    connect(a, &QAction::triggered, this, [this, c] { Q_EMIT triggered(c); });
    m_actions[size_t(c)] = a;
    return a;
}

QAction* MainWindow::addEntry(QMenu* menu, Control c, const QString& key, const QString& fallback)
{
    auto* a = new QAction(actionIcon(c), m_frm.ctx().translate(key, fallback), this);
    a->setToolTip(m_frm.ctx().translate(key));
    menu->addAction(a);
    return bindAction(a, c);
}

void MainWindow::buildMenus()
{
    for (const MenuHead& h : mainMenus()) {
        QMenu* menu = menuBar()->addMenu(m_frm.ctx().translate(QLatin1String(h.key), QLatin1String(h.fallback)));
        menu->setObjectName(controlName(h.c));
        // The head follows its control (caption, shown, enabled); it has no
        // click of its own.
        menu->menuAction()->setObjectName(controlName(h.c));
        m_actions[size_t(h.c)] = menu->menuAction();
        addEntries(menu, h.entries);
        // The standard keys live on the menu bar's entries alone, so each
        // key has one action; the menus show them beside the captions.
        for (const MenuEntry& e : h.entries) {
            if (e.separator() || actionShortcuts(e.c).isEmpty())
                continue;
            action(e.c)->setShortcuts(actionShortcuts(e.c));
            action(e.c)->setShortcutContext(Qt::WindowShortcut);
        }
    }
    for (Control c : {Control::mnuViewontop, Control::mnuMute, Control::mnuSecurity, Control::mnuOverride,
                      Control::mnuAutoCheck})
        action(c)->setCheckable(true);
    // The Voice menu's entries follow the panes and the mute state as it opens.
    if (auto* voice = menuBar()->findChild<QMenu*>(controlName(Control::mnuVoice)))
        connect(voice, &QMenu::aboutToShow, this, [this] { m_frm.speech().mnuVoice_Click(); });
}

void MainWindow::addEntries(QMenu* menu, std::span<const MenuEntry> entries)
{
    MenuSeparators group{entries, {}};
    for (const MenuEntry& e : entries) {
        if (e.separator())
            group.separators << menu->addSeparator();
        else
            addEntry(menu, e.c, QLatin1String(e.key), QLatin1String(e.fallback));
    }
    m_separators.push_back(group);
}

void MainWindow::refreshSeparators()
{
    const Controls& controls = m_frm.model().controls;
    for (const MenuSeparators& g : m_separators) {
        const std::vector<bool> shown =
            separatorsShown(g.entries, [&controls](Control c) { return controls.visible(c); });
        for (qsizetype i = 0; i < g.separators.size(); ++i)
            g.separators[i]->setVisible(shown[size_t(i)]);
    }
}

void MainWindow::buildToolbar()
{
    QToolBar* bar = addToolBar(QStringLiteral("Toolbar1"));
    bar->setObjectName(controlName(Control::Toolbar1));
    bar->setMovable(false);
    // The style's icon size: our drawings are scaled, never stretched bitmaps.
    for (const ToolbarTip& t : toolbarTips()) {
        const QString tip = m_frm.ctx().translate(QLatin1String(t.key));
        QAction* a = bindAction(bar->addAction(actionIcon(t.c), tip), t.c);
        a->setToolTip(tipWithKey(tip, actionShortcuts(t.c)));
        if (t.c == Control::Toolbar1_13 || t.c == Control::Toolbar1_16)
            a->setCheckable(true);  // Override and Mute: down while on
        if (t.groupEnds)
            bar->addSeparator();
    }
}

void MainWindow::buildTray()
{
    // The menu stands even where no tray does, so its entries keep their
    // state and texts for the day one appears.
    m_trayMenu = new QMenu(this);
    m_trayMenu->setObjectName(controlName(Control::mnuTray));
    addEntries(m_trayMenu, vonnel::trayMenu());
    if (!QSystemTrayIcon::isSystemTrayAvailable())
        return;  // see putAwayInTray
    m_tray = new QSystemTrayIcon(windowIcon(), this);
    m_tray->setToolTip(m_frm.model().trayTip());
    connect(&m_frm.model(), &MainModel::trayTipChanged, m_tray, [this](const QString& tip) { m_tray->setToolTip(tip); });
    // No context menu of Qt's own: the lock rules run before the menu may open.
    connect(m_tray, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason r) {
        if (r == QSystemTrayIcon::DoubleClick)
            m_frm.ShowMain();
        else if (r == QSystemTrayIcon::Context)
            trayMenuAt(QCursor::pos());
    });
    m_tray->show();
    if (auto* system = dynamic_cast<SystemNotifier*>(&m_frm.ctx().notifier()))
        system->setTray(m_tray);
}

bool MainWindow::trayMenuAt(const QPoint& globalPos)
{
    if (!m_frm.trayRightButtonUp())
        return false;
    m_trayMenu->popup(globalPos);
    return true;
}

}  // namespace vonnel
