#include "shell/MainWindow.h"

#include "connection/Connection.h"
#include "core/Twips.h"
#include "platform/Desktop.h"
#include "shell/FrmMain.h"
#include "platform/Announcer.h"
#include "platform/Bell.h"
#include "shell/dialogs/AccessDialogs.h"
#include "shell/dialogs/BoardWindow.h"
#include "shell/dialogs/ConnectionDialogs.h"
#include "shell/dialogs/LanguagePickerDialog.h"
#include "shell/dialogs/ProgressDialog.h"
#include "board/Scrivet.h"
#include "transfer/Transfer.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QCloseEvent>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QToolButton>
#include "shell/dialogs/PrivateSessionDialog.h"
#include "shell/SvgIcon.h"
#include "connection/PrivateLink.h"
#include <utility>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QCheckBox>
#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRandomGenerator>
#include <QVBoxLayout>
#include "shell/ActionLook.h"
#include "shell/ColorScheme.h"
#include "shell/Icons.h"
#include "shell/Tips.h"
#include "shell/WindowLook.h"
#include "shell/dialogs/AboutWindow.h"
#include "shell/dialogs/TipWindow.h"
#include "platform/Prompter.h"
#include "shell/PaneText.h"
#include "shell/TypingBinder.h"
#include "wire/LiveTyping.h"
#include "wire/PaneFormat.h"
#include "connection/Session.h"
#include "core/MainModel.h"
#include "core/CopyContext.h"
#include "platform/Clock.h"

