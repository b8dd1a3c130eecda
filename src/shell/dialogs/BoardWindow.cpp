#include "shell/dialogs/BoardWindow.h"

#include "board/BoardSave.h"
#include "board/Scrivet.h"
#include "core/CopyContext.h"
#include "core/Twips.h"
#include "platform/Desktop.h"
#include "shell/ActionLook.h"
#include "shell/FrmMain.h"
#include "shell/dialogs/BoardSurface.h"
#include "shell/dialogs/BoardToolPanel.h"
#include "shell/dialogs/PreviewWindow.h"
#include "shell/dialogs/TipWindow.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTimer>
#include <QScrollArea>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace vonnel {

namespace {

constexpr BoardTool kToolOrder[] = {BoardTool::Draw,  BoardTool::Line,  BoardTool::Rect,
                                    BoardTool::Circle, BoardTool::Text, BoardTool::Erase,
                                    BoardTool::Capture, BoardTool::Image};

// The tools' pictures under :/icons, in kToolOrder's order.
constexpr const char* kToolDrawings[] = {"tool-draw", "tool-line",  "tool-rect",    "tool-circle",
                                         "tool-text", "tool-erase", "tool-capture", "tool-image"};

// The tools' captions, in kToolOrder's order.
// Lang.txt keys: the first text of each line, to the closing "};".
constexpr const char* kToolCaptions[] = {
    "Draw",
    "Line",
    "Rectangle",
    "Circle",
    "Text",
    "Erase",
    "Capture",
    "Image",
};

QPushButton* button(const QString& name, const QString& text)
{
    auto* b = new QPushButton(text);
    b->setObjectName(name);
    return b;
}

}  // namespace

