#pragma once
// The main window: two panes, the toolbar, the menus, the eleven status
// panels and the tray icon, bound to one FrmMain. It holds no session
// logic; it shows the models and hands user actions to the controller.

#include "core/Control.h"
#include "core/Views.h"
#include "shell/MenuTable.h"
#include "shell/dialogs/AccessDialogs.h"
#include "shell/dialogs/BoardWindow.h"
#include "shell/dialogs/UrlHistoryWindow.h"

#include <QHash>
#include <QMainWindow>
#include <QPixmap>
#include <QSet>
#include <QTimer>
#include <QPointer>
#include <array>
#include <span>
#include <vector>
#include <optional>

class QAction;
class QLabel;
class QPlainTextEdit;
class QSplitter;
class QSystemTrayIcon;
class QMenu;

class QToolButton;

namespace vonnel {

class FrmMain;
class ProgressDialog;
class BoardWindow;
class TextPane;
enum class StatePicture;

class MainWindow : public QMainWindow, public Views {
    Q_OBJECT
public:
    explicit MainWindow(FrmMain& frm, QWidget* parent = nullptr);
    ~MainWindow() override;

    // Views
    bool runModal(Form form) override;
    void showModeless(Form form) override;
    void unload(Form form) override;
    bool isVisible(Form form) const override;
    void raiseMain() override;

    QPlainTextEdit* serverPane() const { return m_server; }
    QPlainTextEdit* clientPane() const { return m_client; }
    // The action bound to the control; null when the window has none.
    QAction* action(Control c) const { return m_actions[size_t(c)]; }
    ProgressDialog* progressWindow() const { return m_progress; }
    EncryptDialog* encryptWindow() const { return m_encrypt; }
    UrlHistoryWindow* urlHistoryWindow() const { return m_urlHistory; }
    // frmDraw while the board is shown; null otherwise.
    BoardWindow* boardWindow() const { return m_boardWindow; }
    // The network tools' windows (frmNetView, frmNetResolve, frmAutoConnect,
    // frmAutoIP): made on first use, kept while open; null when closed.
    QDialog* netToolWindow(Form form) const;

    // The tray icon; null where the desktop has no tray.
    QSystemTrayIcon* trayIcon() const { return m_tray; }
    QMenu* trayMenu() const { return m_trayMenu; }
    // The right button let go over the tray icon: the lock rules, then the
    // menu at the place unless a password window is up. True when it opened.
    bool trayMenuAt(const QPoint& globalPos);
    // The window goes to the tray while the copy is tray-only; with no tray
    // it stays minimised, and the user is told so once.
    void putAwayInTray();
    bool noTrayTold() const { return m_noTrayTold; }

    // Right button on a pane: the pop-up popsFormat.
    void showPopsFormat(QPlainTextEdit* pane, const QPoint& globalPos);

    // The status bar's word on a transfer on hold; empty when none is.
    QLabel* transferNotice() const { return m_hold; }
    static QString holdText(FrmMain& frm);
    // Whether status panel n keeps its place on a window this wide.
    static bool panelFits(int n, int windowWidth);

    void mnuCopy_Click();
    void mnuCopyAll_Click();
    void mnuSecurity_Click();
    void mnuEncrypt_Click();
    // Tools > Options...: frmOptions, modal.
    void mnuOptions_Click();

Q_SIGNALS:
    // A user action on a control (menu entry, toolbar button, pop-up entry
    // as its twin).
    void triggered(vonnel::Control c);

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void onTriggered(Control c);
    // The selection of the pane last worked in, else of the other pane.
    QString selectedText() const;
    // The widgets' selections into the pane models, for the speak entries.
    void takeSelections();
    std::optional<qint64> chooseColour(qint64 current, const QString& title);
    bool paneEvent(QPlainTextEdit* pane, QEvent* event);
    void showTips();
    void showAbout();
    // The main window came to the front (Form_Activate).
    void Form_Activate();
    // frmURLHistory, made on first use and kept while it is open.
    void showUrlHistory();
    void showNetTool(Form form);
    static bool isNetTool(Form form);
    void buildMenus();
    void buildToolbar();
    void buildStatusBar();
    void buildTray();
    QAction* bindAction(QAction* a, Control c);
    QAction* addEntry(QMenu* menu, Control c, const QString& key, const QString& fallback);
    void addEntries(QMenu* menu, std::span<const MenuEntry> entries);
    // A separator stands only between shown entries.
    void refreshSeparators();
    // The texts that are no control's: panel tips, pane hints.
    void translateTexts();
    void bindPane(TextPane& pane, QPlainTextEdit* view);
    void refreshControl(Control c);
    void showClock();
    void refreshPanel(int n);
    void rememberPlacement();
    void refreshHold();
    static QIcon statePicture(StatePicture p);

    FrmMain& m_frm;
    QPlainTextEdit* m_server = nullptr;
    QPlainTextEdit* m_client = nullptr;
    QSplitter* m_split = nullptr;
    QList<QLabel*> m_panels;
    std::array<QAction*, kControlCount> m_actions{};
    struct MenuSeparators {
        std::span<const MenuEntry> entries;
        QList<QAction*> separators;
    };
    std::vector<MenuSeparators> m_separators;
    QSystemTrayIcon* m_tray = nullptr;
    QMenu* m_trayMenu = nullptr;
    QWidget* m_splash = nullptr;
    ProgressDialog* m_progress = nullptr;
    QTimer m_panelTimer;
    QSet<int> m_dirtyPanels;
    QHash<int, QPixmap> m_statePixmaps;
    QPointer<EncryptDialog> m_encrypt;
    QPointer<UrlHistoryWindow> m_urlHistory;
    QPointer<BoardWindow> m_boardWindow;
    QPointer<QDialog> m_options;  // frmOptions while it runs
    QHash<int, QPointer<QDialog>> m_netTools;  // by Form
    QPlainTextEdit* m_lastPane = nullptr;
    QLabel* m_hold = nullptr;
    // What the session is: old wire, private, verified; opens the
    // private session's window.
    QToolButton* m_privacy = nullptr;
    void showPrivacy();
    QPoint m_dragFrom{-1, -1};  // where a press in a selection began
    QString m_notice;  // the end of the last transfer, while it is shown
    QString m_holdShown;  // the text beside the panels now
    bool m_noTrayTold = false;
    bool m_loaded = false;  // Form_Load's look was given at the first show
};

}  // namespace vonnel
