// The main window's menu bar, toolbar and tray menu: one action per
// Control, named by controlName(), each click handed on as triggered().

#include "shell/MainWindow.h"

#include "core/CopyContext.h"
#include "core/MainModel.h"
#include "shell/FrmMain.h"
#include "shell/Icons.h"
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
    auto* a = new QAction(m_frm.ctx().translate(key, fallback), this);
    a->setToolTip(m_frm.ctx().translate(key));
    menu->addAction(a);
    return bindAction(a, c);
}

void MainWindow::buildMenus()
{
    // An entry without a key is a separator.
    struct Entry { Control c; const char* key; const char* fallback; };
    struct Head { Control c; const char* key; const char* fallback; QList<Entry> entries; };
    const Entry separator{Control::mnuFile, nullptr, nullptr};
    const QList<Head> heads = {
        {Control::mnuFile, "File", "&File",
         {{Control::mnuConnect, "Connect", "&Connect..."},
          {Control::mnuDisconnect, "Disconnect", "&Disconnect"},
          separator,
          {Control::mnuSave, "Save", "&Save..."},
          {Control::mnuFileAutoConnect, "AutoConnect", "&AutoConnect..."},
          {Control::mnuFileProperties, "Properties", "P&roperties..."},
          separator,
          {Control::mnuFileClose, "Close", "C&lose"},
          {Control::mnuFileExit, "Exit", "E&xit"}}},
        {Control::mnuEdit, "Edit", "&Edit",
         {{Control::mnuCopyAll, "Copy All", "Copy &All"},
          {Control::mnuCopy, "Copy", "&Copy"},
          {Control::mnuEditPaste, "Paste", "&Paste"},
          separator,
          {Control::mnuClrScr, "Clear Screen", "C&lear Screen"},
          {Control::mnuOverride, "Override", "&Override"},
          {Control::mnuRefresh, "Refresh", "&Refresh"}}},
        {Control::mnuMessage, "Messages", "&Messages",
         {{Control::mnuMsg1, "Message 1", "Message &1"},
          {Control::mnuMsg2, "Message 2", "Message &2"},
          {Control::mnuMsg3, "Message 3", "Message &3"},
          {Control::mnuMsg4, "Message 4", "Message &4"},
          {Control::mnuMsg5, "Message 5", "Message &5"},
          {Control::mnuMsg6, "Message 6", "Message &6"},
          {Control::mnuMessage, nullptr, nullptr},
          {Control::mnuMsg7, "Please Wait", "&Please Wait"},
          {Control::mnuMsg8, "I'm Back", "I'm &Back"}}},
        {Control::mnuVoice, "Voice", "&Voice",
         {{Control::mnuSpeak, "Speak", "&Speak"},
          {Control::mnuMute, "Mute", "&Mute"},
          {Control::mnuVolUp, "Volume Up", "Volume &Up"},
          {Control::mnuVolDown, "Volume Down", "Volume &Down"}}},
        {Control::mnuTools, "Tools", "&Tools",
         {{Control::mnuBeep, "Alert Ring", "&Alert Ring"},
          {Control::mnuRing, "Ring", "&Ring"},
          {Control::mnuSendFile, "Send File", "Send &File..."},
          {Control::mnuDraw, "Scrivet", "S&crivet"},
          separator,
          {Control::mnuSecurity, "Security", "S&ecurity..."},
          {Control::mnuOptions, "Options", "&Options..."}}},
        {Control::mnuWindow, "Window", "&Window",
         {{Control::mnuViewontop, "Always on Top", "Always on &Top"},
          {Control::mnuMin, "Minimize", "&Minimize"}}},
        {Control::mnuSpecial, "Extras", "E&xtras",
         {{Control::mnuNetView, "Net View", "&Net View..."},
          {Control::mnuNetResolve, "Net Resolve", "Net &Resolve..."},
          {Control::mnuAutoCheck, "AutoNotify", "&AutoNotify..."},
          {Control::mnuEncryption, "Encryption", "&Encryption..."},
          {Control::mnuURLHistory, "URL History", "&URL History..."}}},
        {Control::mnuHelp, "Help", "&Help",
         {{Control::mnuHelpContents, "Contents", "&Contents"},
          {Control::mnuHomePage, "Home Page", "&Home Page"},
          {Control::mnuSupport, "Support", "&Support"},
          {Control::mnuUpdate, "Update", "&Update"},
          separator,
          {Control::mnuAbout, "About", "&About Vonnel"}}},
    };
    for (const Head& h : heads) {
        QMenu* menu = menuBar()->addMenu(m_frm.ctx().translate(QLatin1String(h.key), QLatin1String(h.fallback)));
        menu->setObjectName(controlName(h.c));
        for (const Entry& e : h.entries) {
            if (!e.key)
                menu->addSeparator();
            else
                addEntry(menu, e.c, QLatin1String(e.key), QLatin1String(e.fallback));
        }
    }
    for (Control c : {Control::mnuViewontop, Control::mnuMute, Control::mnuSecurity, Control::mnuOverride,
                      Control::mnuAutoCheck})
        action(c)->setCheckable(true);
    // The Voice menu's entries follow the panes and the mute state as it opens.
    if (auto* voice = menuBar()->findChild<QMenu*>(controlName(Control::mnuVoice)))
        connect(voice, &QMenu::aboutToShow, this, [this] { m_frm.speech().mnuVoice_Click(); });
}