BoardWindow::BoardWindow(FrmMain& frm, QAction* mute, QWidget* parent)
    : QDialog(parent), m_frm(frm), m_board(frm.scrivet()), m_mute(mute)
{
    setObjectName(QStringLiteral("frmDraw"));
    setWindowTitle(m_board.caption());
    const auto tr = [this](const char* key) { return m_frm.ctx().translate(QLatin1String(key)); };
    setWindowFlag(Qt::WindowMinMaxButtonsHint);

    // Toolbar1: one picture per tool, its name as the tip, the chosen one
    // held down.
    auto* tools = new QHBoxLayout;
    auto* toolBar = new QToolBar;
    toolBar->setObjectName(QStringLiteral("Toolbar1"));
    toolBar->setAccessibleName(tr("Tools"));
    for (size_t i = 0; i < std::size(kToolOrder); ++i) {
        const BoardTool t = kToolOrder[i];
        auto* b = new QToolButton;
        b->setText(tr(kToolCaptions[i]));
        b->setToolTip(b->text());
        b->setIcon(drawnIcon(QLatin1String(kToolDrawings[i])));
        b->setToolButtonStyle(Qt::ToolButtonIconOnly);
        b->setObjectName(QStringLiteral("Toolbar1_") + BoardTools::key(t));
        b->setCheckable(true);
        b->setAutoExclusive(true);
        connect(b, &QToolButton::clicked, this, [this, t] { m_board.selectTool(t); });
        toolBar->addWidget(b);
        m_tools << b;
    }
    tools->addWidget(toolBar);
    auto* undo = button(QStringLiteral("cmdUndo"), tr("Undo"));
    auto* eraseAll = button(QStringLiteral("mnuEraseAll"), tr("Erase All"));
    auto* save = button(QStringLiteral("cmdSave"), tr("Save"));
    auto* closeBoard = button(QStringLiteral("cmdCloseDraw"), tr("Close"));
    undo->hide();
    connect(undo, &QPushButton::clicked, &m_board, &Scrivet::cmdUndo_Click);
    connect(eraseAll, &QPushButton::clicked, &m_board, &Scrivet::mnuEraseAll_Click);
    connect(save, &QPushButton::clicked, this,
            [this] { cmdSave_Click(m_frm.ctx(), m_board.board()); });
    connect(closeBoard, &QPushButton::clicked, this, [this] { m_board.cmdCloseDraw_Click(); });
    for (QPushButton* w : {undo, eraseAll, save, closeBoard})
        tools->addWidget(w);
    tools->addStretch();

    m_surface = new BoardSurface(m_board);
    auto* scroll = new QScrollArea;
    scroll->setWidget(m_surface);
    scroll->setWidgetResizable(true);
    m_panel = new BoardToolPanel(m_board, tr);
    auto* middle = new QHBoxLayout;
    middle->addWidget(m_panel);
    middle->addWidget(scroll, 1);
    // The label menu: take the label back, or ring.
    connect(m_surface, &BoardSurface::labelMenuRequested, this, [this, tr](int n) {
        QMenu menu(this);
        menu.setObjectName(QStringLiteral("mnuPopLabel"));
        QAction* erase = menu.addAction(tr("Erase"), this, [this, n] { m_board.eraseLabelByUser(n); });
        erase->setObjectName(QStringLiteral("mnuEraseLabel"));
        QAction* ring = menu.addAction(tr("Ring"), &m_board, &Scrivet::ringPeer);
        ring->setObjectName(QStringLiteral("mnuRing"));
        menu.exec(QCursor::pos());
    });

    // The chat strip: the peer's line above ours.
    m_client = new QLabel(m_board.txtClient);
    m_client->setObjectName(QStringLiteral("txtClient"));
    m_server = new QLineEdit;
    m_server->setObjectName(QStringLiteral("txtServer"));
    m_server->setToolTip(tr("Text to send"));
    auto* send = button(QStringLiteral("cmdSendText"), tr("Send"));
    auto sendLine = [this] {
        m_board.cmdSendText_Click(m_server->text());
        m_server->clear();
    };
    connect(send, &QPushButton::clicked, this, sendLine);
    connect(m_server, &QLineEdit::returnPressed, this, sendLine);
    // The histories above the strip, each shown by its button.
    auto* clientHist = new QPlainTextEdit;
    clientHist->setObjectName(QStringLiteral("txtClientHist"));
    auto* serverHist = new QPlainTextEdit;
    serverHist->setObjectName(QStringLiteral("txtServerHist"));
    for (QPlainTextEdit* h : {clientHist, serverHist}) {
        h->setReadOnly(true);
        h->setMaximumHeight(90);
        h->hide();
    }
    auto* clientHistButton = button(QStringLiteral("cmdClientHist"), tr("Their lines"));
    auto* serverHistButton = button(QStringLiteral("cmdServerHist"), tr("My lines"));
    connect(clientHistButton, &QPushButton::clicked, clientHist,
            [clientHist] { clientHist->setVisible(!clientHist->isVisible()); });
    connect(serverHistButton, &QPushButton::clicked, serverHist,
            [serverHist] { serverHist->setVisible(!serverHist->isVisible()); });
    connect(&m_board, &Scrivet::clientLineChanged, clientHist,
            [this, clientHist] { clientHist->setPlainText(m_board.txtClientHist); });
    connect(send, &QPushButton::clicked, serverHist,
            [this, serverHist] { serverHist->setPlainText(m_board.txtServerHist); });
    connect(m_server, &QLineEdit::returnPressed, serverHist,
            [this, serverHist] { serverHist->setPlainText(m_board.txtServerHist); });
    auto* strip = new QHBoxLayout;
    strip->addWidget(clientHistButton);
    strip->addWidget(serverHistButton);
    strip->addWidget(m_server, 1);
    strip->addWidget(send);

    m_hint = new QLabel;
    m_hint->setObjectName(QStringLiteral("stbarDraw"));

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(tools);
    layout->addLayout(middle, 1);
    layout->addWidget(clientHist);
    layout->addWidget(m_client);
    layout->addWidget(serverHist);
    layout->addLayout(strip);
    layout->addWidget(m_hint);
    resize(1000, 740);
    // No button of the board is the dialog's default: Enter in the chat
    // line sends the line and nothing else.
    for (QPushButton* b : findChildren<QPushButton*>()) {
        b->setAutoDefault(false);
        b->setDefault(false);
    }
    // Where the board stood last time, in twips.
    bool okLeft = false, okTop = false;
    const int left = m_frm.ctx().setting(QStringLiteral("Settings-DrawBoardLeft")).toInt(&okLeft);
    const int top = m_frm.ctx().setting(QStringLiteral("Settings-DrawBoardTop")).toInt(&okTop);
    if (okLeft && okTop)
        move(left / kTwipsPerPixel, top / kTwipsPerPixel);

    // The board's tips come up with it, as the program's do at start.
    if (m_frm.ctx().settingNumber(QStringLiteral("Show Tips at Startup")) == 1)
        QTimer::singleShot(0, this, [this] { showDrawTips(); });

    connect(&m_board, &Scrivet::captionChanged, this, &QWidget::setWindowTitle);
    connect(&m_board, &Scrivet::clientLineChanged, m_client, &QLabel::setText);
    connect(&m_board, &Scrivet::hintChanged, m_hint, &QLabel::setText);
    connect(&m_board, &Scrivet::undoVisible, undo, &QWidget::setVisible);
    connect(&m_board, &Scrivet::seeThroughChanged, this,
            [this](bool on) { setWindowOpacity(on ? 0.6 : 1.0); });
    connect(&m_board, &Scrivet::pictureToolsEnabled, this, [this](bool on) {
        toolButton(BoardTool::Capture)->setEnabled(on);
        toolButton(BoardTool::Image)->setEnabled(on);
    });
    connect(&m_board, &Scrivet::raiseBoard, this, [this] {
        // To the front of every window, the main one included.
        if (isMinimized())
            showNormal();
        raise();
        activateWindow();
    });
    connect(&m_board, &Scrivet::fitPreviewToScreen, this, [this] {
        if (m_preview && m_preview->isVisible() && !m_preview->isMaximized())
            m_preview->fitToScreen();
    });
    connect(&m_board, &Scrivet::minimiseBoard, this,
            [this](bool away) { away ? showMinimized() : showNormal(); });
    connect(&m_board, &Scrivet::previewRequested, this, [this] {
        if (m_preview)
            return;  // a further file shown in the window already up
        auto* preview = new PreviewWindow(m_board, this);
        preview->showMaximized();
        preview->raise();
        m_preview = preview;
    });
    connect(&m_board, &Scrivet::popupRequested, this, [this, tr](bool eraseMenu) {
        // mnuPopErase holds Erase All; the board's own menu its save and close.
        QMenu menu(this);
        menu.setObjectName(eraseMenu ? QStringLiteral("mnuPopErase") : QStringLiteral("mnuPopRMenu"));
        if (eraseMenu) {
            menu.addAction(tr("Erase All"), &m_board, &Scrivet::mnuEraseAll_Click);
        } else {
            menu.addAction(tr("Save"), this, [this] { cmdSave_Click(m_frm.ctx(), m_board.board()); });
            QAction* ring = menu.addAction(tr("Ring"), &m_board, &Scrivet::ringPeer);
            ring->setObjectName(QStringLiteral("mnuRing"));
            QAction* tips = menu.addAction(tr("Tips"), this, &BoardWindow::showDrawTips);
            tips->setObjectName(QStringLiteral("mnuDrawTips"));
            // mnuDrawMute: the main window's Mute.
            if (m_mute)
                menu.addAction(m_mute);
            menu.addAction(tr("Close"), this, [this] { m_board.cmdCloseDraw_Click(); });
        }
        menu.exec(QCursor::pos());
    });
}

