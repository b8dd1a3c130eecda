#include "shell/dialogs/BoardSurface.h"

#include "board/Scrivet.h"
#include "core/Twips.h"

#include <QMouseEvent>
#include <QPainter>

namespace vonnel {

namespace {

int twips(double pixels) { return int(pixels * kTwipsPerPixel); }

}  // namespace

BoardSurface::BoardSurface(Scrivet& board, QWidget* parent) : QWidget(parent), m_board(board)
{
    setObjectName(QStringLiteral("picDraw"));
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(&board.board(), &Board::changed, this, qOverload<>(&QWidget::update));
    connect(&board, &Scrivet::bandChanged, this, qOverload<>(&QWidget::update));
}

QSize BoardSurface::sizeHint() const
{
    return BoardPaint::pixelSize(m_board.board());
}

void BoardSurface::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.fillRect(rect(), QColor::fromRgb(boardColour(m_board.board().backColor())));
    p.drawImage(0, 0, m_raster.image(m_board.board()));
    if (const auto& band = m_board.tools().band)
        BoardPaint::paintItem(p, m_board.board(), *band);
    if (m_cross) {
        // 30 units to the left and above, 40 to the right and below.
        const QRgb colour = boardColour(m_board.board().lblForeColour);
        const int x = m_cross->x(), y = m_cross->y();
        BoardPaint::paintItem(p, m_board.board(), Board::band(ItemKind::Line, x + 40, y, x - 30, y, 1, colour));
        BoardPaint::paintItem(p, m_board.board(), Board::band(ItemKind::Line, x, y + 40, x, y - 30, 1, colour));
    }
}

void BoardSurface::leaveEvent(QEvent*)
{
    m_cross.reset();
    update();
}

void BoardSurface::mousePressEvent(QMouseEvent* e)
{
    // A label's own menu, in place of the board's.
    if (e->button() == Qt::RightButton) {
        if (const int n = labelAt(QPoint(twips(e->position().x()), twips(e->position().y())))) {
            m_labelMenu = true;
            Q_EMIT labelMenuRequested(n);
            return;
        }
    }
    m_board.mouseDown(twips(e->position().x()), twips(e->position().y()),
                      e->button() == Qt::RightButton);
}

void BoardSurface::mouseMoveEvent(QMouseEvent* e)
{
    m_cross = QPoint(twips(e->position().x()), twips(e->position().y()));
    update();
    m_board.mouseMove(twips(e->position().x()), twips(e->position().y()),
                      e->buttons() & Qt::LeftButton);
}

void BoardSurface::mouseReleaseEvent(QMouseEvent* e)
{
    m_cross.reset();
    update();
    if (m_labelMenu && e->button() == Qt::RightButton) {
        m_labelMenu = false;
        return;
    }
    m_board.mouseUp(twips(e->position().x()), twips(e->position().y()),
                    e->button() == Qt::RightButton);
}

int BoardSurface::labelAt(QPoint at) const
{
    const Board& b = m_board.board();
    for (qsizetype i = b.items().size() - 1; i >= 0; --i) {
        const BoardItem& item = b.items()[i];
        if (item.kind != ItemKind::Label || !item.visible)
            continue;
        const QFontMetrics fm(font());
        const QRect area(item.x1, item.y1, twips(fm.horizontalAdvance(b.labelText(item).text)) + 150,
                         twips(fm.height()) + 150);
        if (area.contains(at))
            return item.number;
    }
    return 0;
}

void BoardSurface::mouseDoubleClickEvent(QMouseEvent* e)
{
    // A double-click on a label takes it back, here and at the peer.
    if (const int n = labelAt(QPoint(twips(e->position().x()), twips(e->position().y()))))
        m_board.eraseLabelByUser(n);
}

void BoardSurface::resizeEvent(QResizeEvent*)
{
    m_board.board().setSurfaceSize(QSize(twips(width()), twips(height())));
}

}  // namespace vonnel
