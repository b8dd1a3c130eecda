#pragma once
// The zoom of frmTmp as plain arithmetic: the percent that fits a picture
// in the view whole (Fit Image) or fills the view (Fit Screen), the zoom
// slider's range, and where the shown picture stands in the view.

#include <QPoint>
#include <QSize>
#include <QString>

namespace vonnel {

class PreviewZoom {
public:
    // The slider's and the menu's bounds, in percent of the picture's size.
    static constexpr int kMin = 5;
    static constexpr int kMax = 400;

    static int clamp(int percent);
    // The whole picture in the room: the smaller of the two ratios.
    static int fitImage(QSize picture, QSize room);
    // The room filled across: the larger of the two ratios, the other
    // side then scrolls.
    static int fitScreen(QSize picture, QSize room);
    // The picture's size at a zoom, never below one pixel.
    static QSize shown(QSize picture, int percent);
    // The point of the picture under a point of the shown picture.
    static QPoint pictureAt(QPoint shownPoint, int percent);
    // Centred after each zoom, unless No Move Pic To Center is set or the
    // window is the capture one.
    static bool centres(bool noMoveSetting, const QString& title);
};

}  // namespace vonnel