void MainWindow::buildToolbar()
{
    QToolBar* bar = addToolBar(QStringLiteral("Toolbar1"));
    bar->setObjectName(controlName(Control::Toolbar1));
    bar->setMovable(false);
    bar->setIconSize(QSize(22, 22));
    QStyle* st = style();
    const QColor ink(0x30, 0x30, 0x30);
    struct Button { const char* tip; QIcon icon; };
    const QList<Button> buttons = {
        {"Connect", dotIcon(QColor(0x43, 0xa0, 0x47), QColor(0x1b, 0x5e, 0x20))},
        {"Disconnect", dotIcon(QColor(0xe5, 0x39, 0x35), QColor(0x8e, 0x24, 0x1c))},
        {"Refresh", st->standardIcon(QStyle::SP_BrowserReload)},
        {"Clear Screen", st->standardIcon(QStyle::SP_DialogResetButton)},
        {"Copy", copyIcon(ink)},
        {"Paste", pasteIcon(ink)},
        {"Bold", letterIcon(QStringLiteral("B"), ink, true)},
        {"Italic", letterIcon(QStringLiteral("I"), ink, false, true)},
        {"Increase Font Size", letterIcon(QStringLiteral("A+"), ink)},
        {"Decrease Font Size", letterIcon(QStringLiteral("A-"), ink)},
        {"Font Colour", letterIcon(QStringLiteral("A"), QColor(0xc6, 0x28, 0x28))},
        {"Background Colour", dotIcon(QColor(0xff, 0xf5, 0x9d), QColor(0x9e, 0x9d, 0x24))},
        {"Override", st->standardIcon(QStyle::SP_ArrowUp)},
        {"Alert Ring", letterIcon(QStringLiteral("!"), QColor(0xef, 0x6c, 0x00))},
        {"Ring", st->standardIcon(QStyle::SP_MediaVolume)},
        {"Mute", st->standardIcon(QStyle::SP_MediaVolumeMuted)},
        {"Help", st->standardIcon(QStyle::SP_DialogHelpButton)},
    };
    for (int i = 0; i < buttons.size(); ++i) {
        const QString tip = m_frm.ctx().translate(QLatin1String(buttons[i].tip));
        QAction* a = bindAction(bar->addAction(buttons[i].icon, tip), toolbarButton(i + 1));
        a->setToolTip(tip);
        if (i == 12 || i == 15)
            a->setCheckable(true);  // Override and Mute: down while on
        if (i == 1 || i == 3 || i == 5 || i == 11 || i == 12 || i == 15)
            bar->addSeparator();
    }
    // Send File sits at the end and follows mnuSendFile.
    bar->addSeparator();
    const QString tip = m_frm.ctx().translate(QStringLiteral("Send File"));
    QAction* send = bindAction(bar->addAction(st->standardIcon(QStyle::SP_FileDialogStart), tip),
                               Control::Toolbar1_SendFile);
    send->setToolTip(tip);
}

void MainWindow::buildTray()
{
    // The tray menu exists with or without a tray: the lock rules and the
    // menu customisation set its entries either way.
    m_trayMenu = new QMenu(this);
    m_trayMenu->setObjectName(controlName(Control::mnuTray));
    addEntry(m_trayMenu, Control::mnuSysShow, QStringLiteral("Show"), QStringLiteral("&Show"));
    m_trayMenu->addSeparator();
    addEntry(m_trayMenu, Control::mnuSysNetResolve, QStringLiteral("Net Resolve"), QStringLiteral("Net &Resolve..."));
    addEntry(m_trayMenu, Control::mnuSysNetView, QStringLiteral("Net View"), QStringLiteral("&Net View..."));
    addEntry(m_trayMenu, Control::mnuSysAutoConnect, QStringLiteral("AutoConnect"), QStringLiteral("&AutoConnect..."));
    addEntry(m_trayMenu, Control::mnuSysProperties, QStringLiteral("Properties"), QStringLiteral("P&roperties..."));
    m_trayMenu->addSeparator();
    addEntry(m_trayMenu, Control::mnuSysClose, QStringLiteral("Exit"), QStringLiteral("E&xit"));
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
