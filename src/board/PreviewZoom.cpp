#include "board/PreviewZoom.h"

#include <algorithm>
#include <cmath>

namespace vonnel {

int PreviewZoom::clamp(int percent)
{
    return std::clamp(percent, kMin, kMax);
}

namespace {

// Ratios below one percent step are floored so the fitted picture never
// spills past the room by a pixel.
int ratio(int room, int picture)
{
    if (picture <= 0 || room <= 0)
        return 100;
    return int(std::floor(100.0 * room / picture));
}

}  // namespace

int PreviewZoom::fitImage(QSize picture, QSize room)
{
    return clamp(std::min(ratio(room.width(), picture.width()), ratio(room.height(), picture.height())));
}

int PreviewZoom::fitScreen(QSize picture, QSize room)
{
    return clamp(std::max(ratio(room.width(), picture.width()), ratio(room.height(), picture.height())));
}

QSize PreviewZoom::shown(QSize picture, int percent)
{
    return QSize(std::max(1, int(qint64(picture.width()) * percent / 100)),
                 std::max(1, int(qint64(picture.height()) * percent / 100)));
}

QPoint PreviewZoom::pictureAt(QPoint shownPoint, int percent)
{
    if (percent <= 0)
        return shownPoint;
    return QPoint(int(qint64(shownPoint.x()) * 100 / percent), int(qint64(shownPoint.y()) * 100 / percent));
}

bool PreviewZoom::centres(bool noMoveSetting, const QString& title)
{
    return !noMoveSetting && title != QLatin1String("Screen Capture");
}

}  // namespace vonnel