namespace vonnel {

namespace {

// Tool tips of panels 1 and 3..11; panel 2's is set case by case.
// Lang.txt keys: the first text of each line, to the closing "};".
const char* const kPanelTips[11] = {"Click here for help",
                                    nullptr,
                                    "Send and received characters counter",
                                    "Connection time",
                                    "Caps Lock",
                                    "Num Lock",
                                    "Your local time",
                                    "Local session: ",
                                    "Remote session: ",
                                    "Data received",
                                    "Data sent"};
}  // namespace

MainWindow::MainWindow(FrmMain& frm, QWidget* parent) : QMainWindow(parent), m_frm(frm)
{
    setObjectName(formName(Form::frmMain));
    setWindowIcon(dotIcon(QColor(0x2e, 0x7d, 0x32), QColor(0x1b, 0x5e, 0x20)));

    m_server = new QPlainTextEdit;
    m_server->setObjectName(QStringLiteral("txtServer"));
    m_client = new QPlainTextEdit;
    m_client->setObjectName(QStringLiteral("txtClient"));
    m_client->setReadOnly(true);
    for (QPlainTextEdit* pane : {m_server, m_client}) {
        QFont f(QStringLiteral("DejaVu Sans"));
        f.setPointSize(11);
        pane->setFont(f);
        pane->setFrameShape(QFrame::StyledPanel);
    }
    m_split = new QSplitter(Qt::Vertical);
    m_split->addWidget(m_client);
    m_split->addWidget(m_server);
    m_split->setChildrenCollapsible(false);
    m_split->setStretchFactor(0, 1);
    m_split->setStretchFactor(1, 1);
    setCentralWidget(m_split);

    buildMenus();
    buildToolbar();
    buildStatusBar();
    buildTray();

    bindPane(frm.model().txtServer, m_server);
    bindPane(frm.model().txtClient(0), m_client);
    // What arrives in the remote pane is heard as inserted text; the rest
    // (rings, offers, the session's state) through the announcer.
    auto* announcer = new Announcer(*this);
    connect(&frm.ctx(), &CopyContext::announcementWanted, announcer, &Announcer::announce);
    // The local pane's keys go to the typing logic; the model stays the truth.
    new TypingBinder(m_frm, m_server, m_client);
    connect(this, &MainWindow::triggered, &m_frm.typing(),
            [this](Control c) { m_frm.typing().controlTriggered(c); });
    // The colour buttons ask through the window's colour dialog.
    m_frm.typing().chooseColour = [this](qint64 current, const QString& title) {
        return chooseColour(current, title);
    };
    // Right button: popsFormat in place of the standard menu. Keys typed in
    // the remote pane go on in the local pane, where typing belongs.
    for (QPlainTextEdit* pane : {m_server, m_client}) {
        pane->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(pane, &QWidget::customContextMenuRequested, this, [this, pane](const QPoint& at) {
            showPopsFormat(pane, pane->viewport()->mapToGlobal(at));
        });
        pane->installEventFilter(this);
        pane->viewport()->installEventFilter(this);
    }
    // Moves without a button tell the away notice that the user is back.
    m_server->viewport()->setMouseTracking(true);
    setFocusProxy(m_server);
    m_server->setFocus();

    connect(&frm.model().controls, &Controls::changed, this, &MainWindow::refreshControl);
    for (int c = 0; c < kControlCount; ++c)
        refreshControl(Control(c));
    refreshSeparators();
    // Panels change with every frame of a transfer (the send picture, the
    // byte counts): they are drawn at most every few hundredths of a second.
    m_panelTimer.setSingleShot(true);
    m_panelTimer.setInterval(40);
    connect(&m_panelTimer, &QTimer::timeout, this, [this] {
        const QSet<int> dirty = std::exchange(m_dirtyPanels, {});
        for (int n : dirty)
            refreshPanel(n);
    });
    connect(&frm.model().stStatusbar, &StatusBar::panelChanged, this, [this](int n) {
        m_dirtyPanels.insert(n);
        if (!m_panelTimer.isActive())
            m_panelTimer.start();
    });
    connect(&frm.model(), &MainModel::captionChanged, this, [this] { setWindowTitle(m_frm.model().caption()); });
    connect(&frm.model(), &MainModel::visibilityChanged, this, [this](bool v) {
        if (v) {
            setGeometry(m_frm.placement.left / kTwipsPerPixel, m_frm.placement.top / kTwipsPerPixel,
                        m_frm.placement.width / kTwipsPerPixel, m_frm.placement.height / kTwipsPerPixel);
            if (!m_loaded) {
                // Form_Load's look: the settings stand by now.
                m_loaded = true;
                applyTransparency(this, m_frm.ctx());
                StayOnTop(this, m_frm);
            }
            show();
        } else {
            hide();
        }
    });
    connect(&frm.model(), &MainModel::windowStateChanged, this, [this](int s) {
        setWindowState(s == MainModel::vbMinimized   ? Qt::WindowMinimized
                       : s == MainModel::vbMaximized ? Qt::WindowMaximized
                                                   : Qt::WindowNoState);
    });
    connect(this, &MainWindow::triggered, this, &MainWindow::onTriggered);
    watchDialogLoads(this, m_frm);
    m_progress = installProgressDialog(frm, this);
    connect(&frm.transfer().progress(), &ProgressModel::changed, this, &MainWindow::refreshHold);
    connect(&frm.transfer().progress(), &ProgressModel::loadedChanged, this, [this](bool loaded) {
        // A progress window that closes itself at the end leaves a word
        // beside the status panels for a while.
        m_notice = loaded ? QString() : ProgressDialog::finishedNotice(m_frm);
        if (!m_notice.isEmpty())
            QTimer::singleShot(20000, this, [this, shown = m_notice] {
                if (m_notice == shown) {
                    m_notice.clear();
                    refreshHold();
                }
            });
        refreshHold();
    });
    connect(&frm.model().controls, &Controls::changed, this, [this](Control c) {
        if (c == Control::mnuSendFile)
            refreshHold();
    });
    connect(&frm.transfer(), &Transfer::beep, this, [] { systemBeep(); });
    setWindowTitle(frm.model().caption());
    for (int n = 1; n <= StatusBar::kPanels; ++n)
        refreshPanel(n);

    // The clock, caps and num panels are the window's own.
    auto* clock = new QTimer(this);
    connect(clock, &QTimer::timeout, this, &MainWindow::showClock);
    clock->start(1000);
    showClock();
    m_panels[4]->setEnabled(false);
    m_panels[5]->setEnabled(false);
    translateTexts();
    connect(&frm.ctx(), &CopyContext::menusNeedText, this, &MainWindow::translateTexts);
}

void MainWindow::translateTexts()
{
    CopyContext& c = m_frm.ctx();
    m_server->setPlaceholderText(c.translate(QStringLiteral("You")));
    m_client->setPlaceholderText(c.translate(QStringLiteral("Remote")));
    m_panels[4]->setText(c.translate(QStringLiteral("CAPS")));
    m_panels[5]->setText(c.translate(QStringLiteral("NUM")));
    for (int n = 1; n <= StatusBar::kPanels; ++n) {
        if (kPanelTips[n - 1])
            m_panels[n - 1]->setToolTip(c.translate(QLatin1String(kPanelTips[n - 1])));
        refreshPanel(n);
    }
}

MainWindow::~MainWindow() = default;

void MainWindow::buildStatusBar()
{
    // One strip with the eleven panels in their order; panel 2 takes the
    // room. The strip is a permanent widget: a passing status tip (a menu
    // entry under the mouse) never hides it, and the notices beside panel 2
    // take their room from panel 2 alone, so the fixed panels stay.
    QStatusBar* sb = statusBar();
    sb->setObjectName(QStringLiteral("stStatusbar"));
    sb->setSizeGripEnabled(true);
    auto* strip = new QWidget;
    strip->setObjectName(QStringLiteral("stStatusbarStrip"));
    auto* row = new QHBoxLayout(strip);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    // Says that a transfer waits on hold while its window is away, or that
    // one has finished; shrinks before any panel does.
    m_hold = new QLabel;
    m_hold->setObjectName(QStringLiteral("lblOnHold"));
    // Notice colours that read on a light or a dark palette alike.
    const bool dark = isDark(palette());
    m_hold->setStyleSheet(dark ? QStringLiteral("color:#90caf9;font-weight:bold;padding:0 6px;")
                               : QStringLiteral("color:#0d47a1;font-weight:bold;padding:0 6px;"));
    m_hold->setMinimumWidth(1);
    m_hold->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    m_hold->setVisible(false);
    // "Away" while the away notice stands in the session.
    auto* away = new QLabel;
    away->setObjectName(QStringLiteral("lblStealth"));
    away->setStyleSheet(dark ? QStringLiteral("color:#ff8a80;font-weight:bold;padding:0 6px;")
                             : QStringLiteral("color:#b71c1c;font-weight:bold;padding:0 6px;"));
    away->setVisible(false);
    for (int n = 1; n <= StatusBar::kPanels; ++n) {
        auto* label = new QLabel;
        label->setObjectName(QStringLiteral("panel%1").arg(n));
        label->setFrameShape(QFrame::StyledPanel);
        label->setFrameShadow(QFrame::Sunken);
        label->setMargin(1);
        label->setAlignment(Qt::AlignCenter);
        label->setTextFormat(Qt::PlainText);
        if (n == 2) {
            label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
            label->setMinimumWidth(60);
            label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        } else {
            label->setMinimumWidth(n == 1 ? 22 : (n == 8 || n == 9) ? 18 : 40);
            // A fixed panel is as wide as its text and is never squeezed.
            label->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Preferred);
        }
        row->addWidget(label, n == 2 ? 1 : 0);
        if (n == 2) {
            row->addWidget(m_hold);
            row->addWidget(away);
            m_privacy = new QToolButton;
            m_privacy->setObjectName(QStringLiteral("btnPrivacy"));
            m_privacy->setAutoRaise(true);
            m_privacy->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
            m_privacy->setVisible(false);
            row->addWidget(m_privacy);
        }
        // Panels take clicks: panel 2 is the way back to listening.
        label->installEventFilter(this);
        m_panels << label;
    }
    sb->addPermanentWidget(strip, 1);
    connect(&m_frm.connection().privateLink(), &PrivateLink::privacyChanged, this, &MainWindow::showPrivacy);
    connect(m_privacy, &QToolButton::clicked, this, [this] {
        PrivateSessionDialog d(m_frm, this);
        d.exec();
    });
    connect(&m_frm.model(), &MainModel::lblStealthChanged, away, [away](const QString& text) {
        away->setText(text);
        away->setVisible(!text.isEmpty());
    });
}