TipWindow* BoardWindow::showDrawTips()
{
    if (m_tips)
        return m_tips;
    auto* tips = new TipWindow(m_frm, QLatin1String(TipWindow::kDrawTips),
                               int(QRandomGenerator::global()->bounded(1 << 16)), this,
                               QStringLiteral("frmDrawTip"));
    tips->setAttribute(Qt::WA_DeleteOnClose);
    if (!tips->hasTips()) {
        tips->close();
        return nullptr;
    }
    tips->show();
    m_tips = tips;
    return tips;
}

QToolButton* BoardWindow::toolButton(BoardTool tool) const
{
    for (qsizetype i = 0; i < std::size(kToolOrder); ++i)
        if (kToolOrder[i] == tool)
            return m_tools.value(i);
    return nullptr;
}

void BoardWindow::hideEvent(QHideEvent* event)
{
    m_frm.ctx().writeSetting(QStringLiteral("Settings-DrawBoardLeft"), QString::number(x() * kTwipsPerPixel));
    m_frm.ctx().writeSetting(QStringLiteral("Settings-DrawBoardTop"), QString::number(y() * kTwipsPerPixel));
    QDialog::hideEvent(event);
}

void BoardWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F1) {
        m_frm.ctx().desktop().openFile(m_frm.ctx().HelpPath + QStringLiteral("usingscrivet.htm"));
        return;
    }
    // Enter belongs to the chat line (its Send), Esc to nothing: the board
    // has no default button to press and is closed only by its Close.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
        event->key() == Qt::Key_Escape) {
        event->accept();
        return;
    }
    // Ctrl+G rings here and at the peer.
    if (event->key() == Qt::Key_G && event->modifiers() & Qt::ControlModifier) {
        m_board.ringPeer();
        return;
    }
    QDialog::keyPressEvent(event);
}

void BoardWindow::closeEvent(QCloseEvent* event)
{
    // The board's own close decides; the frame's close button is its Close.
    if (m_board.visible()) {
        m_board.cmdCloseDraw_Click();
        if (m_board.visible()) {
            event->ignore();
            return;
        }
    }
    QDialog::closeEvent(event);
}

}  // namespace vonnel
