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
    // The number of the visible label under a point in twips; 0 for none.
    int labelAt(QPoint twipsPoint) const;

Q_SIGNALS:
    // The right button went down on a label: its menu.
    void labelMenuRequested(int number);

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
    // The right button's press opened a label's menu: its release is not
    // the board's.
    bool m_labelMenu = false;
};

}  // namespace vonnel