void MainWindow::showPrivacy()
{
    const Privacy p = m_frm.connection().privateLink().privacy();
    const bool dark = isDark(palette());
    // The desktop's icon by its freedesktop name, else our own drawing.
    QString icon;
    QString drawing;
    QString colour;
    switch (p) {
    case Privacy::NoSession:
    case Privacy::Agreeing:
        break;
    case Privacy::OldWire:
        icon = QStringLiteral("security-low");
        drawing = QStringLiteral("old-wire");
        colour = dark ? QStringLiteral("#ffb74d") : QStringLiteral("#b34700");
        break;
    case Privacy::Private:
        icon = QStringLiteral("security-medium");
        drawing = QStringLiteral("private");
        break;
    case Privacy::Verified:
        icon = QStringLiteral("security-high");
        drawing = QStringLiteral("security");
        colour = dark ? QStringLiteral("#a5d6a7") : QStringLiteral("#1b5e20");
        break;
    }
    const QString text = m_frm.ctx().translate(PrivateLink::privacyText(p));
    m_privacy->setText(text);
    m_privacy->setIcon(icon.isEmpty() ? QIcon()
                                      : QIcon::fromTheme(icon, svgIcon(QStringLiteral(":/icons/%1.svg").arg(drawing))));
    m_privacy->setStyleSheet(colour.isEmpty() ? QString()
                                              : QStringLiteral("QToolButton{color:%1;font-weight:bold;}").arg(colour));
    m_privacy->setToolTip(p == Privacy::Private || p == Privacy::Verified
                              ? m_frm.ctx().translate(QStringLiteral("Short string")) + QStringLiteral(": ") +
                                    m_frm.connection().privateLink().shortString()
                              : QString());
    m_privacy->setAccessibleName(text);
    m_privacy->setVisible(!text.isEmpty());
}

