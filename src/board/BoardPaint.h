#pragma once
// Painting the board's objects: one object, all of them, and a raster kept
// between paints. Objects only added are painted on top of what the raster
// holds; any other change paints it anew. QtGui only, so a copy without
// windows renders the same pixels.

#include "board/Board.h"

#include <QImage>

class QPainter;

namespace vonnel {

class BoardPaint {
public:
    // The surface in pixels: 15 twips each, at least one pixel.
    static QSize pixelSize(const Board& board);
    static void paintItem(QPainter& painter, const Board& board, const BoardItem& item);
    // The background and every visible object, in the order they were made.
    static void paintAll(QPainter& painter, const Board& board);
    // A fresh image of the whole surface, at least minimum pixels in size.
    static QImage render(const Board& board, QSize minimum = {});

    // The kept raster, brought up to date with the board.
    const QImage& image(const Board& board);
    // How many objects the last update painted (all, or the new ones).
    int lastPainted() const { return m_lastPainted; }

private:
    QImage m_image;
    quint64 m_revision = ~quint64(0);
    qsizetype m_painted = 0;
    int m_lastPainted = 0;
};

}  // namespace vonnel
