#pragma once
// picDraw: paints the board's kept raster and the frame of a shape under
// way, and hands press, move and release to the board in twips.

#include "board/BoardPaint.h"

#include <QWidget>
#include <optional>

namespace vonnel {

class Scrivet;

class BoardSurface : public QWidget {
    Q_OBJECT
public:
    explicit BoardSurface(Scrivet& board, QWidget* parent = nullptr);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    Scrivet& m_board;
    BoardPaint m_raster;
    // The crosshair's place in twips while the mouse is over the surface.
    std::optional<QPoint> m_cross;
};

}  // namespace vonnel