QString MainWindow::holdText(FrmMain& frm)
{
    if (!frm.session().TransferOnHold)
        return QString();
    const Transfer& t = frm.transfer();
    const bool receiving = t.holdDirection.contains(QLatin1String("Receiving"));
    return frm.ctx().translate(receiving ? QStringLiteral("Receiving on hold") : QStringLiteral("Sending on hold")) +
           QStringLiteral(": ") + QFileInfo(t.holdFileName).fileName() + QStringLiteral(" (") +
           t.holdProgressText + QLatin1Char(')');
}

void MainWindow::refreshHold()
{
    QString text = holdText(m_frm);
    if (text.isEmpty())
        text = m_notice;
    // Called with every change of a running transfer: only a new text is
    // drawn, and only then do the panels make room again.
    if (text == m_holdShown && m_hold->isHidden() == text.isEmpty())
        return;
    m_holdShown = text;
    // Long names are cut in the middle; the tool tip has the whole text.
    m_hold->setText(m_hold->fontMetrics().elidedText(text, Qt::ElideMiddle, 260));
    m_hold->setToolTip(text + QLatin1Char('\n') +
                       m_frm.ctx().translate(QStringLiteral("Tools - Send File continues it")));
    m_hold->setVisible(!text.isEmpty());
    // The panels make room for it.
    for (int n = 1; n <= StatusBar::kPanels; ++n)
        refreshPanel(n);
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event)
{
    for (QPlainTextEdit* pane : {m_server, m_client})
        if (watched == pane || watched == pane->viewport())
            return paneEvent(pane, event) || QMainWindow::eventFilter(watched, event);
    if (event->type() == QEvent::MouseButtonRelease) {
        const int n = int(m_panels.indexOf(static_cast<QLabel*>(watched)));
        if (n >= 0)
            m_frm.connection().stStatusbar_PanelClick(n + 1);
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::bindPane(TextPane& pane, QPlainTextEdit* view)
{
    auto sync = [&pane, view] {
        QString shown = pane.text();
        shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        showPaneText(*view, shown);
    };
    connect(&pane, &TextPane::textChanged, view, sync);
    connect(&pane, &TextPane::enabledChanged, view, [view](bool e) { view->setEnabled(e); });
    view->setEnabled(pane.enabled());
    sync();
}

void MainWindow::showClock()
{
    m_panels[6]->setText(m_frm.ctx().clock().timeOfDay().toString(QStringLiteral("HH:mm")));
}

void MainWindow::refreshControl(Control c)
{
    QAction* a = action(c);
    if (!a)
        return;
    const ControlState& s = m_frm.model().controls.state(c);
    if (c == Control::mnuSendFile)
        if (QAction* b = action(Control::Toolbar1_SendFile))
            b->setEnabled(s.enabled);
    if (c == Control::mnuDraw)
        if (QAction* b = action(Control::Toolbar1_Scrivet))
            b->setEnabled(s.enabled);
    // The Override button stays down while the entry is checked.
    if (c == Control::mnuOverride)
        if (QAction* b = action(Control::Toolbar1_13))
            b->setChecked(s.checked);
    a->setEnabled(s.enabled);
    a->setVisible(s.visible);
    if (a->isCheckable())
        a->setChecked(s.checked);
    if (!s.caption.isEmpty())
        a->setText(s.caption);
    if (!s.toolTip.isEmpty())
        a->setToolTip(tipWithKey(s.toolTip, actionShortcuts(c)));
    // Entries shown or hidden move the separators between them.
    if (c >= Control::mnuFile && c <= Control::mnuSysClose)
        refreshSeparators();
}

QIcon MainWindow::statePicture(StatePicture p)
{
    switch (p) {
    case StatePicture::picOff: return dotIcon(QColor(0x9e, 0x9e, 0x9e), QColor(0x61, 0x61, 0x61));
    case StatePicture::picReady: return dotIcon(QColor(0x43, 0xa0, 0x47), QColor(0x1b, 0x5e, 0x20));
    case StatePicture::picSend: return dotIcon(QColor(0xff, 0xb3, 0x00), QColor(0xe6, 0x51, 0x00));
    case StatePicture::picRec: return dotIcon(QColor(0x1e, 0x88, 0xe5), QColor(0x0d, 0x47, 0xa1));
    case StatePicture::None: break;
    }
    return QIcon();
}

void MainWindow::refreshPanel(int n)
{
    QLabel* label = m_panels.value(n - 1);
    if (!label)
        return;
    const StatusPanel& p = m_frm.model().stStatusbar.panel(n);
    if (n == 1) {
        QPixmap& picture = m_statePixmaps[int(p.picture)];
        if (picture.isNull())
            picture = statePicture(p.picture).pixmap(QSize(14, 14), label->devicePixelRatioF());
        label->setPixmap(picture);
    } else if (n != 5 && n != 6 && n != 7) {
        label->setText(p.text);
    }
    if (!p.toolTip.isEmpty() || n == 2)
        label->setToolTip(p.toolTip);
    if (n == 8 || n == 9) {
        const QString on = p.text == m_frm.ctx().translate(QStringLiteral("E"))
                               ? m_frm.ctx().translate(QStringLiteral("Encryption On"))
                               : m_frm.ctx().translate(QStringLiteral("Encryption Off"));
        label->setToolTip(m_frm.ctx().translate(QLatin1String(kPanelTips[n - 1])) + on);
    }
    if (n == 10 || n == 11)
        label->setToolTip(m_frm.ctx().translate(QLatin1String(kPanelTips[n - 1])) +
                          QStringLiteral(": ") + p.text);
    // The notices beside panel 2 shrink to what is left: only the
    // window's width decides which fixed panels fit.
    label->setVisible(p.visible && panelFits(n, width()));
}

bool MainWindow::panelFits(int n, int windowWidth)
{
    // On a narrow window the panels give way, least needed first, so none
    // is drawn over another: Caps and Num, then the clock and the
    // character counter, then the byte counters.
    if (windowWidth < 640 && (n == 5 || n == 6))
        return false;
    if (windowWidth < 520 && (n == 7 || n == 3))
        return false;
    if (windowWidth < 420 && (n == 10 || n == 11 || n == 4))
        return false;
    return true;
}

bool MainWindow::runModal(Form form)
{
    if (auto r = runConnectionDialog(m_frm, form, this))
        return *r;
    if (form == Form::frmPopMsg) {
        // Shown modal, frmPopMsg is the language picker; modeless, the splash.
        LanguagePickerDialog picker(m_frm, QApplication::activeModalWidget() ? QApplication::activeModalWidget()
                                                                             : static_cast<QWidget*>(this));
        return picker.exec() == QDialog::Accepted;
    }
    return false;
}

void MainWindow::showModeless(Form form)
{
    if (form == Form::frmPopMsg) {
        // The splash: the program's name and the loading word, until the
        // main form has loaded.
        auto* splash = new QLabel(m_frm.splashCaption, nullptr,
                                  Qt::SplashScreen | Qt::FramelessWindowHint);
        splash->setAttribute(Qt::WA_DeleteOnClose);
        splash->setAlignment(Qt::AlignCenter);
        splash->setMargin(24);
        QFont f = splash->font();
        f.setPointSize(14);
        splash->setFont(f);
        splash->setStyleSheet(QStringLiteral("background:#1b5e20;color:white;"));
        splash->resize(420, 120);
        if (QScreen* screen = QGuiApplication::primaryScreen())
            splash->move(screen->geometry().center() - splash->rect().center());
        splash->show();
        splash->repaint();
        QCoreApplication::processEvents();
        m_splash = splash;
    } else if (form == Form::frmTip) {
        showTips();
    } else if (form == Form::frmURLHistory) {
        showUrlHistory();
    } else if (form == Form::frmDraw) {
        if (!m_boardWindow)
            m_boardWindow = new BoardWindow(m_frm, action(Control::mnuMute), this);
        m_boardWindow->show();
        m_boardWindow->raise();
    } else if (isNetTool(form)) {
        showNetTool(form);
    }
}

void MainWindow::showTips()
{
    auto* tips = new TipWindow(m_frm, QStringLiteral("TIPS.TXT"),
                               int(QRandomGenerator::global()->bounded(1 << 16)), this);
    tips->setAttribute(Qt::WA_DeleteOnClose);
    if (!tips->hasTips()) {
        tips->close();
        return;
    }
    tips->show();
}

void MainWindow::showAbout()
{
    AboutWindow about(m_frm, this);
    about.exec();
}

void MainWindow::unload(Form form)
{
    if (form == Form::frmPopMsg && m_splash) {
        m_splash->close();
        m_splash = nullptr;
    }
    if (form == Form::frmDraw && m_boardWindow) {
        // Hidden, not closed: the board has already done its close.
        m_boardWindow->hide();
        m_boardWindow->deleteLater();
        m_boardWindow = nullptr;
        m_frm.scrivet().windowGone();
    }
    // frmOptions is unloaded as closed without OK.
    if (form == Form::frmOptions && m_options)
        m_options->reject();
    if (QDialog* d = netToolWindow(form))
        d->close();
}

bool MainWindow::isVisible(Form form) const
{
    if (form == Form::frmMain)
        return QMainWindow::isVisible();
    if (form == Form::frmLogin)
        return m_frm.connection().login() != nullptr;
    if (form == Form::frmProgress)
        return m_frm.transfer().progress().loaded;
    if (form == Form::frmURLHistory)
        return m_urlHistory && m_urlHistory->isVisible();
    if (form == Form::frmDraw)
        return m_boardWindow && m_boardWindow->isVisible();
    if (form == Form::frmOptions)
        return m_options && m_options->isVisible();
    if (QDialog* d = netToolWindow(form))
        return d->isVisible();
    return false;
}

void MainWindow::raiseMain()
{
    showNormal();
    raise();
    activateWindow();
}

void MainWindow::rememberPlacement()
{
    if (windowState() != Qt::WindowNoState || !QMainWindow::isVisible())
        return;
    const QRect g = geometry();
    m_frm.placement.left = g.x() * kTwipsPerPixel;
    m_frm.placement.top = g.y() * kTwipsPerPixel;
    m_frm.placement.width = g.width() * kTwipsPerPixel;
    m_frm.placement.height = g.height() * kTwipsPerPixel;
}

void MainWindow::moveEvent(QMoveEvent* e)
{
    QMainWindow::moveEvent(e);
    rememberPlacement();
}

void MainWindow::resizeEvent(QResizeEvent* e)
{
    QMainWindow::resizeEvent(e);
    for (int n = 1; n <= StatusBar::kPanels; ++n)
        refreshPanel(n);
    rememberPlacement();
}

void MainWindow::Form_Activate()
{
    // The board holds the file channel while it is up.
    if (m_boardWindow && m_boardWindow->isVisible())
        m_frm.model().controls.setEnabled(Control::mnuSendFile, false);
}

void MainWindow::putAwayInTray()
{
    if (m_tray) {
        // Minimised first, then out of the task bar: only the icon stays.
        QTimer::singleShot(0, this, [this] {
            if (windowState() & Qt::WindowMinimized)
                hide();
        });
        return;
    }
    // No tray to go to: the window stays minimised, where the user can find
    // it, and the user hears why once.
    if (m_noTrayTold)
        return;
    m_noTrayTold = true;
    m_frm.ctx().prompter().msgBox(
        m_frm.ctx().translate(QStringLiteral("There is no system tray on this desktop: the window is minimised instead.")),
        MsgStyle::Information, MainModel::kTitle);
}

void MainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        Form_Activate();
    if (event->type() != QEvent::WindowStateChange)
        return;
    if ((windowState() & Qt::WindowMinimized) && m_frm.TrayOnly == 1)
        putAwayInTray();
    // The user minimised or restored the window: the model follows.
    const Qt::WindowStates s = windowState();
    m_frm.model().setWindowState(s & Qt::WindowMinimized   ? MainModel::vbMinimized
                                 : s & Qt::WindowMaximized ? MainModel::vbMaximized
                                                           : MainModel::vbNormal);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (m_frm.requestClose(true))
        event->accept();
    else
        event->ignore();
}

}  // namespace vonnel
