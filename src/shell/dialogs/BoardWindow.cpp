#include "shell/dialogs/BoardWindow.h"

#include "board/BoardSave.h"
#include "board/Scrivet.h"
#include "core/CopyContext.h"
#include "core/Twips.h"
#include "platform/Desktop.h"
#include "shell/FrmMain.h"
#include "shell/dialogs/BoardSurface.h"
#include "shell/dialogs/PreviewWindow.h"

#include <QCloseEvent>
#include <QColorDialog>
#include <QFontDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>

namespace vonnel {

namespace {

constexpr BoardTool kToolOrder[] = {BoardTool::Draw,  BoardTool::Line,  BoardTool::Rect,
                                    BoardTool::Circle, BoardTool::Text, BoardTool::Erase,
                                    BoardTool::Capture, BoardTool::Image};

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

    // Toolbar1: one button per tool, the chosen one framed.
    auto* tools = new QHBoxLayout;
    for (size_t i = 0; i < std::size(kToolOrder); ++i) {
        const BoardTool t = kToolOrder[i];
        auto* b = new QToolButton;
        b->setText(tr(kToolCaptions[i]));
        b->setObjectName(QStringLiteral("Toolbar1_") + BoardTools::key(t));
        b->setCheckable(true);
        b->setAutoExclusive(true);
        connect(b, &QToolButton::clicked, this, [this, t] { m_board.selectTool(t); });
        tools->addWidget(b);
        m_tools << b;
    }
    m_thick = new QSpinBox;
    m_thick->setObjectName(QStringLiteral("txtThick"));
    m_thick->setToolTip(tr("Thickness"));
    m_thick->setRange(1, 99);
    m_thick->setValue(m_board.board().txtThick);
    connect(m_thick, &QSpinBox::valueChanged, this, [this](int n) {
        if (n != m_board.board().txtThick)
            m_board.setThickness(n);
    });
    auto* fore = button(QStringLiteral("lblForeColour"), tr("Colour"));
    auto* back = button(QStringLiteral("lblBackColour"), tr("Background"));
    auto* fontButton = button(QStringLiteral("cmdFontSetting"), tr("Font"));
    auto* undo = button(QStringLiteral("cmdUndo"), tr("Undo"));
    auto* eraseAll = button(QStringLiteral("mnuEraseAll"), tr("Erase All"));
    auto* save = button(QStringLiteral("cmdSave"), tr("Save"));
    auto* closeBoard = button(QStringLiteral("cmdCloseDraw"), tr("Close"));
    undo->hide();
    connect(fore, &QPushButton::clicked, this, [this] { chooseColour(true); });
    connect(back, &QPushButton::clicked, this, [this] { chooseColour(false); });
    connect(fontButton, &QPushButton::clicked, this, [this] {
        const BoardLabel& now = m_board.labelFont;
        QFont current(now.fontName, now.fontSize);
        bool ok = false;
        const QFont f = QFontDialog::getFont(&ok, current, this);
        if (ok)
            m_board.setLabelFont({QString(), f.family(), f.pointSize(), f.bold(), f.italic(),
                                  f.underline(), f.strikeOut()});
    });
    connect(undo, &QPushButton::clicked, &m_board, &Scrivet::cmdUndo_Click);
    connect(eraseAll, &QPushButton::clicked, &m_board, &Scrivet::mnuEraseAll_Click);
    connect(save, &QPushButton::clicked, this,
            [this] { cmdSave_Click(m_frm.ctx(), m_board.board()); });
    connect(closeBoard, &QPushButton::clicked, this, [this] { m_board.cmdCloseDraw_Click(); });
    for (QWidget* w : {static_cast<QWidget*>(m_thick), static_cast<QWidget*>(fore),
                       static_cast<QWidget*>(back), static_cast<QWidget*>(fontButton),
                       static_cast<QWidget*>(undo),
                       static_cast<QWidget*>(eraseAll), static_cast<QWidget*>(save),
                       static_cast<QWidget*>(closeBoard)})
        tools->addWidget(w);
    tools->addStretch();

    m_surface = new BoardSurface(m_board);
    auto* scroll = new QScrollArea;
    scroll->setWidget(m_surface);
    scroll->setWidgetResizable(true);

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
    layout->addWidget(scroll, 1);
    layout->addWidget(clientHist);
    layout->addWidget(m_client);
    layout->addWidget(serverHist);
    layout->addLayout(strip);
    layout->addWidget(m_hint);
    resize(900, 720);
    // Where the board stood last time, in twips.
    bool okLeft = false, okTop = false;
    const int left = m_frm.ctx().setting(QStringLiteral("Settings-DrawBoardLeft")).toInt(&okLeft);
    const int top = m_frm.ctx().setting(QStringLiteral("Settings-DrawBoardTop")).toInt(&okTop);
    if (okLeft && okTop)
        move(left / kTwipsPerPixel, top / kTwipsPerPixel);

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
    connect(&m_board, &Scrivet::minimiseBoard, this,
            [this](bool away) { away ? showMinimized() : showNormal(); });
    connect(&m_board, &Scrivet::previewRequested, this, [this] {
        if (m_preview)
            return;  // a further file shown in the window already up
        auto* preview = new PreviewWindow(m_board, this);
        preview->show();
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
            // mnuDrawMute: the main window's Mute.
            if (m_mute)
                menu.addAction(m_mute);
            menu.addAction(tr("Close"), this, [this] { m_board.cmdCloseDraw_Click(); });
        }
        menu.exec(QCursor::pos());
    });
}

QToolButton* BoardWindow::toolButton(BoardTool tool) const
{
    for (qsizetype i = 0; i < std::size(kToolOrder); ++i)
        if (kToolOrder[i] == tool)
            return m_tools.value(i);
    return nullptr;
}

void BoardWindow::chooseColour(bool fore)
{
    const Board& b = m_board.board();
    const QColor now = QColor::fromRgb(boardColour(fore ? b.lblForeColour : b.lblBackColour));
    const QColor c = QColorDialog::getColor(now, this);
    if (!c.isValid())
        return;
    if (fore)
        m_board.setForeColour(wireColour(c.rgb()));
    else
        m_board.setBackColour(wireColour(c.rgb()));
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
