#include "board/BoardPaint.h"

#include "core/Twips.h"

#include <QFont>
#include <QPainter>

#include <algorithm>

namespace vonnel {

namespace {

constexpr double px(int twips) { return twips / double(kTwipsPerPixel); }

QRectF box(const BoardItem& item)
{
    return QRectF(px(item.x1), px(item.y1), px(item.x2), px(item.y2));
}

}  // namespace

QSize BoardPaint::pixelSize(const Board& board)
{
    const QSize s = board.surfaceSize();
    return QSize(std::max(1, s.width() / kTwipsPerPixel), std::max(1, s.height() / kTwipsPerPixel));
}

void BoardPaint::paintItem(QPainter& p, const Board& board, const BoardItem& item)
{
    if (!item.visible)
        return;
    const QColor colour = QColor::fromRgb(item.colour);
    switch (item.kind) {
    case ItemKind::Dot:
    case ItemKind::EraseDot: {
        // Small dots are the bulk of a board: a filled square for the
        // smallest, where an oval would show the same pixels.
        const QRectF r = box(item);
        if (item.joined) {
            // Centre to centre at the dot's width; the round ends are the dots.
            const QPointF half(r.width() / 2, r.height() / 2);
            p.setPen(QPen(colour, std::max(r.width(), 1.0), Qt::SolidLine, Qt::RoundCap));
            p.drawLine(QPointF(px(item.fromX), px(item.fromY)) + half, r.topLeft() + half);
        }
        if (r.width() <= 3.5) {
            p.fillRect(r, colour);
        } else {
            p.setPen(Qt::NoPen);
            p.setBrush(colour);
            p.drawEllipse(r);
        }
        break;
    }
    case ItemKind::Rect:
    case ItemKind::Oval: {
        p.setPen(QPen(colour, item.pen, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        p.setBrush(Qt::NoBrush);
        if (item.kind == ItemKind::Rect)
            p.drawRect(box(item));
        else
            p.drawEllipse(box(item));
        break;
    }
    case ItemKind::Line:
        p.setPen(QPen(colour, item.pen, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(px(item.x1), px(item.y1)), QPointF(px(item.x2), px(item.y2)));
        break;
    case ItemKind::Label: {
        const BoardLabel& l = board.labelText(item);
        QFont f(l.fontName);
        f.setPointSize(std::clamp(l.fontSize, 1, 400));
        f.setBold(l.bold);
        f.setItalic(l.italic);
        f.setUnderline(l.underline);
        f.setStrikeOut(l.strikethrough);
        p.setFont(f);
        p.setPen(colour);
        p.drawText(QPointF(px(item.x1), px(item.y1) + QFontMetricsF(f, p.device()).ascent()),
                   l.text);
        break;
    }
    case ItemKind::Picture:
        p.drawImage(box(item), board.picture(item));
        break;
    }
}

void BoardPaint::paintAll(QPainter& p, const Board& board)
{
    p.fillRect(QRect(QPoint(0, 0), p.device() ? QSize(p.device()->width(), p.device()->height())
                                              : pixelSize(board)),
               QColor::fromRgb(boardColour(board.backColor())));
    for (const BoardItem& item : board.items())
        paintItem(p, board, item);
}

QImage BoardPaint::render(const Board& board, QSize minimum)
{
    QImage image(pixelSize(board).expandedTo(minimum), QImage::Format_RGB32);
    QPainter p(&image);
    paintAll(p, board);
    return image;
}

const QImage& BoardPaint::image(const Board& board)
{
    const QList<BoardItem>& items = board.items();
    const bool fresh = m_revision != board.revision() || m_image.size() != pixelSize(board) ||
                       m_painted > items.size();
    if (fresh) {
        m_image = render(board);
        m_lastPainted = int(items.size());
    } else {
        QPainter p(&m_image);
        for (qsizetype i = m_painted; i < items.size(); ++i)
            paintItem(p, board, items.at(i));
        m_lastPainted = int(items.size() - m_painted);
    }
    m_painted = items.size();
    m_revision = board.revision();
    return m_image;
}

}  // namespace vonnel
