#pragma once
// frmTmp: the picture waiting for the user's choice (Scrivet::preview()).
// A click shows the part at the frame's size under the cursor, a
// double-click takes it onto the board; the zoom entries resize the view.
// Closing it any other way puts nothing on the board.

#include <QDialog>

class QLabel;
class QScrollArea;

namespace vonnel {

class Scrivet;

class PreviewWindow : public QDialog {
    Q_OBJECT
public:
    explicit PreviewWindow(Scrivet& board, QWidget* parent = nullptr);

    // Zoom in percent of the picture's own size.
    void setZoom(int percent);
    int zoom() const { return m_zoom; }
    // The picture point under a point of the view.
    QPoint pictureAt(QPoint viewPoint) const;
    QLabel* picture1() const { return m_picture; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void showPart(QPoint at);

    Scrivet& m_board;
    QScrollArea* m_scroll;
    QLabel* m_picture;
    QLabel* m_hint;
    int m_zoom = 100;
    bool m_confirmed = false;
};

}  // namespace vonnel
