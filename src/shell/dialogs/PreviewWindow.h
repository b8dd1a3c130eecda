#pragma once
// frmTmp: the picture waiting for the user's choice (Scrivet::preview()).
// A click shows the part at the frame's size under the cursor, a
// double-click takes it onto the board; the zoom menu and slidResize
// resize the view, the right button fits the picture, Esc minimises, a
// file dropped on the window is shown instead. Closing it any other way
// puts nothing on the board.

#include <QDialog>

class QLabel;
class QScrollArea;
class QSlider;

namespace vonnel {

class Scrivet;

class PreviewWindow : public QDialog {
    Q_OBJECT
public:
    explicit PreviewWindow(Scrivet& board, QWidget* parent = nullptr);

    // Zoom in percent of the picture's own size.
    void setZoom(int percent);
    int zoom() const { return m_zoom; }
    // mnuFitImage: the whole picture in the view; mnuFitScreen: the view
    // filled across.
    void mnuFitImage_Click();
    void mnuFitScreen_Click();
    // The picture point under a point of the view.
    QPoint pictureAt(QPoint viewPoint) const;
    QLabel* picture1() const { return m_picture; }
    QSlider* slidResize() const { return m_slider; }
    QScrollArea* view() const { return m_scroll; }
    // Whether the picture stands in the middle of the view.
    bool centred() const;
    // The board opened again: the screen's width, its height less the
    // board's strip.
    void fitToScreen();
    // A file dropped on the window (or picked in frmDlg).
    void openDropped(const QString& path);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void showPart(QPoint at);
    void placeHint(QPoint inPicture);
    void browse();

    Scrivet& m_board;
    QScrollArea* m_scroll;
    QLabel* m_picture;
    QLabel* m_hint;
    QSlider* m_slider;
    int m_zoom = 100;
    bool m_confirmed = false;
};

}  // namespace vonnel
